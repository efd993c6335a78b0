#include "Serializer/WYR/WyrPack.h"

#include <cassert>
#include <cstring>

#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrTypeUtil.h"

namespace Ubrix {

namespace {

constexpr int kOk = WyrError::WYR_NO_ERROR;

template <class Integer>
int Write(WyrBuf& buf, Integer value) {
    unsigned char bytes[sizeof(Integer)];
    for (size_t i = 0; i < sizeof bytes; ++i) {
        bytes[i] = static_cast<unsigned char>(value >> 8 * (sizeof bytes - 1 - i));
    }
    return buf.writeBytes(bytes, sizeof bytes);
}

template <class Integer>
int Read(WyrBuf& buf, Integer* value) {
    unsigned char bytes[sizeof(Integer)];
    int const result = buf.readBytes(bytes, sizeof bytes);
    if (result != kOk) {
        return result;
    }
    std::uint64_t bits = 0;
    for (unsigned char const byte : bytes) {
        bits = bits << 8 | byte;
    }
    *value = static_cast<Integer>(bits);
    return kOk;
}

template <class Unit>
int WriteText(WyrBuf& buf, Unit const* value, size_t count, size_t capacity) {
    if (count > capacity || count > UINT32_MAX) {
        return WyrError::WYR_ERR_STRING_TOO_LONG;
    }
    if (buf.freeRoom() < 4 || (buf.freeRoom() - 4) / sizeof(Unit) < count) {
        return WyrError::WYR_ERR_WRITE_SPACE;
    }
    int result = Write(buf, static_cast<std::uint32_t>(count));
    for (size_t i = 0; i < count && result == kOk; ++i) {
        result = Write(buf, value[i]);
    }
    return result;
}

// Whether the `count` units from the position on hold a zero at their end and nowhere else.
template <class Unit>
bool EndsAtFirstZero(WyrBuf const& buf, size_t count) {
    char const* const begin = buf.begin() + buf.position;
    constexpr char kZero[sizeof(Unit)]{};
    size_t length = 0;
    while (length < count && std::memcmp(begin + length * sizeof(Unit), kZero, sizeof(Unit)) != 0) {
        ++length;
    }
    return length == count - 1;
}

template <class Unit>
int CheckText(WyrBuf const& buf, size_t count, size_t capacity) {
    if (count == 0) {
        return WyrError::WYR_ERR_STRING_TOO_SHORT;
    }
    if (count > capacity) {
        return WyrError::WYR_ERR_STRING_TOO_LONG;
    }
    if (buf.freeRoom() / sizeof(Unit) < count) {
        return WyrError::WYR_ERR_READ_DATA;
    }
    return EndsAtFirstZero<Unit>(buf, count) ? kOk : WyrError::WYR_ERR_STRING_SIZEINFO;
}

template <class Unit>
int ReadText(WyrBuf& buf, Unit* value, size_t capacity) {
    size_t const start = buf.position;
    std::uint32_t count = 0;
    int result = Read(buf, &count);
    if (result == kOk) {
        result = CheckText<Unit>(buf, count, capacity);
    }
    for (std::uint32_t i = 0; i < count && result == kOk; ++i) {
        result = Read(buf, value + i);
    }
    if (result != kOk) {
        buf.position = start;
    }
    return result;
}

}  // namespace

int WyrPack::writeInteger(WyrBuf& buf, std::uint8_t value) {
    return Write(buf, value);
}

int WyrPack::writeInteger(WyrBuf& buf, std::uint16_t value) {
    return Write(buf, value);
}

int WyrPack::writeInteger(WyrBuf& buf, std::uint32_t value) {
    return Write(buf, value);
}

int WyrPack::writeInteger(WyrBuf& buf, std::uint64_t value) {
    return Write(buf, value);
}

int WyrPack::readInteger(WyrBuf& buf, std::uint8_t* value) {
    return Read(buf, value);
}

int WyrPack::readInteger(WyrBuf& buf, std::uint16_t* value) {
    return Read(buf, value);
}

int WyrPack::readInteger(WyrBuf& buf, std::uint32_t* value) {
    return Read(buf, value);
}

int WyrPack::readInteger(WyrBuf& buf, std::uint64_t* value) {
    return Read(buf, value);
}

int WyrPack::writeString(WyrBuf& buf, char const* value, size_t capacity) {
    assert(nullptr != value);
    auto const* const bytes = reinterpret_cast<unsigned char const*>(value);
    return WriteText(buf, bytes, std::strlen(value) + 1, capacity);
}

int WyrPack::readString(WyrBuf& buf, char* value, size_t capacity) {
    return ReadText(buf, reinterpret_cast<unsigned char*>(value), capacity);
}

int WyrPack::writeWideString(WyrBuf& buf, unsigned short const* value, size_t capacity) {
    return WriteText(buf, value, WyrTypeUtil::wideLength(value) + 1, capacity);
}

int WyrPack::readWideString(WyrBuf& buf, unsigned short* value, size_t capacity) {
    return ReadText(buf, value, capacity);
}

int WyrPack::checkRefer(long long count, size_t capacity) {
    if (count < 0) {
        return WyrError::WYR_ERR_REFER_NEGATIVE;
    }
    return static_cast<unsigned long long>(count) > capacity ? WyrError::WYR_ERR_REFER_TOO_BIG : kOk;
}

int WyrPack::chooseVersion(int asked, int base, int current, int* cutVersion) {
    int const chosen = asked == 0 || asked > current ? current : asked;
    if (chosen < base) {
        return WyrError::WYR_ERR_CUTVER_BELOW_BASE;
    }
    *cutVersion = chosen;
    return kOk;
}

int WyrPack::checkVersionFromNet(int cutVersion, int base, int current) {
    return cutVersion < base || cutVersion > current ? WyrError::WYR_ERR_CUTVER_FROM_NET : kOk;
}

}  // namespace Ubrix
