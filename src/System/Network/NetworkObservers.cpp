#include "System/Network/NetworkObservers.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

using Platform::ScopedTurn;

// A walk over a copy of the list. Observers that die meanwhile become null in it.
class NetworkObservers::Walk {
public:
    Walk(NetworkObservers& owner, ObserverList observers) VC_REQUIRES(owner._turn)
        : _owner(owner), _observers(std::move(observers)) {
        _owner._walks.push_back(this);
    }
    ~Walk() {
        ScopedTurn const turn(_owner._turn);
        _owner._walks.pop_back();
    }
    Walk(Walk const&) = delete;
    Walk& operator=(Walk const&) = delete;

    void Forget(CNetworkObserver* observer) {
        std::replace(_observers.begin(), _observers.end(), observer, static_cast<CNetworkObserver*>(nullptr));
    }
    void End() {
        _hasEnded = true;
        _observers.clear();
    }
    // False if the network was released meanwhile.
    bool Tell(ANetworkState state) {
        for (std::size_t i = 0; i < _observers.size(); ++i) {
            if (_observers[i] != nullptr) {
                Platform::CallOut const out;
                _observers[i]->OnNetworkStateChanged(state);
            }
        }
        return !_hasEnded;
    }

private:
    NetworkObservers& _owner;
    ObserverList _observers;
    bool _hasEnded = false;
};

NetworkObservers::NetworkObservers() : _lists(CNetwork::ReleaseInstance) {}

NetworkObservers& NetworkObservers::GetInstance() {
    static Platform::Immortal<NetworkObservers> instance(
        [](void* room) { return new (room) NetworkObservers; });
    return *instance;
}

bool NetworkObservers::Begin() {
    return _lists.With([](Lists& lists) { return !std::exchange(lists.hasBegun, true); });
}

void NetworkObservers::End() {
    ScopedTurn const turn(_turn);
    for (Walk* walk : _walks) {
        walk->End();
    }
    _lists.Release();
}

void NetworkObservers::SetCallback(INetwork::Callback callback) {
    ScopedTurn const turn(_turn);
    _lists.With([callback](Lists& lists) { lists.callback = callback; });
}

void NetworkObservers::Add(CNetworkObserver* observer) {
    ScopedTurn const turn(_turn);
    _lists.With([observer](Lists& lists) {
        ObserverList& all = lists.observers;
        if (std::find(all.begin(), all.end(), observer) == all.end()) {
            all.push_back(observer);
        }
    });
}

void NetworkObservers::Remove(CNetworkObserver* observer) {
    ScopedTurn const turn(_turn);
    Erase(observer);
}

void NetworkObservers::Forget(CNetworkObserver* observer) {
    ScopedTurn const turn(_turn);
    Erase(observer);
    for (Walk* walk : _walks) {
        walk->Forget(observer);
    }
}

void NetworkObservers::Erase(CNetworkObserver* observer) {
    _lists.WithIfMade(false, [observer](Lists& lists) {
        ObserverList& all = lists.observers;
        auto const found = std::find(all.begin(), all.end(), observer);
        return found != all.end() && all.erase(found) != all.end();
    });
}

void* NetworkObservers::KeepChange(ANetworkState state) {
    auto cell = std::make_unique<ANetworkState>(state);
    return _lists.With([&cell](Lists& lists) {
        lists.changes.push_back(std::move(cell));
        return lists.changes.back().get();
    });
}

bool NetworkObservers::TakeChange(void* cell, ANetworkState& state) {
    return _lists.WithIfMade(false, [&](Lists& lists) {
        auto const found = std::find_if(lists.changes.begin(), lists.changes.end(),
                                        [cell](auto const& change) { return change.get() == cell; });
        if (found == lists.changes.end()) {
            return false;
        }
        state = **found;
        lists.changes.erase(found);
        return true;
    });
}

void NetworkObservers::TellChange(void* cell) {
    ScopedTurn const turn(_turn);
    ANetworkState state = ANetworkStateNotReachable;
    std::optional<Walk> walk;
    // The calls are outside: what observers throw is their own.
    bool const isReady = AtBoundary(false, [&]() VC_REQUIRES(_turn) {
        walk.emplace(*this, _lists.WithIfMade(ObserverList(), [](Lists& lists) { return lists.observers; }));
        return TakeChange(cell, state);
    });
    if (isReady && walk->Tell(state)) {
        TellCallback(state);
    }
}

void NetworkObservers::TellCallback(ANetworkState state) {
    INetwork::Callback const callback = _lists.WithIfMade(static_cast<INetwork::Callback>(nullptr),
                                                          [](Lists& lists) { return lists.callback; });
    if (callback != nullptr) {
        Platform::CallOut const out;
        callback(state);
    }
}

}  // namespace Ubrix
