#include "Platform/FileSystem.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace Ubrix::Platform {

char const kPathSeparator = '/';
char const* const kLineEnd = "\n";

bool PathExists(char const* path) {
    return access(path, F_OK) == 0;
}

bool IsDirectory(char const* path) {
    struct stat status {};
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool MakeDirectory(char const* path) {
    return mkdir(path, S_IRWXU) == 0;
}

bool DeleteFileAt(char const* path) {
    return unlink(path) == 0;
}

bool RenamePath(char const* from, char const* to) {
    return std::rename(from, to) == 0;
}

bool WorkingDirectory(std::string& path) {
    std::string buffer(256, '\0');
    while (getcwd(buffer.data(), buffer.size()) == nullptr) {
        if (errno != ERANGE) {
            return false;
        }
        buffer.resize(buffer.size() * 2);
    }
    buffer.resize(std::strlen(buffer.c_str()));
    path.swap(buffer);
    return true;
}

bool FlushToDisk(std::FILE* stream) {
    return std::fflush(stream) == 0 && fsync(fileno(stream)) == 0;
}

}  // namespace Ubrix::Platform
