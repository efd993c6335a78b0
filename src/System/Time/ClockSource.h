// Where the library reads time, and waits for it: the system's clocks, or those that a test puts in
// their place.
#pragma once

#include "Platform/Event.h"
#include "Platform/SystemClock.h"

namespace Ubrix {

// Thread-safe: a source is read by any thread at any time.
class ClockSource {
public:
    virtual ~ClockSource() = default;
    // The local date and time now.
    virtual Platform::CalendarTime Local() const;
    // Seconds since 1970-01-01 UTC.
    virtual long long EpochSeconds() const;
    // Milliseconds of a clock that nobody can set. Durations are measured with it.
    virtual long long MonotonicMilliseconds() const;
    // Waits until `event` is set, and takes the signal, or until `moment` of the clock above. It may return
    // before either: callers look at their own state, and wait again.
    virtual void WaitUntil(Platform::Event& event, long long moment) const;
    // A moment that never comes.
    static constexpr long long kNever = 0x7FFFFFFFFFFFFFFFLL;

    // The source in force.
    static ClockSource const& Current();
    // Puts `source` in force, or the system's clocks for null. The caller owns the source and keeps it alive
    // while it is in force.
    static void Replace(ClockSource const* source);
};

}  // namespace Ubrix
