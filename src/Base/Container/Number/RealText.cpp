#include "Base/Container/Number/RealText.h"

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace Ubrix {

namespace {

// Whether a positive number in text, which is beyond the range of a double, is too large and not too near 0.
bool IsTooLarge(char const* text, bool hexadecimal) {
    char const exponentMark = hexadecimal ? 'p' : 'e';
    long long place = 0;
    bool seenPoint = false;
    bool seenDigit = false;
    for (; *text == '.' || std::isxdigit(static_cast<unsigned char>(*text)) != 0; ++text) {
        if ((*text | 0x20) == exponentMark) {
            break;
        }
        seenPoint = seenPoint || *text == '.';
        seenDigit = seenDigit || (*text != '.' && *text != '0');
        // The place of the first digit that isn't 0: digits before the point, or less the zeros behind it.
        if (*text != '.' && seenDigit != seenPoint) {
            place += seenDigit ? 1 : -1;
        }
    }
    long long const exponent = (*text | 0x20) == exponentMark ? std::strtoll(text + 1, nullptr, 10) : 0;
    return exponent > -place * (hexadecimal ? 4 : 1);
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
    bool const hexadecimal = text[0] == '0' && (text[1] | 0x20) == 'x';
    if (hexadecimal) {
        text += 2;
    }
    if (*text == '-') {
        return false;
    }
    auto const format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
    double read = 0.0;
    auto const result = std::from_chars(text, text + std::strlen(text), read, format);
    if (result.ec == std::errc::invalid_argument) {
        return false;
    }
    if (result.ec == std::errc::result_out_of_range) {
        read = IsTooLarge(text, hexadecimal) ? HUGE_VAL : 0.0;
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
