#include "System/Network/NetworkObservers.h"

#include <algorithm>

namespace Ubrix {

using Platform::ScopedLock;

// A walk over a copy of the list. Observers that die meanwhile become null in it.
class NetworkObservers::Walk {
public:
    explicit Walk(NetworkObservers& owner) VC_REQUIRES(owner._lock)
        : _owner(owner), _observers(owner._observers) {
        _owner._walks.push_back(this);
    }
    ~Walk() {
        ScopedLock lock(_owner._lock);
        _owner._walks.pop_back();
    }
    Walk(Walk const&) = delete;
    Walk& operator=(Walk const&) = delete;

    void Forget(CNetworkObserver* observer) {
        std::replace(_observers.begin(), _observers.end(), observer, static_cast<CNetworkObserver*>(nullptr));
    }
    void ForgetAll() { std::fill(_observers.begin(), _observers.end(), nullptr); }
    void Tell(ANetworkState state) {
        for (std::size_t i = 0; i < _observers.size(); ++i) {
            if (_observers[i] != nullptr) {
                _observers[i]->OnNetworkStateChanged(state);
            }
        }
    }

private:
    NetworkObservers& _owner;
    ObserverList _observers;
};

void NetworkObservers::SetCallback(INetwork::Callback callback) {
    ScopedLock lock(_lock);
    _callback = callback;
}

void NetworkObservers::Add(CNetworkObserver* observer) {
    ScopedLock lock(_lock);
    if (std::find(_observers.begin(), _observers.end(), observer) == _observers.end()) {
        _observers.push_back(observer);
    }
}

void NetworkObservers::Remove(CNetworkObserver* observer) {
    ScopedLock lock(_lock);
    auto const found = std::find(_observers.begin(), _observers.end(), observer);
    if (found != _observers.end()) {
        _observers.erase(found);
    }
}

void NetworkObservers::Forget(CNetworkObserver* observer) {
    ScopedLock lock(_lock);
    Remove(observer);
    for (Walk* walk : _walks) {
        walk->Forget(observer);
    }
}

void NetworkObservers::Close() {
    ScopedLock lock(_lock);
    _observers.clear();
    _callback = nullptr;
    for (Walk* walk : _walks) {
        walk->ForgetAll();
    }
}

void* NetworkObservers::KeepChange(ANetworkState state) {
    auto cell = std::make_unique<ANetworkState>(state);
    ScopedLock lock(_changesLock);
    _changes.push_back(std::move(cell));
    return _changes.back().get();
}

bool NetworkObservers::TakeChange(void* cell, ANetworkState& state) {
    ScopedLock lock(_changesLock);
    auto const found = std::find_if(_changes.begin(), _changes.end(),
                                    [cell](auto const& change) { return change.get() == cell; });
    if (found == _changes.end()) {
        return false;
    }
    state = **found;
    _changes.erase(found);
    return true;
}

void NetworkObservers::TellChange(void* cell) {
    ANetworkState state = ANetworkStateNotReachable;
    if (!TakeChange(cell, state)) {
        return;
    }
    ScopedLock lock(_lock);
    Walk walk(*this);
    walk.Tell(state);
    if (_callback != nullptr) {
        _callback(state);
    }
}

}  // namespace Ubrix
