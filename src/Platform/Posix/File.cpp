// What the C library's streams offer by no standard name, or with a narrow position only.
#include "Platform/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Ubrix::Platform {

bool File::Finish() {
    if (!Flush()) {
        return false;
    }
    // A network's file system tells at a close, of any of a file's descriptors, what it couldn't store.
    int const copy = fcntl(fileno(Stream()), F_DUPFD_CLOEXEC, 0);
    return copy >= 0 && close(copy) == 0;
}

bool File::Seek(long long offset, From from) {
    static constexpr int kOrigins[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    return IsOpen() && fseeko64(Stream(), offset, kOrigins[static_cast<int>(from)]) == 0;
}

long long File::Position() const {
    return IsOpen() ? ftello64(Stream()) : -1;
}

bool File::IsOn(char const* path) const {
    struct stat one {};
    struct stat other {};
    return IsOpen() && fstat(fileno(Stream()), &one) == 0 && stat(path, &other) == 0 &&
           one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

}  // namespace Ubrix::Platform
