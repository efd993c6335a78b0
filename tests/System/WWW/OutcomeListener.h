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

class OutcomeListener : public Ubrix::DataTask::Listener {
public:
    // Runs inside the call, before the outcome counts.
    std::function<void(Ubrix::DataTask*)> inside;

    void OnDataTaskFinished(Ubrix::DataTask* task, int errorCode, int httpStatus, char const* data,
                            std::uint64_t length) override {
        EXPECT_TRUE(data == nullptr || data[length] == '\0');
        std::string const body = data != nullptr ? std::string(data, length) : "null";
        if (inside) {
            inside(task);
        }
        std::lock_guard<std::mutex> lock(_mutex);
        _outcomes.push_back(std::to_string(errorCode) + " " + std::to_string(httpStatus) + " " + body);
        _came.notify_all();
    }

    // The outcome number `count`, from 1: error code, status and body, with a blank between them; the body is
    // "null" where no data came. A failed test after a minute.
    std::string Await(std::size_t count = 1) {
        std::unique_lock<std::mutex> lock(_mutex);
        bool const came =
            _came.wait_for(lock, std::chrono::seconds(60), [&] { return _outcomes.size() >= count; });
        EXPECT_TRUE(came);
        return came ? _outcomes[count - 1] : "no outcome";
    }
    std::size_t Count() {
        std::lock_guard<std::mutex> lock(_mutex);
        return _outcomes.size();
    }

private:
    std::mutex _mutex;
    std::condition_variable _came;
    std::vector<std::string> _outcomes;
};

}  // namespace Test
