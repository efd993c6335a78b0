// The length of a text where lengths are `int`. No state: any thread.
#pragma once

#include <climits>
#include <cstring>

#include "Platform/MemoryWant.h"

namespace Ubrix {

// Bytes before the terminator of `text`, which must not be null. A length beyond the range is memory that
// can't be had: -1.
inline int TextLength(char const* text) {
    size_t const length = std::strlen(text);
    if (length > INT_MAX) {
        Platform::PassOnWant();
        return -1;
    }
    return static_cast<int>(length);
}

inline unsigned char const* AsBytes(char const* text) {
    return reinterpret_cast<unsigned char const*>(text);
}

}  // namespace Ubrix
