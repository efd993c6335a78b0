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
struct TimerTable {
    // Shared by all instances.
    static std::atomic<unsigned int> _uNextId;

    Platform::RecursiveMutex mutex;
    TimerMap timers VC_GUARDED_BY(mutex);
};

std::atomic<unsigned int> TimerTable::_uNextId{1};

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

CTimer::CTimer() : _timers(nullptr) {
    AtBoundary([this] { _timers = new TimerTable; });
}

CTimer::~CTimer() {
    if (_timers == nullptr) {
        return;
    }
    TimerMap timers;
    {
        ScopedLock lock(_timers->mutex);
        timers.swap(_timers->timers);
    }
    for (auto const& entry : timers) {
        StopAndDestroy(entry.second);
    }
    delete _timers;
}

unsigned int CTimer::StartTimer(unsigned long long intervalMs, bool repeat, Callback callback,
                                void* userData) {
    if (_timers == nullptr) {
        return kNoTimer;
    }
    ScopedLock lock(_timers->mutex);
    unsigned int const id = GetNextTimerId();
    CTimerImp* timer = nullptr;
    bool const isMade = AtBoundary([&]() VC_REQUIRES(_timers->mutex) {
        // The entry first: nothing may fail once there is the thread.
        CTimerImp*& entry = _timers->timers[id];
        entry = timer = new CTimerImp(id);
    });
    if (!isMade) {
        _timers->timers.erase(id);
        return kNoTimer;
    }
    timer->StartTimer(intervalMs, repeat, callback, userData);
    return id;
}

void CTimer::StopTimer(unsigned int id) {
    if (_timers == nullptr) {
        return;
    }
    CTimerImp* timer = nullptr;
    {
        ScopedLock lock(_timers->mutex);
        auto const found = _timers->timers.find(id);
        if (found == _timers->timers.end()) {
            return;
        }
        timer = found->second;
        _timers->timers.erase(found);
    }
    StopAndDestroy(timer);
}

unsigned int CTimer::GetNextTimerId() {
    return TimerTable::_uNextId++;
}

}  // namespace Ubrix
