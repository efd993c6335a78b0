// The smallest pieces of a file pattern: what matches one byte of a name. No state: any thread.
#pragma once

#include <string_view>

namespace Velmor {

// ASCII letters in lower case, anything else as it is, whatever the locale.
unsigned char FoldCase(unsigned char byte);

// The length of the escape at the front of `text`, which begins with a backslash; 0 if it is none.
int EscapeLength(std::string_view text);

// The length of the set at the front of `text`, which begins with an opening bracket, with both its brackets;
// or a PatternResult.
int SetLength(std::string_view text);

// Whether `byte` is meant by the one element that `element` holds from end to end: a character, a dot, an
// escape or a set, found well-formed before.
bool ElementMatches(std::string_view element, unsigned char byte);

}  // namespace Velmor
