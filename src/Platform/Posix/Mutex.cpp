#include "Platform/Mutex.h"

#include "Platform/LockDepth.h"
#include "Platform/Posix/MutexBody.h"

namespace Ubrix::Platform {

RecursiveMutex::RecursiveMutex() : _body(new Body) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&_body->mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

RecursiveMutex::~RecursiveMutex() {
    pthread_mutex_destroy(&_body->mutex);
    delete _body;
}

void RecursiveMutex::Lock() VC_NO_THREAD_SAFETY_ANALYSIS {
    pthread_mutex_lock(&_body->mutex);
    LockDepth::Taken();
}

void RecursiveMutex::Unlock() VC_NO_THREAD_SAFETY_ANALYSIS {
    pthread_mutex_unlock(&_body->mutex);
    LockDepth::Released();
}

}  // namespace Ubrix::Platform
