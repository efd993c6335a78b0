#include "Platform/Console.h"

#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace Ubrix::Platform {

namespace {

// Takes `count` bytes off the front.
void Advance(iovec (&parts)[2], std::size_t count) {
    for (iovec& part : parts) {
        std::size_t const taken = std::min(count, part.iov_len);
        part.iov_base = static_cast<char*>(part.iov_base) + taken;
        part.iov_len -= taken;
        count -= taken;
    }
}

}  // namespace

void WriteConsoleLine(char const* text) {
    int const error = errno;
    char lineEnd = '\n';
    // One call for both, without a copy: it is only read from.
    iovec parts[2] = {{const_cast<char*>(text), std::strlen(text)}, {&lineEnd, 1}};
    while (parts[1].iov_len > 0) {
        ssize_t const count = writev(STDERR_FILENO, parts, 2);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        Advance(parts, static_cast<std::size_t>(count));
    }
    errno = error;
}

}  // namespace Ubrix::Platform
