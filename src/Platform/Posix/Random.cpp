#include "Platform/Random.h"

#include <sys/random.h>

#include <cerrno>

namespace Ubrix::Platform {

bool RandomBytes(void* bytes, std::size_t length) {
    auto* next = static_cast<unsigned char*>(bytes);
    while (length > 0) {
        ssize_t const count = getrandom(next, length, 0);
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        next += count;
        length -= static_cast<std::size_t>(count);
    }
    return true;
}

}  // namespace Ubrix::Platform
