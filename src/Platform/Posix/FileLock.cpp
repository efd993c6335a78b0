#include "Platform/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>

#include "Platform/Posix/Descriptor.h"
#include "Platform/SystemClock.h"
#include "Platform/Thread.h"

namespace Ubrix::Platform {

// The system has no locking with a time limit, so the lock is asked for again and again.
FileLock::FileLock(char const* path, unsigned int milliseconds) {
    Descriptor file = OpenPrivate(path, O_RDWR);
    if (!file.IsOpen()) {
        return;
    }
    long long const deadline = MonotonicMilliseconds() + milliseconds;
    constexpr unsigned int kLongestPause = 8;
    unsigned int pause = 1;
    int result = flock(file.Get(), LOCK_EX | LOCK_NB);
    while (result != 0 && (errno == EWOULDBLOCK || errno == EINTR) && MonotonicMilliseconds() < deadline) {
        SleepFor(pause);
        pause = std::min(2 * pause, kLongestPause);
        result = flock(file.Get(), LOCK_EX | LOCK_NB);
    }
    _isElsewhere = result != 0 && errno == EWOULDBLOCK;
    if (result == 0) {
        _handle = file.Release();
    }
}

FileLock::~FileLock() {
    if (_handle != kNone) {
        int const descriptor = static_cast<int>(_handle);
        // Closing alone would leave the lock to a child that was forked meanwhile.
        flock(descriptor, LOCK_UN);
        close(descriptor);
    }
}

}  // namespace Ubrix::Platform
