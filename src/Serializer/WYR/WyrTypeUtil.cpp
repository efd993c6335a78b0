#include "Serializer/WYR/WyrTypeUtil.h"

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <tuple>

#include "Platform/SystemClock.h"
#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrSpace.h"
#include "Serializer/WYR/WyrStrptime.h"

namespace Ubrix {

namespace {

constexpr char kIpForm[] = "%u.%u.%u.%u";
constexpr char kDateForm[] = "%4d-%02d-%02d";
constexpr char kTimeForm[] = "%02d:%02d:%02d";

struct IpBytes {
    explicit IpBytes(wyr_ip_t ip) { std::memcpy(bytes, &ip, sizeof bytes); }
    unsigned char bytes[4];
};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// One part of an address, and `text` behind it.
bool ReadPart(char const** text, unsigned long long* value) {
    if (!IsDigit(**text)) {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    *value = std::strtoull(*text, &end, 0);
    *text = end;
    return errno == 0 && *value <= 0xFFFFFFFFULL;
}

// The address as a number, the first part highest; false for what is none.
bool ReadAddress(char const* text, unsigned long long* address) {
    unsigned long long whole = 0;
    int bits = 32;
    unsigned long long part = 0;
    for (;;) {
        if (!ReadPart(&text, &part)) {
            return false;
        }
        if (*text != '.') {
            break;
        }
        bits -= 8;
        if (bits == 0 || part > 0xFF) {
            return false;
        }
        whole |= part << bits;
        ++text;
    }
    *address = whole | part;
    return (*text == '\0' || IsWyrSpace(*text)) && part < 1ULL << bits;
}

int Checked(int written, size_t size) {
    return written < 0 || static_cast<size_t>(written) >= size ? WyrError::WYR_ERR_WRITE_SPACE
                                                               : WyrError::WYR_NO_ERROR;
}

bool DateIsValid(std::tm const& calendar) {
    return WyrDate::isValid(calendar.tm_year + 1900LL, calendar.tm_mon + 1LL, calendar.tm_mday);
}

bool TimeIsValid(std::tm const& calendar) {
    return WyrTime::isValid(calendar.tm_hour, calendar.tm_min, calendar.tm_sec);
}

template <class Value>
int Compare(Value const& a, Value const& b) {
    return a < b ? -1 : static_cast<int>(b < a);
}

}  // namespace

int WyrTypeUtil::str2ip(wyr_ip_t* out, char const* pszIP) {
    unsigned long long address = 0;
    int const savedError = errno;
    bool const isAddress = ReadAddress(pszIP, &address);
    errno = savedError;
    if (!isAddress || address == 0xFFFFFFFFULL) {
        return WyrError::WYR_ERR_IP_VALUE;
    }
    unsigned char const bytes[] = {
        static_cast<unsigned char>(address >> 24), static_cast<unsigned char>(address >> 16),
        static_cast<unsigned char>(address >> 8), static_cast<unsigned char>(address)};
    std::memcpy(out, bytes, sizeof bytes);
    return WyrError::WYR_NO_ERROR;
}

int WyrTypeUtil::str2time(wyr_time_t* out, char const* pszTime) {
    std::tm calendar{};
    if (wyrStrptime(pszTime, "%H:%M:%S", &calendar) == nullptr || !TimeIsValid(calendar)) {
        return WyrError::WYR_ERR_TIME_VALUE;
    }
    *out = WyrTime(calendar).packed();
    return WyrError::WYR_NO_ERROR;
}

int WyrTypeUtil::str2date(wyr_date_t* out, char const* pszDate) {
    std::tm calendar{};
    if (wyrStrptime(pszDate, "%Y-%m-%d", &calendar) == nullptr || !DateIsValid(calendar)) {
        return WyrError::WYR_ERR_DATE_VALUE;
    }
    *out = WyrDate(calendar).packed();
    return WyrError::WYR_NO_ERROR;
}

int WyrTypeUtil::str2datetime(wyr_datetime_t* out, char const* pszDateTime) {
    std::tm calendar{};
    if (wyrStrptime(pszDateTime, "%Y-%m-%d %H:%M:%S", &calendar) == nullptr || !DateIsValid(calendar) ||
        !TimeIsValid(calendar)) {
        return WyrError::WYR_ERR_DATETIME_VALUE;
    }
    *out = WyrDateTime(calendar).packed();
    return WyrError::WYR_NO_ERROR;
}

int WyrTypeUtil::ip2str(char* text, size_t size, wyr_ip_t ip) {
    IpBytes const part(ip);
    // Cutting is what this form does with a text that is too small.
    static_cast<void>(
        std::snprintf(text, size, kIpForm, part.bytes[0], part.bytes[1], part.bytes[2], part.bytes[3]));
    return WyrError::WYR_NO_ERROR;
}

int WyrTypeUtil::date2str(char* text, size_t size, wyr_date_t v) {
    if (text == nullptr || size == 0) {
        return WyrError::WYR_ERR_NULL_PARAMETER;
    }
    WyrDate const date(v);
    return Checked(std::snprintf(text, size, kDateForm, date.year, date.month, date.day), size);
}

int WyrTypeUtil::time2str(char* text, size_t size, wyr_time_t v) {
    if (text == nullptr || size == 0) {
        return WyrError::WYR_ERR_NULL_PARAMETER;
    }
    WyrTime const time(v);
    return Checked(std::snprintf(text, size, kTimeForm, time.hour, time.minute, time.second), size);
}

int WyrTypeUtil::datetime2str(char* text, size_t size, wyr_datetime_t v) {
    if (text == nullptr || size == 0) {
        return WyrError::WYR_ERR_NULL_PARAMETER;
    }
    WyrBuf buf(text, size);
    return datetime2buf(buf, v);
}

int WyrTypeUtil::ip2buf(WyrBuf& buf, wyr_ip_t ip) {
    IpBytes const part(ip);
    return buf.textize(kIpForm, part.bytes[0], part.bytes[1], part.bytes[2], part.bytes[3]);
}

int WyrTypeUtil::date2buf(WyrBuf& buf, wyr_date_t v) {
    WyrDate const date(v);
    return buf.textize(kDateForm, date.year, date.month, date.day);
}

int WyrTypeUtil::time2buf(WyrBuf& buf, wyr_time_t v) {
    WyrTime const time(v);
    return buf.textize(kTimeForm, time.hour, time.minute, time.second);
}

int WyrTypeUtil::datetime2buf(WyrBuf& buf, wyr_datetime_t v) {
    WyrDateTime const value(v);
    int result = date2buf(buf, value.date.packed());
    if (result == WyrError::WYR_NO_ERROR) {
        result = buf.writeChar(' ');
    }
    return result == WyrError::WYR_NO_ERROR ? time2buf(buf, value.time.packed()) : result;
}

int WyrTypeUtil::utc2datetime(wyr_datetime_t* out, long long t) {
    Platform::CalendarTime local{};
    if (!Platform::EpochToCalendar(t, local)) {
        return WyrError::WYR_ERR_LOCALTIME;
    }
    if (!WyrDate::isValid(local.year, local.month, local.day) ||
        !WyrTime::isValid(local.hour, local.minute, local.second)) {
        return WyrError::WYR_ERR_DATETIME_VALUE;
    }
    WyrDateTime value;
    value.date.year = static_cast<short>(local.year);
    value.date.month = static_cast<unsigned char>(local.month);
    value.date.day = static_cast<unsigned char>(local.day);
    value.time.hour = static_cast<short>(local.hour);
    value.time.minute = static_cast<unsigned char>(local.minute);
    value.time.second = static_cast<unsigned char>(local.second);
    *out = value.packed();
    return WyrError::WYR_NO_ERROR;
}

int WyrTypeUtil::datetime2utc(long long* out, wyr_datetime_t v) {
    WyrDateTime const value(v);
    if (!value.isValid()) {
        return WyrError::WYR_ERR_DATETIME_VALUE;
    }
    long long const seconds =
        Platform::CalendarToEpoch({value.date.year, value.date.month, value.date.day, value.time.hour,
                                   value.time.minute, value.time.second, 0},
                                  Platform::DaylightSaving::Standard);
    if (seconds == -1) {
        return WyrError::WYR_ERR_DATETIME_VALUE;
    }
    *out = seconds;
    return WyrError::WYR_NO_ERROR;
}

int WyrTypeUtil::compareTime(wyr_time_t a, wyr_time_t b) {
    WyrTime const left(a);
    WyrTime const right(b);
    return Compare(std::tie(left.hour, left.minute, left.second),
                   std::tie(right.hour, right.minute, right.second));
}

int WyrTypeUtil::compareDate(wyr_date_t a, wyr_date_t b) {
    WyrDate const left(a);
    WyrDate const right(b);
    return Compare(std::tie(left.year, left.month, left.day), std::tie(right.year, right.month, right.day));
}

int WyrTypeUtil::compareDateTime(wyr_datetime_t a, wyr_datetime_t b) {
    WyrDateTime const left(a);
    WyrDateTime const right(b);
    int const dates = compareDate(left.date.packed(), right.date.packed());
    return dates != 0 ? dates : compareTime(left.time.packed(), right.time.packed());
}

size_t WyrTypeUtil::wideLength(unsigned short const* wstr) {
    assert(nullptr != wstr);
    size_t length = 0;
    while (wstr[length] != 0) {
        ++length;
    }
    return length;
}

}  // namespace Ubrix
