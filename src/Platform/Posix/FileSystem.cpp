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

bool IsNameTaken(char const* path) {
    struct stat status {};
    return lstat(path, &status) == 0;
}

bool IsDirectory(char const* path) {
    struct stat status {};
    return stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool IsSameDirectory(char const* left, char const* right) {
    struct stat one {};
    struct stat other {};
    return stat(left, &one) == 0 && stat(right, &other) == 0 && S_ISDIR(one.st_mode) &&
           one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool MakeDirectory(char const* path) {
    return mkdir(path, S_IRWXU) == 0;
}

DirectoryTrust TrustInDirectory(char const* path) {
    // With a separator at its end the path would mean what a link leads to.
    std::string link(path);
    while (link.size() > 1 && link.back() == kPathSeparator) {
        link.pop_back();
    }
    auto const isOurs = [](struct stat const& status) {
        return status.st_uid == geteuid() || status.st_uid == 0;
    };
    struct stat named {};
    struct stat status {};
    if (lstat(link.c_str(), &named) != 0 || stat(path, &status) != 0 || !S_ISDIR(status.st_mode)) {
        return DirectoryTrust::Absent;
    }
    bool const isOpenToAll = (status.st_mode & S_IWOTH) != 0;
    return isOurs(named) && isOurs(status) && !isOpenToAll ? DirectoryTrust::Own : DirectoryTrust::Foreign;
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

}  // namespace Ubrix::Platform
