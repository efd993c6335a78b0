// A clock that only the test moves, and that shows who waits for which moment.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <list>
#include <map>
#include <mutex>
#include <vector>

#include "System/Time/ClockSource.h"

namespace Test {

class SteppedClock : public Ubrix::ClockSource {
public:
    static constexpr long long kStart = 1000000;

    // In force until the next Install or Remove. Never destroyed: threads may be on their way out of it.
    static SteppedClock& Install() {
        static std::list<SteppedClock>& all = *new std::list<SteppedClock>;
        all.emplace_back();
        ClockSource::Replace(&all.back());
        return all.back();
    }
    static void Remove() { ClockSource::Replace(nullptr); }

    long long MonotonicMilliseconds() const override {
        std::lock_guard<std::mutex> lock(_mutex);
        return _now;
    }
    void WaitUntil(Ubrix::Platform::Event& event, long long moment) const override {
        Change([&] { _waiters[&event] = moment; });
        event.Wait();
        Change([&] { _waiters.erase(&event); });
    }

    // Milliseconds since the start.
    long long Elapsed() const { return MonotonicMilliseconds() - kStart; }
    void Advance(long long milliseconds) {
        Change([&] { _now += milliseconds; });
    }
    // Waits until those who wait do so for exactly these moments since the start (kNever as it is), in rising
    // order. False after ten seconds.
    bool AwaitWaiters(std::vector<long long> const& moments) const {
        std::unique_lock<std::mutex> lock(_mutex);
        return _changed.wait_for(lock, std::chrono::seconds(10), [&] { return Moments() == moments; });
    }

private:
    // Changes the time or the waiters, and wakes those whose moment has come.
    template <typename Work>
    void Change(Work const& work) const {
        std::lock_guard<std::mutex> lock(_mutex);
        work();
        for (auto waiter = _waiters.begin(); waiter != _waiters.end();) {
            bool const isDue = waiter->second <= _now;
            if (isDue) {
                waiter->first->Set();
            }
            waiter = isDue ? _waiters.erase(waiter) : std::next(waiter);
        }
        _changed.notify_all();
    }
    std::vector<long long> Moments() const {
        std::vector<long long> moments;
        for (auto const& waiter : _waiters) {
            moments.push_back(waiter.second == kNever ? kNever : waiter.second - kStart);
        }
        std::sort(moments.begin(), moments.end());
        return moments;
    }

    mutable std::mutex _mutex;
    mutable std::condition_variable _changed;
    mutable std::map<Ubrix::Platform::Event*, long long> _waiters;
    long long _now = kStart;
};

}  // namespace Test
