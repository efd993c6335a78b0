// Base64 with the standard alphabet of RFC 4648, section 4. Thread-safe.
#pragma once

#include <string>

namespace Ubrix::Crypto {

// Returns: the text, padded with "=" to a multiple of 4, without line breaks
// In:      data: length bytes; may be null if length is 0
std::string Base64Encode(void const* data, unsigned int length);

// Returns: the bytes of the leading characters of the alphabet. The first "=" or foreign character ends the
//          work silently. A last group of two or three characters gives one or two bytes, a single one none.
std::string Base64Decode(std::string const& text);

}  // namespace Ubrix::Crypto
