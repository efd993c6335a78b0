// The length of a text where lengths are `int`.
#pragma once

#include <climits>
#include <cstring>
#include <new>

namespace Ubrix {

// Bytes before the terminator of `text`, which must not be null. A length beyond the range is memory that
// can't be had: std::bad_alloc.
inline int TextLength(char const* text) {
    size_t const length = std::strlen(text);
    if (length > INT_MAX) {
        throw std::bad_alloc();
    }
    return static_cast<int>(length);
}

inline unsigned char const* AsBytes(char const* text) {
    return reinterpret_cast<unsigned char const*>(text);
}

}  // namespace Ubrix
