#include "Base/Container/Number/IntegerText.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace Ubrix {

bool TextToInt32(char const* text, int base, int* out) {
    char* end = nullptr;
    long long const value = std::strtoll(text, &end, base);
    *out = static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
    return end != text;
}

}  // namespace Ubrix
