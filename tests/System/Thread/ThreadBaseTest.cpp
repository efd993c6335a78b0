#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Event.h"
#include "Platform/Thread.h"
#include "Support/ConsoleCapture.h"
#include "System/Thread/AThreadBase.h"

namespace Ubrix {
namespace {

constexpr unsigned int kBound = 10000;

// What outlives the worker.
struct Record {
    void Note(std::string const& step) {
        std::lock_guard<std::mutex> lock(mutex);
        trail += step + " ";
    }
    std::string Trail() {
        std::lock_guard<std::mutex> lock(mutex);
        return trail;
    }
    std::mutex mutex;
    std::string trail;
    std::atomic<int> turns{0};
    std::atomic<int> deletions{0};
    Platform::Event turn;     // set at each turn
    Platform::Event paused;   // set at each pause
    Platform::Event deleted;  // set by the destructor
};

class Worker : public CThreadBase {
public:
    explicit Worker(std::shared_ptr<Record> record) : _record(std::move(record)) {}
    ~Worker() override {
        ++_record->deletions;
        _record->deleted.Set();
    }
    void ThRun() override {
        ++_record->turns;
        _record->turn.Set();
        Platform::SleepFor(1);
    }
    void OnThreadStart() override { _record->Note("start"); }
    void OnThreadExit() override { _record->Note("exit"); }
    void OnThreadPause() override {
        _record->Note("pause");
        _record->paused.Set();
    }
    void OnThreadResume() override { _record->Note("resume"); }
    void Step0() { _record->Note("step0"); }
    void Step1(void* text) { _record->Note(static_cast<char const*>(text)); }

private:
    std::shared_ptr<Record> _record;
};

class ThreadBase : public testing::Test {
protected:
    std::shared_ptr<Record> record = std::make_shared<Record>();
    CThreadBase* thread = new Worker(record);
    // Its log lines are many.
    ::Test::ConsoleCapture console;

