#include "Storage/Log/LogCallbackSink.h"

#include <VelmorCore/Log.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "Platform/CallTurn.h"
#include "Platform/Condition.h"
#include "Platform/Event.h"
#include "Platform/LockDepth.h"
#include "Platform/Thread.h"
#include "Storage/Log/LogFacade.h"
#include "Support/ConsoleCapture.h"
#include "Support/Watched.h"

namespace {

using namespace Ubrix;
using namespace Ubrix::Platform;

void Say(std::string const& text) {
    XLog2(ALogPriorityError, "f", 1, "F", text.c_str());
}

// Keeps the messages that the callback gets, and works on each first.
class LogCallback : public testing::Test {
protected:
    using Messages = std::vector<std::string>;

    LogCallback() {
        s_all.With([](Messages& messages) { messages.clear(); });
        s_inside = [](std::string const&) {};
        SetConsoleOutput(false);
        SetUbrixLogCallback([](ALogPriority, char const* line) {
            EXPECT_FALSE(LockDepth::HoldsLock()) << line;
            std::string const message = std::string(line).substr(std::string(line).rfind('|') + 2);
            s_all.With([&](Messages& messages) { messages.push_back(message); });
            s_inside(message);
        });
    }
    ~LogCallback() override {
        SetUbrixLogCallback(nullptr);
        SetConsoleOutput(true);
    }
    static void OnMessage(char const* awaited, std::function<void()> const& work) {
        s_inside = [awaited, work](std::string const& message) {
            if (message == awaited) {
                work();
            }
        };
    }
    // Lines of other threads come as well; these are looked for by their text.
    static Messages Got() {
        return s_all.With([](Messages const& messages) { return messages; });
    }
    // Never destroyed: a thread may log to the very end of the process.
    static inline auto& s_all = *new ::Test::Watched<Messages>;
    static inline auto& s_inside = *new std::function<void(std::string const&)>;
};

TEST_F(LogCallback, ALineUnderALockComesWhenTheLastOneIsReleased) {
    RecursiveMutex outer;
    RecursiveMutex inner;
    OnMessage("1", [] {
        errno = 5;
        Say("caused by 1");
    });
    {
        ScopedLock const lock(outer);
        {
            ScopedLock const nested(inner);
            Say("1");
        }
        Say("2");
        EXPECT_EQ(Got(), Messages());
        errno = 77;
    }
    EXPECT_EQ(Got(), (Messages{"1", "caused by 1", "2"}));
    EXPECT_EQ(errno, 77);
}

TEST_F(LogCallback, AWaitPassesItsLinesOnFirst) {
    RecursiveMutex mutex;
    Condition condition(mutex);
    bool passed = false;
    s_inside = [&](std::string const&) {
        ScopedLock const lock(mutex);
        passed = true;
        condition.Signal();
    };
    ScopedLock const lock(mutex);
    Say("before the wait");
    while (!passed) {
        EXPECT_TRUE(condition.WaitFor(60000));
    }
}

TEST_F(LogCallback, ALockOfTheLibraryIsFreeForTheCallback) {
    RecursiveMutex mutex;
    Event held;
    Event inCallback;
    OnMessage("here", [&] {
        inCallback.Set();
        held.Wait();
        ScopedLock const lock(mutex);
    });
    std::thread other([&] {
        ScopedLock const lock(mutex);
        inCallback.Wait();
        held.Set();
        Say("under the lock");
    });
    Say("here");
    other.join();
    EXPECT_EQ(Got(), (Messages{"here", "under the lock"}));
}

// In each case a callback waits for another thread, which logs before it lets the first go on.
TEST_F(LogCallback, ACallbackThatWaitsLetsOtherLinesPass) {
    RecursiveMutex mutex;
    Condition condition(mutex);
    Event event;
    CallTurn turn;
    Event entered;
    bool done = false;
    auto const sayThenSet = [&] {
        Say("other");
        ScopedLock const lock(mutex);
        done = true;
        condition.Signal();
        event.Set();
    };
    struct {
        std::function<void()> wait, other;
    } const cases[] = {
        {[&] { event.Wait(); }, sayThenSet},
        {[&] { EXPECT_TRUE(event.WaitFor(60000)); }, sayThenSet},
        {[&] {
             ScopedLock const lock(mutex);
             while (!done) {
                 condition.Wait();
             }
             Say("kept back");
         },
         sayThenSet},
        {[&] {
             entered.Wait();
             ScopedTurn const mine(turn);
             Say("with two turns");
         },
         [&] {
             ScopedTurn const mine(turn);
             entered.Set();
             Say("other");
         }},
    };
    for (auto const& one : cases) {
        done = false;
        std::thread other;
        OnMessage("here", [&] {
            other = std::thread(one.other);
            one.wait();
            Say("back");
        });
        Say("here");
        other.join();
        Messages const got = Got();
        EXPECT_EQ(got.back(), "back");
        EXPECT_EQ(std::count(got.begin(), got.end(), "other"), 1);
        s_all.With([](Messages& messages) { messages.clear(); });
    }
}

// A callback whose wait is over finds the turn taken, and goes on only when it is free again.
TEST_F(LogCallback, ACallbackGoesOnOnlyInItsTurn) {
    Event event;
    std::atomic<bool> otherIsInside{false};
    int met = 0;
    s_inside = [&](std::string const& message) {
        if (message == "here") {
            std::thread other([] { Say("other"); });
            event.Wait();
            met += otherIsInside ? 1 : 0;
            other.detach();
        } else if (message == "other") {
            otherIsInside = true;
            event.Set();
            for (int i = 0; i < 1000; ++i) {
                std::this_thread::yield();
            }
            otherIsInside = false;
        }
    };
    constexpr int kRounds = 100;
    for (int i = 0; i < kRounds; ++i) {
        Say("here");
    }
    EXPECT_EQ(met, 0);
    EXPECT_TRUE(s_all.Await(
        [](Messages const& got) { return std::count(got.begin(), got.end(), "other") == kRounds; }));
}

TEST_F(LogCallback, WhatIsTooMuchIsTold) {
    RecursiveMutex mutex;
    {
        ScopedLock const lock(mutex);
        for (unsigned int i = 0; i < LogCallbackSink::kMostWaiting + 3; ++i) {
            Say(std::to_string(i));
        }
    }
    Messages const got = Got();
    ASSERT_EQ(got.size(), LogCallbackSink::kMostWaiting + 1);
    EXPECT_EQ(got[LogCallbackSink::kMostWaiting - 1], std::to_string(LogCallbackSink::kMostWaiting - 1));
    EXPECT_EQ(got.back(), "3 log lines found no room to wait for the callback");

    ::Test::ConsoleCapture console;
    s_inside = [](std::string const&) {
        Say("again");
        Say("and again");
    };
    Say("first");
    EXPECT_EQ(Got().size(), got.size() + 1 + LogCallbackSink::kMostCaused);
    static bool const wasTold = console.Has("the log callback logs without an end");
    EXPECT_TRUE(wasTold) << "once a process";
}

}  // namespace
