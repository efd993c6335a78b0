// The one way in which the library holds a service's life.
#pragma once

#include <memory>
#include <utility>

#include "Base/Ubrix/ReleaseList.h"
#include "Platform/Mutex.h"

namespace Ubrix {

// A service is a thin object that is never destroyed, so that callers may keep what an accessor gave them.
// What it needs between its first use and its release is its state, and that is held here. Whoever uses the
// state either shares it for the length of a call, so that a release on another thread takes nothing from
// under them, or does short work on it under the lock, which then guards all of it.
//
// The lock is held while a state is made, so that nobody meets half of one; it is recursive, but making a
// state must not ask for it. A holder itself is never destroyed, since threads may outlive main. Any thread.
template <class State>
class Service {
public:
    using Pointer = std::shared_ptr<State>;

    // `release` enters the release list with each state that is made. Null for a service that has its own
    // place in the teardown, or lasts as long as the process.
    explicit Service(ReleaseList::Callback release) : _release(release) {}
    Service(Service const&) = delete;
    Service& operator=(Service const&) = delete;

    // The state, made at first use and again after a release.
    Pointer Share() {
        Platform::ScopedLock const lock(_lock);
        return Made();
    }
    // Null if there is none.
    Pointer ShareIfMade() {
        Platform::ScopedLock const lock(_lock);
        return _state;
    }
    // Short work on the state, with the lock held; it doesn't call out.
    template <class Work>
    decltype(auto) With(Work const& work) {
        Platform::ScopedLock const lock(_lock);
        return work(*Made());
    }
    // The same if there is a state; `otherwise` without one.
    template <class Result, class Work>
    Result WithIfMade(Result otherwise, Work const& work) {
        Platform::ScopedLock const lock(_lock);
        return _state != nullptr ? work(*_state) : otherwise;
    }
    // Lets go of the state and gives it to the caller, whose last share of it may be the end of it; null if
    // there was none. `last` is done on it under the lock: no successor is made before.
    template <class Last>
    Pointer Release(Last const& last) {
        Platform::ScopedLock const lock(_lock);
        if (_state != nullptr) {
            last(*_state);
        }
        return std::exchange(_state, nullptr);
    }
    Pointer Release() {
        return Release([](State&) {});
    }

private:
    Pointer const& Made() VC_REQUIRES(_lock) {
        if (_state == nullptr) {
            // First, since a state must have its release.
            ReleaseList::Add(_release);
            _state = std::make_shared<State>();
        }
        return _state;
    }

    ReleaseList::Callback const _release;
    Platform::RecursiveMutex _lock;
    Pointer _state VC_GUARDED_BY(_lock);
};

}  // namespace Ubrix