    bool AwaitTurn() { return record->turn.WaitFor(kBound); }
    void ExpectDeletedOnce() {
        EXPECT_TRUE(record->deleted.WaitFor(kBound));
        EXPECT_EQ(record->deletions, 1);
    }
};

TEST_F(ThreadBase, StartsAtAnyMomentAfterTheConstructor) {
    for (unsigned int delay : {0U, 100U, 400U}) {
        Platform::SleepFor(delay);
        thread->Start();
        EXPECT_TRUE(AwaitTurn()) << delay;
        CThreadBase::Destroy(thread, false);
        EXPECT_EQ(thread, nullptr);
        EXPECT_EQ(record->Trail(), "start resume exit ") << delay;
        EXPECT_EQ(record->deletions, 1);
        record = std::make_shared<Record>();
        thread = new Worker(record);
    }
    CThreadBase::Destroy(thread, true);
    ExpectDeletedOnce();
}

TEST_F(ThreadBase, PauseResumeAndStopWhilePaused) {
    char first[] = "first";
    auto* worker = static_cast<Worker*>(thread);
    thread->Pause();  // not running yet: nothing
    thread->PostSelector(&Worker::Step1, first);
    thread->PostSelector(&Worker::Step0);
    thread->Start();
    ASSERT_TRUE(AwaitTurn());
    ASSERT_TRUE(AwaitTurn());
    thread->Pause();
    ASSERT_TRUE(record->paused.WaitFor(kBound));
    EXPECT_EQ(worker->ThreadState(), CThreadBase::kPaused);
    int const turns = record->turns;
    record->turn.Reset();
    thread->Resume(true);
    ASSERT_TRUE(AwaitTurn());
    EXPECT_GT(record->turns, turns);
    thread->Pause();
    ASSERT_TRUE(record->paused.WaitFor(kBound));
    thread->Stop();
    thread->Resume(false);
    thread->Start();  // a stopped thread stays stopped
    CThreadBase::Destroy(thread, false);
    EXPECT_EQ(record->Trail(), "start resume first step0 pause resume pause exit ");
    EXPECT_TRUE(console.Has("Thread is not running.."));
    EXPECT_TRUE(console.Has("OnThreadProc after  pause wait"));
    EXPECT_TRUE(console.Has("CThreadBase::Destroy end"));
}

TEST_F(ThreadBase, NoResumeIsLost) {
    thread->Start();
    for (int i = 0; i < 500; ++i) {
        thread->Pause();
        if (i % 3 == 0) {
            Platform::SleepFor(0);
        }
        thread->Resume(false);
        if (i % 50 == 0) {
            record->turn.Reset();
            ASSERT_TRUE(AwaitTurn()) << i;
        }
    }
    record->turn.Reset();
    EXPECT_TRUE(AwaitTurn());
    CThreadBase::Destroy(thread, true);
    ExpectDeletedOnce();
}

TEST_F(ThreadBase, PauseAndStopAtOnceStillEnd) {
    CThreadBase::Destroy(thread, false);
    for (int i = 0; i < 100; ++i) {
        auto own = std::make_shared<Record>();
        CThreadBase* worker = new Worker(own);
        worker->Start();
        std::thread pauser([worker] {
            for (int n = 0; n < 20; ++n) {
                worker->Pause();
            }
        });
        worker->Stop();
        pauser.join();
        CThreadBase::Destroy(worker, i % 2 == 0);
        ASSERT_TRUE(own->deleted.WaitFor(kBound)) << i;
        EXPECT_EQ(own->deletions, 1);
    }
}

TEST_F(ThreadBase, DestroyInEveryStateDeletesOnce) {
    struct Case {
        char const* name;
        void (*arrange)(CThreadBase& worker, Record& seen);
    } const cases[] = {
        {"never started", [](CThreadBase&, Record&) {}},
        {"stopped before its start", [](CThreadBase& worker, Record&) { worker.Stop(); }},
        {"just started", [](CThreadBase& worker, Record&) { worker.Start(); }},
        {"running",
         [](CThreadBase& worker, Record& seen) {
             worker.Start();
             EXPECT_TRUE(seen.turn.WaitFor(kBound));
         }},
        {"paused",
         [](CThreadBase& worker, Record& seen) {
             worker.Start();
             worker.Pause();
             EXPECT_TRUE(seen.paused.WaitFor(kBound));
         }},
        {"just stopped",
         [](CThreadBase& worker, Record&) {
             worker.Start();
             worker.Stop();
         }},
        {"ended",
         [](CThreadBase& worker, Record&) {
             worker.Start();
             worker.Stop();
             while (worker.ThreadState() != CThreadBase::kEnding) {
                 Platform::SleepFor(1);
             }
             Platform::SleepFor(2);
         }},
    };
    CThreadBase::Destroy(thread, true);
    CThreadBase::Destroy(thread, true);  // null by now
    for (Case const& test : cases) {
        for (bool detach : {true, false}) {
            auto own = std::make_shared<Record>();
            CThreadBase* worker = new Worker(own);
            test.arrange(*worker, *own);
            CThreadBase::Destroy(worker, detach);
            EXPECT_EQ(worker, nullptr);
            EXPECT_TRUE(detach || own->deletions == 1) << test.name;
            EXPECT_TRUE(own->deleted.WaitFor(kBound)) << test.name;
            EXPECT_EQ(own->deletions, 1) << test.name;
        }
    }
}

TEST_F(ThreadBase, DestroyFromTheOwnThreadReturnsAndDeletesLater) {
    class Suicide : public Worker {
    public:
        explicit Suicide(std::shared_ptr<Record> record) : Worker(std::move(record)) {}
        void ThRun() override {
            CThreadBase* self = this;
            Destroy(self, false);
            Step0();
        }
    };
    CThreadBase::Destroy(thread, false);
    record = std::make_shared<Record>();
    thread = new Suicide(record);
    thread->Start();
    ExpectDeletedOnce();
    EXPECT_EQ(record->Trail(), "start resume step0 exit ");
}

TEST_F(ThreadBase, ThrowingConstructorLeavesTheThreadNothingToTouch) {
    class Failing : public Worker {
    public:
        explicit Failing(std::shared_ptr<Record> record) : Worker(std::move(record)) {
            throw std::runtime_error("no");
        }
    };
    CThreadBase::Destroy(thread, false);
    record = std::make_shared<Record>();
    for (int i = 0; i < 20; ++i) {
        EXPECT_THROW(new Failing(record), std::runtime_error);
    }
    EXPECT_EQ(record->Trail(), "");
}

}  // namespace
}  // namespace Ubrix
