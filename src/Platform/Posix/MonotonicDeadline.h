// Deadlines on the monotonic clock, as pthread's timed waits take them.
#pragma once

#include <pthread.h>
#include <ctime>

namespace Ubrix::Platform {

// The moment `milliseconds` from now.
inline timespec MonotonicDeadline(unsigned int milliseconds) {
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += static_cast<time_t>(milliseconds / 1000U);
    deadline.tv_nsec += static_cast<long>(milliseconds % 1000U) * 1000000L;
    if (deadline.tv_nsec >= 1000000000L) {
        deadline.tv_nsec -= 1000000000L;
        ++deadline.tv_sec;
    }
    return deadline;
}

// Makes a condition variable that measures on the monotonic clock.
inline void InitMonotonicCondition(pthread_cond_t* condition) {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(condition, &attributes);
    pthread_condattr_destroy(&attributes);
}

}  // namespace Ubrix::Platform
