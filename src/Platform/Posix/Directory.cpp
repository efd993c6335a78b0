#include "Platform/Directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "Platform/FileSystem.h"
#include "Platform/Posix/Descriptor.h"

namespace Ubrix::Platform {

namespace {

using Stream = std::unique_ptr<DIR, int (*)(DIR*)>;

bool ListStream(DIR* directory, std::vector<std::string>& names, std::size_t most = SIZE_MAX) {
    std::vector<std::string> found;
    errno = 0;
    while (dirent const* entry = found.size() < most ? readdir(directory) : nullptr) {
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
            found.emplace_back(entry->d_name);
        }
        errno = 0;
    }
    if (errno != 0) {
        return false;
    }
    names.swap(found);
    return true;
}

bool IsBareName(char const* name) {
    return std::strchr(name, '/') == nullptr;
}

}  // namespace

bool ListDirectory(char const* path, std::vector<std::string>& names, std::size_t most) {
    Stream const directory(opendir(path), closedir);
    return directory != nullptr && ListStream(directory.get(), names, most);
}

Directory::Directory(char const* path)
    : _handle(open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)) {}

Directory::~Directory() {
    if (IsOpen()) {
        close(static_cast<int>(_handle));
    }
}

// Through a descriptor of its own, since a stream keeps the one it reads from.
bool Directory::List(std::vector<std::string>& names) const {
    Descriptor copy(openat(static_cast<int>(_handle), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    Stream const directory(fdopendir(copy.Get()), closedir);
    if (directory == nullptr) {
        return false;
    }
    copy.Release();
    return ListStream(directory.get(), names);
}

bool Directory::HasRegularFile(char const* name) const {
    struct stat status {};
    return IsBareName(name) && fstatat(static_cast<int>(_handle), name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISREG(status.st_mode);
}

bool Directory::Remove(char const* name) const {
    return IsBareName(name) && unlinkat(static_cast<int>(_handle), name, 0) == 0;
}

}  // namespace Ubrix::Platform
