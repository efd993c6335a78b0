#include <VelmorCore/Clock.h>

#include "System/Time/ClockSource.h"

namespace Ubrix {

long long CTime::GetCurTime() {
    return ClockSource::Current().EpochSeconds();
}

int CTime::GetYear() {
    return ClockSource::Current().Local().year;
}

int CTime::GetMonth() {
    return ClockSource::Current().Local().month;
}

int CTime::GetDay() {
    return ClockSource::Current().Local().day;
}

long long CTime::GetTimeTick() {
    int seconds = 0;
    int microseconds = 0;
    GetTimeOfDay(seconds, microseconds);
    return static_cast<long long>(seconds) * 1000000 + microseconds;
}

long long CTime::GetTimeDiff(long long a, long long b) {
    return static_cast<long long>(static_cast<double>(a - b));
}

void CTime::GetTimeOfDay(int& seconds, int& microseconds) {
    Platform::CalendarTime const now = ClockSource::Current().Local();
    seconds = static_cast<int>(Platform::CalendarToEpoch(now, Platform::DaylightSaving::Unknown));
    microseconds = now.millisecond * 1000;
}

}  // namespace Ubrix
