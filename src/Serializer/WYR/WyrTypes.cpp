#include "Serializer/WYR/WyrTypes.h"

namespace Ubrix {

namespace {

bool IsLeapYear(long long year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

std::uint32_t Pack(short low, unsigned char middle, unsigned char high) {
    return static_cast<std::uint16_t>(low) | static_cast<std::uint32_t>(middle) << 16 |
           static_cast<std::uint32_t>(high) << 24;
}

long long DaysOfMonth(long long year, long long month) {
    switch (month) {
        case 2:
            return IsLeapYear(year) ? 29 : 28;
        case 4:
        case 6:
        case 9:
        case 11:
            return 30;
        default:
            return 31;
    }
}

}  // namespace

WyrDate::WyrDate(wyr_date_t packed)
    : year(static_cast<short>(packed)),
      month(static_cast<unsigned char>(packed >> 16)),
      day(static_cast<unsigned char>(packed >> 24)) {}

WyrDate::WyrDate(std::tm const& calendar)
    : year(static_cast<short>(calendar.tm_year + 1900LL)),
      month(static_cast<unsigned char>(calendar.tm_mon + 1LL)),
      day(static_cast<unsigned char>(calendar.tm_mday)) {}

wyr_date_t WyrDate::packed() const {
    return Pack(year, month, day);
}

void WyrDate::store(std::tm* calendar) const {
    calendar->tm_year = year - 1900;
    calendar->tm_mon = month - 1;
    calendar->tm_mday = day;
}

bool WyrDate::isValid() const {
    return isValid(year, month, day);
}

bool WyrDate::isValid(long long year, long long month, long long day) {
    return year >= -9999 && year <= 9999 && month >= 0 && month <= 12 && day >= 0 &&
           day <= DaysOfMonth(year, month);
}

WyrTime::WyrTime(wyr_time_t packed)
    : hour(static_cast<short>(packed)),
      minute(static_cast<unsigned char>(packed >> 16)),
      second(static_cast<unsigned char>(packed >> 24)) {}

WyrTime::WyrTime(std::tm const& calendar)
    : hour(static_cast<short>(calendar.tm_hour)),
      minute(static_cast<unsigned char>(calendar.tm_min)),
      second(static_cast<unsigned char>(calendar.tm_sec)) {}

wyr_time_t WyrTime::packed() const {
    return Pack(hour, minute, second);
}

void WyrTime::store(std::tm* calendar) const {
    calendar->tm_hour = hour;
    calendar->tm_min = minute;
    calendar->tm_sec = second;
}

bool WyrTime::isValid() const {
    return isValid(hour, minute, second);
}

bool WyrTime::isValid(long long hour, long long minute, long long second) {
    return hour >= -999 && hour <= 999 && minute >= 0 && minute <= 59 && second >= 0 && second <= 59;
}

WyrDateTime::WyrDateTime(wyr_datetime_t packed)
    : date(static_cast<wyr_date_t>(packed)), time(static_cast<wyr_time_t>(packed >> 32)) {}

WyrDateTime::WyrDateTime(std::tm const& calendar) : date(calendar), time(calendar) {}

wyr_datetime_t WyrDateTime::packed() const {
    return date.packed() | static_cast<wyr_datetime_t>(time.packed()) << 32;
}

void WyrDateTime::store(std::tm* calendar) const {
    date.store(calendar);
    time.store(calendar);
}

bool WyrDateTime::isValid() const {
    return date.isValid() && time.isValid();
}

}  // namespace Ubrix
