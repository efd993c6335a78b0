#include <VelmorCore/Network.h>

#include <deque>
#include <memory>

#include "Platform/Boundary.h"
#include "Platform/Mutex.h"
#include "System/Network/NetworkObservers.h"

namespace Ubrix {

using Platform::ScopedLock;

struct CNetworkObserver::Body {
    std::deque<ANetworkState> states;
};

CNetworkObserver::CNetworkObserver() : _body(nullptr), _lock(nullptr) {
    AtBoundary([this] {
        auto body = std::make_unique<Body>();
        _lock = new Platform::RecursiveMutex;
        _body = body.release();
    });
}

CNetworkObserver::~CNetworkObserver() {
    NetworkObservers::GetInstance().Forget(this);
    delete _body;
    delete _lock;
}

void CNetworkObserver::OnNetworkStateChanged(ANetworkState state) {
    if (_body != nullptr) {
        ScopedLock const lock(*_lock);
        AtBoundary([this, state] { _body->states.push_back(state); });
    }
}

bool CNetworkObserver::PopStateFromChangedList(ANetworkState& state) {
    if (_body == nullptr) {
        return false;
    }
    ScopedLock const lock(*_lock);
    if (_body->states.empty()) {
        return false;
    }
    state = _body->states.front();
    _body->states.pop_front();
    return true;
}

int CNetworkObserver::CountOfChangedStates() {
    if (_body == nullptr) {
        return 0;
    }
    ScopedLock const lock(*_lock);
    return static_cast<int>(_body->states.size());
}

}  // namespace Ubrix
