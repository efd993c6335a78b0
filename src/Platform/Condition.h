// Condition variable bound to one recursive mutex.
#pragma once

#include "Platform/Mutex.h"

namespace Ubrix::Platform {

// Thread-safe. The caller of both waits holds the mutex exactly once; it is released during the wait and held
// again on return. Wake-ups may be spurious: callers test their own state in a loop. Time is monotonic.
class Condition {
public:
    explicit Condition(RecursiveMutex& mutex);
    ~Condition();
    Condition(Condition const&) = delete;
    Condition& operator=(Condition const&) = delete;

    // Waits until woken.
    void Wait();
    // Waits until woken or until `milliseconds` have passed. False only if the time ran out.
    bool WaitFor(unsigned int milliseconds);
    // Wakes one waiter, or all; the caller need not hold the mutex.
    void Signal();
    void Broadcast();

private:
    struct Body;
    Body* _body;
};

}  // namespace Ubrix::Platform
