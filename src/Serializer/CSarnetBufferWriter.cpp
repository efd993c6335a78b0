#include <VelmorCore/Buffer.h>

#include <climits>
#include <cstring>
#include <functional>
#include <stdexcept>

#include "Base/Container/Nesting.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

namespace {

// Appends the low `width` bytes of `value`, the highest first.
void AppendBigEndian(AString& buffer, unsigned long long value, int width) {
    char bytes[8];
    for (int i = 0; i < width; ++i) {
        bytes[i] = static_cast<char>(static_cast<unsigned char>(value >> (8 * (width - 1 - i))));
    }
    buffer.append(bytes, width);
}

// Whether `bytes` lie in the text's own block.
bool LieIn(AString const& text, char const* bytes) {
    std::less<> const isBelow;
    return !text.Empty() && !isBelow(bytes, text.data()) && isBelow(bytes, text.data() + text.GetLength());
}

}  // namespace

// A value of several parts: written whole, or not at all.
class CSarnetBufferWriter::Whole {
public:
    explicit Whole(CSarnetBufferWriter& writer)
        : _data(writer._buffer._data), _before(_data.Size()), _isDone(false) {}
    ~Whole() {
        if (!_isDone) {
            _data.Cut(_before);
        }
    }
    Whole(Whole const&) = delete;
    Whole& operator=(Whole const&) = delete;

    // Does `work`, in which a want of memory unwinds.
    template <class Work>
    static void Write(CSarnetBufferWriter& writer, Work&& work) {
        Platform::WithoutThrow([&] {
            Whole whole(writer);
            NestingLevel const level;
            NestingLevel::Check();
            work();
            whole._isDone = true;
        });
    }

private:
    AData& _data;
    int _before;
    bool _isDone;
};

CSarnetBufferWriter::CSarnetBufferWriter() = default;

CSarnetBufferWriter::CSarnetBufferWriter(CSarnetBufferWriter const& other) = default;

CSarnetBufferWriter::~CSarnetBufferWriter() = default;

CSarnetBufferWriter& CSarnetBufferWriter::operator=(CSarnetBufferWriter const& other) = default;

void CSarnetBufferWriter::Write(bool value) {
    AppendBigEndian(_buffer, value ? 1 : 0, 1);
}

void CSarnetBufferWriter::Write(signed char value) {
    AppendBigEndian(_buffer, static_cast<unsigned char>(value), 1);
}

void CSarnetBufferWriter::Write(unsigned char value) {
    AppendBigEndian(_buffer, value, 1);
}

void CSarnetBufferWriter::Write(short value) {
    AppendBigEndian(_buffer, static_cast<unsigned short>(value), 2);
}

void CSarnetBufferWriter::Write(unsigned short value) {
    AppendBigEndian(_buffer, value, 2);
}

void CSarnetBufferWriter::Write(int value) {
    AppendBigEndian(_buffer, static_cast<unsigned int>(value), 4);
}

void CSarnetBufferWriter::Write(unsigned int value) {
    AppendBigEndian(_buffer, value, 4);
}

void CSarnetBufferWriter::Write(long long value) {
    AppendBigEndian(_buffer, static_cast<unsigned long long>(value), 8);
}

void CSarnetBufferWriter::Write(unsigned long long value) {
    AppendBigEndian(_buffer, value, 8);
}

void CSarnetBufferWriter::Write(AString const& text) {
    WriteCounted(text.GetLength(), text.data(), text.GetLength());
}

void CSarnetBufferWriter::Write(char const* text) {
    size_t const length = std::strlen(text);
    if (length >= INT_MAX) {
        Platform::PassOnWant();
        return;
    }
    int const size = length > 0 ? static_cast<int>(length) + 1 : 0;
    WriteCounted(size, text, size);
}

void CSarnetBufferWriter::Write(unsigned char const* bytes, int size) {
    WriteCounted(size, reinterpret_cast<char const*>(bytes), size);
}

void CSarnetBufferWriter::WriteCounted(int count, char const* bytes, int size) {
    Whole::Write(*this, [&] {
        if (size > 0 && LieIn(_buffer, bytes)) {
            // The buffer moves as it grows.
            AString const copy(bytes, size);
            Write(count);
            _buffer += copy;
        } else {
            Write(count);
            _buffer.append(bytes, size);
        }
    });
}

void CSarnetBufferWriter::Write(AArray const& array) {
    Whole::Write(*this, [&] {
        int const count = array.Count();
        Write(count);
        for (int i = 0; i < count; ++i) {
            Write(array.ObjectAtIndex(i));
        }
    });
}

void CSarnetBufferWriter::Write(ADictionary const& dictionary) {
    Whole::Write(*this, [&] {
        int const count = dictionary.Count();
        Write(count);
        for (int i = 0; i < count; ++i) {
            AObject const* key = dictionary.KeyAt(i);
            Write(key);
            Write(dictionary.ObjectForKey(key));
        }
    });
}

void CSarnetBufferWriter::Write(AObject const* object) {
    if (object == nullptr) {
        return;
    }
    switch (object->ObjectType()) {
        case AObject::TypeObject:
            // The kind is shared with classes that can't be encoded.
            Write(dynamic_cast<_tagSarnetBufferBase const*>(object));
            break;
        case AObject::TypeString:
            Write(static_cast<AString const&>(*object));
            break;
        case AObject::TypeNumber:
            WriteNumber(static_cast<ANumber const&>(*object));
            break;
        case AObject::TypeArray:
            Write(static_cast<AArray const&>(*object));
            break;
        case AObject::TypeDictionary:
            Write(static_cast<ADictionary const&>(*object));
            break;
        case AObject::TypeData:
            break;
    }
}

void CSarnetBufferWriter::WriteNumber(ANumber const& number) {
    switch (number.GetType()) {
        case ANumber::Bool:
            Write(number.BoolValue());
            break;
        case ANumber::Byte:
            Write(number.ByteValue());
            break;
        case ANumber::Int32:
            Write(number.IntValue());
            break;
        case ANumber::Int64:
            Write(number.LongLongValue());
            break;
        case ANumber::Null:
        case ANumber::Float:
        case ANumber::Double:
            break;
    }
}

void CSarnetBufferWriter::Write(_tagSarnetBufferBase const& structure) {
    Whole::Write(*this, [&] {
        structure.BeforeEncode(*this);
        structure.WriteTo(*this);
    });
}

void CSarnetBufferWriter::Write(_tagSarnetBufferBase& structure) {
    Write(static_cast<_tagSarnetBufferBase const&>(structure));
}

void CSarnetBufferWriter::Write(_tagSarnetBufferBase const* structure) {
    if (structure != nullptr) {
        Write(*structure);
    }
}

void CSarnetBufferWriter::Write(_tagSarnetBufferBase* structure) {
    Write(static_cast<_tagSarnetBufferBase const*>(structure));
}

AString const& CSarnetBufferWriter::GetBufferData() const {
    return _buffer;
}

}  // namespace Ubrix
