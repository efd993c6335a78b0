// Auto-reset event: a latch that lets one waiter through a set.
#pragma once

namespace Ubrix::Platform {

// Starts not signalled. Thread-safe. A set with nobody waiting is kept for the next wait; further sets before
// that wait are one.
class Event {
public:
    Event();
    ~Event();
    Event(Event const&) = delete;
    Event& operator=(Event const&) = delete;

    void Set();
    void Reset();
    // Waits until the event is set, and takes the signal.
    void Wait();
    // The same for at most `milliseconds` of monotonic time. False if the time ran out.
    bool WaitFor(unsigned int milliseconds);

private:
    struct Body;
    Body* _body;
};

}  // namespace Ubrix::Platform
