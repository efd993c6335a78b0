#include <VelmorCore/Timer.h>

#include <atomic>
#include <map>

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

void StopAndDestroy(CTimerImp* timer) {
    if (timer == nullptr) {
        return;
    }
    timer->StopTimer();
    CThreadBase* thread = timer;
    CThreadBase::Destroy(thread, true);
}

}  // namespace

CTimer::CTimer() : _timers(new TimerTable) {}

CTimer::~CTimer() {
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
    ScopedLock lock(_timers->mutex);
    unsigned int const id = GetNextTimerId();
    // The entry first: nothing may fail once the thread stands.
    CTimerImp*& timer = _timers->timers[id];
    timer = new CTimerImp(id);
    timer->StartTimer(intervalMs, repeat, callback, userData);
    return id;
}

void CTimer::StopTimer(unsigned int id) {
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
