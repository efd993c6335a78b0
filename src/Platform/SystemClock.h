// Wall clock, calendar and the monotonic clock. All functions are thread-safe.
#pragma once

namespace Ubrix::Platform {

// A local date and time.
struct CalendarTime {
    int year;         // in full, such as 2026
    int month;        // 1 to 12
    int day;          // 1 to 31
    int hour;         // 0 to 23
    int minute;       // 0 to 59
    int second;       // 0 to 60
    int millisecond;  // 0 to 999
};

// What the calendar conversion is to assume about daylight saving.
enum class DaylightSaving { Unknown, Standard };

// The local date and time now, in steps of one millisecond.
CalendarTime LocalCalendarTime();

// Seconds since 1970-01-01 UTC of a local date and time; out-of-range fields carry over into the next field.
// -1 if the system can't represent it.
long long CalendarToEpoch(CalendarTime const& time, DaylightSaving daylightSaving);

// The way back, milliseconds 0. False if the system can't represent it, which leaves `time` unchanged.
bool EpochToCalendar(long long seconds, CalendarTime& time);

// Seconds since 1970-01-01 UTC now.
long long EpochSeconds();

// Milliseconds since an arbitrary moment; never runs backwards, and setting the clock doesn't move it.
long long MonotonicMilliseconds();

}  // namespace Ubrix::Platform
