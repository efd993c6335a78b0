#include "Serializer/URLEncoder.h"

namespace Ubrix {

namespace {

bool IsPlain(char character) {
    // By ASCII range: what counts as a letter must not depend on the game's locale.
    bool const isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    bool const isDigit = character >= '0' && character <= '9';
    return isLetter || isDigit || character == '-' || character == '_' || character == '.' ||
           character == '~';
}

// As of a hexadecimal digit, with letters past 'F' counting on from it; -1 for any other byte.
int LetterOrDigitValue(char character) {
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    if (character >= 'A' && character <= 'Z') {
        return character - 'A' + 10;
    }
    return character >= 'a' && character <= 'z' ? character - 'a' + 10 : -1;
}

}  // namespace

std::string URLEncoder::Encode(std::string const& text) {
    static char const kDigits[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (char const character : text) {
        if (IsPlain(character)) {
            encoded += character;
        } else if (character == ' ') {
            encoded += '+';
        } else {
            auto const byte = static_cast<unsigned char>(character);
            encoded += '%';
            encoded += kDigits[byte >> 4];
            encoded += kDigits[byte & 15];
        }
    }
    return encoded;
}

std::string URLEncoder::Decode(std::string const& text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        bool const isEscape = text[i] == '%' && text.size() - i > 2;
        int const high = isEscape ? LetterOrDigitValue(text[i + 1]) : -1;
        int const low = isEscape ? LetterOrDigitValue(text[i + 2]) : -1;
        if (high >= 0 && low >= 0) {
            decoded += static_cast<char>(static_cast<unsigned char>(high * 16 + low));
            i += 2;
        } else {
            decoded += text[i] == '+' ? ' ' : text[i];
        }
    }
    return decoded;
}

}  // namespace Ubrix
