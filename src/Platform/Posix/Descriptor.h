// File descriptors with an owner.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <utility>

#include "Platform/File.h"

namespace Ubrix::Platform {

// A file descriptor that is closed with its owner; negative for none. One thread at a time.
class Descriptor {
public:
    explicit Descriptor(int descriptor) : _descriptor(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : _descriptor(other.Release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(_descriptor, other._descriptor);
        return *this;
    }
    ~Descriptor() {
        if (_descriptor >= 0) {
            close(_descriptor);
        }
    }
    int Get() const { return _descriptor; }
    bool IsOpen() const { return _descriptor >= 0; }
    int Release() { return std::exchange(_descriptor, -1); }
    // The file takes the descriptor over, unless it can't be made: then it isn't open.
    File MoveToFile(char const* mode) {
        std::FILE* const stream = fdopen(_descriptor, mode);
        if (stream != nullptr) {
            Release();
        }
        return File(stream);
    }

private:
    int _descriptor;
};

// Opens a file that only this user may read or write, as Platform/FileSystem.h tells. Not open on failure.
Descriptor OpenPrivate(char const* path, int flags);

}  // namespace Ubrix::Platform
