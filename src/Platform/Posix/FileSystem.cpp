#include "Platform/FileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>

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

bool ListDirectory(char const* path, std::vector<std::string>& names) {
    std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(path), closedir);
    if (directory == nullptr) {
        return false;
    }
    std::vector<std::string> found;
    while (dirent const* entry = readdir(directory.get())) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            found.emplace_back(entry->d_name);
        }
    }
    names.swap(found);
    return true;
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

std::FILE* OpenPrivateForWriting(char const* path) {
    int const descriptor = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        return nullptr;
    }
    // A file that an earlier version made more widely readable is narrowed as well.
    fchmod(descriptor, S_IRUSR | S_IWUSR);
    std::FILE* stream = fdopen(descriptor, "wb");
    if (stream == nullptr) {
        close(descriptor);
    }
    return stream;
}

bool FlushToDisk(std::FILE* stream) {
    return std::fflush(stream) == 0 && fsync(fileno(stream)) == 0;
}

}  // namespace Ubrix::Platform
