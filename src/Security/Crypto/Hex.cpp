#include "Security/Crypto/Hex.h"

#include "Base/Container/AsciiText.h"

namespace Ubrix::Crypto {

bool HexToBytes(char const* text, unsigned int length, void* bytes) {
    if (text == nullptr || bytes == nullptr || length % 2 != 0) {
        return true;
    }
    auto* next = static_cast<unsigned char*>(bytes);
    for (unsigned int i = 0; i < length; i += 2) {
        int const high = HexDigitValue(text[i]);
        int const low = HexDigitValue(text[i + 1]);
        if (high < 0 || low < 0) {
            return false;
        }
        *next++ = static_cast<unsigned char>(high << 4 | low);
    }
    return true;
}

}  // namespace Ubrix::Crypto
