#include <VelmorCore/Network.h>

#include <memory>

#include "Base/Ubrix/IBase.h"
#include "Platform/Mutex.h"
#include "Storage/Log/LogMacros.h"
#include "System/Network/NetworkObservers.h"
#include "System/Thread/ATargetBase.h"

namespace Ubrix {

using Platform::ScopedLock;

// Shared with a change that is being told, since an observer may release the network.
struct NetworkParts {
    std::shared_ptr<NetworkObservers> observers = std::make_shared<NetworkObservers>();
};

namespace {

// The one instance. The mutex guards the pointer, and making the instance; it is taken inside the observers'
// lock, and takes that of the release list inside itself. Never destroyed: observers may go with the process.
struct NetworkHolder {
    Platform::RecursiveMutex mutex;
    CNetwork* instance VC_GUARDED_BY(mutex) = nullptr;
};

NetworkHolder& Holder() {
    static NetworkHolder& holder = *new NetworkHolder;
    return holder;
}

}  // namespace

INetwork::~INetwork() = default;

INetwork& INetwork::GetInstance() {
    return CNetwork::GetInstance();
}

CNetwork& CNetwork::GetInstance() {
    NetworkHolder& holder = Holder();
    ScopedLock lock(holder.mutex);
    if (holder.instance == nullptr) {
        holder.instance = new CNetwork;
    }
    return *holder.instance;
}

void CNetwork::ReleaseInstance() {
    NetworkHolder& holder = Holder();
    CNetwork* released = nullptr;
    {
        ScopedLock lock(holder.mutex);
        released = holder.instance;
        holder.instance = nullptr;
    }
    if (released != nullptr) {
        // No queued change finds a dead target.
        RemoveSelectorsFromAllQueues(released);
        released->_parts->observers->Close();
        delete released;
    }
}

CNetwork::CNetwork() : CTargetBase(false), _parts(new NetworkParts) {
    IBase::AddReleaseCallback(ReleaseInstance);
    init();
}

CNetwork::~CNetwork() {
    delete _parts;
}

// Where a platform with an event source would begin to listen to it.
void CNetwork::init() {}

ANetworkState CNetwork::GetNetworkState() {
    return ANetworkStateReachable;
}

_tagADetailNetworkInfo CNetwork::GetDetailNetworkInfo() {
    _tagADetailNetworkInfo info;
    info.state = GetNetworkState();
    return info;
}

void CNetwork::SetCallback(Callback callback) {
    _parts->observers->SetCallback(callback);
}

void CNetwork::AddObserver(CNetworkObserver* observer) {
    _parts->observers->Add(observer);
}

void CNetwork::RemoveObserver(CNetworkObserver* observer) {
    _parts->observers->Remove(observer);
}

void CNetwork::ForgetObserver(CNetworkObserver* observer) {
    _parts->observers->Forget(observer);
}

void CNetwork::OnNetworkStateChanged(ANetworkState state) {
    VC_LOG(Event, "Ubrix::CNetwork::OnNetworkStateChanged", "OnNetworkStateChanged to:%d",
           static_cast<int>(state));
    PostSelectorToUiThread(this, &CNetwork::OnNetworkStateChangedOnUIThread,
                           _parts->observers->KeepChange(state));
}

void CNetwork::OnNetworkStateChangedOnUIThread(void* cell) {
    // This object may be gone when the observers have been told.
    std::shared_ptr<NetworkObservers> const observers = _parts->observers;
    observers->TellChange(cell);
}

}  // namespace Ubrix
