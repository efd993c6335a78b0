// The library's only kind of lock.
#pragma once

#include "Platform/ThreadAnnotations.h"

namespace Ubrix::Platform {

// A recursive mutex: the thread that holds it may take it again, and releases it as often. Thread-safe.
// Neither copied nor moved. Destroying a mutex that a thread holds or waits for is a programming error.
class VC_CAPABILITY("mutex") RecursiveMutex {
public:
    RecursiveMutex();
    ~RecursiveMutex();
    RecursiveMutex(RecursiveMutex const&) = delete;
    RecursiveMutex& operator=(RecursiveMutex const&) = delete;

    void Lock() VC_ACQUIRE();
    void Unlock() VC_RELEASE();

private:
    friend class Condition;
    struct Body;
    Body* _body;
};

// Holds a mutex for the length of a scope.
class VC_SCOPED_CAPABILITY ScopedLock {
public:
    explicit ScopedLock(RecursiveMutex& mutex) VC_ACQUIRE(mutex) : _mutex(mutex) { _mutex.Lock(); }
    ~ScopedLock() VC_RELEASE() { _mutex.Unlock(); }
    ScopedLock(ScopedLock const&) = delete;
    ScopedLock& operator=(ScopedLock const&) = delete;

private:
    RecursiveMutex& _mutex;
};

}  // namespace Ubrix::Platform
