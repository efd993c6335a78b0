#include <VelmorCore/Object.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "Base/Container/Number/RealText.h"
#include "Base/Container/TextLength.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

namespace {

// Capacity to begin with for a content of `length` bytes: what doesn't fit an empty string's block gets its
// own at once.
int FirstCapacity(int length) {
    constexpr int kEmptyCapacity = 64;
    return length < kEmptyCapacity ? kEmptyCapacity : 0;
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsLonePunctuation(char const* text) {
    return (*text == '.' || *text == '-') && text[1] == '\0';
}

}  // namespace

AString::AString() : AObject(TypeString) {}

AString::AString(char const* text) : AString(text, text != nullptr ? TextLength(text) : 0) {}

AString::AString(char const* text, int length) : AObject(TypeString), _data(FirstCapacity(length)) {
    _data.Assign(AsBytes(text), length);
}

// NOLINTNEXTLINE(bugprone-copy-constructor-init): a copy begins unowned, so the root is not copied.
AString::AString(AString const& other) : AObject(TypeString), _data(FirstCapacity(other.GetLength())) {
    _data.Assign(other._data.Data(), other._data.Size());
}

AString::~AString() = default;

AString& AString::operator=(AString const& other) {
    if (this != &other) {
        _data = other._data;
    }
    return *this;
}

AString& AString::operator=(char const* text) {
    if (text == nullptr) {
        Clear();
    } else if (int const length = TextLength(text); length >= 0) {
        _data.Assign(AsBytes(text), length);
    }
    return *this;
}

void AString::assign(char const* text, int length) {
    _data.Assign(AsBytes(text), length);
}

void AString::Clear() {
    _data.Clear();
}

void AString::clear() {
    _data.Clear();
}

int AString::GetLength() const {
    return _data.Size();
}

int AString::length() const {
    return _data.Size();
}

int AString::size() const {
    return _data.Size();
}

bool AString::Empty() const {
    return _data.Size() == 0;
}

bool AString::empty() const {
    return _data.Size() == 0;
}

char const* AString::CString() const {
    return _data.Empty() ? "" : data();
}

char const* AString::c_str() const {
    return CString();
}

char const* AString::data() const {
    return reinterpret_cast<char const*>(_data.Data());
}

char AString::at(int index) const {
    return data()[index];
}

int AString::Find(int byte) const {
    return _data.Find(byte);
}

AString& AString::append(char const* text) {
    _data.Append(text);
    return *this;
}

AString& AString::append(AString const& text) {
    return append(text.c_str());
}

AString& AString::append(char const* text, int length) {
    if (length > 0) {
        _data.Append(AsBytes(text), length);
    }
    return *this;
}

AString& AString::operator+=(AString const& text) {
    if (!text.Empty()) {
        _data.Append(text._data);
    }
    return *this;
}

AString& AString::operator+=(char const* text) {
    return append(text);
}

AString& AString::operator+=(char character) {
    return character != '\0' ? append(&character, 1) : *this;
}

bool AString::IsEqual(AObject const* other) const {
    if (other == nullptr || other->ObjectType() != TypeString) {
        return false;
    }
    return std::strcmp(c_str(), static_cast<AString const*>(other)->c_str()) == 0;
}

AObject* AString::Clone() const {
    return Platform::WithoutThrow([this]() -> AObject* { return new AString(*this); });
}

bool AString::operator==(AString const& other) const {
    return IsEqual(&other);
}

bool AString::operator==(AString const& other) {
    return IsEqual(&other);
}

bool AString::operator!=(AString const& other) const {
    return !IsEqual(&other);
}

bool AString::operator!=(AString const& other) {
    return !IsEqual(&other);
}

bool AString::IsNullOrEmpty(char const* text) {
    return text == nullptr || *text == '\0';
}

bool AString::IsNullOrEmpty(AString const& text) {
    return IsNullOrEmpty(text.CString());
}

bool AString::IsNullOrEmpty(AString const* text) {
    return text == nullptr || IsNullOrEmpty(*text);
}

bool AString::IsNumberic(char const* text) {
    if (IsNullOrEmpty(text) || IsLonePunctuation(text)) {
        return false;
    }
    int points = 0;
    for (char const* at = *text == '-' ? text + 1 : text; *at != '\0'; ++at) {
        points += *at == '.' ? 1 : 0;
        if (points > 1 || (*at != '.' && !IsDigit(*at))) {
            return false;
        }
    }
    return true;
}

bool AString::IsNumberic() const {
    return IsNumberic(c_str());
}

bool AString::IsReal(char const* text) {
    if (IsNullOrEmpty(text) || IsLonePunctuation(text)) {
        return false;
    }
    int points = 0;
    for (char const* at = text; *at != '\0'; ++at) {
        points += *at == '.' ? 1 : 0;
        if (points > 1 || (*at != '.' && *at != '-' && !IsDigit(*at))) {
            return false;
        }
    }
    return points == 1;
}

bool AString::IsReal() const {
    return IsReal(c_str());
}

long long AString::AsInt64() const {
    return IsNumberic() ? std::strtoll(c_str(), nullptr, 10) : 0;
}

int AString::AsInt() const {
    return static_cast<int>(AsInt64());
}

bool AString::AsBoolean() const {
    return AsInt() != 0;
}

double AString::AsDouble() const {
    return IsNumberic() ? TextToReal(c_str()) : 0.0;
}

float AString::AsFloat() const {
    return static_cast<float>(AsDouble());
}

bool AString::StartWith(char const* text, char const* prefix) {
    if (text == nullptr || IsNullOrEmpty(prefix)) {
        return false;
    }
    return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

bool AString::StartWith(char const* prefix) const {
    return StartWith(c_str(), prefix);
}

bool AString::EndWith(char const* text, char const* suffix) {
    if (text == nullptr || IsNullOrEmpty(suffix)) {
        return false;
    }
    size_t const length = std::strlen(text);
    size_t const tail = std::strlen(suffix);
    return length >= tail && std::memcmp(text + (length - tail), suffix, tail) == 0;
}

bool AString::EndWith(char const* suffix) const {
    return EndWith(c_str(), suffix);
}

bool AString::Split(AArray* out, char const* source, char const* delimiters) {
    if (out == nullptr || source == nullptr || delimiters == nullptr) {
        return false;
    }
    return Platform::WithoutThrow([&] {
        // All or none: memory may run out on the way.
        AArray pieces;
        for (char const* begin = source;;) {
            char const* end = begin + std::strcspn(begin, delimiters);
            if (end - begin > INT_MAX) {
                throw std::length_error("piece");
            }
            auto piece = std::make_unique<AString>(begin, static_cast<int>(end - begin));
            pieces.Add(piece.get(), true);
            static_cast<void>(piece.release());
            if (*end == '\0') {
                break;
            }
            begin = end + 1;
        }
        out->Take(pieces);
        return true;
    });
}

AString AString::Dump(char const* prefix) const {
    static char const kDigits[] = "0123456789abcdef";
    return Platform::WithoutThrow([&] {
        AString dump;
        if (_data.Empty()) {
            return dump;
        }
        char const* lead = prefix != nullptr ? prefix : "0x";
        long long const capacity = _data.Size() * (static_cast<long long>(TextLength(lead)) + 3) + 1;
        if (capacity > INT_MAX) {
            throw std::length_error("dump");
        }
        dump._data.SetCapacity(static_cast<int>(capacity));
        unsigned char const* bytes = _data.Data();
        for (int i = 0; i < _data.Size(); ++i) {
            char const digits[] = {kDigits[bytes[i] >> 4], kDigits[bytes[i] & 15], '\0'};
            dump.append(i > 0 ? "," : "").append(lead).append(digits);
        }
        return dump;
    });
}

}  // namespace Ubrix
