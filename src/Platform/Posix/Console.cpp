#include "Platform/Console.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace Ubrix::Platform {

void WriteConsoleLine(char const* text) {
    int const error = errno;
    std::string line(text);
    line += '\n';
    char const* next = line.data();
    std::size_t left = line.size();
    while (left > 0) {
        ssize_t const count = write(STDERR_FILENO, next, left);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        next += count;
        left -= static_cast<std::size_t>(count);
    }
    errno = error;
}

}  // namespace Ubrix::Platform
