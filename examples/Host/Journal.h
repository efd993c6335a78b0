// What the host tells its user: what happened, when, and on which thread.
#pragma once

#include <chrono>
#include <mutex>
#include <string>

namespace Host {

// Thread-safe. The thread that makes it is called "game"; others are numbered as they first speak.
class Journal {
public:
    Journal();

    // Prints one line on standard output, with the milliseconds since the start and the thread.
    void Say(std::string const& text);

    // Prints the heading of a part of the run.
    void Begin(std::string const& title);

    // Says that `what` is so, or that it isn't, and counts the failure. Returns `holds`.
    bool Check(bool holds, std::string const& what);

    long long Milliseconds() const;
    int Failures() const;

private:
    std::string ThreadName();

    std::chrono::steady_clock::time_point const _start = std::chrono::steady_clock::now();
    mutable std::mutex _mutex;  // guards what follows, and keeps lines whole
    int _threads = 0;
    int _failures = 0;
};

}  // namespace Host
