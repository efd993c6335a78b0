// The text forms of date, time and address, and what compares and converts them.
#pragma once

#include <cstddef>

#include "Serializer/WYR/WyrBuf.h"
#include "Serializer/WYR/WyrTypes.h"

namespace Ubrix {

// No state: any thread may call. Results are WyrError codes; a failed reading leaves its output alone.
class WyrTypeUtil {
public:
    WyrTypeUtil() = delete;

    // POSIX inet_addr's forms: one to four parts with dots, each decimal, octal ("0") or hexadecimal ("0x"),
    // the last one filling what is left of the 32 bits; white space ends the address. -12 for anything else,
    // and for 255.255.255.255.
    static int str2ip(wyr_ip_t* out, char const* pszIP);
    // "H:M:S", "Y-m-d", and both with a blank between, as wyrStrptime reads them; what follows isn't looked
    // at. -13, -14, -15 for what doesn't match or isn't valid.
    static int str2time(wyr_time_t* out, char const* pszTime);
    static int str2date(wyr_date_t* out, char const* pszDate);
    static int str2datetime(wyr_datetime_t* out, char const* pszDateTime);

    // Dotted form, cut to `size`. Always 0.
    static int ip2str(char* text, size_t size, wyr_ip_t ip);
    // -19 for null or a size of 0; -1 if the text with its terminator doesn't fit, with a part of it written.
    static int date2str(char* text, size_t size, wyr_date_t v);
    static int time2str(char* text, size_t size, wyr_time_t v);
    static int datetime2str(char* text, size_t size, wyr_datetime_t v);

    static int ip2buf(WyrBuf& buf, wyr_ip_t ip);
    static int date2buf(WyrBuf& buf, wyr_date_t v);
    static int time2buf(WyrBuf& buf, wyr_time_t v);
    static int datetime2buf(WyrBuf& buf, wyr_datetime_t v);

    // Seconds since 1970-01-01 UTC to local date and time: -16 where the system can't, -15 for a year beyond
    // 9999.
    static int utc2datetime(wyr_datetime_t* out, long long t);
    // The way back, in standard time. -15 for an invalid value, for what the system can't represent, and for
    // the second before 1970.
    static int datetime2utc(long long* out, wyr_datetime_t v);

    // -1, 0 or 1.
    static int compareTime(wyr_time_t a, wyr_time_t b);
    static int compareDate(wyr_date_t a, wyr_date_t b);
    static int compareDateTime(wyr_datetime_t a, wyr_datetime_t b);

    // 16-bit units before the terminating zero.
    static size_t wideLength(unsigned short const* wstr);
};

}  // namespace Ubrix
