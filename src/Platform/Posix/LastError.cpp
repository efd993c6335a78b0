#include "Platform/LastError.h"

#include <cerrno>

namespace Ubrix::Platform {

int LastError() {
    return errno;
}

void SetLastErrorNumber(int number) {
    errno = number;
}

}  // namespace Ubrix::Platform
