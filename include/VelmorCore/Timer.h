/// @file
/// Calls after a delay or at an interval.
#pragma once

#include <VelmorCore/Export.h>

namespace Ubrix {

/// Any number of timers, each with a thread of its own, precise to about half a second.
///
/// A timer looks at the clock when it starts and then every 500 ms, and makes a call at the first look at or
/// after the due time. The next due time counts from that look, so a repeating timer's period is its interval
/// rounded up to a look, and the error adds up. A long callback delays its own timer only. The clock is
/// monotonic: setting the system's time moves no call. Between the looks that matter the thread sleeps.
///
/// StartTimer and StopTimer may be called on any thread; one mutex of the instance serialises them, and is
/// not held while a callback runs. Nobody may use the instance while it is destroyed.
class VELMORCORE_API CTimer {
public:
    /// Runs on the timer's own thread, with the timer's id and the pointer given to StartTimer. It may start
    /// and stop timers, its own included. An exception from it ends the process.
    using Callback = void (*)(unsigned int id, void* userData);

    /// The interval of a timer that never fires. Every other value counts.
    static constexpr unsigned long long kNeverMs = 0xFFFFFFFFULL;

    CTimer();
    /// Stops all timers and doesn't wait for their threads: a callback in progress may still be finishing.
    virtual ~CTimer();
    CTimer(CTimer const&) = delete;
    CTimer& operator=(CTimer const&) = delete;

    /// Starts a timer and returns its id, which no other timer of the process has (until 2^32 were made).
    /// `intervalMs` is the delay of the first call, in milliseconds, and the period if `repeat` is true; 0
    /// fires at each look. `callback` must not be null. A timer whose call was made once for all stays until
    /// it is stopped. If the system has no thread for it, the timer never fires. Without memory none is
    /// started, and the id is 0.
    unsigned int StartTimer(unsigned long long intervalMs, bool repeat, Callback callback, void* userData);

    /// Stops and forgets a timer; an unknown id does nothing. Doesn't wait for a callback in progress on
    /// another thread, for which `userData` must stay alive.
    void StopTimer(unsigned int id);

private:
    struct VELMORCORE_HIDDEN Body;

    unsigned int GetNextTimerId();

    Body* _body;
};

}  // namespace Ubrix
