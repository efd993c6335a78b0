#include "System/Operation/OperationQueueImp.h"

#include <VelmorCore/RemoteConfig.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Base/Ubrix/CoreConfigReader.h"
#include "Base/Ubrix/IBase.h"
#include "Support/LogCapture.h"
#include "Support/SteppedClock.h"
#include "Support/Watched.h"

namespace Ubrix {
namespace {

constexpr long long kNever = ClockSource::kNever;
char const kWoundDown[] = "onThreadManageProc threads have been destroyed, starting delete queue";

struct Target : OperationTargetBase {
    std::shared_ptr<int> life = std::make_shared<int>();
};

class Pool : public testing::Test {
protected:
    static constexpr std::pair<int, int> kTwoIdle{2, 2};

    ~Pool() override {
        open = true;
        IBase::RunReleaseCallbacks();
        EXPECT_TRUE(Drive([this] { return log.Count("Event", kWoundDown) == pools; }));
        ::Test::SteppedClock::Remove();
    }

    static void Work(Operation* operation, void* self) {
        auto* test = static_cast<Pool*>(self);
        operation->Sleep(1000);
        test->operation = operation;
        test->lastRun = test->clock.Elapsed();
        ++test->runs;
        EXPECT_TRUE(::Test::AwaitTrue([test] { return test->open.load(); }));
    }
    // A pool with both workers idle at 100 ms, and the manager at rest.
    void StartIdle() {
        queue = OperationQueueImp::GetInstance().get();
        ASSERT_TRUE(clock.AwaitWaiters({100, 100, 100}));
        clock.Advance(100);
        ASSERT_TRUE(clock.AwaitWaiters({kNever}));
        ASSERT_TRUE(::Test::AwaitTrue([this] { return Threads() == kTwoIdle; }));
    }
    // Operations that don't end before the gate is open.
    void AddUnderLoad(int count) {
        open = false;
        runs = 0;
        while (count-- > 0) {
            queue->AddOperation(Work, this, false);
        }
    }
    // All of them, and the idle ones.
    std::pair<int, int> Threads() {
        OperationQueueImp::Threads const threads = queue->CountThreads();
        return {threads.all, threads.idle};
    }
    // Goes on in steps of 10 ms until `holds`.
    template <class Condition>
    bool Drive(Condition holds) {
        return ::Test::AwaitTrue([&] {
            bool const done = holds();
            clock.Advance(done ? 0 : 10);
            return done;
        });
    }
    // Until only the manager waits, for `moment`.
    bool DriveToRest(long long moment) {
        return Drive([&] { return clock.Waiters() == std::vector<long long>{moment}; });
    }
    // Goes on to a moment, with `resting` threads at rest after each step.
    void GoTo(long long moment, std::size_t resting) {
        while (clock.Elapsed() < moment) {
            clock.Advance(10);
            ASSERT_TRUE(::Test::AwaitTrue([&] { return clock.Waiters().size() == resting; }))
                << clock.Elapsed();
        }
    }

