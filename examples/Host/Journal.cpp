#include "Journal.h"

#include <cstdio>

namespace Host {

namespace {

// Not the system's thread ids: those come back with later threads.
thread_local int t_number = -1;

}  // namespace

Journal::Journal() {
    t_number = 0;
}

std::string Journal::ThreadName() {
    if (t_number < 0) {
        t_number = ++_threads;
    }
    return t_number == 0 ? "game" : "worker " + std::to_string(t_number);
}

void Journal::Say(std::string const& text) {
    std::lock_guard<std::mutex> const lock(_mutex);
    std::printf("%6lld ms  %-9s  %s\n", Milliseconds(), ThreadName().c_str(), text.c_str());
    std::fflush(stdout);
}

void Journal::Begin(std::string const& title) {
    std::lock_guard<std::mutex> const lock(_mutex);
    std::printf("\n-- %s\n", title.c_str());
    std::fflush(stdout);
}

bool Journal::Check(bool holds, std::string const& what) {
    if (!holds) {
        std::lock_guard<std::mutex> const lock(_mutex);
        ++_failures;
    }
    Say((holds ? "ok      " : "FAILED  ") + what);
    return holds;
}

long long Journal::Milliseconds() const {
    auto const passed = std::chrono::steady_clock::now() - _start;
    return std::chrono::duration_cast<std::chrono::milliseconds>(passed).count();
}

int Journal::Failures() const {
    std::lock_guard<std::mutex> const lock(_mutex);
    return _failures;
}

}  // namespace Host
