#include <VelmorCore/Timer.h>
#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "Platform/Event.h"
#include "Support/ConsoleCapture.h"
#include "Support/SteppedClock.h"

namespace Ubrix {
namespace {

constexpr long long kNever = ClockSource::kNever;
using Calls = std::vector<std::pair<unsigned int, long long>>;

class Timer : public testing::Test {
protected:
    ~Timer() override { ::Test::SteppedClock::Remove(); }

    static void Record(unsigned int id, void* self) {
        auto* test = static_cast<Timer*>(self);
        test->_calls.emplace_back(id, test->clock.Elapsed());
        test->inside(id);
    }
    unsigned int Start(CTimer& timer, unsigned long long intervalMs, bool repeat) {
        return timer.StartTimer(intervalMs, repeat, Record, this);
    }
    // Moves the clock, and waits until the timers wait for these moments.
    void Advance(long long milliseconds, std::vector<long long> const& moments) {
        clock.Advance(milliseconds);
        EXPECT_TRUE(clock.AwaitWaiters(moments)) << testing::PrintToString(moments);
    }
    // The calls since the last time it was asked. Only while no timer is due.
    Calls TakeCalls() { return std::exchange(_calls, {}); }

    ::Test::SteppedClock& clock = ::Test::SteppedClock::Install();
    ::Test::ConsoleCapture console;
    std::function<void(unsigned int)> inside = [](unsigned int) {};  // a call

private:
    Calls _calls;
};

TEST_F(Timer, OneShotFiresAtTheFirstPollOnceAndStaysUntilStopped) {
    CTimer timer;
    unsigned int const id = Start(timer, 1500, false);
    Advance(0, {1500});
    clock.Advance(1499);
    EXPECT_EQ(TakeCalls(), Calls{});
    Advance(1, {kNever});  // nothing left to wake for
    EXPECT_EQ(TakeCalls(), (Calls{{id, 1500}}));
    timer.StopTimer(id + 1000);
    Advance(0, {kNever});
    timer.StopTimer(id);
    Advance(0, {});  // a stopped timer's thread ends at once
}

TEST_F(Timer, PeriodIsRoundedUpToPollsAndDriftsWithTheCallback) {
    CTimer timer;
    unsigned int const id = Start(timer, 700, true);
    Advance(0, {1000});
    Advance(1000, {2000});
    inside = [this](unsigned int) { clock.Advance(30); };
    // Called at 2000, done at 2030, due at 2700: polls at 2530 and 3030.
    Advance(1000, {3030});
    Advance(5000, {8060});  // a machine that slept: one call, none made up for
    EXPECT_EQ(TakeCalls(), (Calls{{id, 1000}, {id, 2000}, {id, 7030}}));
}

TEST_F(Timer, ExtremeIntervals) {
    CTimer timer;
    unsigned int const id = Start(timer, 0, true);
    Advance(0, {500});
    Advance(500, {1000});
    EXPECT_EQ(TakeCalls(), (Calls{{id, 0}, {id, 500}}));
    timer.StopTimer(id);
    Advance(0, {});
    Start(timer, 0xFFFFFFFFULL, true);
    Start(timer, 0xFFFFFFFFFFFFFFFFULL, true);
    Start(timer, 0xFFFFFFFEULL, false);
    Start(timer, 0x100000000ULL, false);
    Advance(0, {4294968000LL, 4294968000LL, kNever, kNever});
}

TEST_F(Timer, MayBeStoppedFromItsOwnCallback) {
    CTimer timer;
    Platform::Event called;
    inside = [&](unsigned int id) { timer.StopTimer(id), called.Set(); };
    unsigned int const id = Start(timer, 400, true);
    Advance(0, {500});
    clock.Advance(500);
    EXPECT_TRUE(called.WaitFor(10000));
    Advance(5000, {});
    EXPECT_EQ(TakeCalls(), (Calls{{id, 500}}));
}

TEST_F(Timer, DestructorEndsAllAndIdsAreSharedByAllInstances) {
    {
        CTimer one;
        CTimer two;
        unsigned int const first = Start(one, 400, true);
        unsigned int const second = Start(two, 900, true);
        EXPECT_NE(first, 0U);
        EXPECT_EQ(second, first + 1);
        Advance(0, {500, 1000});
    }
    Advance(10000, {});
    EXPECT_EQ(TakeCalls(), Calls{});
}

TEST_F(Timer, RunsOnTheSystemsClock) {
    ::Test::SteppedClock::Remove();
    CTimer timer;
    // Static, since a call under way outlives its timer.
    static Platform::Event beat;
    auto const call = [](unsigned int, void*) { beat.Set(); };
    timer.StartTimer(0, true, call, nullptr);
    EXPECT_TRUE(beat.WaitFor(10000));
    EXPECT_TRUE(beat.WaitFor(10000)) << "half a second later";
}

}  // namespace
}  // namespace Ubrix
