#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Platform/Event.h"
#include "Platform/MessageWindow.h"
#include "System/Thread/ATargetBase.h"
#include "System/Thread/CSelectorManager.h"

namespace Ubrix {
namespace {

constexpr unsigned int kBound = 10000;

std::string g_trail;

void Note(void* text) {
    g_trail += static_cast<char const*>(text);
}

char g_texts[] = "a\0b\0c\0d\0e\0f\0g\0h\0i\0j\0k\0l\0m\0n\0o\0p\0q\0r\0s\0t\0u\0v\0w\0x\0y";

CSelector Noting(int letter, CTargetBase* target = nullptr) {
    CSelector selector;
    selector.target = target;
    selector.function1 = Note;
    selector.arg1 = g_texts + static_cast<std::ptrdiff_t>(letter) * 2;
    return selector;
}

class Target : public CTargetBase {
public:
    explicit Target(bool own = false) : CTargetBase(own) {}
    void None() { g_trail += "0"; }
    void One(void* a) { g_trail += std::string("1") + Text(a); }
    void Two(void* a, void* b) { g_trail += std::string("2") + Text(a) + Text(b); }
    void Three(void* a, void* b, void* c) { g_trail += std::string("3") + Text(a) + Text(b) + Text(c); }

private:
    static char const* Text(void* pointer) { return static_cast<char const*>(pointer); }
};

class Selectors : public testing::Test {
protected:
    Selectors() { g_trail.clear(); }
};

TEST_F(Selectors, FirstSetFormRunsMembersBeforeFunctions) {
    Target target;
    CSelector all = Noting(0, &target);
    all.arg2 = g_texts + 2;
    all.arg3 = g_texts + 4;
    all.member0 = static_cast<CSelector::Member0>(&Target::None);
    all.member1 = static_cast<CSelector::Member1>(&Target::One);
    all.member2 = static_cast<CSelector::Member2>(&Target::Two);
    all.member3 = static_cast<CSelector::Member3>(&Target::Three);
    all.function0 = [] { g_trail += "F0"; };
    all.function2 = [](void*, void* b) { g_trail += std::string("F2") + static_cast<char*>(b); };
    all.function3 = [](void*, void*, void* c) { g_trail += std::string("F3") + static_cast<char*>(c); };
    // Each run takes the form away that ran.
    all.Run(), all.member0 = nullptr;
    all.Run(), all.member1 = nullptr;
    all.Run(), all.member2 = nullptr;
    CSelector const targetless = [&] {
        CSelector copy = all;
        copy.target = nullptr;
        return copy;
    }();
    all.Run(), all.member3 = nullptr;
    targetless.Run();
    all.Run(), all.function0 = nullptr;
    all.Run(), all.function1 = nullptr;
    all.Run(), all.function2 = nullptr;
    all.Run(), all.function3 = nullptr;
    all.Run();
    EXPECT_EQ(g_trail, "01a2ab3abcF0F0aF2bF3c");
}

TEST_F(Selectors, PassRunsTwentyAndRemovalKeepsTheOthersInOrder) {
    CSelectorManager queue;
    Target target;
    for (int i = 0; i < 25; ++i) {
        queue.AddSelector(Noting(i, i == 1 || i == 20 || i == 24 ? &target : nullptr));
    }
    queue.RunSelectors();
    EXPECT_EQ(g_trail, "abcdefghijklmnopqrst");
    queue.RemoveSelectors(&target);
    queue.RunSelectors();
    EXPECT_EQ(g_trail, "abcdefghijklmnopqrstvwx");
}

TEST_F(Selectors, SelectorMayPostToItsOwnQueue) {
    CSelectorManager queue;
    CSelector endless;
    endless.function2 = [](void* self, void* manager) {
        g_trail += ".";
        static_cast<CSelectorManager*>(manager)->AddSelector(*static_cast<CSelector*>(self));
    };
    endless.arg1 = &endless;
    endless.arg2 = &queue;
    queue.AddSelector(endless);
    queue.RunSelectors();
    EXPECT_EQ(g_trail, std::string(20, '.'));
}

// A target that dies after the removal is safe from a pass on another thread.
TEST_F(Selectors, RemovalWaitsForARunningSelector) {
    class Slow : public CTargetBase {
    public:
        Slow() : CTargetBase(false) {}
        void Work(void* queue) {
            entered.Set();
            leave.WaitFor(5);
            // From inside, a removal must not wait for itself.
            static_cast<CSelectorManager*>(queue)->RemoveSelectors(this);
            done = true;
        }
        Platform::Event entered;
        Platform::Event leave;
        bool done = false;
    };
    CSelectorManager queue;
    for (int i = 0; i < 10; ++i) {
        auto target = std::make_unique<Slow>();
        CSelector selector;
        selector.target = target.get();
        selector.member1 = static_cast<CSelector::Member1>(&Slow::Work);
        selector.arg1 = &queue;
        queue.AddSelector(selector);
        queue.AddSelector(selector);
        std::thread pump([&] { queue.RunSelectors(); });
        ASSERT_TRUE(target->entered.WaitFor(kBound));
        queue.RemoveSelectors(target.get());
        EXPECT_TRUE(target->done);
        target.reset();
        pump.join();
    }
}

// The process-wide road from load on: no window, window, host update. Each step builds on the one before.
void WalkTheRoadOfAPostedCall() {
    Target shared;
    Target own(true);
    CSelector selector = Noting(0);
    PostSelectorToUiThread(nullptr);
    RunHostUpdateSelectors();
    PostSelectorToUiThread(&selector);
    EXPECT_EQ(g_trail, "") << "without a window a post only waits";
    RemoveSelectorsOfTarget(nullptr);

    // A window on another thread: the post returns after the pass.
    Platform::Event ready;
    std::atomic<bool> over{false};
    std::thread ui([&] {
        EXPECT_TRUE(CreateUiWindow());
        PostSelectorToUiThread(&shared, &Target::One, g_texts + 2);  // at once, on the own thread
        ready.Set();
        while (!over) {
            Platform::PumpMessages(kBound);
        }
        EXPECT_TRUE(PostToUiWindow(new CSelector(Noting(24))));  // freed unrun
        DestroyUiWindow();
    });
    ASSERT_TRUE(ready.WaitFor(kBound));
    EXPECT_EQ(g_trail, "1b");
    PostSelectorToUiThread(&shared, &Target::Two, g_texts + 4, g_texts + 6);
    EXPECT_EQ(g_trail, "1b2cd");
    EXPECT_TRUE(PostToUiWindow(new CSelector(Noting(4))));
    selector = Noting(5);
    PostSelectorToUiThread(&selector);
    // The pump takes the two together; one more message wakes it, to see that it is over.
    over = true;
    auto last = std::make_unique<CSelector>();
    if (PostToUiWindow(last.get())) {
        static_cast<void>(last.release());
    }
    ui.join();
    EXPECT_NE(g_trail.find('e'), std::string::npos);
    EXPECT_NE(g_trail.find('f'), std::string::npos);
    EXPECT_FALSE(PostToUiWindow(&selector));

    // What was posted before the host's word stays behind.
    g_trail.clear();
    selector = Noting(6);
    PostSelectorToUiThread(&selector);
    EXPECT_FALSE(IsUiUpdateEnabled());
    EnableUiUpdate();
    RunHostUpdateSelectors();
    selector = Noting(7, &own);
    PostSelectorToUiThread(&selector);
    selector = Noting(8, &shared);
    PostSelectorToUiThread(&selector);
    RunHostUpdateSelectors();
    EXPECT_EQ(g_trail, "i");
    own.RunOwnSelectors();
    EXPECT_EQ(g_trail, "ih");

    PostSelectorToUiThread(&selector);
    RemoveSelectorsOfTarget(&shared);
    RunHostUpdateSelectors();
    PostSelectorToUiThread(&selector);
    ReleaseHostUpdateQueue();
    RunHostUpdateSelectors();
    EXPECT_EQ(g_trail, "ih") << "removed, and dropped with the queue";
    CSelector release;
    release.function0 = ReleaseHostUpdateQueue;
    PostSelectorToUiThread(&release);
    PostSelectorToUiThread(&selector);
    RunHostUpdateSelectors();
    EXPECT_EQ(g_trail, "ih") << "a pass ends with its queue";
    PostSelectorToUiThread(&selector);
    RunHostUpdateSelectors();
    EXPECT_EQ(g_trail, "ihi");
}

// In a process of its own: the host's word can't be taken back.
TEST(SelectorsDeathTest, RoadOfAPostedCall) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    auto const walk = [] {
        WalkTheRoadOfAPostedCall();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(walk(), testing::ExitedWithCode(0), "");
}

TEST_F(Selectors, PostPumpAndReleaseRunAtOnce) {
    EnableUiUpdate();
    static std::atomic<int> runs;
    CSelector count;
    count.function0 = [] { ++runs; };
    std::vector<std::thread> threads;
    threads.reserve(3);
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 2000; ++n) {
                PostSelectorToUiThread(&count);
            }
        });
    }
    threads.emplace_back([] {
        for (int n = 0; n < 200; ++n) {
            ReleaseHostUpdateQueue();
        }
    });
    for (int n = 0; n < 500; ++n) {
        RunHostUpdateSelectors();
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    ReleaseHostUpdateQueue();
    int const before = runs;
    EXPECT_LE(before, 4000);
    PostSelectorToUiThread(&count);
    RunHostUpdateSelectors();
    EXPECT_EQ(runs, before + 1);
}

}  // namespace
}  // namespace Ubrix
