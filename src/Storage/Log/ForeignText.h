// A text that somebody else wrote, made fit for a log line.
#pragma once

#include <cstddef>
#include <string_view>

#include "Storage/Log/LogLine.h"

namespace Ubrix {

// What a server, a file, a path or a caller's text holds must neither end a line nor steer a terminal. Shown
// as escapes (\n, \r, \t, else \x and two digits a byte): control characters, those of Unicode among them;
// separators of lines and paragraphs; marks that turn the direction of reading; bytes that aren't UTF-8.
// Everything else, a backslash too, stays as it is.
//
// Copies no more than a log line holds, and reads little more. Allocates and throws nothing.
class ForeignText {
public:
    // Up to the terminator. Null is empty.
    explicit ForeignText(char const* text);
    // All of it; a NUL is shown.
    explicit ForeignText(std::string_view text);

    char const* c_str() const { return _shown; }

private:
    // Takes one character off the front of `text`. False if the room is used up.
    bool Take(std::string_view& text);
    bool Copy(std::string_view bytes);
    bool Escape(unsigned char byte);

    LogText _shown;
    std::size_t _length = 0;
};

}  // namespace Ubrix
