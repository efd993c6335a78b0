// The body of RecursiveMutex, shared with Condition. Who may touch it when is theirs to say.
#pragma once

#include <pthread.h>

#include "Platform/Mutex.h"

namespace Ubrix::Platform {

struct RecursiveMutex::Body {
    pthread_mutex_t mutex;
};

}  // namespace Ubrix::Platform
