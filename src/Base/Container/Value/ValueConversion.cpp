// Reading a value as another type.
#include <VelmorCore/Log.h>
#include <VelmorCore/Value.h>

#include <cstring>

#include "Base/Container/Number/RealText.h"
#include "Base/Container/Number/RealToInteger.h"

namespace Ubrix {

void Value::LogRefusal(int level, char const* function, char const* message) const {
    if (_type < NullValue || _type > ObjectValue) {
        XLog(ALogPriorityError, __FILE__, __LINE__, function, "Unsupported type:%d", static_cast<int>(_type));
    } else {
        XLog(static_cast<ALogPriority>(level), __FILE__, __LINE__, function, "%s", message);
    }
}

bool Value::ToBits(long long* bits) const {
    switch (_type) {
        case NullValue:
            *bits = 0;
            return true;
        case IntValue:
            *bits = _value.integer;
            return true;
        case UIntValue:
            *bits = static_cast<long long>(_value.natural);
            return true;
        case BooleanValue:
            *bits = _value.boolean ? 1 : 0;
            return true;
        default:
            *bits = 0;
            return false;
    }
}

int Value::asInt32() const {
    long long bits = 0;
    if (_type == RealValue) {
        return RealToInt32(_value.real);
    }
    if (!ToBits(&bits)) {
        LogRefusal(ALogPriorityWarning, "Ubrix::Value::asInt32", "Type is not convertible to int");
    }
    return static_cast<int>(bits);
}

unsigned int Value::asUInt32() const {
    long long bits = 0;
    if (_type == RealValue) {
        return static_cast<unsigned int>(RealToUInt64(_value.real));
    }
    if (!ToBits(&bits)) {
        LogRefusal(ALogPriorityWarning, "Ubrix::Value::asUInt32", "Type is not convertible to uint");
    }
    return static_cast<unsigned int>(bits);
}

long long Value::asInt64() const {
    long long bits = 0;
    if (_type == RealValue) {
        return RealToInt32(_value.real);
    }
    bool const isKnown = _type >= NullValue && _type <= ObjectValue;
    if (!ToBits(&bits) && isKnown) {
        LogRefusal(ALogPriorityWarning, "Ubrix::Value::asInt64", "Type is not convertible to Int64");
    }
    return bits;
}

unsigned long long Value::asUInt64() const {
    static char const kFunction[] = "Ubrix::Value::asUInt64";
    long long bits = 0;
    if (_type == RealValue) {
        return RealToUInt64(_value.real);
    }
    if (!ToBits(&bits)) {
        LogRefusal(ALogPriorityWarning, kFunction, "Type is not convertible to UInt64");
    } else if (_type == IntValue && bits < 0) {
        LogRefusal(ALogPriorityWarning, kFunction, "Negative integer can not be converted to UInt64");
    }
    return static_cast<unsigned long long>(bits);
}

float Value::asDouble() const {
    long long bits = 0;
    if (_type == RealValue) {
        return static_cast<float>(_value.real);
    }
    if (_type == UIntValue) {
        return static_cast<float>(static_cast<double>(_value.natural));
    }
    if (!ToBits(&bits)) {
        LogRefusal(ALogPriorityError, "Ubrix::Value::asDouble", "Type is not convertible to double");
    }
    return static_cast<float>(static_cast<double>(bits));
}

float Value::asFloat() const {
    return asDouble();
}

bool Value::asBool() const {
    switch (_type) {
        case RealValue:
            return _value.real != 0.0;
        case StringValue:
            return std::strcmp(asCString(), "true") == 0;
        case ArrayValue:
        case ObjectValue:
            return Size() > 0;
        default:
            break;
    }
    long long bits = 0;
    if (!ToBits(&bits)) {
        LogRefusal(ALogPriorityError, "Ubrix::Value::asBool", "");
    }
    return bits != 0;
}

AString Value::asString() const {
    switch (_type) {
        case NullValue:
            return AString();
        case IntValue:
            return ll2str(_value.integer);
        case UIntValue:
            return ll2str(static_cast<long long>(_value.natural));
        case RealValue:
            return RealToText(_value.real);
        case StringValue:
        case BooleanValue:
            return asCString();
        default:
            LogRefusal(ALogPriorityError, "Ubrix::Value::asString", "Type is not convertible to String");
            return AString();
    }
}

char const* Value::asCString() const {
    switch (_type) {
        case NullValue:
            return "";
        case StringValue:
            return _value.text != nullptr ? _value.text : "";
        case BooleanValue:
            return _value.boolean ? "true" : "false";
        default:
            LogRefusal(ALogPriorityError, "Ubrix::Value::asCString", "Type is not convertible to String");
            return "";
    }
}

}  // namespace Ubrix