    ::Test::SteppedClock& clock = ::Test::SteppedClock::Install();
    ::Test::LogCapture log;
    OperationQueueImp* queue = nullptr;
    int pools = 1;
    std::atomic<bool> open{true};
    std::atomic<long long> lastRun{0};
    std::atomic<int> runs{0};
    std::atomic<Operation*> operation{nullptr};
};

TEST_F(Pool, RepeatsWhenItsSleepIsOverUntilCancelled) {
    StartIdle();
    queue->AddOperation(Work, this, true);
    for (auto const& waiters : {std::vector<long long>{110}, {120, 120}}) {
        ASSERT_TRUE(clock.AwaitWaiters(waiters)) << "a tick and a rest";
        clock.Advance(10);
    }
    ASSERT_TRUE(::Test::AwaitTrue([this] { return runs == 1; }));
    ASSERT_TRUE(DriveToRest(1120)) << "sleeps until it is due";
    operation.load()->Sleep(500);
    long long const due = operation.load()->NextRunTime() - ::Test::SteppedClock::kStart;
    ASSERT_TRUE(DriveToRest(due)) << "an earlier moment wakes the manager";
    operation.load()->Cancel();
    clock.Advance(due - clock.Elapsed());
    ASSERT_TRUE(clock.AwaitWaiters({due + 10, due + 10})) << "one that waits runs once more";
    EXPECT_TRUE(DriveToRest(kNever)) << "and is gone";
    EXPECT_EQ(runs, 2);
}

TEST_F(Pool, GrowsUnderFullLoadAndShrinksAfterIt) {
    StartIdle();
    AddUnderLoad(4);
    ASSERT_TRUE(clock.AwaitWaiters({110}));
    GoTo(110, 3);
    // From 120 on nobody is idle.
    GoTo(1110, 1);
    EXPECT_EQ(Threads(), std::pair(2, 0));
    clock.Advance(10);
    ASSERT_TRUE(clock.AwaitWaiters({1130, 1220})) << "the 101st tick brings a third";
    GoTo(1210, 2);
    GoTo(2130, 1);
    EXPECT_EQ(log.Count("Debug", "thread num is max"), 1) << "and a second later no fourth";
    EXPECT_EQ(Threads(), std::pair(3, 0));

    open = true;
    ASSERT_TRUE(clock.AwaitWaiters({2140, 2140, 2140, 2140}));
    // One has the last operation, two idle from here on.
    GoTo(3140, 4);
    EXPECT_EQ(Threads(), std::pair(3, 3));
    EXPECT_TRUE(Drive([this] { return Threads() == kTwoIdle; }));
    EXPECT_TRUE(DriveToRest(kNever));
    EXPECT_EQ(log.Count("Info", "Destroy thread"), 1);
    EXPECT_EQ(runs, 4);
}

TEST_F(Pool, ReleaseWaitsForNothingAndTheManagerDeletesTheRest) {
    StartIdle();
    // One that is due, and one behind it that isn't.
    AddUnderLoad(1);
    auto* target = new Target;
    std::weak_ptr<int> const life = target->life;
    queue->AddOperation(target, nullptr, nullptr, true);
    target->Sleep(100000);
    target->Cancel(true);
    ASSERT_TRUE(Drive([this] { return runs == 1; }));
    IBase::RunReleaseCallbacks();
    queue->AddOperation(Work, this, true);
    EXPECT_TRUE(log.Has("Info", "AddOperation _running has been false"));
    EXPECT_NE(OperationQueueImp::GetInstance().get(), queue) << "a fresh one stands beside it";
    pools = 2;
    clock.Advance(200);
    EXPECT_FALSE(life.expired()) << "an operation is still running";
    open = true;
    EXPECT_TRUE(Drive([&] { return life.expired(); }));
    EXPECT_EQ(runs, 1);
}

TEST_F(Pool, ThreadsThatCouldNotBeHadAreNotCountedAndComeLater) {
    pthread_attr_t before;
    pthread_attr_t impossible;
    ASSERT_EQ(pthread_getattr_default_np(&before), 0);
    ASSERT_EQ(pthread_getattr_default_np(&impossible), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&impossible, std::size_t{1} << 46), 0);
    ASSERT_EQ(pthread_setattr_default_np(&impossible), 0);
    queue = OperationQueueImp::GetInstance().get();
    ASSERT_EQ(pthread_setattr_default_np(&before), 0);
    EXPECT_EQ(Threads(), std::pair(0, 0));
    queue->AddOperation(Work, this, false);
    ASSERT_TRUE(clock.AwaitWaiters({100}));
    EXPECT_TRUE(Drive([this] { return runs == 1; }));
    EXPECT_GE(lastRun, 1200) << "a second of full load, and a thread's start";
}

// Gives the pool its values.
class Values : public Velmor::RemoteConfig {
public:
    using RemoteConfig::RemoteConfig;
    int GetInt(char const* key, int) override { return numbers[key]; }
    bool GetBool(char const* key, bool) override { return numbers[key] != 0; }

    std::map<std::string, int> numbers;
};

TEST_F(Pool, LivesWithAnyValues) {
    // Minimum, maximum and interval; whether it may grow; threads at the start and under load; the tick.
    std::tuple<int, int, int, bool, std::size_t, int, int> const rows[] = {
        {5, 2, 10, true, 2, 2, 10}, {1, 3, 10, false, 1, 1, 10}, {0, 1, 10, false, 0, 1, 10},
        {1, 1, 0, true, 1, 1, 1},   {1, 1, -7, true, 1, 1, 1},   {1, 2, 5000, true, 1, 2, 5000},
    };
    pools = 0;
    for (auto const& [min, max, interval, stretch, atStart, underLoad, tick] : rows) {
        SCOPED_TRACE(++pools);
        Values values("");
        values.numbers = {{"OperationQueueMinThreadNum", min},
                          {"OperationQueueMaxThreadNum", max},
                          {"OperationIntervalPerLoop", interval},
                          {"OperationQueueStretch", stretch}};
        CoreConfigReader::SetProvider(&values);
        queue = OperationQueueImp::GetInstance().get();
        CoreConfigReader::SetProvider(nullptr);
        long long const start = clock.Elapsed() + 100;
        ASSERT_TRUE(clock.AwaitWaiters(std::vector<long long>(atStart + 1, start)));
        clock.Advance(100);
        ASSERT_TRUE(clock.AwaitWaiters({kNever}));
        AddUnderLoad(3);
        ASSERT_TRUE(clock.AwaitWaiters({start + tick}));
        ASSERT_TRUE(Drive([this, load = underLoad] { return runs == load; }));
        GoTo(clock.Elapsed() + 1200, 1);
        EXPECT_EQ(Threads(), std::pair(underLoad, 0));
        open = true;
        IBase::RunReleaseCallbacks();
        ASSERT_TRUE(Drive([this] { return log.Count("Event", kWoundDown) == pools; }));
    }
}

}  // namespace
}  // namespace Ubrix
