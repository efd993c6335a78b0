// Files below a directory, opened so that no link leads out of it.
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
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

// Walks down `path`, which is relative and free of links and dots, as it was found; a link there
// by now ends the walk.
Descriptor WalkTo(std::string const& root, std::string_view path) {
    Descriptor directory = OpenDirectoryIn(AT_FDCWD, root.c_str());
    for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        directory = OpenDirectoryIn(directory.Get(), std::string(path.substr(0, slash)).c_str());
        path.remove_prefix(slash + 1);
    }
    return OpenRegularFileIn(directory.Get(), std::string(path).c_str());
}

// A file system without blocks has no place for files: what it shows is made up when it is read.
bool IsStored(int file) {
    struct statvfs room {};
    return fstatvfs(file, &room) == 0 && room.f_blocks != 0;
}

void OpenInto(Descriptor descriptor, ReachedFile& reached) {
    struct stat status {};
    if (fstat(descriptor.Get(), &status) != 0) {
        return;
    }
    if (!IsStored(descriptor.Get())) {
        reached.reach = FileReach::NotStored;
        return;
    }
    reached.file = descriptor.MoveToFile("rb");
    if (reached.file.IsOpen()) {
        // Exit takes every stream's lock, and a read may hang in the kernel.
        __fsetlocking(reached.file.Stream(), FSETLOCKING_BYCALLER);
        reached.size = status.st_size;
        reached.reach = FileReach::Readable;
    }
}

}  // namespace

ReachedFile OpenWithin(char const* directory, char const* name) {
    ReachedFile file;
    std::string const root = ResolvedPath(directory);
    file.path = ResolvedPath((std::string(directory) + "/" + name).c_str());
    if (root.empty() || file.path.empty()) {
        return file;
    }
    std::string const prefix = root.back() == '/' ? root : root + '/';
    if (file.path.compare(0, prefix.size(), prefix) != 0) {
        file.reach = FileReach::LeadsOut;
        return file;
    }
    file.name = file.path.substr(file.path.rfind('/') + 1);
    OpenInto(WalkTo(root, std::string_view(file.path).substr(prefix.size())), file);
    return file;
}

}  // namespace Ubrix::Platform
