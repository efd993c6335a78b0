// The same work on several threads at once.
#pragma once

#include <thread>
#include <vector>

namespace Test {

// Runs `work` with each number from 0 below `count`, each on a thread of its own, and waits for all.
template <typename Work>
void OnThreads(int count, Work const& work) {
    std::vector<std::thread> threads;
    threads.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&work, i] { work(i); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace Test
