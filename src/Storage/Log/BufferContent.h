// What the two byte buffers of the block log have in common.
#pragma once

#include <cstddef>

namespace Ubrix {

// Where an offset is counted from.
enum BufferOrigin : int { FromStart = 0, FromPosition = 1, FromEnd = 2 };

// Ends the process, with `condition` on the console, unless it holds. In every build: what follows a broken
// condition would write outside a buffer.
void RequireOfBuffer(bool holds, char const* condition);

// The position that a seek leads to: never below 0 nor above `length`.
std::size_t SeekTarget(std::size_t position, std::size_t length, long long offset, BufferOrigin origin);

// Bytes with a position among them. Whose memory they are in, and whether it grows, is up to the derived
// class. No lock: one thread at a time.
class BufferContent {
public:
    BufferContent(BufferContent const&) = delete;
    BufferContent& operator=(BufferContent const&) = delete;

    // Copies at most `length` bytes from the position on, which moves along. Returns the count.
    std::size_t Read(void* out, std::size_t length);
    // Never leads outside of the content.
    void Seek(long long offset, BufferOrigin origin);

    // Null while there is no memory.
    char* Ptr() { return parray_; }
    char const* Ptr() const { return parray_; }
    std::size_t Pos() const { return pos_; }
    std::size_t Length() const { return length_; }

protected:
    BufferContent() = default;
    BufferContent(char* memory, std::size_t length) : parray_(memory), length_(length) {}
    ~BufferContent() = default;

    // All three leave it to the caller that the memory is large enough.
    // Stores at the position, which moves behind what was stored. The length only grows.
    void Store(void const* data, std::size_t count);
    // Inserts zero bytes at the front, and keeps of the content the first `kept` bytes. The position stays
    // with its byte.
    void Insert(std::size_t count, std::size_t kept);
    // Takes at most `count` bytes off the front. The position stays with its byte, or goes to the front.
    void Remove(std::size_t count);

    char* parray_ = nullptr;
    std::size_t pos_ = 0;
    std::size_t length_ = 0;
};

}  // namespace Ubrix
