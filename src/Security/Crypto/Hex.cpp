#include "Security/Crypto/Hex.h"

namespace Ubrix::Crypto {
namespace {

// The value of a digit, or -1.
int DigitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    return -1;
}

}  // namespace

bool HexToBytes(char const* text, unsigned int length, void* bytes) {
    if (text == nullptr || bytes == nullptr || length % 2 != 0) {
        return true;
    }
    auto* next = static_cast<unsigned char*>(bytes);
    for (unsigned int i = 0; i < length; i += 2) {
        int const high = DigitValue(text[i]);
        int const low = DigitValue(text[i + 1]);
        if (high < 0 || low < 0) {
            return false;
        }
        *next++ = static_cast<unsigned char>(high << 4 | low);
    }
    return true;
}

}  // namespace Ubrix::Crypto
