// The date, time and address values of Wyr, packed into integers and taken apart into fields. Plain
// values.
#pragma once

#include <cstdint>
#include <ctime>

namespace Ubrix {

using wyr_ip_t = std::uint32_t;        // an IPv4 address, in network byte order in memory
using wyr_date_t = std::uint32_t;      // bits 0 to 15: year, signed; 16 to 23: month; 24 to 31: day
using wyr_time_t = std::uint32_t;      // bits 0 to 15: hour, signed; 16 to 23: minute; 24 to 31: second
using wyr_datetime_t = std::uint64_t;  // low 32 bits: date; high 32 bits: time

struct WyrDate {
    WyrDate() = default;
    explicit WyrDate(wyr_date_t packed);
    explicit WyrDate(std::tm const& calendar);
    wyr_date_t packed() const;
    void store(std::tm* calendar) const;
    bool isValid() const;
    // The year is -9999 to 9999, the month at most 12 and the day one of that month's; month 0 and day 0 are
    // valid. Takes numbers of any size, since a field would cut them first.
    static bool isValid(long long year, long long month, long long day);

    short year = 0;
    unsigned char month = 0;
    unsigned char day = 0;
};

struct WyrTime {
    WyrTime() = default;
    explicit WyrTime(wyr_time_t packed);
    explicit WyrTime(std::tm const& calendar);
    wyr_time_t packed() const;
    void store(std::tm* calendar) const;
    bool isValid() const;
    // -999 to 999 hours (a count of hours, not the hour of a day), minute and second at most 59.
    static bool isValid(long long hour, long long minute, long long second);

    short hour = 0;
    unsigned char minute = 0;
    unsigned char second = 0;
};

struct WyrDateTime {
    WyrDateTime() = default;
    explicit WyrDateTime(wyr_datetime_t packed);
    explicit WyrDateTime(std::tm const& calendar);
    wyr_datetime_t packed() const;
    void store(std::tm* calendar) const;
    bool isValid() const;

    WyrDate date;
    WyrTime time;
};

}  // namespace Ubrix
