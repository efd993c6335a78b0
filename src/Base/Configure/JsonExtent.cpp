#include "Base/Configure/JsonExtent.h"

#include <algorithm>

namespace Velmor {

namespace {

// The place behind the string whose content begins at `at`.
std::size_t BehindString(std::string_view text, std::size_t at) {
    for (;;) {
        at = text.find_first_of("\"\\", at);
        if (at == std::string_view::npos) {
            return text.size();
        }
        if (text[at] == '"') {
            return at + 1;
        }
        // Whatever follows a backslash is passed over, a second one too.
        at += 2;
    }
}

// The place behind the comment whose slash is just in front of `at`; `at` if it is none.
std::size_t BehindComment(std::string_view text, std::size_t at) {
    if (at == text.size() || (text[at] != '*' && text[at] != '/')) {
        return at;
    }
    bool const isBlock = text[at] == '*';
    std::size_t const end = isBlock ? text.find("*/", at + 1) : text.find_first_of("\r\n", at + 1);
    return end == std::string_view::npos ? text.size() : end + (isBlock ? 2 : 1);
}

}  // namespace

JsonExtent MeasureJson(std::string_view text) {
    JsonExtent extent;
    std::size_t open = 0;
    for (std::size_t at = 0; at < text.size();) {
        switch (text[at++]) {
            case '"':
                at = BehindString(text, at);
                break;
            case '/':
                at = BehindComment(text, at);
                break;
            case ',':
                ++extent.values;
                break;
            case '[':
            case '{':
                ++extent.values;
                extent.depth = std::max(extent.depth, ++open);
                break;
            case ']':
            case '}':
                if (open <= 1) {
                    return extent;
                }
                --open;
                break;
            default:
                break;
        }
    }
    return extent;
}

}  // namespace Velmor
