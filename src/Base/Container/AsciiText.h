// ASCII letters and digits, whatever the game's locale says of them.
#pragma once

#include <string>

namespace Ubrix {

// No state: any thread may call. What is no letter, or lies outside of ASCII, stays as it is.
constexpr char LowerAscii(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}
constexpr char UpperAscii(char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}
inline std::string UpperAscii(std::string text) {
    for (char& character : text) {
        character = UpperAscii(character);
    }
    return text;
}

// The value of a hexadecimal digit of either case, or -1.
constexpr int HexDigitValue(char character) {
    char const lower = LowerAscii(character);
    if (lower >= 'a' && lower <= 'f') {
        return lower - 'a' + 10;
    }
    return lower >= '0' && lower <= '9' ? lower - '0' : -1;
}

}  // namespace Ubrix
