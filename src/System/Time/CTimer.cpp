#include <VelmorCore/Timer.h>

#include <atomic>
#include <map>

#include "Platform/Boundary.h"
#include "Platform/Mutex.h"
#include "System/Time/CTimerImp.h"

namespace Ubrix {

using Platform::ScopedLock;

using TimerMap = std::map<unsigned int, CTimerImp*>;

// The timers of one CTimer, by id. The mutex guards the map.
struct CTimer::Body {
    // Shared by all instances.
    static std::atomic<unsigned int> _uNextId;

    Platform::RecursiveMutex mutex;
    TimerMap timers VC_GUARDED_BY(mutex);
};

std::atomic<unsigned int> CTimer::Body::_uNextId{1};

namespace {

// What no timer has for its id.
constexpr unsigned int kNoTimer = 0;

void StopAndDestroy(CTimerImp* timer) {
    if (timer == nullptr) {
        return;
    }
    timer->StopTimer();
    CThreadBase* thread = timer;
    CThreadBase::Destroy(thread, true);
}

}  // namespace

CTimer::CTimer() : _body(nullptr) {
    AtBoundary([this] { _body = new Body; });
}

CTimer::~CTimer() {
    if (_body == nullptr) {
        return;
    }
    TimerMap timers;
    {
        ScopedLock lock(_body->mutex);
        timers.swap(_body->timers);
    }
    for (auto const& entry : timers) {
        StopAndDestroy(entry.second);
    }
    delete _body;
}

unsigned int CTimer::StartTimer(unsigned long long intervalMs, bool repeat, Callback callback,
                                void* userData) {
    if (_body == nullptr) {
        return kNoTimer;
    }
    ScopedLock lock(_body->mutex);
    unsigned int const id = GetNextTimerId();
    CTimerImp* timer = nullptr;
    bool const isMade = AtBoundary([&]() VC_REQUIRES(_body->mutex) {
        // The entry first: nothing may fail once there is the thread.
        CTimerImp*& entry = _body->timers[id];
        entry = timer = new CTimerImp(id);
    });
    if (!isMade) {
        _body->timers.erase(id);
        return kNoTimer;
    }
    timer->StartTimer(intervalMs, repeat, callback, userData);
    return id;
}

void CTimer::StopTimer(unsigned int id) {
    if (_body == nullptr) {
        return;
    }
    CTimerImp* timer = nullptr;
    {
        ScopedLock lock(_body->mutex);
        auto const found = _body->timers.find(id);
        if (found == _body->timers.end()) {
            return;
        }
        timer = found->second;
        _body->timers.erase(found);
    }
    StopAndDestroy(timer);
}

unsigned int CTimer::GetNextTimerId() {
    return Body::_uNextId++;
}

}  // namespace Ubrix
