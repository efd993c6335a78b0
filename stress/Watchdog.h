// Ends a program that stands still, loudly: with the stacks of all its threads.
#pragma once

#include <execinfo.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace Stress {

// Watches `count` workers. Each tells of each step that it takes; one that takes none for `patience` ends the
// process with status 3. Never destroyed before its workers.
class Watchdog {
public:
    Watchdog(std::size_t count, std::chrono::seconds patience)
        : _steps(count), _patience(patience), _thread([this] { Watch(); }) {
        std::signal(SIGUSR2, &Watchdog::PrintStack);
        // Loads what the handler uses, which may not allocate.
        void* frames[1];
        backtrace(frames, 1);
    }
    ~Watchdog() {
        _isOver = true;
        _thread.join();
    }
    Watchdog(Watchdog const&) = delete;
    Watchdog& operator=(Watchdog const&) = delete;

    void Step(std::size_t worker) { ++_steps[worker]; }
    // The worker takes no further step.
    void Leave(std::size_t worker) { _steps[worker] = kLeft; }

private:
    static constexpr long long kLeft = -1;

    void Watch() {
        using Clock = std::chrono::steady_clock;
        std::vector<long long> seen(_steps.size());
        std::vector<Clock::time_point> since(_steps.size(), Clock::now());
        while (!_isOver) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            for (std::size_t i = 0; i < _steps.size(); ++i) {
                long long const steps = _steps[i];
                if (steps == kLeft || steps != seen[i]) {
                    seen[i] = steps;
                    since[i] = Clock::now();
                } else if (Clock::now() - since[i] > _patience) {
                    std::fprintf(stderr, "worker %zu stands still after %lld steps\n", i, steps);
                    PrintAllStacks();
                    std::_Exit(3);
                }
            }
        }
    }

    static void PrintAllStacks() {
        for (auto const& task : std::filesystem::directory_iterator("/proc/self/task")) {
            long const thread = std::stol(task.path().filename().string());
            std::fprintf(stderr, "---- thread %ld\n", thread);
            syscall(SYS_tgkill, getpid(), thread, SIGUSR2);
            // One after another, so that their lines don't mix.
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
    }
    static void PrintStack(int /*signal*/) {
        void* frames[64];
        backtrace_symbols_fd(frames, backtrace(frames, 64), STDERR_FILENO);
    }

    std::vector<std::atomic<long long>> _steps;
    std::chrono::seconds const _patience;
    std::atomic<bool> _isOver{false};
    std::thread _thread;
};

}  // namespace Stress
