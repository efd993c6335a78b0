#include "Storage/Log/ptrbuffer.h"

#include <algorithm>
#include <cstring>

namespace Ubrix {

PtrBuffer::PtrBuffer(void* memory, std::size_t length, std::size_t maxLength)
    : pointer_(static_cast<char*>(memory)), length_(length), max_length_(maxLength) {
    RequireOfBuffer(length_ <= max_length_, "length_ <= max_length_");
    RequireOfBuffer(memory != nullptr || maxLength == 0, "_ptr != NULL || _maxlen == 0");
}

void PtrBuffer::Write(void const* data, std::size_t length) {
    std::size_t const count = std::min(length, max_length_ - pos_);
    if (count > 0) {
        std::memcpy(pointer_ + pos_, data, count);
        pos_ += count;
        length_ = std::max(length_, pos_);
    }
}

std::size_t PtrBuffer::Read(void* out, std::size_t length) {
    std::size_t const count = std::min(length, length_ - pos_);
    if (count > 0) {
        std::memcpy(out, pointer_ + pos_, count);
        pos_ += count;
    }
    return count;
}

void PtrBuffer::Seek(long long offset, BufferOrigin origin) {
    pos_ = SeekTarget(pos_, length_, offset, origin);
}

void PtrBuffer::Move(long long count) {
    if (count > 0) {
        std::size_t const inserted = SeekTarget(0, max_length_, count, FromStart);
        std::size_t const kept = std::min(length_, max_length_ - inserted);
        if (inserted > 0) {
            std::memmove(pointer_ + inserted, pointer_, kept);
            std::memset(pointer_, 0, inserted);
            length_ = inserted + kept;
            pos_ = std::min(pos_ + inserted, length_);
        }
        return;
    }
    // The tail that a seek back from the end leaves.
    std::size_t const kept = SeekTarget(0, length_, count, FromEnd);
    std::size_t const removed = length_ - kept;
    if (removed > 0) {
        std::memmove(pointer_, pointer_ + removed, kept);
        std::memset(pointer_ + kept, 0, removed);
        length_ = kept;
        pos_ -= std::min(pos_, removed);
    }
}

void PtrBuffer::Length(std::size_t position, std::size_t length) {
    RequireOfBuffer(position <= length, "(size_t)_nPos <= _nLenght");
    length_ = std::min(length, max_length_);
    pos_ = std::min(position, length_);
}

void PtrBuffer::Reset() {
    pointer_ = nullptr;
    pos_ = length_ = max_length_ = 0;
}

}  // namespace Ubrix
