#include "Serializer/WYR/WyrBuf.h"

#include <cassert>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Base/Container/AsciiText.h"
#include "Serializer/WYR/WyrError.h"

namespace Ubrix {

namespace {

constexpr char kDigits[] = "0123456789ABCDEF";

}  // namespace

WyrBuf::WyrBuf() : WyrBuf(nullptr, 0) {}

WyrBuf::WyrBuf(char* memory, size_t size)
    : _begin(memory), position(0), length(memory == nullptr ? 0 : size), _owned(false) {}

WyrBuf::~WyrBuf() {
    if (_owned) {
        std::free(_begin);
        _begin = nullptr;
    }
}

void WyrBuf::own() {
    _owned = true;
}

size_t WyrBuf::freeRoom() const {
    assert(position <= length);
    return position <= length ? length - position : 0;
}

int WyrBuf::writeBytes(void const* src, size_t size) {
    if (src == nullptr) {
        return WyrError::WYR_ERR_NULL_ARGUMENT;
    }
    if (size > freeRoom()) {
        return WyrError::WYR_ERR_WRITE_SPACE;
    }
    if (size > 0) {
        std::memcpy(_begin + position, src, size);
        position += size;
    }
    return WyrError::WYR_NO_ERROR;
}

int WyrBuf::readBytes(void* dest, size_t size) {
    if (dest == nullptr) {
        return WyrError::WYR_ERR_NULL_ARGUMENT;
    }
    if (size > freeRoom()) {
        return WyrError::WYR_ERR_READ_DATA;
    }
    if (size > 0) {
        std::memcpy(dest, _begin + position, size);
        position += size;
    }
    return WyrError::WYR_NO_ERROR;
}

int WyrBuf::writeChar(char c) {
    return writeBytes(&c, 1);
}

int WyrBuf::writeCharWithNull(char c) {
    if (freeRoom() < 2) {
        return WyrError::WYR_ERR_WRITE_SPACE;
    }
    _begin[position++] = c;
    _begin[position] = '\0';
    return WyrError::WYR_NO_ERROR;
}

int WyrBuf::textize(char const* format, ...) {
    va_list args;
    va_start(args, format);
    int const result = vtextize(format, args);
    va_end(args);
    return result;
}

int WyrBuf::vtextize(char const* format, va_list args) {
    size_t const room = freeRoom();
    if (room == 0) {
        return WyrError::WYR_ERR_WRITE_SPACE;
    }
    int const written = std::vsnprintf(_begin + position, room, format, args);
    if (written < 0 || static_cast<size_t>(written) >= room) {
        return WyrError::WYR_ERR_WRITE_SPACE;
    }
    position += static_cast<size_t>(written);
    return WyrError::WYR_NO_ERROR;
}

int WyrBuf::dumpHex(char* destBuf, size_t destSize, size_t* usedSize) const {
    assert(nullptr != destBuf);
    size_t const count = freeRoom();
    // Divided, since twice a large count would wrap.
    if (destSize == 0 || (destSize - 1) / 2 < count) {
        return WyrError::WYR_ERR_WRITE_SPACE;
    }
    for (size_t i = 0; i < count; ++i) {
        auto const byte = static_cast<unsigned char>(_begin[position + i]);
        destBuf[2 * i] = kDigits[byte >> 4];
        destBuf[2 * i + 1] = kDigits[byte & 0x0F];
    }
    destBuf[2 * count] = '\0';
    if (usedSize != nullptr) {
        *usedSize = 2 * count + 1;
    }
    return WyrError::WYR_NO_ERROR;
}

int WyrBuf::loadHex(char const* srcHexStr, size_t srcSize, size_t* usedSize) {
    assert(nullptr != srcHexStr);
    if (srcSize % 2 != 0) {
        return WyrError::WYR_ERR_HEX_LENGTH;
    }
    size_t const room = freeRoom();
    size_t const take = srcSize / 2 < room ? srcSize : 2 * room;
    size_t taken = 0;
    int result = WyrError::WYR_NO_ERROR;
    for (; taken < take; taken += 2) {
        int const high = HexDigitValue(srcHexStr[taken]);
        int const low = HexDigitValue(srcHexStr[taken + 1]);
        if (high < 0 || low < 0) {
            result = WyrError::WYR_ERR_HEX_FORMAT;
            break;
        }
        _begin[position + taken / 2] = static_cast<char>(high << 4 | low);
    }
    if (usedSize != nullptr) {
        *usedSize = taken;
    }
    if (result == WyrError::WYR_NO_ERROR) {
        length = position + taken / 2;
    }
    return result;
}

}  // namespace Ubrix
