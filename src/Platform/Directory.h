// A directory that stays the one that was opened, whatever its path leads to later.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Ubrix::Platform {

// Opened without following a link at the end of its path. Names are bare ones: nothing outside of the
// directory is reached, and an entry that is a link is itself meant. One thread at a time.
class Directory {
public:
    // Not open if there is no directory at `path` that this user may list.
    explicit Directory(char const* path);
    ~Directory();
    Directory(Directory const&) = delete;
    Directory& operator=(Directory const&) = delete;

    bool IsOpen() const { return _handle != kNone; }
    // Puts the entries' names into `names`, without "." and "..", in the system's order. False on failure,
    // which leaves `names` unchanged.
    bool List(std::vector<std::string>& names) const;
    bool HasRegularFile(char const* name) const;
    // Removes an entry that is no directory. False on failure.
    bool Remove(char const* name) const;

private:
    static constexpr std::intptr_t kNone = -1;
    std::intptr_t _handle = kNone;
};

}  // namespace Ubrix::Platform
