// A lock that processes hold against one another.
#pragma once

#include <cstdint>

namespace Ubrix::Platform {

// Guards what its file is named after, and keeps nobody out who doesn't ask for it. The file is made
// where it is missing, private to the user, stays empty and is never removed. A lock goes with its holder, or
// with the holder's process, however that ends. Two holders in one process exclude each other as well; the
// lock isn't recursive.
class FileLock {
public:
    // Waits up to `milliseconds` for another holder.
    FileLock(char const* path, unsigned int milliseconds);
    ~FileLock();
    FileLock(FileLock const&) = delete;
    FileLock& operator=(FileLock const&) = delete;

    // False if another holder didn't let go in time, or the file can't be opened.
    bool IsHeld() const { return _handle != kNone; }
    // True if it is the first of these.
    bool IsElsewhere() const { return _isElsewhere; }

private:
    static constexpr std::intptr_t kNone = -1;
    std::intptr_t _handle = kNone;
    bool _isElsewhere = false;
};

}  // namespace Ubrix::Platform
