// Whether this program was built with a sanitizer, which costs memory and time of its own.
#pragma once

namespace Stress {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

}  // namespace Stress
