#include <VelmorCore/Object.h>

#include <cstring>

#include "Base/Container/TextLength.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

AStringBuilder::AStringBuilder() = default;

AStringBuilder::AStringBuilder(char const* text) {
    _data.Append(text);
}

AStringBuilder::AStringBuilder(AString const& text) {
    Append(text);
}

AStringBuilder::AStringBuilder(AString const* text) {
    Append(text);
}

AStringBuilder::AStringBuilder(AStringBuilder const* other) {
    if (other != nullptr) {
        Append(other->ToString());
    }
}

AStringBuilder::AStringBuilder(AStringBuilder const& other) = default;

AStringBuilder::~AStringBuilder() = default;

void AStringBuilder::Append(char const* text) {
    if (text != nullptr && _data.Data() == nullptr) {
        // Room for a terminator, which an empty text has, too.
        _data.SetCapacity(2);
    }
    _data.Append(text);
}

void AStringBuilder::Append(AString const& text) {
    _data.Append(AsBytes(text.CString()), text.GetLength());
}

void AStringBuilder::Append(AString const* text) {
    if (text != nullptr) {
        Append(*text);
    }
}

AStringBuilder& AStringBuilder::operator+=(char const* text) {
    Append(text);
    return *this;
}

AStringBuilder& AStringBuilder::operator+=(AString const& text) {
    Append(text);
    return *this;
}

AStringBuilder& AStringBuilder::operator=(char const* text) {
    _data = text;
    return *this;
}

AStringBuilder& AStringBuilder::operator=(AString const& text) {
    if (text.Empty()) {
        _data.Clear();
    } else {
        _data.Assign(AsBytes(text.CString()), text.GetLength());
    }
    return *this;
}

AStringBuilder& AStringBuilder::operator=(AStringBuilder const& other) {
    if (other._data.Empty()) {
        _data.Clear();
    } else if (this != &other) {
        _data = other._data;
    }
    return *this;
}

void AStringBuilder::Clear() {
    _data.Clear();
}

char const* AStringBuilder::ToString() const {
    return reinterpret_cast<char const*>(_data.Data());
}

bool AStringBuilder::IsEqual(AObject const* other) const {
    // The kind says nothing here: it is that of every class without one.
    auto const* builder = dynamic_cast<AStringBuilder const*>(other);
    if (builder == nullptr) {
        return false;
    }
    char const* left = ToString();
    char const* right = builder->ToString();
    if (left == nullptr || right == nullptr) {
        return left == right;
    }
    return std::strcmp(left, right) == 0;
}

AObject* AStringBuilder::Clone() const {
    return Platform::WithoutThrow([this]() -> AObject* { return new AStringBuilder(this); });
}

}  // namespace Ubrix
