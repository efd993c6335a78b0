// Keeps what a task tells, and lets a test wait for it.
#pragma once

#include <VelmorCore/Http.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace Test {

struct Outcome {
    int errorCode;
    int httpStatus;
    bool hasData;
    std::string body;

    bool operator==(Outcome const& other) const {
        return errorCode == other.errorCode && httpStatus == other.httpStatus && hasData == other.hasData &&
               body == other.body;
    }
    friend std::ostream& operator<<(std::ostream& out, Outcome const& outcome) {
        return out << "error " << outcome.errorCode << ", status " << outcome.httpStatus << ", "
                   << outcome.body.size() << " bytes: " << outcome.body.substr(0, 200);
    }
};

class OutcomeListener : public Ubrix::DataTask::Listener {
public:
    // Runs inside the call, before the outcome counts.
    std::function<void(Ubrix::DataTask*)> inside;

    void OnDataTaskFinished(Ubrix::DataTask* task, int errorCode, int httpStatus, char const* data,
                            std::uint64_t length) override {
        if (data != nullptr) {
            EXPECT_EQ(data[length], '\0');
        }
        Outcome const outcome{errorCode, httpStatus, data != nullptr,
                              data != nullptr ? std::string(data, length) : std::string()};
        if (inside) {
            inside(task);
        }
        std::lock_guard<std::mutex> lock(_mutex);
        _outcomes.push_back(outcome);
        _came.notify_all();
    }

    // The outcome number `count`, from 1. A failed test after a minute.
    Outcome Await(std::size_t count = 1) {
        std::unique_lock<std::mutex> lock(_mutex);
        if (!_came.wait_for(lock, std::chrono::seconds(60), [&] { return _outcomes.size() >= count; })) {
            ADD_FAILURE() << "no outcome " << count;
            return {-1, -1, false, ""};
        }
        return _outcomes[count - 1];
    }
    std::size_t Count() {
        std::lock_guard<std::mutex> lock(_mutex);
        return _outcomes.size();
    }

private:
    std::mutex _mutex;
    std::condition_variable _came;
    std::vector<Outcome> _outcomes;
};

}  // namespace Test
