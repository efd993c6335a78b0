#include <VelmorCore/Network.h>

#include <new>

#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Storage/Log/LogMacros.h"
#include "System/Network/NetworkObservers.h"
#include "System/Thread/GameThread.h"

namespace Ubrix {

INetwork::~INetwork() = default;

INetwork& INetwork::GetInstance() {
    return CNetwork::GetInstance();
}

CNetwork& CNetwork::TheObject() {
    static Platform::Immortal<CNetwork> network([](void* room) { return new (room) CNetwork; });
    return *network;
}

CNetwork& CNetwork::GetInstance() {
    CNetwork& network = TheObject();
    if (AtBoundary(false, [] { return NetworkObservers::GetInstance().Begin(); })) {
        network.init();
    }
    return network;
}

void CNetwork::ReleaseInstance() {
    // First, while what is posted still is of the network that goes; it also waits for a change that is told
    // on another thread.
    AtBoundary([] { RemoveSelectorsFromAllQueues(&TheObject()); });
    NetworkObservers::GetInstance().End();
}

CNetwork::CNetwork() : CTargetBase(false) {}

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
    AtBoundary([callback] { NetworkObservers::GetInstance().SetCallback(callback); });
}

void CNetwork::AddObserver(CNetworkObserver* observer) {
    AtBoundary([observer] { NetworkObservers::GetInstance().Add(observer); });
}

void CNetwork::RemoveObserver(CNetworkObserver* observer) {
    NetworkObservers::GetInstance().Remove(observer);
}

void CNetwork::OnNetworkStateChanged(ANetworkState state) {
    VC_LOG(Event, "Ubrix::CNetwork::OnNetworkStateChanged", "OnNetworkStateChanged to:%d",
           static_cast<int>(state));
    AtBoundary([=] {
        PostSelectorToUiThread(this, &CNetwork::OnNetworkStateChangedOnUIThread,
                               NetworkObservers::GetInstance().KeepChange(state));
    });
}

void CNetwork::OnNetworkStateChangedOnUIThread(void* cell) {
    NetworkObservers::GetInstance().TellChange(cell);
}

}  // namespace Ubrix
