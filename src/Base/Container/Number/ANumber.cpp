#include <VelmorCore/Object.h>

#include <cmath>
#include <cstring>

#include "Base/Container/Number/IntegerText.h"
#include "Base/Container/Number/RealText.h"
#include "Base/Container/Number/RealToInteger.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

ANumber::ANumber() : AObject(TypeNumber), _kind(Null) {
    _value.int64 = 0;
}

ANumber::ANumber(bool value) : ANumber() {
    *this = value;
}

ANumber::ANumber(unsigned char value) : ANumber() {
    *this = value;
}

ANumber::ANumber(int value) : ANumber() {
    *this = value;
}

ANumber::ANumber(long long value) : ANumber() {
    *this = value;
}

ANumber::ANumber(float value) : ANumber() {
    *this = value;
}

ANumber::ANumber(double value) : ANumber() {
    *this = value;
}

ANumber::ANumber(ANumber const& other) : ANumber() {
    *this = other;
}

ANumber::~ANumber() {
    clear();
}

ANumber& ANumber::operator=(ANumber const& other) {
    if (this != &other) {
        _value = other._value;
        _kind = other._kind;
    }
    return *this;
}

ANumber& ANumber::operator=(bool value) {
    reset(Bool);
    _value.boolean = value;
    return *this;
}

ANumber& ANumber::operator=(unsigned char value) {
    reset(Byte);
    _value.byte = value;
    return *this;
}

ANumber& ANumber::operator=(int value) {
    reset(Int32);
    _value.int32 = value;
    return *this;
}

ANumber& ANumber::operator=(long long value) {
    reset(Int64);
    _value.int64 = value;
    return *this;
}

ANumber& ANumber::operator=(float value) {
    reset(Float);
    _value.real32 = value;
    return *this;
}

ANumber& ANumber::operator=(double value) {
    reset(Double);
    _value.real64 = value;
    return *this;
}

void ANumber::clear() {
    _value.int64 = 0;
    _kind = Null;
}

void ANumber::reset(Type type) {
    if (_kind != type) {
        clear();
        _kind = type;
    }
}

ANumber::Type ANumber::GetType() const {
    return _kind;
}

char const* ANumber::GetTypeString() const {
    switch (_kind) {
        case Bool:
            return "Bool";
        case Byte:
            return "Byte";
        case Int32:
            return "Int32";
        case Int64:
            return "Int64";
        case Float:
            return "Float";
        case Double:
            return "Double";
        case Null:
            break;
    }
    return "Unknown";
}

bool ANumber::IsNull() const {
    return _kind == Null;
}

bool ANumber::BoolValue() const {
    switch (_kind) {
        case Float:
        case Double:
            return DoubleValue() != 0.0;
        default:
            return LongLongValue() != 0;
    }
}

unsigned char ANumber::ByteValue() const {
    return static_cast<unsigned char>(IntValue());
}

int ANumber::IntValue() const {
    switch (_kind) {
        case Float:
        case Double:
            return RealToInt32(DoubleValue());
        default:
            return static_cast<int>(LongLongValue());
    }
}

long long ANumber::LongLongValue() const {
    switch (_kind) {
        case Bool:
            return _value.boolean ? 1 : 0;
        case Byte:
            return _value.byte;
        case Int32:
            return _value.int32;
        case Int64:
            return _value.int64;
        case Float:
        case Double:
            return RealToInt64(DoubleValue());
        case Null:
            break;
    }
    return 0;
}

float ANumber::FloatValue() const {
    return _kind == Float ? _value.real32 : static_cast<float>(DoubleValue());
}

double ANumber::DoubleValue() const {
    switch (_kind) {
        case Float:
            return static_cast<double>(_value.real32);
        case Double:
            return _value.real64;
        default:
            return static_cast<double>(LongLongValue());
    }
}

AString ANumber::ToString() const {
    switch (_kind) {
        case Bool:
            return bool2str(_value.boolean);
        case Byte:
        case Int32:
        case Int64:
            return ll2str(LongLongValue());
        case Float:
        case Double:
            return RealToText(DoubleValue());
        case Null:
            break;
    }
    return AString();
}

bool ANumber::FromString(char const* text) {
    if (text == nullptr) {
        return false;
    }
    if (std::strchr(text, '.') != nullptr) {
        *this = TextToReal(text);
        return true;
    }
    int value = 0;
    static_cast<void>(TextToInt32(text, 0, &value));
    if (value == INT_MIN) {
        *this = static_cast<long long>(value);
    } else if (value < 0 || value > 255) {
        *this = value;
    } else {
        *this = static_cast<unsigned char>(value);
    }
    return true;
}

bool ANumber::operator==(ANumber const& other) const {
    if (this == &other || (IsNull() && other.IsNull())) {
        return true;
    }
    if (_kind == Bool || other._kind == Bool) {
        return BoolValue() == other.BoolValue();
    }
    auto const isReal = [](Type kind) { return kind == Float || kind == Double; };
    if (!isReal(_kind) && !isReal(other._kind)) {
        return LongLongValue() == other.LongLongValue();
    }
    double const left = DoubleValue();
    double const right = other.DoubleValue();
    bool const opposite = (left < 0.0 && right > 0.0) || (left > 0.0 && right < 0.0);
    return !opposite && std::fabs(left - right) < 1e-6;
}

bool ANumber::operator==(ANumber const& other) {
    return static_cast<ANumber const&>(*this) == other;
}

bool ANumber::operator!=(ANumber const& other) const {
    return !(*this == other);
}

bool ANumber::operator!=(ANumber const& other) {
    return !(*this == other);
}

bool ANumber::IsEqual(AObject const* other) const {
    if (other == nullptr || other->ObjectType() != TypeNumber) {
        return false;
    }
    return *this == static_cast<ANumber const&>(*other);
}

AObject* ANumber::Clone() const {
    return Platform::WithoutThrow([this]() -> AObject* { return new ANumber(*this); });
}

}  // namespace Ubrix
