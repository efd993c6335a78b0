#include "Storage/Log/ptrbuffer.h"

#include <algorithm>

namespace Ubrix {

PtrBuffer::PtrBuffer(void* memory, std::size_t length, std::size_t maxLength)
    : BufferContent(static_cast<char*>(memory), length), max_length_(maxLength) {
    RequireOfBuffer(length_ <= max_length_, "length_ <= max_length_");
    RequireOfBuffer(memory != nullptr || maxLength == 0, "_ptr != NULL || _maxlen == 0");
}

void PtrBuffer::Write(void const* data, std::size_t length) {
    Store(data, std::min(length, max_length_ - pos_));
}

void PtrBuffer::Move(long long count) {
    if (count <= 0) {
        // All but the tail that a seek back from the end leaves.
        Remove(length_ - SeekTarget(0, length_, count, FromEnd));
        return;
    }
    std::size_t const inserted = SeekTarget(0, max_length_, count, FromStart);
    Insert(inserted, std::min(length_, max_length_ - inserted));
}

void PtrBuffer::Length(std::size_t position, std::size_t length) {
    RequireOfBuffer(position <= length, "(size_t)_nPos <= _nLenght");
    length_ = std::min(length, max_length_);
    pos_ = std::min(position, length_);
}

void PtrBuffer::Reset() {
    parray_ = nullptr;
    pos_ = length_ = max_length_ = 0;
}

}  // namespace Ubrix
