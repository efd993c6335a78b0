#include "Platform/CallTurn.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <thread>

#include "Support/OnThreads.h"

namespace {

using Ubrix::Platform::CallTurn;
using Ubrix::Platform::ScopedTurn;

// Each of three threads has a turn and asks for the next one's. The numbers have no other guard than their
// turns.
TEST(CallTurn, ARingOfThreadsGetsOnAndStillComesOneAtATime) {
    constexpr unsigned int kThreads = 3;
    constexpr int kRounds = 500;
    std::array<CallTurn, kThreads> turns;
    std::array<int, kThreads> inside = {};
    std::array<int, kThreads> calls = {};
    std::atomic<int> met{0};
    auto const call = [&](unsigned int turn, auto const& within) {
        ScopedTurn const mine(turns[turn]);
        int const before = ++inside[turn];
        within();
        met += inside[turn]-- == before ? 0 : 1;
        ++calls[turn];
    };
    auto all = std::async(std::launch::async, [&] {
        for (int round = 0; round < kRounds; ++round) {
            std::atomic<unsigned int> had{0};
            ::Test::OnThreads(kThreads, [&](int thread) {
                auto const own = static_cast<unsigned int>(thread);
                call(own, [&] {
                    ++had;
                    while (had < kThreads) {
                        std::this_thread::yield();
                    }
                    call((own + 1) % kThreads, [] {});
                });
            });
        }
    });
    if (all.wait_for(std::chrono::seconds(60)) != std::future_status::ready) {
        ADD_FAILURE() << "the threads wait for one another";
        std::abort();
    }
    EXPECT_EQ(met, 0);
    for (int const count : calls) {
        EXPECT_EQ(count, 2 * kRounds);
    }
}

}  // namespace
