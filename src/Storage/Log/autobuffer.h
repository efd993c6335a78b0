// A byte buffer that owns its memory and grows.
#pragma once

#include <cstddef>

#include "Storage/Log/BufferContent.h"

namespace Ubrix {

// Growth throws std::bad_alloc if there is no memory, and leaves the buffer as it was. No lock: one
// thread at a time.
class AutoBuffer final : public BufferContent {
public:
    static constexpr std::size_t kUnit = 128;
    static constexpr std::size_t kLongest = std::size_t{20} * 1024 * 1024;

    // The memory comes in multiples of `unit` bytes; none before it is needed.
    explicit AutoBuffer(std::size_t unit = kUnit);
    ~AutoBuffer();

    // Makes room for `length` bytes in all, at most kLongest. New bytes are zero.
    void AddCapacity(std::size_t length);
    // Stores at the position, which moves behind what was stored. The length only grows.
    void Write(void const* data, std::size_t length);
    // Inserts `count` zero bytes at the front, or removes the first -`count` bytes. The position stays with
    // its byte, or goes to the front if that byte is removed.
    void Move(long long count);
    using BufferContent::Length;
    // Sets both; `position` is at most `length`.
    void Length(std::size_t position, std::size_t length);
    // Releases the memory.
    void Reset();

    std::size_t Capacity() const { return capacity_; }

private:
    std::size_t capacity_ = 0;
    std::size_t const malloc_unit_;
};

}  // namespace Ubrix
