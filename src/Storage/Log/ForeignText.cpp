#include "Storage/Log/ForeignText.h"

#include <cstring>

namespace Ubrix {

namespace {

unsigned char ByteAt(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]);
}

// The bytes of the character that `lead` begins in UTF-8; 0 if it begins none.
std::size_t SequenceLength(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// The character at the front of `text` and its length; a length of 0 for bytes that are no UTF-8.
struct Character {
    char32_t code;
    std::size_t length;
};

Character FrontOf(std::string_view text) {
    constexpr char32_t kLeadBits[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    std::size_t const length = SequenceLength(ByteAt(text, 0));
    if (length == 0 || length > text.size()) {
        return {0, 0};
    }
    char32_t code = ByteAt(text, 0) & kLeadBits[length];
    for (std::size_t i = 1; i < length; ++i) {
        if ((ByteAt(text, i) & 0xC0) != 0x80) {
            return {0, 0};
        }
        code = code << 6 | (ByteAt(text, i) & 0x3F);
    }
    bool const isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < kSmallest[length] || code > 0x10FFFF || isSurrogate ? Character{0, 0}
                                                                      : Character{code, length};
}

bool IsControl(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

ForeignText::ForeignText(char const* text)
    // No more than could be shown, and the rest of a last character.
    : ForeignText(text != nullptr ? std::string_view(text, strnlen(text, kLogTextSize + 3)) : "") {}

ForeignText::ForeignText(std::string_view text) {
    _shown[0] = '\0';
    while (!text.empty() && Take(text)) {
    }
}

bool ForeignText::Take(std::string_view& text) {
    Character const front = FrontOf(text);
    std::size_t const length = front.length != 0 ? front.length : 1;
    std::string_view const bytes = text.substr(0, length);
    text.remove_prefix(length);
    if (front.length != 0 && !IsControl(front.code)) {
        return Copy(bytes);
    }
    for (char const byte : bytes) {
        if (!Escape(static_cast<unsigned char>(byte))) {
            return false;
        }
    }
    return true;
}

bool ForeignText::Copy(std::string_view bytes) {
    if (_length + bytes.size() >= sizeof _shown) {
        return false;
    }
    std::memcpy(_shown + _length, bytes.data(), bytes.size());
    _length += bytes.size();
    _shown[_length] = '\0';
    return true;
}

bool ForeignText::Escape(unsigned char byte) {
    constexpr char kDigits[] = "0123456789abcdef";
    switch (byte) {
        case '\n':
            return Copy("\\n");
        case '\r':
            return Copy("\\r");
        case '\t':
            return Copy("\\t");
        default:
            char const escape[] = {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0xF]};
            return Copy({escape, sizeof escape});
    }
}

}  // namespace Ubrix
