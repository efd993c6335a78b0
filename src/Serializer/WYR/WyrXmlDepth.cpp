#include "Serializer/WYR/WyrXmlDepth.h"

#include <cstring>

namespace Ubrix {

namespace {

bool IsSpace(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

bool Begins(char const* text, char const* with) {
    return std::strncmp(text, with, std::strlen(with)) == 0;
}

// Behind the next `mark`; null when there is none.
char const* Behind(char const* text, char const* mark) {
    char const* const found = std::strstr(text, mark);
    return found == nullptr ? nullptr : found + std::strlen(mark);
}

// Behind a document type, whose brackets may hold '>'.
char const* BehindDocumentType(char const* text) {
    int brackets = 0;
    for (; *text != '\0'; ++text) {
        if (*text == '>' && brackets == 0) {
            return text + 1;
        }
        if (*text == '[') {
            ++brackets;
        } else if (*text == ']' && brackets > 0) {
            --brackets;
        }
    }
    return nullptr;
}

// `text` is behind "<!".
char const* BehindDeclaration(char const* text) {
    if (Begins(text, "--")) {
        return Behind(text + 2, "-->");
    }
    if (Begins(text, "[CDATA[")) {
        return Behind(text + 7, "]]>");
    }
    if (Begins(text, "DOCTYPE") && IsSpace(text[7])) {
        return BehindDocumentType(text + 8);
    }
    return Behind(text, ">");
}

char const* BehindSpace(char const* text) {
    while (IsSpace(*text)) {
        ++text;
    }
    return text;
}

// Quotes and '<' may be parts of a name.
bool EndsName(char c) {
    return c == '\0' || c == '>' || c == '/' || c == '?' || IsSpace(c);
}

bool EndsAttributeName(char c) {
    return EndsName(c) || c == '<' || c == '=' || c == '!';
}

char const* BehindName(char const* text) {
    while (!EndsName(*text)) {
        ++text;
    }
    return BehindSpace(text);
}

char const* BehindAttribute(char const* text) {
    while (!EndsAttributeName(*text)) {
        ++text;
    }
    text = BehindSpace(text);
    if (*text != '=') {
        return nullptr;
    }
    text = BehindSpace(text + 1);
    if (*text != '"' && *text != '\'') {
        return nullptr;
    }
    text = std::strchr(text + 1, *text);
    return text == nullptr ? nullptr : BehindSpace(text + 1);
}

// `text` is at the name of a start tag. `change` becomes 1 for an element that stays open.
char const* BehindStartTag(char const* text, int* change) {
    text = BehindName(text);
    while (text != nullptr && !EndsAttributeName(*text)) {
        text = BehindAttribute(text);
    }
    if (text != nullptr && *text == '>') {
        *change = 1;
        return text + 1;
    }
    return text != nullptr && Begins(text, "/>") ? text + 2 : nullptr;
}

// `text` is behind "</".
char const* BehindEndTag(char const* text) {
    text = BehindName(text);
    return *text == '>' ? text + 1 : nullptr;
}

}  // namespace

bool IsWithinXmlDepth(char const* text) {
    int depth = 0;
    while (text != nullptr) {
        text = std::strchr(text, '<');
        if (text == nullptr) {
            return true;
        }
        ++text;
        int change = 0;
        if (*text == '/') {
            text = BehindEndTag(text + 1);
            change = -1;
        } else if (*text == '?') {
            text = Behind(text + 1, "?>");
        } else if (*text == '!') {
            text = BehindDeclaration(text + 1);
        } else if (depth == kMaxXmlDepth) {
            // One that closes itself is a level too.
            return false;
        } else {
            text = BehindStartTag(text, &change);
        }
        depth += change;
    }
    return true;
}

}  // namespace Ubrix
