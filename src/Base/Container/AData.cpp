#include <VelmorCore/Object.h>

#include <climits>
#include <cstring>
#include <new>

#include "Base/Container/TextLength.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

namespace {

constexpr int kDefaultCapacity = 64;
// A block up to this size is kept for the next content, however short.
constexpr int kKeptCapacity = 128;

// A new block that begins with `size` bytes and is zero after them; null if there is no memory.
unsigned char* NewBlock(int capacity, unsigned char const* bytes, int size) {
    auto const used = static_cast<size_t>(size);
    auto* block = new (std::nothrow) unsigned char[static_cast<size_t>(capacity)];
    if (block == nullptr) {
        Platform::PassOnWant();
        return nullptr;
    }
    if (bytes != nullptr) {
        std::memcpy(block, bytes, used);
    }
    std::memset(block + used, 0, static_cast<size_t>(capacity) - used);
    return block;
}

// Capacity for content of `size` bytes: twice that, and less only at the bound of `int`; -1 beyond it.
int GrownCapacity(long long size) {
    if (size >= INT_MAX) {
        Platform::PassOnWant();
        return -1;
    }
    return size > INT_MAX / 2 ? INT_MAX : static_cast<int>(size * 2);
}

}  // namespace

AData::AData() : AData(kDefaultCapacity) {}

AData::AData(int capacity) : AObject(TypeData), _data(nullptr), _capacity(0), _size(0) {
    SetCapacity(capacity);
}

AData::AData(unsigned char const* bytes, int size) : AData(0) {
    Assign(bytes, size);
}

AData::AData(AData const& other) : AData(other._data, other._size) {}

AData::~AData() {
    delete[] _data;
}

void AData::Install(unsigned char* block, int capacity, int size) {
    if (block == nullptr && capacity > 0) {
        return;
    }
    delete[] _data;
    _data = block;
    _capacity = capacity;
    _size = size;
}

void AData::Renew(unsigned char const* bytes, int size) {
    if (bytes == nullptr || size <= 0) {
        Install(nullptr, 0, 0);
        return;
    }
    int const capacity = GrownCapacity(size);
    if (capacity > 0) {
        Install(NewBlock(capacity, bytes, size), capacity, size);
    }
}

void AData::Assign(unsigned char const* bytes, int size) {
    if (bytes == _data) {
        return;
    }
    bool const tooSmall = _capacity < size;
    bool const tooBig = _capacity > 2LL * size && _capacity > kKeptCapacity;
    if (tooSmall || tooBig) {
        Renew(bytes, size);
        return;
    }
    if (_data == nullptr) {
        return;
    }
    int const taken = bytes != nullptr && size > 0 ? size : 0;
    if (taken == _capacity) {
        Renew(bytes, taken);
        return;
    }
    if (taken > 0) {
        std::memmove(_data, bytes, static_cast<size_t>(taken));
    }
    std::memset(_data + taken, 0, static_cast<size_t>(_capacity - taken));
    _size = taken;
}

void AData::Append(unsigned char const* bytes, int size) {
    if (bytes == nullptr || size < 0) {
        return;
    }
    auto const count = static_cast<size_t>(size);
    if (_data != nullptr && LeftSize() > size) {
        std::memmove(_data + _size, bytes, count);
        _size += size;
        return;
    }
    int const capacity = GrownCapacity(static_cast<long long>(_size) + size);
    // The old block goes last: the bytes may lie in it.
    unsigned char* block = capacity > 0 ? NewBlock(capacity, _data, _size) : nullptr;
    if (block != nullptr) {
        std::memcpy(block + _size, bytes, count);
        Install(block, capacity, _size + size);
    }
}

void AData::Append(AData const& other) {
    Append(other._data, other._size);
}

void AData::Append(char const* text) {
    if (text != nullptr) {
        Append(AsBytes(text), TextLength(text));
    }
}

AData& AData::operator=(AData const& other) {
    if (this != &other) {
        Assign(other._data, other._size);
    }
    return *this;
}

AData& AData::operator=(char const* text) {
    if (text == nullptr || *text == '\0') {
        Clear();
    } else if (int const length = TextLength(text); length > 0) {
        Assign(AsBytes(text), length);
    }
    return *this;
}

AData& AData::operator+=(AData const& other) {
    Append(other);
    return *this;
}

unsigned char const* AData::Data() const {
    return _data;
}

int AData::Size() const {
    return _size;
}

int AData::Capacity() const {
    return _capacity;
}

int AData::LeftSize() const {
    return _capacity - _size;
}

void AData::SetCapacity(int capacity) {
    if (capacity == _capacity || capacity < 1) {
        return;
    }
    int const kept = capacity > _capacity ? _size : 0;
    Install(NewBlock(capacity, _data, kept), capacity, kept);
}

void AData::Clear() {
    unsigned char* const block =
        _capacity != kDefaultCapacity ? new (std::nothrow) unsigned char[kDefaultCapacity] : nullptr;
    if (block != nullptr) {
        Install(block, kDefaultCapacity, 0);
    }
    // Without another block the present one is emptied: a Clear never fails.
    Cut(0);
}

void AData::Cut(int size) {
    _size = size;
    if (_data != nullptr) {
        std::memset(_data + size, 0, static_cast<size_t>(_capacity - size));
    }
}

bool AData::Empty() const {
    return _data == nullptr || _size == 0;
}

int AData::Find(int byte) const {
    if (Empty()) {
        return -1;
    }
    auto const* found =
        static_cast<unsigned char const*>(std::memchr(_data, byte, static_cast<size_t>(_size)));
    return found != nullptr ? static_cast<int>(found - _data) : -1;
}

bool AData::IsEqual(AObject const* other) const {
    if (other == nullptr || other->ObjectType() != TypeData) {
        return false;
    }
    auto const& data = static_cast<AData const&>(*other);
    if (_data == nullptr || data._data == nullptr) {
        return _data == data._data;
    }
    return _size == data._size && std::memcmp(_data, data._data, static_cast<size_t>(_size)) == 0;
}

AObject* AData::Clone() const {
    return Platform::WithoutThrow([this]() -> AObject* { return new AData(*this); });
}

}  // namespace Ubrix
