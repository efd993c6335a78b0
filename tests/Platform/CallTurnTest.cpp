#include "Platform/CallTurn.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>

#include "Support/OnThreads.h"
#include "Support/Watched.h"

namespace {

using Ubrix::Platform::CallTurn;
using Ubrix::Platform::ScopedTurn;

// Each of three threads has a turn and asks for the next one's; where they wait for one another, this never
// ends. The numbers have no other guard than their turns.
TEST(CallTurn, ARingOfThreadsGetsOnAndStillComesOneAtATime) {
    constexpr unsigned int kThreads = 3;
    std::array<CallTurn, kThreads> turns;
    std::array<int, kThreads> inside = {};
    std::atomic<int> met{0};
    auto const call = [&](unsigned int turn, auto const& within) {
        ScopedTurn const mine(turns[turn]);
        int const before = ++inside[turn];
        within();
        met += inside[turn]-- == before ? 0 : 1;
    };
    for (int round = 0; round < 500; ++round) {
        std::atomic<unsigned int> had{0};
        ::Test::OnThreads(kThreads, [&](int thread) {
            auto const own = static_cast<unsigned int>(thread);
            call(own, [&] {
                ++had;
                EXPECT_TRUE(::Test::AwaitTrue([&] { return had == kThreads; }));
                call((own + 1) % kThreads, [] {});
            });
        });
    }
    EXPECT_EQ(met, 0);
}

}  // namespace
