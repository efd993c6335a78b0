// A value that several threads share, and whose changes a test can wait for; and a wait for what tells of
// none.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Test {

template <typename Value>
class Watched {
public:
    // Works on the value alone, and wakes those who wait.
    template <typename Work>
    auto With(Work const& work) {
        std::lock_guard<std::mutex> const lock(_mutex);
        _changed.notify_all();
        return work(_value);
    }
    // Waits until `condition` holds. False if it didn't in time.
    template <typename Condition>
    bool Await(Condition const& condition, std::chrono::milliseconds patience = std::chrono::seconds(10)) {
        std::unique_lock<std::mutex> lock(_mutex);
        return _changed.wait_for(lock, patience, [&] { return condition(_value); });
    }

private:
    std::mutex _mutex;
    std::condition_variable _changed;
    Value _value{};
};

// Looks until `holds` answers true. False if it didn't in ten seconds.
template <typename Condition>
bool AwaitTrue(Condition const& holds) {
    auto const limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!holds() && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    return holds();
}

}  // namespace Test
