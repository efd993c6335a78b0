#include "Serializer/WYR/WyrParse.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>

#include "Base/Container/Number/RealText.h"
#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrTypeUtil.h"

namespace Ubrix {

namespace {

constexpr int kOk = WyrError::WYR_NO_ERROR;
constexpr char kSeparators[] = " \r\n\t";

// The next word, cut out with a zero, and `place` behind it; null at the end.
char* NextWord(char** place) {
    char* const word = *place + std::strspn(*place, kSeparators);
    if (*word == '\0') {
        *place = word;
        return nullptr;
    }
    char* const end = word + std::strcspn(word, kSeparators);
    *place = *end == '\0' ? end : end + 1;
    *end = '\0';
    return word;
}

bool BeginsNumber(char c) {
    return (c >= '0' && c <= '9') || c == '+' || c == '-';
}

// Plain `char` has the range of `signed char` on every system.
template <class Integer>
using Limits = std::numeric_limits<std::conditional_t<std::is_same_v<Integer, char>, signed char, Integer>>;

// Every value that can be read fits into the 64-bit types.
template <class Integer>
bool IsInRange(long long value) {
    if constexpr (sizeof(Integer) == sizeof value) {
        return true;
    } else {
        return value >= Limits<Integer>::min() && value <= Limits<Integer>::max();
    }
}

// Converts a word to an integer, asking the callback for what isn't a number.
class IntegerReader {
public:
    IntegerReader(WyrParse::Callback callback, void* context) : _callback(callback), _context(context) {}

    template <class Integer>
    int operator()(Integer* dest, char const* word) const {
        return BeginsNumber(*word) ? number(dest, word) : macro(dest, word);
    }

private:
    template <class Integer>
    static int number(Integer* dest, char const* word) {
        char* end = nullptr;
        if constexpr (std::is_same_v<Integer, unsigned long long>) {
            unsigned long long const value = std::strtoull(word, &end, 0);
            return stored(dest, value, end != word, true);
        } else {
            long long const value = std::strtoll(word, &end, 0);
            return stored(dest, value, end != word, IsInRange<Integer>(value));
        }
    }

    template <class Integer>
    int macro(Integer* dest, char const* word) const {
        if (_callback == nullptr) {
            return WyrError::WYR_ERR_MACRO_UNDEFINED;
        }
        int value = 0;
        int const result = _callback(&value, word, _context);
        if (result != kOk) {
            return result;
        }
        return stored(dest, value, true, sizeof(Integer) > 2 || IsInRange<Integer>(value));
    }

    template <class Integer, class Wide>
    static int stored(Integer* dest, Wide value, bool hasDigits, bool isInRange) {
        if (!hasDigits) {
            return WyrError::WYR_ERR_NUMBER_PARSE;
        }
        if (!isInRange) {
            return WyrError::WYR_ERR_VALUE_RANGE;
        }
        *dest = static_cast<Integer>(value);
        return kOk;
    }

