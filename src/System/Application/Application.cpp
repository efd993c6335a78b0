#include "System/Application/Application.h"

#include <VelmorCore/Network.h>

#include <algorithm>

#include "Storage/Log/LogMacros.h"

namespace Ubrix {

using Platform::ScopedLock;

namespace {

// The one instance, shared with fan-outs in progress, since an observer may release it. The mutex guards the
// pointer only. Never destroyed: observers may go with the process.
struct ApplicationHolder {
    Platform::RecursiveMutex mutex;
    std::shared_ptr<CApplication> instance VC_GUARDED_BY(mutex);
};

ApplicationHolder& Holder() {
    static ApplicationHolder& holder = *new ApplicationHolder;
    return holder;
}

}  // namespace

IApplicationObserver::IApplicationObserver() {
    CApplication::Share()->AddObserver(this);
}

IApplicationObserver::~IApplicationObserver() {
    CApplication::Share()->RemoveObserver(this);
}

CApplication& CApplication::GetInstance() {
    return *Share();
}

std::shared_ptr<CApplication> CApplication::Share() {
    ApplicationHolder& holder = Holder();
    ScopedLock lock(holder.mutex);
    if (holder.instance == nullptr) {
        holder.instance.reset(new CApplication);
    }
    return holder.instance;
}

void CApplication::ReleaseInstance() {
    ApplicationHolder& holder = Holder();
    std::shared_ptr<CApplication> released;
    {
        ScopedLock lock(holder.mutex);
        released.swap(holder.instance);
    }
    if (released != nullptr) {
        released->Close();
    }
}

void CApplication::AddObserver(IApplicationObserver* observer) {
    if (observer == nullptr) {
        return;
    }
    ScopedLock lock(_mutex);
    VC_LOG(Info, "Ubrix::CApplication::AddObserver", "CApplication::AddObserver:%p",
           static_cast<void*>(observer));
    if (std::find(_observers.begin(), _observers.end(), observer) != _observers.end()) {
        return;
    }
    VC_LOG(Info, "Ubrix::CApplication::AddObserver", "CApplication::AddObserver:%p",
           static_cast<void*>(observer));
    _observers.push_back(observer);
    VC_LOG(Info, "Ubrix::CApplication::AddObserver", "CApplication::size:%d",
           static_cast<int>(_observers.size()));
}

void CApplication::RemoveObserver(IApplicationObserver* observer) {
    VC_LOG(Info, "Ubrix::CApplication::RemoveObserver", "CApplication::RemoveObserver:%p",
           static_cast<void*>(observer));
    ScopedLock lock(_mutex);
    auto const found = std::find(_observers.begin(), _observers.end(), observer);
    if (found == _observers.end()) {
        return;
    }
    auto const index = static_cast<std::size_t>(found - _observers.begin());
    _observers.erase(found);
    for (Walk& walk : _walks) {
        walk.next -= index < walk.next ? 1 : 0;
        walk.end -= index < walk.end ? 1 : 0;
    }
}

void CApplication::LifecycleEvent1() {
    FanOut(&IApplicationObserver::OnLifecycleEvent1);
}

void CApplication::LifecycleEvent2() {
    FanOut(&IApplicationObserver::OnLifecycleEvent2);
}

void CApplication::OnPause() {
    std::shared_ptr<CApplication> const self = shared_from_this();
    ScopedLock lock(_mutex);
    VC_LOG(Info, "Ubrix::CApplication::OnPause", "CApplication::OnPause Observersize:%d",
           static_cast<int>(_observers.size()));
    FanOut(&IApplicationObserver::OnPause);
}

void CApplication::OnResume() {
    VC_LOG(Info, "Ubrix::CApplication::OnResume", "CApplication::OnResume");
    FanOut(&IApplicationObserver::OnResume);
}

void CApplication::LifecycleEvent5() {
    FanOut(&IApplicationObserver::OnLifecycleEvent5);
}

void CApplication::Terminate() {
    CNetwork::ReleaseInstance();
    FanOut(&IApplicationObserver::OnTerminate);
}

void CApplication::FanOut(Event event) {
    // Before the lock, so that an observer that releases the application doesn't take the lock along.
    std::shared_ptr<CApplication> const self = shared_from_this();
    ScopedLock lock(_mutex);
    _walks.push_back({0, _observers.size()});
    while (_walks.back().next < _walks.back().end) {
        IApplicationObserver* const observer = _observers[_walks.back().next++];
        (observer->*event)();
    }
    _walks.pop_back();
}

void CApplication::Close() {
    ScopedLock lock(_mutex);
    _observers.clear();
    for (Walk& walk : _walks) {
        walk = {0, 0};
    }
}

}  // namespace Ubrix
