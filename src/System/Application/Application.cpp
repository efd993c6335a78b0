#include "System/Application/Application.h"

#include <VelmorCore/Network.h>

#include <algorithm>

#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

using Platform::ScopedTurn;

IApplicationObserver::IApplicationObserver() {
    CApplication::GetInstance().AddObserver(this);
}

IApplicationObserver::~IApplicationObserver() {
    CApplication::GetInstance().RemoveObserver(this);
}

CApplication& CApplication::GetInstance() {
    // Never destroyed: observers may go with the process.
    static Platform::Immortal<CApplication> application([](void* room) { return new (room) CApplication; });
    return *application;
}

void CApplication::ReleaseInstance() {
    CApplication& application = GetInstance();
    ScopedTurn const turn(application._turn);
    application._observers.clear();
    for (Walk& walk : application._walks) {
        walk = {0, 0};
    }
}

void CApplication::AddObserver(IApplicationObserver* observer) {
    if (observer == nullptr) {
        return;
    }
    ScopedTurn const turn(_turn);
    constexpr char kFunction[] = "Ubrix::CApplication::AddObserver";
    VC_LOG(Info, kFunction, "CApplication::AddObserver:%p", static_cast<void*>(observer));
    if (std::find(_observers.begin(), _observers.end(), observer) != _observers.end()) {
        return;
    }
    // In one step with the look: a log callback may come back here.
    _observers.push_back(observer);
    VC_LOG(Info, kFunction, "CApplication::AddObserver:%p", static_cast<void*>(observer));
    VC_LOG(Info, kFunction, "CApplication::size:%d", static_cast<int>(_observers.size()));
}

void CApplication::RemoveObserver(IApplicationObserver* observer) {
    VC_LOG(Info, "Ubrix::CApplication::RemoveObserver", "CApplication::RemoveObserver:%p",
           static_cast<void*>(observer));
    ScopedTurn const turn(_turn);
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
    ScopedTurn const turn(_turn);
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
    ScopedTurn const turn(_turn);
    _walks.push_back({0, _observers.size()});
    while (_walks.back().next < _walks.back().end) {
        IApplicationObserver* const observer = _observers[_walks.back().next++];
        Platform::CallOut const out;
        (observer->*event)();
    }
    _walks.pop_back();
}

}  // namespace Ubrix
