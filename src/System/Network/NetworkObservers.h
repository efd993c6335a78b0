// Who hears of network changes, and what they have yet to hear.
#pragma once

#include <VelmorCore/Network.h>

#include <memory>
#include <vector>

#include "Platform/Mutex.h"

namespace Ubrix {

// Thread-safe. Two locks, never taken together but in this order: the first guards observers and callback and
// is held while they are called, so that nobody can leave in the middle of a call from another thread; it is
// recursive, and they may come back. The second guards the changes under way, and is held for list work only,
// so that reporting a change never waits for an observer.
class NetworkObservers {
public:
    void SetCallback(INetwork::Callback callback);
    void Add(CNetworkObserver* observer);
    void Remove(CNetworkObserver* observer);
    // Takes out an observer that is being destroyed: it isn't even told of the change in hand.
    void Forget(CNetworkObserver* observer);

    // Lets go of everybody: nobody hears of anything from here on, the change in hand included.
    void Close();

    // Keeps a change until it is told, and gives the cell that stands for it.
    void* KeepChange(ANetworkState state);
    // Tells the observers, in the order of registration, and then the callback of the change in `cell`, and
    // lets go of the cell. One that isn't kept here does nothing.
    void TellChange(void* cell);

private:
    using ObserverList = std::vector<CNetworkObserver*>;
    class Walk;

    bool TakeChange(void* cell, ANetworkState& state);

    Platform::RecursiveMutex _lock;
    ObserverList _observers VC_GUARDED_BY(_lock);
    INetwork::Callback _callback VC_GUARDED_BY(_lock) = nullptr;
    // The walks in progress, the innermost last: more than one if an observer runs the host's update.
    std::vector<Walk*> _walks VC_GUARDED_BY(_lock);

    Platform::RecursiveMutex _changesLock;
    std::vector<std::unique_ptr<ANetworkState>> _changes VC_GUARDED_BY(_changesLock);
};

}  // namespace Ubrix
