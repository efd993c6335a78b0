// A byte buffer that owns its memory and grows.
#pragma once

#include <cstddef>

#include "Storage/Log/BufferRules.h"

namespace Ubrix {

// No lock: one thread at a time. Growth throws std::bad_alloc if there is no memory, and leaves the buffer as
// it was.
class AutoBuffer {
public:
    static constexpr std::size_t kUnit = 128;
    static constexpr std::size_t kLongest = std::size_t{20} * 1024 * 1024;

    // The memory comes in multiples of `unit` bytes; none before it is needed.
    explicit AutoBuffer(std::size_t unit = kUnit);
    ~AutoBuffer();
    AutoBuffer(AutoBuffer const&) = delete;
    AutoBuffer& operator=(AutoBuffer const&) = delete;

    // Makes room for `length` bytes in all, at most kLongest. New bytes are zero.
    void AddCapacity(std::size_t length);
    // Stores at the position, which moves behind what was stored. The length only grows.
    void Write(void const* data, std::size_t length);
    // Copies at most `length` bytes from the position on, which moves along. Returns the count.
    std::size_t Read(void* out, std::size_t length);
    void Seek(long long offset, BufferOrigin origin);
    // Inserts `count` zero bytes at the front, or removes the first -`count` bytes. The position stays with
    // its byte, or goes to the front if that byte is removed.
    void Move(long long count);
    // Sets both; `position` is at most `length`.
    void Length(std::size_t position, std::size_t length);
    // Releases the memory.
    void Reset();

    // Null while there is no memory.
    char* Ptr() { return parray_; }
    char const* Ptr() const { return parray_; }
    std::size_t Pos() const { return pos_; }
    std::size_t Length() const { return length_; }
    std::size_t Capacity() const { return capacity_; }

private:
    char* parray_ = nullptr;
    std::size_t pos_ = 0;
    std::size_t length_ = 0;
    std::size_t capacity_ = 0;
    std::size_t const malloc_unit_;
};

}  // namespace Ubrix
