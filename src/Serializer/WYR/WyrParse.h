// Reads field values out of text.
#pragma once

#include "Serializer/WYR/WyrTypes.h"

namespace Ubrix {

// Values are words between blanks, tabs, carriage returns and line feeds. `src` is cut up in place: a zero
// ends each word that was read. It and `dest` must not be null.
//
// A scalar takes the first word and ignores the rest. Without any word, `found` receives 0 and `dest` stays,
// or, where `found` is null, `dest` receives the default. An array takes up to `count` words, which mustn't
// be 0, and ignores the rest; `found` receives how many there were, or, where it is null, each element left
// over receives the default. `found` is written on success only.
//
// Results are WyrError codes. A failure ends the reading: elements before it are stored, the others left
// alone. No state: any thread may call.
class WyrParse {
public:
    WyrParse() = delete;

    // Tells the value of a macro name; anything but 0 is a failure that the parser passes on unchanged.
    using Callback = int (*)(int* value, char const* name, void* context);

    // Integers. A word that begins with a digit or a sign is a number, decimal, octal ("0") or hexadecimal
    // ("0x"); what follows its digits is ignored. -29 without digits, -21 outside the type's range (64-bit
    // types take the nearest value that they have). Any other word is a macro name: -30 without a callback;
    // the range is checked for 8 and 16 bits.
    static int parseByte(unsigned char* dest, char* src, unsigned* found, unsigned char defaultValue,
                         Callback callback, void* context);
    static int parseByteArray(unsigned char* dest, unsigned count, char* src, unsigned* found,
                              unsigned char defaultValue, Callback callback, void* context);
    static int parseChar(char* dest, char* src, unsigned* found, char defaultValue, Callback callback,
                         void* context);
    static int parseCharArray(char* dest, unsigned count, char* src, unsigned* found, char defaultValue,
                              Callback callback, void* context);
    static int parseInt8(signed char* dest, char* src, unsigned* found, signed char defaultValue,
                         Callback callback, void* context);
    static int parseInt8Array(signed char* dest, unsigned count, char* src, unsigned* found,
                              signed char defaultValue, Callback callback, void* context);
    static int parseUInt8(unsigned char* dest, char* src, unsigned* found, unsigned char defaultValue,
                          Callback callback, void* context);
    static int parseUInt8Array(unsigned char* dest, unsigned count, char* src, unsigned* found,
                               unsigned char defaultValue, Callback callback, void* context);
    static int parseUInt16(unsigned short* dest, char* src, unsigned* found, unsigned short defaultValue,
                           Callback callback, void* context);
    static int parseUInt16Array(unsigned short* dest, unsigned count, char* src, unsigned* found,
                                unsigned short defaultValue, Callback callback, void* context);
    static int parseInt16(short* dest, char* src, unsigned* found, short defaultValue, Callback callback,
                          void* context);
    static int parseInt16Array(short* dest, unsigned count, char* src, unsigned* found, short defaultValue,
                               Callback callback, void* context);
    static int parseUInt32(unsigned* dest, char* src, unsigned* found, unsigned defaultValue,
                           Callback callback, void* context);
    static int parseUInt32Array(unsigned* dest, unsigned count, char* src, unsigned* found,
                                unsigned defaultValue, Callback callback, void* context);
    static int parseInt32(int* dest, char* src, unsigned* found, int defaultValue, Callback callback,
                          void* context);
    static int parseInt32Array(int* dest, unsigned count, char* src, unsigned* found, int defaultValue,
                               Callback callback, void* context);
    static int parseUInt64(unsigned long long* dest, char* src, unsigned* found,
                           unsigned long long defaultValue, Callback callback, void* context);
    static int parseUInt64Array(unsigned long long* dest, unsigned count, char* src, unsigned* found,
                                unsigned long long defaultValue, Callback callback, void* context);
    static int parseInt64(long long* dest, char* src, unsigned* found, long long defaultValue,
                          Callback callback, void* context);
    static int parseInt64Array(long long* dest, unsigned count, char* src, unsigned* found,
                               long long defaultValue, Callback callback, void* context);

    // Real numbers, as strtod reads them in the "C" locale. -29 for a word that doesn't begin with one.
    static int parseFloat(float* dest, char* src, unsigned* found, float defaultValue);
    static int parseFloatArray(float* dest, unsigned count, char* src, unsigned* found, float defaultValue);
    static int parseDouble(double* dest, char* src, unsigned* found, double defaultValue);
    static int parseDoubleArray(double* dest, unsigned count, char* src, unsigned* found,
                                double defaultValue);

    // Dates, times and addresses, as WyrTypeUtil reads them, with its codes. The default is a text of the
    // same form, converted when it is needed; null means 0.
    static int parseDate(wyr_date_t* dest, char* src, unsigned* found, char const* defaultValue);
    static int parseDateArray(wyr_date_t* dest, unsigned count, char* src, unsigned* found,
                              char const* defaultValue);
    static int parseTime(wyr_time_t* dest, char* src, unsigned* found, char const* defaultValue);
    static int parseTimeArray(wyr_time_t* dest, unsigned count, char* src, unsigned* found,
                              char const* defaultValue);
    static int parseIp(wyr_ip_t* dest, char* src, unsigned* found, char const* defaultValue);
    static int parseIpArray(wyr_ip_t* dest, unsigned count, char* src, unsigned* found,
                            char const* defaultValue);
};

}  // namespace Ubrix
