#include <VelmorCore/Value.h>

#include <cassert>
#include <cstring>
#include <utility>

#include "Base/Container/Value/ValueMap.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

// Numbers of so many bytes fit 64 bits.
constexpr size_t kLongestNumber = 18;

}  // namespace

// Constant-initialised: it reads right in whatever order the library's files come up.
Value const Value::Null{Value::Nothing()};

Value& ScratchValue() {
    thread_local Value scratch;
    scratch = Value::Null;
    return scratch;
}

Value::Value(ValueType type) : Value(Nothing()) {
    if (type < NullValue || type > ObjectValue) {
        VC_LOG(Error, "Ubrix::Value::Value", "Unsupport type:%d", static_cast<int>(type));
    }
    if (type == ArrayValue || type == ObjectValue) {
        _value.map = new ValueMap;
    }
    _type = type;
}

Value::Value(int value) : Value(static_cast<long long>(value)) {}

Value::Value(long long value) : Value(Nothing()) {
    _value.integer = value;
    _type = IntValue;
}

Value::Value(unsigned int value) : Value(static_cast<unsigned long long>(value)) {}

Value::Value(unsigned long long value) : Value(Nothing()) {
    _value.natural = value;
    _type = UIntValue;
}

Value::Value(double value) : Value(Nothing()) {
    _value.real = value;
    _type = RealValue;
}

Value::Value(bool value) : Value(Nothing()) {
    _value.boolean = value;
    _type = BooleanValue;
}

Value::Value(char const* text) : Value(StringValue) {
    if (text == nullptr || std::strlen(text) > kLongestNumber || !AString::IsNumberic(text)) {
        _value.text = ValueKey::Duplicate(text);
    } else if (AString::IsReal(text)) {
        *this = AString(text).AsDouble();
    } else {
        *this = AString(text).AsInt64();
    }
}

Value::Value(Value const& other) : Value(Nothing()) {
    if (other.HasMap()) {
        _value.map = new ValueMap(*other._value.map);
    } else if (other._type == StringValue) {
        _value.text = ValueKey::Duplicate(other._value.text);
    } else {
        _value = other._value;
    }
    _type = other._type;
}

Value::~Value() {
    if (_type == StringValue) {
        delete[] _value.text;
    } else if (HasMap()) {
        delete _value.map;
    }
}

Value& Value::operator=(Value const& other) {
    Value copy(other);
    swap(copy);
    return *this;
}

Value Value::Text(char const* text) {
    Value value(StringValue);
    value._value.text = ValueKey::Duplicate(text);
    return value;
}

void Value::swap(Value& other) noexcept {
    std::swap(_value, other._value);
    std::swap(_type, other._type);
}

ValueType Value::type() const {
    return _type;
}

bool Value::isNull() const {
    return _type == NullValue;
}

bool Value::isBool() const {
    if (_type != StringValue) {
        return _type == BooleanValue;
    }
    char const* text = asCString();
    return std::strcmp(text, "true") == 0 || std::strcmp(text, "false") == 0;
}

bool Value::isInt() const {
    return _type == IntValue;
}

bool Value::isUInt() const {
    return _type == UIntValue;
}

bool Value::isIntegral() const {
    return isInt() || isUInt();
}

bool Value::isDouble() const {
    return _type == RealValue;
}

bool Value::isNumeric() const {
    return isIntegral() || isDouble();
}

bool Value::isString() const {
    return _type == StringValue;
}

bool Value::isArray() const {
    return _type == ArrayValue;
}

bool Value::isObject() const {
    return _type == ObjectValue;
}

bool Value::HasMap() const {
    return _type == ArrayValue || _type == ObjectValue;
}

Value& Value::operator[](int index) {
    assert(_type == ArrayValue || _type == NullValue);
    if (_type == NullValue) {
        *this = Value(ArrayValue);
    }
    if (_type != ArrayValue) {
        VC_LOG(Error, "Ubrix::Value::operator []", "Type is not an array:%d", static_cast<int>(_type));
        return ScratchValue();
    }
    return _value.map->At(ValueKey(index));
}

Value& Value::operator[](char const* key) {
    assert(_type == ObjectValue || _type == NullValue);
    if (_type == NullValue) {
        *this = Value(ObjectValue);
    }
    if (_type != ObjectValue) {
        VC_LOG(Error, "Ubrix::Value::operator []", "Type is not an object:%d", static_cast<int>(_type));
        return ScratchValue();
    }
    return _value.map->At(ValueKey(key));
}

Value const& Value::operator[](int index) const {
    assert(_type == ArrayValue || _type == NullValue);
    if (_type == ArrayValue) {
        return _value.map->Find(ValueKey(index));
    }
    if (_type != NullValue) {
        VC_LOG(Error, "Ubrix::Value::operator []", "Type is not an array:%d", static_cast<int>(_type));
    }
    return Null;
}

Value const& Value::operator[](char const* key) const {
    assert(_type == ObjectValue || _type == NullValue);
    if (_type == ObjectValue) {
        return _value.map->Find(ValueKey(key));
    }
    if (_type != NullValue) {
        VC_LOG(Error, "Ubrix::Value::operator []", "Type is not an object:%d", static_cast<int>(_type));
    }
    return Null;
}

int Value::Size() const {
    return HasMap() ? static_cast<int>(_value.map->entries.size()) : 0;
}

}  // namespace Ubrix
