#include "Base/Container/Number/RealText.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace Ubrix {

namespace {

bool IsExponentMark(char character, bool hexadecimal) {
    return (character | 0x20) == (hexadecimal ? 'p' : 'e');
}

// The end of the longest number at `text`, which has no sign; `text` itself if there is none. Looked for
// here, since the conversion below reads "0xinf" and an exponent of "+-5", too.
char const* NumberEnd(char const* text, bool hexadecimal) {
    char const* const digits = hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    text += std::strspn(text, digits);
    if (*text == '.') {
        ++text;
        text += std::strspn(text, digits);
    }
    if (!IsExponentMark(*text, hexadecimal)) {
        return text;
    }
    char const* const exponent = text + (text[1] == '+' || text[1] == '-' ? 2 : 1);
    size_t const length = std::strspn(exponent, "0123456789");
    return length > 0 ? exponent + length : text;
}

// Whether the positive number up to `end`, which is beyond the range of a double, is too large and not too
// near 0.
bool IsTooLarge(char const* text, char const* end, bool hexadecimal) {
    long long place = 0;
    bool seenPoint = false;
    bool seenDigit = false;
    for (; text != end && !IsExponentMark(*text, hexadecimal); ++text) {
        seenPoint = seenPoint || *text == '.';
        seenDigit = seenDigit || (*text != '.' && *text != '0');
        // The place of the first digit that isn't 0: digits before the point, or less the zeros behind it.
        if (*text != '.' && seenDigit != seenPoint) {
            place += seenDigit ? 1 : -1;
        }
    }
    long long const exponent = text != end ? std::strtoll(text + 1, nullptr, 10) : 0;
    return exponent > -place * (hexadecimal ? 4 : 1);
}

// Without a digit behind it, "0x" is a 0 and something else.
bool BeginsHexadecimal(char const* text) {
    char const first = text[0] == '0' && (text[1] | 0x20) == 'x' ? text[2] : '\0';
    return std::isxdigit(static_cast<unsigned char>(first == '.' ? text[3] : first)) != 0;
}

}  // namespace

AString RealToText(double value) {
    // The largest double has 309 digits before the point.
    char text[309 + 1 + 1 + 6];
    auto const result = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 6);
    return AString(text, static_cast<int>(result.ptr - text));
}

bool ReadReal(char const* text, double& value) {
    text += std::strspn(text, " \t\n\v\f\r");
    bool const negative = *text == '-';
    if (negative || *text == '+') {
        ++text;
    }
    bool const hexadecimal = BeginsHexadecimal(text);
    if (hexadecimal) {
        text += 2;
    }
    bool const isWord = !hexadecimal && std::isalpha(static_cast<unsigned char>(*text)) != 0;
    char const* const end = isWord ? text + std::strlen(text) : NumberEnd(text, hexadecimal);
    auto const format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
    double read = 0.0;
    auto const result = std::from_chars(text, end, read, format);
    if (result.ec == std::errc::invalid_argument) {
        return false;
    }
    if (result.ec == std::errc::result_out_of_range) {
        read = IsTooLarge(text, end, hexadecimal) ? HUGE_VAL : 0.0;
    }
    value = negative ? -read : read;
    return true;
}

double TextToReal(char const* text) {
    double value = 0.0;
    ReadReal(text, value);
    return value;
}

}  // namespace Ubrix
