#include "System/Time/CTimerImp.h"

#include "System/Time/ClockSource.h"

namespace Ubrix {

using Platform::ScopedLock;

void CTimerImp::StartTimer(unsigned long long intervalMs, bool repeat, CTimer::Callback callback,
                           void* userData) {
    _callback = callback;
    _userData = userData;
    {
        ScopedLock lock(_mutex);
        _repeat = repeat;
        _intervalMs = intervalMs;
        _nextFireMs = intervalMs == CTimer::kNeverMs ? kNeverDue : DueTime(Now(), intervalMs);
    }
    Start();
}

void CTimerImp::StopTimer() {
    {
        ScopedLock lock(_mutex);
        _timerId = 0;
        _intervalMs = kNeverDue;
        _nextFireMs = kNeverDue;
        _stopped = true;
    }
    Stop();
    _wake.Set();
}

void CTimerImp::ThRun() {
    unsigned int timerId = 0;
    if (TakeCall(timerId)) {
        _callback(timerId, _userData);
    }
    AwaitNextPoll();
}

unsigned long long CTimerImp::Now() {
    return static_cast<unsigned long long>(ClockSource::Current().MonotonicMilliseconds());
}

unsigned long long CTimerImp::DueTime(unsigned long long nowMs, unsigned long long intervalMs) {
    return intervalMs > kNeverDue - nowMs ? kNeverDue : nowMs + intervalMs;
}

// Looks at the clock; if a call is due, sets the next due time and tells whether and for which id to call.
bool CTimerImp::TakeCall(unsigned int& timerId) {
    unsigned long long const nowMs = Now();
    ScopedLock lock(_mutex);
    if (_stopped || nowMs < _nextFireMs) {
        return false;
    }
    // A one-shot timer has nothing more to wait for.
    _nextFireMs = _repeat ? DueTime(nowMs, _intervalMs) : kNeverDue;
    timerId = _timerId;
    return true;
}

void CTimerImp::AwaitNextPoll() {
    ClockSource const& clock = ClockSource::Current();
    unsigned long long const poll = PollFrom(Now());
    auto const never = static_cast<unsigned long long>(ClockSource::kNever);
    long long const moment = poll >= never ? ClockSource::kNever : static_cast<long long>(poll);
    while (!IsStopped() && clock.MonotonicMilliseconds() < moment) {
        clock.WaitUntil(_wake, moment);
    }
}

// The first poll, counted from the end of a turn at `nowMs`, that finds the due time reached.
unsigned long long CTimerImp::PollFrom(unsigned long long nowMs) {
    ScopedLock lock(_mutex);
    unsigned long long const wait = _nextFireMs > nowMs ? _nextFireMs - nowMs : 0;
    unsigned long long const polls = wait <= kPollMs ? 1 : (wait - 1) / kPollMs + 1;
    return _nextFireMs == kNeverDue || polls > (kNeverDue - nowMs) / kPollMs ? kNeverDue
                                                                             : nowMs + polls * kPollMs;
}

bool CTimerImp::IsStopped() {
    ScopedLock lock(_mutex);
    return _stopped;
}

}  // namespace Ubrix
