// The one way to a file's bytes.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>

namespace Ubrix::Platform {

// A file that is open, or none. Closed with its owner, moved but not copied. Reads and writes are buffered.
// Used by one thread at a time. Positions and lengths are bytes from the beginning, and need no 64-bit
// `long`.
//
// Reading and writing may take turns on one file with a Seek in between. On a file that isn't open every call
// fails, and nothing happens.
class File {
public:
    enum class Mode {
        Read,       // what is there, bytes only
        Write,      // from nothing
        ReadWrite,  // from nothing, and it can be read
        Append,     // always at the end, and it can be read
    };
    enum class From { Begin, Here, End };

    File() = default;
    // Takes over what a function of src/Platform has opened; null for none.
    explicit File(std::FILE* stream) : _stream(stream) {}

    // Opens `path` as the user's own programs would: links are followed, a pipe is waited for, a new file
    // gets the process's usual permissions. For files that a caller names; the library's own are opened by
    // the functions of FileSystem.h. The last error tells why the answer isn't open.
    static File Open(char const* path, Mode mode);

    bool IsOpen() const { return _stream != nullptr; }
    void Close() { _stream.reset(); }

    // The count of bytes that came: fewer than `size` at the end and after a failure, which HasFailed tells
    // apart.
    std::size_t Read(void* buffer, std::size_t size);
    // A read or a write failed since the last call of this. Asking takes the answer back.
    bool HasFailed();
    // True if all of it was taken; it may still wait to be handed to the system.
    bool Write(void const* bytes, std::size_t size);
    // Hands what was written to the system. False if a byte was refused.
    bool Flush();
    // The same, for good: true if the system has every byte, and a later close has nothing left to report.
    bool Finish();

    bool Seek(long long offset, From from);
    // Negative on failure, as is the next.
    long long Position() const;
    // The place in the file stays the same.
    long long Length();

    // From now on each read and each write goes to the system at once, in one piece. Before the first of
    // them.
    void LeaveUnbuffered();
    // True if it is open on the file at `path`, whatever its name was.
    bool IsOn(char const* path) const;
    // For a function that takes the C library's stream. Still owned by this.
    std::FILE* Stream() const { return _stream.get(); }

private:
    struct CloseStream {
        void operator()(std::FILE* stream) const { static_cast<void>(std::fclose(stream)); }
    };
    std::unique_ptr<std::FILE, CloseStream> _stream;
};

}  // namespace Ubrix::Platform
