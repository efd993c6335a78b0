// Order and equality of values.
#include <VelmorCore/Value.h>

#include <cstring>

#include "Base/Container/Value/ValueMap.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

bool TextLess(char const* left, char const* right) {
    if (left == nullptr || right == nullptr) {
        return left == nullptr && right != nullptr;
    }
    return std::strcmp(left, right) < 0;
}

bool TextEqual(char const* left, char const* right) {
    return left == right || (left != nullptr && right != nullptr && std::strcmp(left, right) == 0);
}

}  // namespace

bool Value::operator<(Value const& other) const {
    if (_type != other._type) {
        return _type < other._type;
    }
    switch (_type) {
        case NullValue:
            return false;
        case IntValue:
            return static_cast<int>(_value.integer) < static_cast<int>(other._value.integer);
        case UIntValue:
            return _value.natural < other._value.natural;
        case RealValue:
            return _value.real < other._value.real;
        case StringValue:
            return TextLess(_value.text, other._value.text);
        case BooleanValue:
            return !_value.boolean && other._value.boolean;
        case ArrayValue:
        case ObjectValue:
            if (Size() != other.Size()) {
                return Size() < other.Size();
            }
            return _value.map->entries < other._value.map->entries;
    }
    VC_LOG(Error, "Ubrix::Value::operator <", "Unsupported type:%d", static_cast<int>(_type));
    return false;
}

bool Value::operator<=(Value const& other) const {
    return !(other < *this);
}

bool Value::operator>(Value const& other) const {
    return other < *this;
}

bool Value::operator>=(Value const& other) const {
    return !(*this < other);
}

bool Value::operator==(Value const& other) const {
    if (_type != other._type) {
        return false;
    }
    switch (_type) {
        case NullValue:
            return true;
        case IntValue:
        case UIntValue:
            return _value.natural == other._value.natural;
        case RealValue:
            return _value.real == other._value.real;
        case StringValue:
            return TextEqual(_value.text, other._value.text);
        case BooleanValue:
            return _value.boolean == other._value.boolean;
        case ArrayValue:
        case ObjectValue:
            return _value.map->entries == other._value.map->entries;
    }
    VC_LOG(Error, "Ubrix::Value::operator ==", "Unsupported type:%d", static_cast<int>(_type));
    return false;
}

bool Value::operator!=(Value const& other) const {
    return !(*this == other);
}

}  // namespace Ubrix