    WyrParse::Callback _callback;
    void* _context;
};

template <class Real>
int ReadRealWord(Real* dest, char const* word) {
    double value = 0.0;
    if (!ReadReal(word, value)) {
        return WyrError::WYR_ERR_NUMBER_PARSE;
    }
    *dest = static_cast<Real>(value);
    return kOk;
}

// `read` converts a word, `makeDefault` makes the value for what is missing.
template <class Value, class Read, class MakeDefault>
int ParseScalar(Value* dest, char* src, unsigned* found, Read read, MakeDefault makeDefault) {
    assert(nullptr != dest);
    assert(nullptr != src);
    char const* const word = NextWord(&src);
    if (word == nullptr && found == nullptr) {
        return makeDefault(dest);
    }
    int const result = word == nullptr ? kOk : read(dest, word);
    if (result == kOk && found != nullptr) {
        *found = word == nullptr ? 0 : 1;
    }
    return result;
}

template <class Value, class Read, class MakeDefault>
int ParseArray(Value* dest, unsigned count, char* src, unsigned* found, Read read, MakeDefault makeDefault) {
    assert(nullptr != dest);
    assert(nullptr != src);
    assert(0 != count);
    unsigned stored = 0;
    for (; stored < count; ++stored) {
        char const* const word = NextWord(&src);
        if (word == nullptr) {
            break;
        }
        int const result = read(dest + stored, word);
        if (result != kOk) {
            return result;
        }
    }
    if (found != nullptr) {
        *found = stored;
        return kOk;
    }
    if (stored == count) {
        return kOk;
    }
    Value value{};
    int const result = makeDefault(&value);
    if (result == kOk) {
        std::fill(dest + stored, dest + count, value);
    }
    return result;
}

// A default that is a value already.
template <class Value>
auto Constant(Value value) {
    return [value](Value* dest) {
        *dest = value;
        return kOk;
    };
}

// A default that is a text of the same form.
template <class Value>
auto Text(char const* text, int (*read)(Value*, char const*)) {
    return [text, read](Value* dest) {
        if (text != nullptr) {
            return read(dest, text);
        }
        *dest = 0;
        return kOk;
    };
}

template <class Integer>
int ParseInteger(Integer* dest, char* src, unsigned* found, Integer defaultValue, WyrParse::Callback callback,
                 void* context) {
    return ParseScalar(dest, src, found, IntegerReader(callback, context), Constant(defaultValue));
}

template <class Integer>
int ParseIntegers(Integer* dest, unsigned count, char* src, unsigned* found, Integer defaultValue,
                  WyrParse::Callback callback, void* context) {
    return ParseArray(dest, count, src, found, IntegerReader(callback, context), Constant(defaultValue));
}

}  // namespace

int WyrParse::parseByte(unsigned char* dest, char* src, unsigned* found, unsigned char defaultValue,
                        Callback callback, void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseByteArray(unsigned char* dest, unsigned count, char* src, unsigned* found,
                             unsigned char defaultValue, Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseChar(char* dest, char* src, unsigned* found, char defaultValue, Callback callback,
                        void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseCharArray(char* dest, unsigned count, char* src, unsigned* found, char defaultValue,
                             Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseInt8(signed char* dest, char* src, unsigned* found, signed char defaultValue,
                        Callback callback, void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseInt8Array(signed char* dest, unsigned count, char* src, unsigned* found,
                             signed char defaultValue, Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseUInt8(unsigned char* dest, char* src, unsigned* found, unsigned char defaultValue,
                         Callback callback, void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseUInt8Array(unsigned char* dest, unsigned count, char* src, unsigned* found,
                              unsigned char defaultValue, Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseUInt16(unsigned short* dest, char* src, unsigned* found, unsigned short defaultValue,
                          Callback callback, void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseUInt16Array(unsigned short* dest, unsigned count, char* src, unsigned* found,
                               unsigned short defaultValue, Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseInt16(short* dest, char* src, unsigned* found, short defaultValue, Callback callback,
                         void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseInt16Array(short* dest, unsigned count, char* src, unsigned* found, short defaultValue,
                              Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseUInt32(unsigned* dest, char* src, unsigned* found, unsigned defaultValue,
                          Callback callback, void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseUInt32Array(unsigned* dest, unsigned count, char* src, unsigned* found,
                               unsigned defaultValue, Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseInt32(int* dest, char* src, unsigned* found, int defaultValue, Callback callback,
                         void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseInt32Array(int* dest, unsigned count, char* src, unsigned* found, int defaultValue,
                              Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseUInt64(unsigned long long* dest, char* src, unsigned* found,
                          unsigned long long defaultValue, Callback callback, void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseUInt64Array(unsigned long long* dest, unsigned count, char* src, unsigned* found,
                               unsigned long long defaultValue, Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseInt64(long long* dest, char* src, unsigned* found, long long defaultValue,
                         Callback callback, void* context) {
    return ParseInteger(dest, src, found, defaultValue, callback, context);
}

int WyrParse::parseInt64Array(long long* dest, unsigned count, char* src, unsigned* found,
                              long long defaultValue, Callback callback, void* context) {
    return ParseIntegers(dest, count, src, found, defaultValue, callback, context);
}

int WyrParse::parseFloat(float* dest, char* src, unsigned* found, float defaultValue) {
    return ParseScalar(dest, src, found, ReadRealWord<float>, Constant(defaultValue));
}

int WyrParse::parseFloatArray(float* dest, unsigned count, char* src, unsigned* found, float defaultValue) {
    return ParseArray(dest, count, src, found, ReadRealWord<float>, Constant(defaultValue));
}

int WyrParse::parseDouble(double* dest, char* src, unsigned* found, double defaultValue) {
    return ParseScalar(dest, src, found, ReadRealWord<double>, Constant(defaultValue));
}

int WyrParse::parseDoubleArray(double* dest, unsigned count, char* src, unsigned* found,
                               double defaultValue) {
    return ParseArray(dest, count, src, found, ReadRealWord<double>, Constant(defaultValue));
}

int WyrParse::parseDate(wyr_date_t* dest, char* src, unsigned* found, char const* defaultValue) {
    return ParseScalar(dest, src, found, WyrTypeUtil::str2date, Text(defaultValue, WyrTypeUtil::str2date));
}

int WyrParse::parseDateArray(wyr_date_t* dest, unsigned count, char* src, unsigned* found,
                             char const* defaultValue) {
    return ParseArray(dest, count, src, found, WyrTypeUtil::str2date,
                      Text(defaultValue, WyrTypeUtil::str2date));
}

int WyrParse::parseTime(wyr_time_t* dest, char* src, unsigned* found, char const* defaultValue) {
    return ParseScalar(dest, src, found, WyrTypeUtil::str2time, Text(defaultValue, WyrTypeUtil::str2time));
}

int WyrParse::parseTimeArray(wyr_time_t* dest, unsigned count, char* src, unsigned* found,
                             char const* defaultValue) {
    return ParseArray(dest, count, src, found, WyrTypeUtil::str2time,
                      Text(defaultValue, WyrTypeUtil::str2time));
}

int WyrParse::parseIp(wyr_ip_t* dest, char* src, unsigned* found, char const* defaultValue) {
    return ParseScalar(dest, src, found, WyrTypeUtil::str2ip, Text(defaultValue, WyrTypeUtil::str2ip));
}

int WyrParse::parseIpArray(wyr_ip_t* dest, unsigned count, char* src, unsigned* found,
                           char const* defaultValue) {
    return ParseArray(dest, count, src, found, WyrTypeUtil::str2ip, Text(defaultValue, WyrTypeUtil::str2ip));
}

}  // namespace Ubrix
