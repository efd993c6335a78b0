// A clock that only the test moves, and that shows who waits for which moment.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <list>
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
        auto waiter = _waiters.end();
        {
            std::lock_guard<std::mutex> lock(_mutex);
            waiter = _waiters.insert(_waiters.end(), Waiter{&event, moment, false});
            Wake();
            _changed.notify_all();
        }
        event.Wait();
        std::lock_guard<std::mutex> lock(_mutex);
        _waiters.erase(waiter);
        _changed.notify_all();
    }

    // Milliseconds since the start.
    long long Elapsed() const { return MonotonicMilliseconds() - kStart; }
    void Advance(long long milliseconds) {
        std::lock_guard<std::mutex> lock(_mutex);
        _now += milliseconds;
        Wake();
    }
    // Waits until those who wait do so for exactly these moments since the start (kNever as it is), in rising
    // order. False after ten seconds.
    bool AwaitWaiters(std::vector<long long> const& moments) const {
        std::unique_lock<std::mutex> lock(_mutex);
        return _changed.wait_for(lock, std::chrono::seconds(10), [&] { return Moments() == moments; });
    }
    // The moments that are waited for now, as above.
    std::vector<long long> Waiters() const {
        std::lock_guard<std::mutex> lock(_mutex);
        return Moments();
    }

private:
    struct Waiter {
        Ubrix::Platform::Event* event;
        long long moment;
        bool woken;
    };
    void Wake() const {
        for (Waiter& waiter : _waiters) {
            if (!waiter.woken && waiter.moment <= _now) {
                waiter.woken = true;
                waiter.event->Set();
            }
        }
    }
    std::vector<long long> Moments() const {
        std::vector<long long> moments;
        for (Waiter const& waiter : _waiters) {
            if (!waiter.woken) {
                moments.push_back(waiter.moment == kNever ? kNever : waiter.moment - kStart);
            }
        }
        std::sort(moments.begin(), moments.end());
        return moments;
    }

    mutable std::mutex _mutex;
    mutable std::condition_variable _changed;
    mutable std::list<Waiter> _waiters;
    long long _now = kStart;
};

}  // namespace Test
