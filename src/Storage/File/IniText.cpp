#include "Storage/File/IniText.h"

namespace Ubrix::IniText {

namespace {

bool HasSpaceAtEnd(std::string_view text) {
    return !text.empty() && (text.front() == ' ' || text.back() == ' ');
}

bool Holds(std::string_view text, char character) {
    return text.find(character) != std::string_view::npos;
}

}  // namespace

bool CanBeSection(std::string_view name) {
    return CanBeValue(name) && !Holds(name, ']') && !HasSpaceAtEnd(name);
}

bool CanBeKey(std::string_view name) {
    bool const beginsLikeAnother = !name.empty() && (name.front() == '[' || name.front() == '#');
    return CanBeValue(name) && !Holds(name, '=') && !beginsLikeAnother && !HasSpaceAtEnd(name);
}

bool CanBeValue(std::string_view text) {
    return FirstLine(text).size() == text.size();
}

bool ComesBackWhole(std::string_view value) {
    return !value.empty() && !Holds(value, '#') && !HasSpaceAtEnd(value);
}

std::string_view FirstLine(std::string_view text) {
    constexpr std::string_view kEnds("\r\n\0", 3);
    return text.substr(0, text.find_first_of(kEnds));
}

}  // namespace Ubrix::IniText
