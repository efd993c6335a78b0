// Real to integer, defined for every real. No state: any thread.
//
// The fraction is cut off. What is out of range or not a number gives the lowest integer, as the processor's
// conversion instructions do; the language itself leaves it open.
#pragma once

#include <climits>

namespace Ubrix {

inline int RealToInt32(double value) {
    return value > INT_MIN - 1.0 && value < INT_MAX + 1.0 ? static_cast<int>(value) : INT_MIN;
}

inline long long RealToInt64(double value) {
    // 2^63: the bounds themselves, as they are exact in a double.
    constexpr double kBound = 9223372036854775808.0;
    return value >= -kBound && value < kBound ? static_cast<long long>(value) : LLONG_MIN;
}

// Up to 2^64; what is negative but a signed integer gives the same bits.
inline unsigned long long RealToUInt64(double value) {
    constexpr double kHalf = 9223372036854775808.0;
    if (value >= kHalf && value < 2.0 * kHalf) {
        return static_cast<unsigned long long>(value);
    }
    return static_cast<unsigned long long>(RealToInt64(value));
}

}  // namespace Ubrix
