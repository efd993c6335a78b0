#include "Storage/Log/autobuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

namespace Ubrix {

AutoBuffer::AutoBuffer(std::size_t unit) : malloc_unit_(unit) {
    RequireOfBuffer(unit > 0 && unit <= kLongest, "0 < malloc_unit && malloc_unit <= 20 * 1024 * 1024");
}

AutoBuffer::~AutoBuffer() {
    std::free(parray_);
}

void AutoBuffer::AddCapacity(std::size_t length) {
    RequireOfBuffer(length <= kLongest, "_len <= 20 * 1024 * 1024");
    if (length <= capacity_) {
        return;
    }
    std::size_t const capacity = (length + malloc_unit_ - 1) / malloc_unit_ * malloc_unit_;
    auto* const grown = static_cast<char*>(std::realloc(parray_, capacity));
    if (grown == nullptr) {
        throw std::bad_alloc();
    }
    std::memset(grown + capacity_, 0, capacity - capacity_);
    parray_ = grown;
    capacity_ = capacity;
}

void AutoBuffer::Write(void const* data, std::size_t length) {
    RequireOfBuffer(length <= kLongest, "_len <= 20 * 1024 * 1024");
    if (length == 0) {
        return;
    }
    AddCapacity(pos_ + length);
    std::memcpy(parray_ + pos_, data, length);
    pos_ += length;
    length_ = std::max(length_, pos_);
}

std::size_t AutoBuffer::Read(void* out, std::size_t length) {
    std::size_t const count = std::min(length, length_ - pos_);
    if (count > 0) {
        std::memcpy(out, parray_ + pos_, count);
        pos_ += count;
    }
    return count;
}

void AutoBuffer::Seek(long long offset, BufferOrigin origin) {
    pos_ = SeekTarget(pos_, length_, offset, origin);
}

void AutoBuffer::Move(long long count) {
    if (count > 0) {
        RequireOfBuffer(count <= static_cast<long long>(kLongest), "_len <= 20 * 1024 * 1024");
        auto const inserted = static_cast<std::size_t>(count);
        AddCapacity(length_ + inserted);
        std::memmove(parray_ + inserted, parray_, length_);
        std::memset(parray_, 0, inserted);
        length_ += inserted;
        pos_ += inserted;
        return;
    }
    // The tail that a seek back from the end leaves.
    std::size_t const kept = SeekTarget(0, length_, count, FromEnd);
    std::size_t const removed = length_ - kept;
    if (removed > 0) {
        std::memmove(parray_, parray_ + removed, kept);
        std::memset(parray_ + kept, 0, removed);
        length_ = kept;
        pos_ -= std::min(pos_, removed);
    }
}

void AutoBuffer::Length(std::size_t position, std::size_t length) {
    RequireOfBuffer(position <= length, "(size_t)_nPos <= _nLenght");
    AddCapacity(length);
    pos_ = position;
    length_ = length;
}

void AutoBuffer::Reset() {
    std::free(parray_);
    parray_ = nullptr;
    pos_ = length_ = capacity_ = 0;
}

}  // namespace Ubrix
