#include <VelmorCore/Network.h>

#include <deque>
#include <memory>

#include "Platform/Boundary.h"
#include "Platform/Mutex.h"
#include "System/Network/NetworkObservers.h"

namespace Ubrix {

using Platform::ScopedLock;

struct NetworkStateList {
    std::deque<ANetworkState> states;
};

CNetworkObserver::CNetworkObserver() : _changedStates(nullptr), _lock(nullptr) {
    AtBoundary([this] {
        auto states = std::make_unique<NetworkStateList>();
        _lock = new Platform::RecursiveMutex;
        _changedStates = states.release();
    });
}

CNetworkObserver::~CNetworkObserver() {
    NetworkObservers::GetInstance().Forget(this);
    delete _changedStates;
    delete _lock;
}

void CNetworkObserver::OnNetworkStateChanged(ANetworkState state) {
    if (_changedStates != nullptr) {
        ScopedLock const lock(*_lock);
        AtBoundary([this, state] { _changedStates->states.push_back(state); });
    }
}

bool CNetworkObserver::PopStateFromChangedList(ANetworkState& state) {
    if (_changedStates == nullptr) {
        return false;
    }
    ScopedLock const lock(*_lock);
    if (_changedStates->states.empty()) {
        return false;
    }
    state = _changedStates->states.front();
    _changedStates->states.pop_front();
    return true;
}

int CNetworkObserver::CountOfChangedStates() {
    if (_changedStates == nullptr) {
        return 0;
    }
    ScopedLock const lock(*_lock);
    return static_cast<int>(_changedStates->states.size());
}

}  // namespace Ubrix
