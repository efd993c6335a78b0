// The structures of the codec.
#include <VelmorCore/Buffer.h>

#include <cstring>
#include <memory>

#include "Platform/MemoryWant.h"

namespace Ubrix {

using Platform::WithoutThrow;

namespace {

unsigned char* CopyOf(void const* bytes, int size) {
    auto* const copy = new unsigned char[static_cast<size_t>(size)];
    std::memcpy(copy, bytes, static_cast<size_t>(size));
    return copy;
}

}  // namespace

_tagSarnetBufferBase::_tagSarnetBufferBase() = default;

_tagSarnetBufferBase::_tagSarnetBufferBase(_tagSarnetBufferBase const& other) = default;

_tagSarnetBufferBase& _tagSarnetBufferBase::operator=(_tagSarnetBufferBase const& other) = default;

_tagSarnetBufferBase::~_tagSarnetBufferBase() = default;

bool _tagSarnetBufferBase::Encode(AString& out) const {
    return encode(out);
}

int _tagSarnetBufferBase::Encode(char* buffer, int& size) const {
    return encode(buffer, size) ? 1 : 0;
}

bool _tagSarnetBufferBase::Decode(AString const& data) {
    return decode(data);
}

bool _tagSarnetBufferBase::Decode(char const* data, int size) {
    return decode(data, size);
}

bool _tagSarnetBufferBase::encode(char* buffer, int& size) const {
    if (buffer == nullptr) {
        return false;
    }
    return WithoutThrow([&] {
        CSarnetBufferWriter writer;
        writer.Write(*this);
        AString const& encoded = writer.GetBufferData();
        if (encoded.GetLength() >= size) {
            return false;
        }
        std::memcpy(buffer, encoded.c_str(), static_cast<size_t>(encoded.GetLength()));
        size = encoded.GetLength();
        return true;
    });
}

bool _tagSarnetBufferBase::encode(AString& out) const {
    return WithoutThrow([&] {
        CSarnetBufferWriter writer;
        writer.Write(*this);
        out = writer.GetBufferData();
        return true;
    });
}

bool _tagSarnetBufferBase::decode(AString const& data) {
    return WithoutThrow([&] {
        CSarnetBufferReader reader(data);
        reader.Read(*this);
        return true;
    });
}

bool _tagSarnetBufferBase::decode(char const* data, int size) {
    if (data == nullptr) {
        return false;
    }
    return WithoutThrow([&] {
        CSarnetBufferReader reader(data, size);
        reader.Read(*this);
        return true;
    });
}

void _tagSarnetBufferBase::BeforeEncode(CSarnetBufferWriter& /*writer*/) const {}

void _tagSarnetBufferBase::BeforeDecode(CSarnetBufferReader& /*reader*/) {}

_tagSarnetActionBufferBase::_tagSarnetActionBufferBase(int action) : _action(action) {}

_tagSarnetActionBufferBase::~_tagSarnetActionBufferBase() = default;

int _tagSarnetActionBufferBase::GetAction() const {
    return _action;
}

void _tagSarnetActionBufferBase::BeforeEncode(CSarnetBufferWriter& writer) const {
    writer.Write(_action);
}

void _tagSarnetActionBufferBase::BeforeDecode(CSarnetBufferReader& reader) {
    reader.Read(_action);
}

_tagSarnetAction::_tagSarnetAction() : _tagSarnetActionBufferBase(0) {}

_tagSarnetAction::~_tagSarnetAction() = default;

void _tagSarnetAction::WriteTo(CSarnetBufferWriter& /*writer*/) const {}

void _tagSarnetAction::ReadFrom(CSarnetBufferReader& /*reader*/) {}

AObject* _tagSarnetAction::Clone() const {
    return WithoutThrow([this]() -> AObject* {
        auto* copy = new _tagSarnetAction;
        copy->_action = _action;
        return copy;
    });
}

_tagSarnetBufferBuffer::_tagSarnetBufferBuffer() : _bytes(nullptr), _length(0) {}

_tagSarnetBufferBuffer::_tagSarnetBufferBuffer(_tagSarnetBufferBuffer const& other)
    : _tagSarnetBufferBase(other), _bytes(nullptr), _length(0) {
    *this = other;
}

_tagSarnetBufferBuffer& _tagSarnetBufferBuffer::operator=(_tagSarnetBufferBuffer const& other) {
    if (this == &other) {
        return *this;
    }
    WithoutThrow([&] {
        unsigned char* const copy = other._bytes != nullptr ? CopyOf(other._bytes, other._length) : nullptr;
        delete[] _bytes;
        _bytes = copy;
        _length = other._length;
    });
    return *this;
}

_tagSarnetBufferBuffer::~_tagSarnetBufferBuffer() {
    delete[] _bytes;
}

void _tagSarnetBufferBuffer::WriteTo(CSarnetBufferWriter& /*writer*/) const {}

void _tagSarnetBufferBuffer::ReadFrom(CSarnetBufferReader& /*reader*/) {}

AObject* _tagSarnetBufferBuffer::Clone() const {
    return WithoutThrow([this]() -> AObject* {
        auto copy = std::make_unique<_tagSarnetBufferBuffer>();
        bool const hasBlock = copy->decode(reinterpret_cast<char const*>(_bytes), _length);
        return hasBlock ? copy.release() : nullptr;
    });
}

bool _tagSarnetBufferBuffer::encode(char* buffer, int& size) const {
    if (buffer == nullptr || _length >= size) {
        return false;
    }
    if (_bytes != nullptr) {
        std::memcpy(buffer, _bytes, static_cast<size_t>(_length));
    }
    size = _length;
    return true;
}

bool _tagSarnetBufferBuffer::encode(AString& out) const {
    if (_bytes == nullptr) {
        return false;
    }
    return WithoutThrow([&] {
        out.assign(reinterpret_cast<char const*>(_bytes), _length);
        return true;
    });
}

bool _tagSarnetBufferBuffer::decode(AString const& data) {
    return decode(data.data(), data.GetLength());
}

bool _tagSarnetBufferBuffer::decode(char const* data, int size) {
    if (data == nullptr || size < 1) {
        return false;
    }
    return WithoutThrow([&] {
        unsigned char* const block = CopyOf(data, size);
        delete[] _bytes;
        _bytes = block;
        _length = size;
        return true;
    });
}

}  // namespace Ubrix
