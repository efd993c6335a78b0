#include "Journal.h"

#include <cstdio>

namespace Host {

Journal::Journal() {
    _threads[std::this_thread::get_id()] = "game";
}

std::string Journal::ThreadName() {
    std::string& name = _threads[std::this_thread::get_id()];
    if (name.empty()) {
        name = "worker " + std::to_string(_threads.size() - 1);
    }
    return name;
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
