// Keeps what a task tells, and lets a test wait for it.
#pragma once

#include <VelmorCore/Http.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Support/Watched.h"

namespace Test {

class OutcomeListener : public Ubrix::DataTask::Listener {
public:
    // Runs inside the call, before the outcome counts.
    std::function<void(Ubrix::DataTask*)> inside;

    void OnDataTaskFinished(Ubrix::DataTask* task, int errorCode, int httpStatus, char const* data,
                            std::uint64_t length) override {
        EXPECT_STREQ(data != nullptr ? data + length : "", "");
        std::string const body = data != nullptr ? std::string(data, length) : "null";
        if (inside) {
            inside(task);
        }
        _outcomes.With([&](Outcomes& outcomes) {
            outcomes.push_back(std::to_string(errorCode) + " " + std::to_string(httpStatus) + " " + body);
        });
    }

    // The outcome number `count`, from 1: error code, status and body, with a blank between them; the body is
    // "null" where no data came. A failed test after a minute.
    std::string Await(std::size_t count = 1) {
        auto const came = [count](Outcomes const& outcomes) { return outcomes.size() >= count; };
        EXPECT_TRUE(_outcomes.Await(came, std::chrono::minutes(1)));
        return _outcomes.With(
            [&](Outcomes const& outcomes) { return came(outcomes) ? outcomes[count - 1] : "no outcome"; });
    }
    std::size_t Count() {
        return _outcomes.With([](Outcomes const& outcomes) { return outcomes.size(); });
    }

private:
    using Outcomes = std::vector<std::string>;

    Watched<Outcomes> _outcomes;
};

}  // namespace Test
