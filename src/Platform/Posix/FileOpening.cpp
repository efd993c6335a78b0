// Files opened without waiting, without surprises, and privately.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "Platform/FileSystem.h"
#include "Platform/Posix/Descriptor.h"

namespace Ubrix::Platform {

namespace {

// Neither waits for a pipe's other end nor takes a terminal, and isn't inherited.
constexpr int kCareful = O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

FileAnswer AnswerTo(int error, char const* path) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
        case ENAMETOOLONG:
            return FileAnswer::Absent;
        case ELOOP:
        case ENXIO:
        case ENODEV:
        case EISDIR:
        case EOVERFLOW:
            return FileAnswer::Refused;
        case EACCES:
        case EPERM:
            // A second witness: what is refused for a moment, by a scanner for one, isn't refused for good.
            return faccessat(AT_FDCWD, path, R_OK, AT_EACCESS) != 0 && errno == EACCES ? FileAnswer::Refused
                                                                                       : FileAnswer::Failing;
        default:
            return FileAnswer::Failing;
    }
}

int OpenUninterrupted(char const* path, int flags, mode_t mode = 0) {
    int descriptor = -1;
    do {
        descriptor = open(path, flags | kCareful, mode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

bool IsReadable(struct stat const& status, long long maxSize) {
    return S_ISREG(status.st_mode) && status.st_size <= maxSize;
}

// Fails, with nothing changed, unless the file is a regular one of this user's.
bool MakePrivate(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_uid != geteuid()) {
        return false;
    }
    constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;
    return (status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) == kPrivate || fchmod(descriptor, kPrivate) == 0;
}

bool IsNamed(int descriptor, char const* path) {
    struct stat open {};
    struct stat named {};
    return fstat(descriptor, &open) == 0 && lstat(path, &named) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino;
}

}  // namespace

Descriptor OpenPrivate(char const* path, int flags) {
    Descriptor file(OpenUninterrupted(path, flags | O_CREAT | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    return file.IsOpen() && MakePrivate(file.Get()) ? std::move(file) : Descriptor(-1);
}

FileAnswer OpenForReading(char const* path, long long maxSize, File& opened) {
    opened.Close();
    struct stat status {};
    // Looks before it opens: opening a device may do something.
    if (stat(path, &status) != 0) {
        return AnswerTo(errno, path);
    }
    if (!IsReadable(status, maxSize)) {
        return FileAnswer::Refused;
    }
    Descriptor file(OpenUninterrupted(path, O_RDONLY));
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0) {
        return AnswerTo(errno, path);
    }
    if (!IsReadable(status, maxSize)) {
        return FileAnswer::Refused;
    }
    opened = file.MoveToFile("rb");
    return opened.IsOpen() ? FileAnswer::Given : FileAnswer::Failing;
}

// The lock on the file shows that somebody still writes it. Whoever deletes abandoned files may have come in
// between the making and the locking: then the name is gone.
File CreatePrivateFile(char const* path) {
    Descriptor file = OpenPrivate(path, O_WRONLY | O_EXCL);
    if (!file.IsOpen()) {
        return File();
    }
    File made;
    if (flock(file.Get(), LOCK_EX | LOCK_NB) == 0 && IsNamed(file.Get(), path)) {
        made = file.MoveToFile("wb");
    }
    if (!made.IsOpen()) {
        unlink(path);
    }
    return made;
}

File OpenPrivateForWriting(char const* path) {
    Descriptor file = OpenPrivate(path, O_WRONLY);
    return file.IsOpen() && ftruncate(file.Get(), 0) == 0 ? file.MoveToFile("wb") : File();
}

File OpenPrivateForAppending(char const* path) {
    return OpenPrivate(path, O_RDWR | O_APPEND).MoveToFile("ab+");
}

bool RenameOpenFile(File& /*file*/, char const* from, char const* to) {
    return RenamePath(from, to);
}

bool DeleteAbandonedFile(char const* path) {
    struct stat status {};
    if (lstat(path, &status) != 0 || !S_ISREG(status.st_mode)) {
        return false;
    }
    Descriptor const file(OpenUninterrupted(path, O_RDONLY | O_NOFOLLOW));
    return file.IsOpen() && flock(file.Get(), LOCK_EX | LOCK_NB) == 0 && IsNamed(file.Get(), path) &&
           unlink(path) == 0;
}

}  // namespace Ubrix::Platform
