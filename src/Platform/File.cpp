// What the C library gives on every system.
#include "Platform/File.h"

namespace Ubrix::Platform {

File File::Open(char const* path, Mode mode) {
    static constexpr char const* kModes[] = {"rb", "wb", "wb+", "ab+"};
    return File(std::fopen(path, kModes[static_cast<int>(mode)]));
}

std::size_t File::Read(void* buffer, std::size_t size) {
    return IsOpen() ? std::fread(buffer, 1, size, Stream()) : 0;
}

bool File::HasFailed() {
    bool const failed = !IsOpen() || std::ferror(Stream()) != 0;
    if (IsOpen()) {
        std::clearerr(Stream());
    }
    return failed;
}

bool File::Write(void const* bytes, std::size_t size) {
    return IsOpen() && (size == 0 || std::fwrite(bytes, 1, size, Stream()) == size);
}

bool File::Flush() {
    return IsOpen() && std::fflush(Stream()) == 0;
}

long long File::Length() {
    long long const here = Position();
    if (here < 0 || !Seek(0, From::End)) {
        return -1;
    }
    long long const length = Position();
    return Seek(here, From::Begin) ? length : -1;
}

void File::LeaveUnbuffered() {
    if (IsOpen()) {
        std::setvbuf(Stream(), nullptr, _IONBF, 0);
    }
}

}  // namespace Ubrix::Platform
