// Conversions between byte encodings.
#pragma once

#include <string>

namespace Ubrix::Platform {

// Converts text of code page 936 to UTF-8. A byte sequence that the code page doesn't know becomes "?". The
// result of pure ASCII is the text itself. False if the system lacks the conversion; `utf8` is then
// unchanged. Thread-safe.
bool CodePage936ToUtf8(std::string const& text, std::string& utf8);

}  // namespace Ubrix::Platform
