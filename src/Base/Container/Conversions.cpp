// The free helpers between texts and plain values.
#include <VelmorCore/Object.h>

#include <charconv>
#include <cstring>

#include "Base/Container/Number/IntegerText.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

namespace {

template <class Integer>
AString Digits(Integer value) {
    // A sign and the 20 digits of the largest 64-bit number.
    char text[21];
    auto const result = std::to_chars(text, text + sizeof text, value);
    return AString(text, static_cast<int>(result.ptr - text));
}

}  // namespace

AString const operator+(AString const& left, AString const& right) {
    return Platform::WithoutThrow([&] {
        AString joined(left);
        joined += right;
        return joined;
    });
}

AString int2str(int value) {
    return Digits(value);
}

AString ll2str(long long value) {
    return Digits(value);
}

AString ull2str(unsigned long long value) {
    return Digits(value);
}

AString bool2str(bool value) {
    // By its byte: a bool that foreign code made may hold more than the two values.
    unsigned char byte = 0;
    std::memcpy(&byte, &value, 1);
    return byte == 1 ? "true" : "false";
}

void str2int(char const* text, int* out) {
    int value = 0;
    if (TextToInt32(text, 10, &value)) {
        *out = value;
    }
}

int str2int(char const* text) {
    int value = 0;
    str2int(text, &value);
    return value;
}

}  // namespace Ubrix
