// Real numbers as text, the same whatever locale the game has set. No state: any thread.
#pragma once

#include <VelmorCore/Object.h>

namespace Ubrix {

// `value` with six decimals and a '.', whole however large it is.
AString RealToText(double value);

// Reads a number as the standard's strtod does in the "C" locale: after any white space, a sign, decimal or
// "0x" hexadecimal digits with an exponent, "inf" or "nan". What follows is ignored, a number beyond the
// range is infinite, one too near 0 is 0. False for text that is no number, which leaves `value` unchanged.
// `text` must not be null.
bool ReadReal(char const* text, double& value);

// The same; text that is no number gives 0.
double TextToReal(char const* text);

}  // namespace Ubrix
