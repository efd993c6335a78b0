// Order and equality of values.
#include <VelmorCore/Value.h>

#include <cstring>

#include "Base/Container/Value/ValueMap.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

// These give less than, equal to or greater than 0 for the order of the two; 0 where neither is less.
template <class T>
int Order(T const& left, T const& right) {
    if (left < right) {
        return -1;
    }
    return right < left ? 1 : 0;
}

int OrderOfTexts(char const* left, char const* right) {
    if (left == nullptr || right == nullptr) {
        return Order(left != nullptr, right != nullptr);
    }
    return std::strcmp(left, right);
}

}  // namespace

// One walk tells the order of two entries: to ask twice, once each way, would double the work with each
// level.
int Value::OrderOfEntries(Value const& other) const {
    NestingLevel const level;
    int order = Order(Size(), other.Size());
    if (order != 0 || Size() == 0 || NestingLevel::IsTooDeep()) {
        return order;
    }
    auto right = other._value.map->entries.begin();
    for (auto const& left : _value.map->entries) {
        order = Order(left.first, right->first);
        if (order == 0) {
            order = left.second.OrderTo(right->second);
        }
        if (order != 0) {
            break;
        }
        ++right;
    }
    return order;
}

int Value::OrderTo(Value const& other) const {
    if (_type != other._type) {
        return Order(_type, other._type);
    }
    switch (_type) {
        case NullValue:
            return 0;
        case IntValue:
            return Order(static_cast<int>(_value.integer), static_cast<int>(other._value.integer));
        case UIntValue:
            return Order(_value.natural, other._value.natural);
        case RealValue:
            return Order(_value.real, other._value.real);
        case StringValue:
            return OrderOfTexts(_value.text, other._value.text);
        case BooleanValue:
            return Order(_value.boolean, other._value.boolean);
        case ArrayValue:
        case ObjectValue:
            return OrderOfEntries(other);
    }
    VC_LOG(Error, "Ubrix::Value::operator <", "Unsupported type:%d", static_cast<int>(_type));
    return 0;
}

bool Value::operator<(Value const& other) const {
    return OrderTo(other) < 0;
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

bool Value::HasEqualEntries(Value const& other) const {
    NestingLevel const level;
    if (Size() != other.Size() || NestingLevel::IsTooDeep()) {
        return false;
    }
    return Size() == 0 || _value.map->entries == other._value.map->entries;
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
            return OrderOfTexts(_value.text, other._value.text) == 0;
        case BooleanValue:
            return _value.boolean == other._value.boolean;
        case ArrayValue:
        case ObjectValue:
            return HasEqualEntries(other);
    }
    VC_LOG(Error, "Ubrix::Value::operator ==", "Unsupported type:%d", static_cast<int>(_type));
    return false;
}

bool Value::operator!=(Value const& other) const {
    return !(*this == other);
}

}  // namespace Ubrix
