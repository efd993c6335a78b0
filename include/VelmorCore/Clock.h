/// @file
/// The library's wall clock.
#pragma once

#include <VelmorCore/Export.h>

namespace Ubrix {

/// Static operations only; all may be called on any thread.
class VELMORCORE_API CTime {
public:
    /// Seconds since 1970-01-01 UTC.
    static long long GetCurTime();
    /// The local year in full.
    static int GetYear();
    /// The local month, 1 to 12.
    static int GetMonth();
    /// The local day of the month, 1 to 31.
    static int GetDay();
    /// Microseconds since the epoch of the local wall clock, in steps of 1000. The clock can be set: the
    /// value can jump either way, and durations taken from it are estimates.
    static long long GetTimeTick();
    /// `a` minus `b`, two times in seconds.
    static long long GetTimeDiff(long long a, long long b);

    /// The same moment as GetTimeTick in two numbers: whole seconds, and microseconds in steps of 1000. The
    /// seconds, and with them GetTimeTick, are right up to January 2038, where 32 bits end.
    static void GetTimeOfDay(int& seconds, int& microseconds);

private:
    CTime() = default;
    ~CTime() = default;
};

}  // namespace Ubrix
