#include "Storage/Log/BufferContent.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Platform/Console.h"

namespace Ubrix {

void RequireOfBuffer(bool holds, char const* condition) {
    if (!holds) {
        Platform::WriteConsoleLine(condition);
        std::abort();
    }
}

std::size_t SeekTarget(std::size_t position, std::size_t length, long long offset, BufferOrigin origin) {
    std::size_t const base = origin == FromStart ? 0 : origin == FromPosition ? position : length;
    if (offset < 0) {
        // Not -offset: the lowest number has no counterpart.
        unsigned long long const back = 0ULL - static_cast<unsigned long long>(offset);
        return back >= base ? 0 : base - static_cast<std::size_t>(back);
    }
    auto const ahead = static_cast<unsigned long long>(offset);
    return base >= length || ahead >= length - base ? length : base + static_cast<std::size_t>(ahead);
}

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
