#include "Storage/Log/BufferContent.h"

#include <algorithm>
#include <cstring>

namespace Ubrix {

std::size_t BufferContent::Read(void* out, std::size_t length) {
    std::size_t const count = std::min(length, length_ - pos_);
    if (count > 0) {
        std::memcpy(out, parray_ + pos_, count);
        pos_ += count;
    }
    return count;
}

void BufferContent::Seek(long long offset, BufferOrigin origin) {
    pos_ = SeekTarget(pos_, length_, offset, origin);
}

void BufferContent::Store(void const* data, std::size_t count) {
    if (count > 0) {
        std::memcpy(parray_ + pos_, data, count);
        pos_ += count;
        length_ = std::max(length_, pos_);
    }
}

void BufferContent::Insert(std::size_t count, std::size_t kept) {
    if (count > 0) {
        std::memmove(parray_ + count, parray_, kept);
        std::memset(parray_, 0, count);
        length_ = count + kept;
        pos_ = std::min(pos_ + count, length_);
    }
}

void BufferContent::Remove(std::size_t count) {
    std::size_t const removed = std::min(count, length_);
    if (removed > 0) {
        length_ -= removed;
        std::memmove(parray_, parray_ + removed, length_);
        std::memset(parray_ + length_, 0, removed);
        pos_ -= std::min(pos_, removed);
    }
}

}  // namespace Ubrix
