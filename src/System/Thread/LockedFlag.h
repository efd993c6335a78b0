// A flag that several threads read and write.
#pragma once

#include "Platform/Mutex.h"

namespace Ubrix {

// Thread-safe: each read and write takes the flag's own mutex, and nothing else while it holds it.
class LockedFlag {
public:
    explicit LockedFlag(bool value) : _value(value) {}

    void Set(bool value) {
        Platform::ScopedLock lock(_mutex);
        _value = value;
    }
    bool Get() const {
        Platform::ScopedLock lock(_mutex);
        return _value;
    }
    // Clears the flag and tells what it was.
    bool Take() {
        Platform::ScopedLock lock(_mutex);
        bool const value = _value;
        _value = false;
        return value;
    }

private:
    mutable Platform::RecursiveMutex _mutex;
    bool _value VC_GUARDED_BY(_mutex);
};

}  // namespace Ubrix
