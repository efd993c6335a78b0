#include "Storage/Log/autobuffer.h"

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
    if (length > 0) {
        AddCapacity(pos_ + length);
        Store(data, length);
    }
}

void AutoBuffer::Move(long long count) {
    if (count <= 0) {
        // All but the tail that a seek back from the end leaves.
        Remove(length_ - SeekTarget(0, length_, count, FromEnd));
        return;
    }
    RequireOfBuffer(count <= static_cast<long long>(kLongest), "_len <= 20 * 1024 * 1024");
    auto const inserted = static_cast<std::size_t>(count);
    AddCapacity(length_ + inserted);
    Insert(inserted, length_);
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
