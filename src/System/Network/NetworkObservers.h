// Who hears of network changes, and what they have yet to hear.
#pragma once

#include <VelmorCore/Network.h>

#include <memory>
#include <vector>

#include "Base/Ubrix/Service.h"
#include "Platform/CallTurn.h"

namespace Ubrix {

// Thread-safe. Observers and callback are called in the turn of the fan-out: one thread at a time, so that
// nobody can leave in the middle of a call from another thread. The turn is recursive, and they may come
// back. The list of who hears exists from the network's first use to its release, under a lock that is held
// for list work only, so that reporting a change never waits for an observer. The turn comes before the lock.
class NetworkObservers {
public:
    // The one instance, never destroyed.
    static NetworkObservers& GetInstance();

    // Begins the network's use. False if it had begun.
    bool Begin();
    // Lets go of everybody, and of what has yet to be told: nobody hears of anything from here on, the change
    // in hand included. Waits for observers that are told on another thread.
    void End();

    void SetCallback(INetwork::Callback callback);
    void Add(CNetworkObserver* observer);
    void Remove(CNetworkObserver* observer);
    // Takes out an observer that is being destroyed: it isn't even told of the change in hand.
    void Forget(CNetworkObserver* observer);

    // Keeps a change until it is told, and gives the cell that means it.
    void* KeepChange(ANetworkState state);
    // Tells the observers, in the order of registration, and then the callback of the change in `cell`, and
    // lets go of the cell. One that isn't kept here does nothing.
    void TellChange(void* cell);

private:
    using ObserverList = std::vector<CNetworkObserver*>;
    // What there is between the first use and the release.
    struct Lists {
        bool hasBegun = false;
        ObserverList observers;
        INetwork::Callback callback = nullptr;
        std::vector<std::unique_ptr<ANetworkState>> changes;
    };
    class Walk;

    NetworkObservers();
    bool TakeChange(void* cell, ANetworkState& state);
    void Erase(CNetworkObserver* observer);
    void TellCallback(ANetworkState state);

    Platform::CallTurn _turn;
    // The walks in progress, the innermost last: more than one if an observer runs the host's update.
    std::vector<Walk*> _walks VC_GUARDED_BY(_turn);
    Service<Lists> _lists;
};

}  // namespace Ubrix
