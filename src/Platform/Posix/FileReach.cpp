// Files below a directory, opened so that no link leads out of it.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "Platform/FileSystem.h"
#include "Platform/Posix/Descriptor.h"

namespace Ubrix::Platform {

namespace {

// The path without links and dots; empty if there is nothing to be seen.
std::string ResolvedPath(char const* path) {
    std::unique_ptr<char, void (*)(void*)> const resolved(realpath(path, nullptr), std::free);
    return resolved != nullptr ? resolved.get() : "";
}

Descriptor OpenDirectoryIn(int directory, char const* name) {
    return Descriptor(openat(directory, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

// Looks before it opens: opening a device may do something.
Descriptor OpenRegularFileIn(int directory, char const* name) {
    struct stat status {};
    if (fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(status.st_mode)) {
        return Descriptor(-1);
    }
    Descriptor file(openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    bool const isRegular = fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode);
    return isRegular ? std::move(file) : Descriptor(-1);
}

// Walks down `path`, which is relative and free of links and dots, as it was found; a link that stands there
// by now ends the walk.
Descriptor WalkTo(std::string const& root, std::string_view path) {
    Descriptor directory = OpenDirectoryIn(AT_FDCWD, root.c_str());
    for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        directory = OpenDirectoryIn(directory.Get(), std::string(path.substr(0, slash)).c_str());
        path.remove_prefix(slash + 1);
    }
    return OpenRegularFileIn(directory.Get(), std::string(path).c_str());
}

}  // namespace

ReachedFile OpenWithin(char const* directory, char const* name) {
    std::string const root = ResolvedPath(directory);
    std::string const path = ResolvedPath((std::string(directory) + "/" + name).c_str());
    if (root.empty() || path.empty()) {
        return {FileReach::Unreadable, nullptr, ""};
    }
    std::string const prefix = root.back() == '/' ? root : root + '/';
    if (path.compare(0, prefix.size(), prefix) != 0) {
        return {FileReach::LeadsOut, nullptr, ""};
    }
    std::string bareName = path.substr(path.rfind('/') + 1);
    std::FILE* const stream = WalkTo(root, std::string_view(path).substr(prefix.size())).MoveToStream("rb");
    if (stream == nullptr) {
        return {FileReach::Unreadable, nullptr, ""};
    }
    return {FileReach::Readable, stream, std::move(bareName)};
}

bool IsOpenOn(std::FILE* stream, char const* path) {
    struct stat one {};
    struct stat other {};
    return fstat(fileno(stream), &one) == 0 && stat(path, &other) == 0 && one.st_dev == other.st_dev &&
           one.st_ino == other.st_ino;
}

}  // namespace Ubrix::Platform
