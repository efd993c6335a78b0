// A clock that only the test moves, and that shows who waits for which moment.
#pragma once

#include <algorithm>
#include <list>
#include <map>
#include <vector>

#include "Support/Watched.h"
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
        return _state.With([](State const& state) { return state.now; });
    }
    void WaitUntil(Ubrix::Platform::Event& event, long long moment) const override {
        _state.With([&](State& state) {
            state.waiters[&event] = moment;
            WakeDue(state);
        });
        event.Wait();
        _state.With([&](State& state) { state.waiters.erase(&event); });
    }

    // Milliseconds since the start.
    long long Elapsed() const { return MonotonicMilliseconds() - kStart; }
    void Advance(long long milliseconds) {
        _state.With([&](State& state) {
            state.now += milliseconds;
            WakeDue(state);
        });
    }
    // Waits until those who wait do so for exactly these moments since the start (kNever as it is), in rising
    // order. False after ten seconds.
    bool AwaitWaiters(std::vector<long long> const& moments) const {
        return AwaitMoments([&](std::vector<long long> const& present) { return present == moments; });
    }
    // Waits until the moments that are waited for are as `wanted`. False after ten seconds.
    template <typename Wanted>
    bool AwaitMoments(Wanted wanted) const {
        return _state.Await([&](State const& state) { return wanted(Moments(state)); });
    }
    // The moments that are waited for now, as above.
    std::vector<long long> Waiters() const { return _state.With(Moments); }

private:
    struct State {
        std::map<Ubrix::Platform::Event*, long long> waiters;
        long long now = kStart;
    };

    static void WakeDue(State& state) {
        for (auto waiter = state.waiters.begin(); waiter != state.waiters.end();) {
            bool const isDue = waiter->second <= state.now;
            if (isDue) {
                waiter->first->Set();
            }
            waiter = isDue ? state.waiters.erase(waiter) : std::next(waiter);
        }
    }
    static std::vector<long long> Moments(State const& state) {
        std::vector<long long> moments;
        for (auto const& waiter : state.waiters) {
            moments.push_back(waiter.second == kNever ? kNever : waiter.second - kStart);
        }
        std::sort(moments.begin(), moments.end());
        return moments;
    }

    mutable Watched<State> _state;
};

}  // namespace Test
