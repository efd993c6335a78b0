#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Event.h"
#include "Platform/Thread.h"
#include "Support/ConsoleCapture.h"
#include "Support/OnThreads.h"
#include "Support/Watched.h"
#include "System/Thread/AThreadBase.h"

namespace Ubrix {
namespace {

constexpr unsigned int kBound = 10000;

// What outlives the worker.
struct Record {
    void ExpectDeletedOnce() {
        EXPECT_TRUE(deleted.WaitFor(kBound));
        EXPECT_EQ(deletions, 1);
    }
    bool failsToBegin = false;                 // the constructor throws
    std::function<void(CThreadBase*)> inTurn;  // runs in each turn
    std::atomic<bool> resumesItself{false};    // as soon as it hears of a pause
    std::string trail;                         // of the worker's steps
    std::atomic<int> deletions{0};
    Platform::Event turn;     // set at each turn
    Platform::Event paused;   // set at each pause
    Platform::Event deleted;  // set by the destructor
};

class Worker : public CThreadBase {
public:
    explicit Worker(std::shared_ptr<Record> record) : _record(std::move(record)) {
        if (_record->failsToBegin) {
            throw std::runtime_error("no");
        }
    }
    ~Worker() override {
        ++_record->deletions;
        _record->deleted.Set();
    }
    void ThRun() override {
        _record->turn.Set();
        if (_record->inTurn) {
            _record->inTurn(this);
        }
        Platform::SleepFor(1);
    }
    void OnThreadStart() override { _record->trail += "start "; }
    void OnThreadExit() override { _record->trail += "exit "; }
    void OnThreadPause() override {
        _record->trail += "pause ";
        if (_record->resumesItself) {
            Resume(false);
        }
        _record->paused.Set();
    }
    void OnThreadResume() override { _record->trail += "resume "; }
    void Step(void* text) { _record->trail += static_cast<char const*>(text); }

private:
    std::shared_ptr<Record> _record;
};

class ThreadBase : public testing::Test {
protected:
    std::shared_ptr<Record> record = std::make_shared<Record>();
    // Its log lines are many.
    ::Test::ConsoleCapture console;

    CThreadBase* NewWorker() {
        record = std::make_shared<Record>();
        return new Worker(record);
    }
    bool AwaitPause() { return record->paused.WaitFor(kBound); }
    // One that ends after the call.
    bool AwaitTurn() {
        record->turn.Reset();
        return record->turn.WaitFor(kBound);
    }
};

TEST_F(ThreadBase, StartsAtAnyMomentAfterTheConstructor) {
    for (unsigned int delay : {0U, 100U, 400U}) {
        CThreadBase* thread = NewWorker();
        Platform::SleepFor(delay);
        thread->Start();
        EXPECT_TRUE(AwaitTurn()) << delay;
        CThreadBase::Destroy(thread, false);
        EXPECT_EQ(record->trail, "start resume exit ") << delay;
    }
}

TEST_F(ThreadBase, PauseResumeAndStopWhilePaused) {
    char first[] = "first ";
    CThreadBase* thread = NewWorker();
    thread->Pause();  // not running yet: nothing
    thread->PostSelector(&Worker::Step, first);
    thread->PostSelector(&Worker::Step, first + 1);
    thread->Start();
    ASSERT_TRUE(AwaitTurn());
    ASSERT_TRUE(AwaitTurn());
    thread->Pause();
    ASSERT_TRUE(AwaitPause());
    EXPECT_EQ(thread->ThreadState(), CThreadBase::kPaused);
    thread->Resume(true);
    ASSERT_TRUE(AwaitTurn());
    thread->Pause();
    ASSERT_TRUE(AwaitPause());
    thread->Stop();
    thread->Resume(false);
    thread->Start();  // a stopped thread stays stopped
    CThreadBase::Destroy(thread, false);
    EXPECT_EQ(record->trail, "start resume first irst pause resume pause exit ");
    EXPECT_TRUE(console.Has("Thread is not running.."));
    EXPECT_TRUE(console.Has("CThreadBase::Destroy end"));
}

TEST_F(ThreadBase, NoResumeIsLost) {
    CThreadBase* thread = NewWorker();
    thread->Start();
    for (int i = 0; i < 500; ++i) {
        thread->Pause();
        if (i % 3 == 0) {
            Platform::SleepFor(0);
        }
        thread->Resume(false);
    }
    EXPECT_TRUE(AwaitTurn());
    // One that comes before the worker waits.
    record->resumesItself = true;
    record->paused.Reset();
    thread->Pause();
    ASSERT_TRUE(AwaitPause());
    EXPECT_TRUE(AwaitTurn());
    CThreadBase::Destroy(thread, true);
    record->ExpectDeletedOnce();
}

TEST_F(ThreadBase, DestroyInEveryStateDeletesOnce) {
    using Step = std::function<void(CThreadBase*)>;
    Step const start = &CThreadBase::Start;
    Step const pause = &CThreadBase::Pause;
    Step const stop = &CThreadBase::Stop;
    Step const turn = [this](CThreadBase*) { EXPECT_TRUE(AwaitTurn()); };
    Step const paused = [this](CThreadBase*) { EXPECT_TRUE(AwaitPause()); };
    Step const ended = [](CThreadBase* thread) {
        EXPECT_TRUE(::Test::AwaitTrue([=] { return thread->ThreadState() == CThreadBase::kEnding; }));
    };
    Step const both = [](CThreadBase* thread) {
        ::Test::OnThreads(2, [thread](int role) {
            for (int n = 0; n < 20; ++n) {
                role == 0 && n == 10 ? thread->Stop() : thread->Pause();
            }
        });
    };
    // From never started to ended by itself.
    std::vector<Step> const cases[] = {
        {}, {stop}, {start}, {start, turn}, {start, pause, paused}, {start, both}, {start, stop, ended}};
    for (auto const& steps : cases) {
        for (int round = 0; round < 40; ++round) {
            bool const detach = round % 2 == 0;
            SCOPED_TRACE(&steps - cases);
            CThreadBase* thread = NewWorker();
            for (Step const& step : steps) {
                step(thread);
            }
            CThreadBase::Destroy(thread, detach);
            EXPECT_EQ(thread, nullptr);
            EXPECT_GE(record->deletions, detach ? 0 : 1);
            record->ExpectDeletedOnce();
            CThreadBase::Destroy(thread, detach);  // null by now
        }
    }
}

TEST_F(ThreadBase, DestroyFromTheOwnThreadReturnsAndDeletesLater) {
    record->inTurn = [](CThreadBase* self) { CThreadBase::Destroy(self, false); };
    (new Worker(record))->Start();
    record->ExpectDeletedOnce();
    EXPECT_EQ(record->trail, "start resume exit ");
}

TEST_F(ThreadBase, ThrowingConstructorLeavesTheThreadNothingToTouch) {
    record->failsToBegin = true;
    for (int i = 0; i < 20; ++i) {
        EXPECT_THROW(new Worker(record), std::runtime_error);
    }
    EXPECT_EQ(record->trail, "");
}

}  // namespace
}  // namespace Ubrix
