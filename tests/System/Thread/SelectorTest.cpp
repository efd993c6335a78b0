#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>

#include "Platform/Event.h"
#include "Platform/MessageWindow.h"
#include "Platform/Thread.h"
#include "System/Thread/CSelectorManager.h"
#include "System/Thread/GameThread.h"

namespace Ubrix {
namespace {

constexpr unsigned int kBound = 10000;

std::string g_trail;
char g_letters[] = "abcdefghijklmnopqrstuvwxyz";

void* Letter(char letter) {
    return g_letters + (letter - 'a');
}
void Note(void* letter) {
    g_trail += *static_cast<char const*>(letter);
}

// A call that leaves its letter in the trail.
CSelector Noting(char letter, CTargetBase* target = nullptr) {
    CSelector selector;
    selector.target = target;
    selector.function1 = Note;
    selector.arg1 = Letter(letter);
    return selector;
}

void Post(CSelector const& selector) {
    PostSelectorToUiThread(&selector);
}

class Target : public CTargetBase {
public:
    explicit Target(bool own = false) : CTargetBase(own) {}
    void None() { g_trail += '0'; }
    void One(void* a) { g_trail += '1', Note(a); }
    void Two(void* a, void* b) { g_trail += '2', Note(a), Note(b); }
    void Three(void* a, void* b, void* c) { g_trail += '3', Note(a), Note(b), Note(c); }
};

class Selectors : public testing::Test {
protected:
    Selectors() { g_trail.clear(); }
};

TEST_F(Selectors, FirstSetFormRunsMembersBeforeFunctions) {
    Target target;
    CSelector all = Noting('a', &target);
    all.arg2 = Letter('b');
    all.arg3 = Letter('c');
    all.member0 = static_cast<CSelector::Member0>(&Target::None);
    all.member1 = static_cast<CSelector::Member1>(&Target::One);
    all.member2 = static_cast<CSelector::Member2>(&Target::Two);
    all.member3 = static_cast<CSelector::Member3>(&Target::Three);
    all.function0 = [] { g_trail += "F"; };
    all.function2 = [](void* a, void* b) { Note(a), Note(b); };
    all.function3 = [](void* a, void* b, void* c) { Note(a), Note(b), Note(c); };
    all.target = nullptr;
    all.Run(), all.target = &target;
    // Each run takes the form away that ran.
    all.Run(), all.member0 = nullptr;
    all.Run(), all.member1 = nullptr;
    all.Run(), all.member2 = nullptr;
    all.Run(), all.member3 = nullptr;
    all.Run(), all.function0 = nullptr;
    all.Run(), all.function1 = nullptr;
    all.Run(), all.function2 = nullptr;
    all.Run(), all.function3 = nullptr;
    all.Run();
    EXPECT_EQ(g_trail, "F01a2ab3abcFaababc");
}

TEST_F(Selectors, PassRunsTwentyAndRemovalKeepsTheOthersInOrder) {
    CSelectorManager queue;
    Target target;
    for (char letter = 'a'; letter < 'z'; ++letter) {
        queue.AddSelector(Noting(letter, std::strchr("buy", letter) != nullptr ? &target : nullptr));
    }
    queue.RunSelectors();
    EXPECT_EQ(g_trail, "abcdefghijklmnopqrst");
    queue.RemoveSelectors(&target);
    queue.RunSelectors();
    EXPECT_EQ(g_trail, "abcdefghijklmnopqrstvwx");
}

// A target that dies after the removal is safe from a pass on another thread, and from what that posts.
TEST_F(Selectors, RemovalWaitsForARunningSelectorAndTakesWhatItPosted) {
    struct Slow : Target {
        CSelectorManager queue;
        Platform::Event entered;
        std::atomic<bool> done{false};
    } slow;
    // The last of a pass, so that what it posts is left to the next one.
    for (int n = 0; n < 19; ++n) {
        slow.queue.AddSelector(Noting('a'));
    }
    CSelector selector;
    selector.target = &slow;
    selector.arg1 = &slow;
    selector.function1 = [](void* argument) {
        auto& self = *static_cast<Slow*>(argument);
        self.entered.Set();
        // Long enough that a removal that doesn't wait is seen.
        Platform::SleepFor(50);
        self.queue.RemoveSelectors(&self);  // from inside, it must not wait for itself
        self.queue.AddSelector(Noting('b', &self));
        self.done = true;
    };
    slow.queue.AddSelector(selector);
    std::thread pump([&] { slow.queue.RunSelectors(); });
    ASSERT_TRUE(slow.entered.WaitFor(kBound));
    slow.queue.RemoveSelectors(&slow);
    EXPECT_TRUE(slow.done);
    pump.join();
    slow.queue.RunSelectors();
    EXPECT_EQ(g_trail, std::string(19, 'a'));
}

// The process-wide road from load on: no window, window, host update. Each step builds on the one before.
void WalkTheRoadOfAPostedCall() {
    Target shared;
    Target own(true);
    PostSelectorToUiThread(nullptr);
    RunHostUpdateSelectors();
    Post(Noting('a'));
    EXPECT_EQ(g_trail, "") << "without a window a post only waits";
    RemoveSelectorsOfTarget(nullptr);

    // A window on another thread: the post returns after the pass.
    Platform::Event ready;
    std::atomic<bool> over{false};
    std::thread ui([&] {
        EXPECT_TRUE(CreateUiWindow());
        PostSelectorToUiThread(&shared, &Target::One, Letter('b'));  // at once, on the own thread
        ready.Set();
        while (!over) {
            Platform::PumpMessages(kBound);
        }
        EXPECT_TRUE(PostToUiWindow(new CSelector(Noting('z'))));  // freed unrun
        DestroyUiWindow();
    });
    ASSERT_TRUE(ready.WaitFor(kBound));
    EXPECT_EQ(g_trail, "1b");
    PostSelectorToUiThread(&shared, &Target::Two, Letter('c'), Letter('d'));
    EXPECT_EQ(g_trail, "1b2cd");
    EXPECT_TRUE(PostToUiWindow(new CSelector(Noting('e'))));
    Post(Noting('f'));
    // The pump takes the two together; one more message wakes it, to see that it is over.
    over = true;
    auto last = std::make_unique<CSelector>();
    if (PostToUiWindow(last.get())) {
        static_cast<void>(last.release());
    }
    ui.join();
    EXPECT_THAT(g_trail, testing::AllOf(testing::HasSubstr("e"), testing::HasSubstr("f")));
    EXPECT_FALSE(PostToUiWindow(nullptr));

    // What was posted before the host's word stays behind.
    g_trail.clear();
    Post(Noting('g'));
    EXPECT_FALSE(IsUiUpdateEnabled());
    EnableUiUpdate();
    RunHostUpdateSelectors();
    Post(Noting('h', &own));
    Post(Noting('i', &shared));
    RunHostUpdateSelectors();
    EXPECT_EQ(g_trail, "i");
    own.RunOwnSelectors();
    EXPECT_EQ(g_trail, "ih");

    Post(Noting('j', &shared));
    RemoveSelectorsOfTarget(&shared);
    RunHostUpdateSelectors();
    Post(Noting('k'));
    ReleaseHostUpdateQueue();
    RunHostUpdateSelectors();
    CSelector release;
    release.function0 = ReleaseHostUpdateQueue;
    Post(release);
    Post(Noting('l'));
    RunHostUpdateSelectors();
    EXPECT_EQ(g_trail, "ih") << "removed, and dropped with the queue, which ends its pass";
    Post(Noting('m'));
    RunHostUpdateSelectors();
    EXPECT_EQ(g_trail, "ihm");
}

// In a process of its own: the host's word can't be taken back.
TEST(SelectorsDeathTest, RoadOfAPostedCall) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT((WalkTheRoadOfAPostedCall(), std::exit(testing::Test::HasFailure() ? 1 : 0)),
                testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Ubrix
