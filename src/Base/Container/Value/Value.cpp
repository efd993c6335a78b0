#include <VelmorCore/Value.h>

#include <cassert>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "Base/Container/Number/RealText.h"
#include "Base/Container/Value/ValueMap.h"
#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

using Platform::WithoutThrow;

namespace {

// Numbers of so many bytes fit 64 bits.
constexpr size_t kLongestNumber = 18;

}  // namespace

// Constant-initialised: it reads right in whatever order the library's files come up.
Value const Value::Null{Value::Nothing()};

Value& ScratchValue() {
    // Without a destructor: to have one called at the thread's end takes memory, and there may be none.
    thread_local Platform::Immortal<Value> scratch;
    Value nothing;
    scratch->swap(nothing);
    return *scratch;
}

Value::Value(ValueType type) : Value(Nothing()) {
    if (type < NullValue || type > ObjectValue) {
        VC_LOG(Error, "Ubrix::Value::Value", "Unsupport type:%d", static_cast<int>(type));
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

Value::Value(char const* text) : Value(Nothing()) {
    if (text == nullptr || std::strlen(text) > kLongestNumber || !AString::IsNumberic(text)) {
        SetText(text);
    } else if (AString::IsReal(text)) {
        _value.real = TextToReal(text);
        _type = RealValue;
    } else {
        _value.integer = std::strtoll(text, nullptr, 10);
        _type = IntValue;
    }
}

void Value::SetText(char const* text) {
    WithoutThrow([&] {
        _value.text = ValueKey::Duplicate(text);
        _type = StringValue;
    });
}

Value::Value(Value const& other) : Value(Nothing()) {
    if (other._type == StringValue) {
        SetText(other._value.text);
    } else if (other.HasMap()) {
        WithoutThrow([&] {
            NestingLevel const level;
            NestingLevel::Check();
            _value.map = new ValueMap(*other._value.map);
            _type = other._type;
        });
    } else {
        _value = other._value;
        _type = other._type;
    }
}

Value::~Value() {
    if (_type == StringValue) {
        delete[] _value.text;
    } else if (HasMap()) {
        Discard(_value.map);
    }
}

Value& Value::operator=(Value const& other) {
    WithoutThrow([&] {
        Value copy(other);
        swap(copy);
    });
    return *this;
}

Value Value::Text(char const* text) {
    Value value;
    value.SetText(text);
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
    return (_type == ArrayValue || _type == ObjectValue) && _value.map != nullptr;
}

Value& Value::Entry(ValueType container, ValueKey const& key) {
    return *WithoutThrow(
        [&] {
            if (HasMap()) {
                return &_value.map->At(key);
            }
            auto map = std::make_unique<ValueMap>();
            Value& entry = map->At(key);
            _value.map = map.release();
            _type = container;
            return &entry;
        },
        [] { return &ScratchValue(); });
}

Value& Value::operator[](int index) {
    assert(_type == ArrayValue || _type == NullValue);
    if (_type != ArrayValue && _type != NullValue) {
        VC_LOG(Error, "Ubrix::Value::operator []", "Type is not an array:%d", static_cast<int>(_type));
        return ScratchValue();
    }
    return Entry(ArrayValue, ValueKey(index));
}

Value& Value::operator[](char const* key) {
    assert(_type == ObjectValue || _type == NullValue);
    if (_type != ObjectValue && _type != NullValue) {
        VC_LOG(Error, "Ubrix::Value::operator []", "Type is not an object:%d", static_cast<int>(_type));
        return ScratchValue();
    }
    return Entry(ObjectValue, ValueKey(key));
}

Value const& Value::operator[](int index) const {
    assert(_type == ArrayValue || _type == NullValue);
    if (_type == ArrayValue) {
        return HasMap() ? _value.map->Find(ValueKey(index)) : Null;
    }
    if (_type != NullValue) {
        VC_LOG(Error, "Ubrix::Value::operator []", "Type is not an array:%d", static_cast<int>(_type));
    }
    return Null;
}

Value const& Value::operator[](char const* key) const {
    assert(_type == ObjectValue || _type == NullValue);
    if (_type == ObjectValue) {
        return HasMap() ? _value.map->Find(ValueKey(key)) : Null;
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
