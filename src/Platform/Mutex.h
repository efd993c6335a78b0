// The library's only kind of lock.
// Sources: Mutex.cpp, Posix/MutexBody.h
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

    // For a thread that has this mutex and is about to wait with it: if that is its only lock and it has put
    // something off (LockDepth), releases the mutex, by which that is run, takes it again, and answers true.
    // The wait may then be long over, so the caller looks at its state again before it waits.
    bool CatchUp();

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
