// A byte buffer over memory that it doesn't own.
#pragma once

#include <cstddef>

#include "Storage/Log/BufferContent.h"

namespace Ubrix {

// The interface of AutoBuffer, without growth: what doesn't fit the memory isn't stored, and nothing tells
// it.
class PtrBuffer final : public BufferContent {
public:
    // Over no memory.
    PtrBuffer() = default;
    // Over `maxLength` bytes, of which the first `length` count as content. The caller owns them, and keeps
    // them as long as the buffer is used.
    PtrBuffer(void* memory, std::size_t length, std::size_t maxLength);

    // Stores what fits at the position, which moves on by `length`, but not beyond the content.
    void Write(void const* data, std::size_t length);
    // As AutoBuffer's; what an insertion pushes out of the memory is lost.
    void Move(long long count);
    using BufferContent::Length;
    // Sets both. `position` is at most `length`; neither exceeds the memory.
    void Length(std::size_t position, std::size_t length);
    // Lets go of the memory.
    void Reset();

    std::size_t MaxLength() const { return max_length_; }

private:
    std::size_t max_length_ = 0;
};

}  // namespace Ubrix
