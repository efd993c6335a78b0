// One running timer: a worker thread that polls the clock.
#pragma once

#include <VelmorCore/Timer.h>

#include "Platform/Event.h"
#include "Platform/Mutex.h"
#include "System/Thread/AThreadBase.h"

namespace Ubrix {

// Polls happen at the start and then at multiples of 500 ms after the end of the turn before. Those that
// can't find anything due are slept through, so an idle timer costs no wake-up.
//
// Started and stopped on any thread; the mutex guards the fields behind it and is not held while the callback
// runs. Dies through CThreadBase::Destroy.
class CTimerImp : public CThreadBase {
public:
    explicit CTimerImp(unsigned int timerId) : _timerId(timerId) {}

    // Sets the timer going. Once.
    void StartTimer(unsigned long long intervalMs, bool repeat, CTimer::Callback callback, void* userData);
    // Takes back what isn't due yet and lets the thread end.
    void StopTimer();

    void ThRun() override;
    void OnThreadExit() override {}

private:
    // All ones: never.
    static constexpr unsigned long long kNeverDue = ~0ULL;
    static constexpr unsigned long long kPollMs = 500;

    static unsigned long long Now();
    static unsigned long long DueTime(unsigned long long nowMs, unsigned long long intervalMs);
    bool TakeCall(unsigned int& timerId);
    void AwaitNextPoll();
    unsigned long long PollFrom(unsigned long long nowMs);
    bool IsStopped();

    CTimer::Callback _callback = nullptr;
    void* _userData = nullptr;
    Platform::RecursiveMutex _mutex;
    unsigned int _timerId VC_GUARDED_BY(_mutex);
    unsigned long long _intervalMs VC_GUARDED_BY(_mutex) = kNeverDue;
    unsigned long long _nextFireMs VC_GUARDED_BY(_mutex) = kNeverDue;
    bool _repeat VC_GUARDED_BY(_mutex) = false;
    bool _stopped VC_GUARDED_BY(_mutex) = false;
    Platform::Event _wake;
};

}  // namespace Ubrix
