// 32-bit integers from text, the same on every system. No state: any thread.
#pragma once

namespace Ubrix {

// Reads a number in `base` (0: "0x" leads hexadecimal digits, 0 octal ones) after any white space, a sign
// allowed. What follows it is ignored, and a number out of range takes the bound. Without a number `*out` is
// 0 and the result false. `text` must not be null.
bool TextToInt32(char const* text, int base, int* out);

}  // namespace Ubrix
