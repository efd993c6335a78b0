#include "Base/Configure/Pattern/PatternElement.h"

#include "Base/Configure/Pattern/PatternResult.h"
#include "Base/Container/AsciiText.h"

namespace Velmor {

namespace {

constexpr std::string_view kMetacharacters = "^$().[]*+?|\\";
constexpr std::string_view kClasses = "Ssd";
// Letters of escapes, and the bytes they mean in the same order.
constexpr std::string_view kControlLetters = "bfnrtv";
constexpr std::string_view kControlBytes = "\b\f\n\r\t\v";
constexpr int kHexEscapeLength = 4;

bool Contains(std::string_view text, char character) {
    return text.find(character) != std::string_view::npos;
}

bool IsBlank(unsigned char byte) {
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

// One member of a set, or one end of a range: its length, and the folded byte it means, or -1 for a
// class.
struct Member {
    int length;
    int byte;
};

// The byte that a well-formed escape means, as it is; -1 for a class.
int EscapedByte(std::string_view escape) {
    char const kind = escape[1];
    if (Contains(kClasses, kind)) {
        return -1;
    }
    if (kind == 'x') {
        return Ubrix::HexDigitValue(escape[2]) * 16 + Ubrix::HexDigitValue(escape[3]);
    }
    auto const control = kControlLetters.find(kind);
    return static_cast<unsigned char>(control != std::string_view::npos ? kControlBytes[control] : kind);
}

// Length 0 for a bad escape.
Member ReadMember(std::string_view text) {
    bool const isEscape = text.front() == '\\';
    int const length = isEscape ? EscapeLength(text) : 1;
    if (length == 0) {
        return {0, -1};
    }
    int const byte = isEscape ? EscapedByte(text) : static_cast<unsigned char>(text.front());
    return {length, byte < 0 ? byte : FoldCase(static_cast<unsigned char>(byte))};
}

bool ClassMatches(char kind, unsigned char byte) {
    switch (kind) {
        case 'S':
            return !IsBlank(byte);
        case 's':
            return IsBlank(byte);
        default:
            return byte >= '0' && byte <= '9';
    }
}

// A hyphen makes a range unless it ends the set.
bool IsRange(std::string_view behindMember) {
    return behindMember.size() > 1 && behindMember[0] == '-' && behindMember[1] != ']';
}

// Takes the front item, one member or a range, off the front of `items`, which holds a set's content and the
// closing bracket; whether `byte`, folded, is in it. `problem` becomes a PatternResult for an item that is
// none.
bool TakeItem(std::string_view& items, unsigned char byte, int& problem) {
    Member const low = ReadMember(items);
    if (low.length == 0) {
        problem = kPatternBadEscape;
        return false;
    }
    std::string_view const text = items;
    items.remove_prefix(static_cast<std::size_t>(low.length));
    if (!IsRange(items)) {
        return low.byte < 0 ? ClassMatches(text[1], byte) : low.byte == byte;
    }
    items.remove_prefix(1);
    Member const high = ReadMember(items);
    if (high.length == 0) {
        problem = kPatternBadEscape;
        return false;
    }
    if (low.byte < 0 || high.byte < low.byte) {
        problem = kPatternBadSet;
        return false;
    }
    items.remove_prefix(static_cast<std::size_t>(high.length));
    return low.byte <= byte && byte <= high.byte;
}

bool IsNegated(std::string_view set) {
    return set.size() > 1 && set[1] == '^';
}

bool SetMatches(std::string_view set, unsigned char byte) {
    bool const negated = IsNegated(set);
    std::string_view items = set.substr(negated ? 2 : 1);
    int problem = 0;
    while (items.size() > 1) {
        if (TakeItem(items, byte, problem)) {
            return !negated;
        }
    }
    return negated;
}

}  // namespace

unsigned char FoldCase(unsigned char byte) {
    return static_cast<unsigned char>(Ubrix::LowerAscii(static_cast<char>(byte)));
}

int EscapeLength(std::string_view text) {
    if (text.size() < 2) {
        return 0;
    }
    if (text[1] == 'x') {
        return text.size() >= kHexEscapeLength && Ubrix::HexDigitValue(text[2]) >= 0 &&
                       Ubrix::HexDigitValue(text[3]) >= 0
                   ? kHexEscapeLength
                   : 0;
    }
    return Contains(kMetacharacters, text[1]) || Contains(kClasses, text[1]) ||
                   Contains(kControlLetters, text[1])
               ? 2
               : 0;
}

int SetLength(std::string_view text) {
    std::string_view items = text.substr(IsNegated(text) ? 2 : 1);
    bool isEmpty = true;
    int problem = 0;
    while (!items.empty() && items.front() != ']') {
        TakeItem(items, 0, problem);
        if (problem != 0) {
            return problem;
        }
        isEmpty = false;
    }
    return items.empty() || isEmpty ? kPatternBadSet : static_cast<int>(text.size() - items.size()) + 1;
}

bool ElementMatches(std::string_view element, unsigned char byte) {
    unsigned char const folded = FoldCase(byte);
    switch (element.front()) {
        case '.':
            return true;
        case '[':
            return SetMatches(element, folded);
        case '\\': {
            Member const member = ReadMember(element);
            return member.byte < 0 ? ClassMatches(element[1], folded) : member.byte == folded;
        }
        default:
            return FoldCase(static_cast<unsigned char>(element.front())) == folded;
    }
}

}  // namespace Velmor
