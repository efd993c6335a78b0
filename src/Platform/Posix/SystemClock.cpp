#include "Platform/SystemClock.h"

#include <pthread.h>

#include <climits>
#include <ctime>

namespace Ubrix::Platform {

namespace {

// mktime looks at the process's time zone and may replace it: one call at a time.
pthread_mutex_t g_zoneMutex = PTHREAD_MUTEX_INITIALIZER;

}  // namespace

CalendarTime LocalCalendarTime() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    return {local.tm_year + 1900,
            local.tm_mon + 1,
            local.tm_mday,
            local.tm_hour,
            local.tm_min,
            local.tm_sec,
            static_cast<int>(now.tv_nsec / 1000000L)};
}

long long CalendarToEpoch(CalendarTime const& time, DaylightSaving daylightSaving) {
    tm local{};
    local.tm_year = time.year - 1900;
    local.tm_mon = time.month - 1;
    local.tm_mday = time.day;
    local.tm_hour = time.hour;
    local.tm_min = time.minute;
    local.tm_sec = time.second;
    local.tm_isdst = daylightSaving == DaylightSaving::Standard ? 0 : -1;
    pthread_mutex_lock(&g_zoneMutex);
    time_t const seconds = mktime(&local);
    pthread_mutex_unlock(&g_zoneMutex);
    return seconds;
}

bool EpochToCalendar(long long seconds, CalendarTime& time) {
    auto const moment = static_cast<time_t>(seconds);
    tm local{};
    if (moment != seconds || localtime_r(&moment, &local) == nullptr || local.tm_year > INT_MAX - 1900) {
        return false;
    }
    time = {
        local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, 0};
    return true;
}

long long EpochSeconds() {
    return std::time(nullptr);
}

long long MonotonicMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000L;
}

}  // namespace Ubrix::Platform
