// What an INI file's lines can hold: which texts a section, a key and a value can be.
//
// Nothing in the file is escaped. A name that reads back as another one, or as another line, would change its
// neighbours; whoever writes asks here first. Pure, and safe on every thread.
#pragma once

#include <string_view>

namespace Ubrix::IniText {

// False for a line end (carriage return or line feed), a NUL, a "]", and for spaces at the ends. The empty
// text is a section's name.
bool CanBeSection(std::string_view name);

// False for a line end, a NUL, an "=", a "[" or a "#" in the first place, and for spaces at the ends. The
// empty text is a key.
bool CanBeKey(std::string_view name);

// False for a line end and a NUL.
bool CanBeValue(std::string_view text);

// Whether a value that can be one reads back as it was written: not so the empty text, which reads as absent,
// what follows from a "#" on, and spaces at the ends.
bool ComesBackWhole(std::string_view value);

// What is in front of the first line end or NUL: of any text, the part that can be a value.
std::string_view FirstLine(std::string_view text);

}  // namespace Ubrix::IniText
