// The same work on several threads at once.
#pragma once

#include <atomic>
#include <thread>
#include <vector>

namespace Test {

// Runs `work` with each number from 0 below `count`, each on a thread of its own, all at once, and waits for
// all.
template <typename Work>
void OnThreads(int count, Work const& work) {
    std::vector<std::thread> threads;
    std::atomic<int> missing{count};
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            for (--missing; missing > 0;) {
                std::this_thread::yield();
            }
            work(i);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace Test
