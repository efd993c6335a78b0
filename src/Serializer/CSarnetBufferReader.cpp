#include <VelmorCore/Buffer.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "Base/Container/Nesting.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

namespace {

// The bytes as a number, the highest first. Null leaves `value` as it is.
template <class Integer>
void Decode(unsigned char const* bytes, Integer& value) {
    if (bytes == nullptr) {
        return;
    }
    unsigned long long bits = 0;
    for (size_t i = 0; i < sizeof(Integer); ++i) {
        bits = bits << 8 | bytes[i];
    }
    value = static_cast<Integer>(bits);
}

}  // namespace

CSarnetBufferReader::CSarnetBufferReader(AString const& data) : _position(0), _buffer(data) {}

CSarnetBufferReader::CSarnetBufferReader(char const* data, int size) : _position(0), _buffer(data, size) {}

CSarnetBufferReader::CSarnetBufferReader(CSarnetBufferReader const& other) = default;

CSarnetBufferReader::~CSarnetBufferReader() = default;

CSarnetBufferReader& CSarnetBufferReader::operator=(CSarnetBufferReader const& other) {
    Platform::WithoutThrow([&] {
        _buffer = other._buffer;
        _position = other._position;
    });
    return *this;
}

unsigned char const* CSarnetBufferReader::Take(int width) {
    int const left = _buffer.GetLength() - _position;
    if (left < width) {
        _position = _buffer.GetLength();
        return nullptr;
    }
    auto const* bytes = reinterpret_cast<unsigned char const*>(_buffer.data()) + _position;
    _position += width;
    return bytes;
}

void CSarnetBufferReader::Read(bool& value) {
    unsigned char const* byte = Take(1);
    if (byte != nullptr) {
        value = *byte != 0;
    }
}

void CSarnetBufferReader::Read(signed char& value) {
    Decode(Take(1), value);
}

void CSarnetBufferReader::Read(unsigned char& value) {
    Decode(Take(1), value);
}

void CSarnetBufferReader::Read(short& value) {
    Decode(Take(2), value);
}

void CSarnetBufferReader::Read(unsigned short& value) {
    Decode(Take(2), value);
}

void CSarnetBufferReader::Read(int& value) {
    Decode(Take(4), value);
}

void CSarnetBufferReader::Read(unsigned int& value) {
    Decode(Take(4), value);
}

void CSarnetBufferReader::Read(long long& value) {
    Decode(Take(8), value);
}

void CSarnetBufferReader::Read(unsigned long long& value) {
    Decode(Take(8), value);
}

int CSarnetBufferReader::ReadLength(int limit) {
    int length = 0;
    Read(length);
    int const left = _buffer.GetLength() - _position;
    return length > 0 && length <= limit && length <= left ? length : 0;
}

void CSarnetBufferReader::Read(AString& out) {
    out.Clear();
    int const length = ReadLength(INT_MAX);
    if (length > 0) {
        out.assign(reinterpret_cast<char const*>(Take(length)), length);
    }
}

void CSarnetBufferReader::Read(char* buffer, int size) {
    if (AtEnd() || buffer == nullptr) {
        return;
    }
    int const room = std::max(size, 0);
    std::memset(buffer, 0, static_cast<size_t>(room));
    int const length = ReadLength(room - 1);
    if (length > 0) {
        std::memcpy(buffer, Take(length), static_cast<size_t>(length));
    }
}

void CSarnetBufferReader::Read(_tagSarnetBufferBase& structure) {
    NestingLevel const level;
    if (NestingLevel::IsTooDeep()) {
        _position = _buffer.GetLength();
        return;
    }
    structure.BeforeDecode(*this);
    structure.ReadFrom(*this);
}

void CSarnetBufferReader::Read(_tagSarnetBufferBase* structure) {
    if (structure != nullptr) {
        Read(*structure);
    }
}

void CSarnetBufferReader::Reset() {
    _position = 0;
}

bool CSarnetBufferReader::AtEnd() const {
    return _position >= _buffer.GetLength();
}

}  // namespace Ubrix
