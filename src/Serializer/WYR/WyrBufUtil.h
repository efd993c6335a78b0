// Prints the fields of a record as lines of text: an indent of four blanks a level, the name, ": ", the
// value, and the separator that ends the entry, normally a line feed. No state but the buffer's: any thread.
#pragma once

#include <VelmorCore/Export.h>

#include <cstddef>

#include "Serializer/WYR/WyrBuf.h"
#include "Serializer/WYR/WyrTypes.h"

namespace Ubrix {

// Each stops at the first write that fails and answers its WyrError code; what was written before it stays.
// The forms with `index` print the name as an array's element, "name[3]".
class WyrBufUtil {
public:
    WyrBufUtil() = delete;

    // `str` as often as `count` says.
    static int printMultiStr(WyrBuf& buf, char const* str, int count);

    // The name alone: with the separator behind it, or with ": " for a value that is to follow.
    static int printName(WyrBuf& buf, int indent, char separator, char const* variable, bool withSeparator);
    static int printName(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                         bool withSeparator);
    // "name[0 : 4]:" for five elements, without a separator.
    static int printArrayName(WyrBuf& buf, int indent, char const* variable, size_t count);

    // The value as printf puts it.
    static int printValue(WyrBuf& buf, int indent, char separator, char const* variable, char const* format,
                          ...) VELMORCORE_PRINTF(5, 6);
    static int printValue(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                          char const* format, ...) VELMORCORE_PRINTF(6, 7);

    static int printString(WyrBuf& buf, int indent, char separator, char const* variable, char const* value);
    static int printString(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                           char const* value);

    // " 0x%04x" for each 16-bit unit, the terminating zero included.
    static int printWideString(WyrBuf& buf, int indent, char separator, char const* variable,
                               unsigned short const* value);
    static int printWideString(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                               unsigned short const* value);

    static int printIp(WyrBuf& buf, int indent, char separator, char const* variable, wyr_ip_t value);
    static int printIp(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                       wyr_ip_t value);
    static int printTime(WyrBuf& buf, int indent, char separator, char const* variable, wyr_time_t value);
    static int printTime(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                         wyr_time_t value);
    static int printDate(WyrBuf& buf, int indent, char separator, char const* variable, wyr_date_t value);
    static int printDate(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                         wyr_date_t value);
    static int printDateTime(WyrBuf& buf, int indent, char separator, char const* variable,
                             wyr_datetime_t value);
    static int printDateTime(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                             wyr_datetime_t value);
};

}  // namespace Ubrix
