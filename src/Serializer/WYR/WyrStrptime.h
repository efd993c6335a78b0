// Text to date and time. No state: any thread.
#pragma once

#include <ctime>

namespace Ubrix {

// Reads `input` by `format`, after POSIX's strptime with the names of the "C" locale. Numbers may have a
// sign, white space before them and any count of digits; they aren't checked against a calendar, and one
// beyond 32 bits stops at their end. Only adds to `out`: zero it first. "%U", "%V" and "%W" set `tm_yday`
// from the year and weekday that were read before them. The first byte of `input` that wasn't needed, or null
// if it doesn't match.
char const* wyrStrptime(char const* input, char const* format, std::tm* out);

}  // namespace Ubrix
