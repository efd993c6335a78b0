#include "Serializer/WYR/WyrBufUtil.h"

#include <cassert>

#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrTypeUtil.h"

namespace Ubrix {

namespace {

constexpr int kOk = WyrError::WYR_NO_ERROR;
constexpr char kIndent[] = "    ";

// A field's name, with or without the index of an element.
class Name {
public:
    explicit Name(char const* variable) : _variable(variable), _index(0), _isElement(false) {
        assert(nullptr != variable);
    }
    Name(char const* variable, unsigned index) : Name(variable) {
        _index = index;
        _isElement = true;
    }

    // Each is one write, so that a name without room for what follows leaves the position behind the indent.
    int printAlone(WyrBuf& buf, int indent, char separator) const {
        int const result = WyrBufUtil::printMultiStr(buf, kIndent, indent);
        if (result != kOk) {
            return result;
        }
        return _isElement ? buf.textize("%s[%u]%c", _variable, _index, separator)
                          : buf.textize("%s%c", _variable, separator);
    }
    int printBeforeValue(WyrBuf& buf, int indent) const {
        int const result = WyrBufUtil::printMultiStr(buf, kIndent, indent);
        if (result != kOk) {
            return result;
        }
        return _isElement ? buf.textize("%s[%u]: ", _variable, _index) : buf.textize("%s: ", _variable);
    }

private:
    char const* _variable;
    unsigned _index;
    bool _isElement;
};

int PrintName(WyrBuf& buf, int indent, char separator, Name const& name, bool withSeparator) {
    return withSeparator ? name.printAlone(buf, indent, separator) : name.printBeforeValue(buf, indent);
}

// `write` puts the value into the buffer.
template <class Write>
int PrintField(WyrBuf& buf, int indent, char separator, Name const& name, Write write) {
    int result = name.printBeforeValue(buf, indent);
    if (result == kOk) {
        result = write();
    }
    return result == kOk ? buf.writeCharWithNull(separator) : result;
}

int PrintText(WyrBuf& buf, int indent, char separator, Name const& name, char const* value) {
    assert(nullptr != value);
    return PrintField(buf, indent, separator, name, [&] { return buf.textize("%s", value); });
}

int PrintUnits(WyrBuf& buf, int indent, char separator, Name const& name, unsigned short const* value) {
    assert(nullptr != value);
    return PrintField(buf, indent, separator, name, [&] {
        size_t const units = WyrTypeUtil::wideLength(value) + 1;
        int result = kOk;
        for (size_t i = 0; i < units && result == kOk; ++i) {
            result = buf.textize(" 0x%04x", static_cast<unsigned>(value[i]));
        }
        return result;
    });
}

}  // namespace

int WyrBufUtil::printMultiStr(WyrBuf& buf, char const* str, int count) {
    assert(nullptr != str);
    for (int i = 0; i < count; ++i) {
        int const result = buf.textize("%s", str);
        if (result != kOk) {
            return result;
        }
    }
    return kOk;
}

int WyrBufUtil::printName(WyrBuf& buf, int indent, char separator, char const* variable, bool withSeparator) {
    return PrintName(buf, indent, separator, Name(variable), withSeparator);
}

int WyrBufUtil::printName(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                          bool withSeparator) {
    return PrintName(buf, indent, separator, Name(variable, index), withSeparator);
}

int WyrBufUtil::printArrayName(WyrBuf& buf, int indent, char const* variable, size_t count) {
    assert(nullptr != variable);
    int const result = printMultiStr(buf, kIndent, indent);
    return result == kOk ? buf.textize("%s[0 : %lld]:", variable, static_cast<long long>(count) - 1) : result;
}

int WyrBufUtil::printValue(WyrBuf& buf, int indent, char separator, char const* variable, char const* format,
                           ...) {
    va_list args;
    va_start(args, format);
    int const result =
        PrintField(buf, indent, separator, Name(variable), [&] { return buf.vtextize(format, args); });
    va_end(args);
    return result;
}

int WyrBufUtil::printValue(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                           char const* format, ...) {
    va_list args;
    va_start(args, format);
    int const result =
        PrintField(buf, indent, separator, Name(variable, index), [&] { return buf.vtextize(format, args); });
    va_end(args);
    return result;
}

int WyrBufUtil::printString(WyrBuf& buf, int indent, char separator, char const* variable,
                            char const* value) {
    return PrintText(buf, indent, separator, Name(variable), value);
}

int WyrBufUtil::printString(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                            char const* value) {
    return PrintText(buf, indent, separator, Name(variable, index), value);
}

int WyrBufUtil::printWideString(WyrBuf& buf, int indent, char separator, char const* variable,
                                unsigned short const* value) {
    return PrintUnits(buf, indent, separator, Name(variable), value);
}

int WyrBufUtil::printWideString(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                                unsigned short const* value) {
    return PrintUnits(buf, indent, separator, Name(variable, index), value);
}

int WyrBufUtil::printIp(WyrBuf& buf, int indent, char separator, char const* variable, wyr_ip_t value) {
    return PrintField(buf, indent, separator, Name(variable),
                      [&] { return WyrTypeUtil::ip2buf(buf, value); });
}

int WyrBufUtil::printIp(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                        wyr_ip_t value) {
    return PrintField(buf, indent, separator, Name(variable, index),
                      [&] { return WyrTypeUtil::ip2buf(buf, value); });
}

int WyrBufUtil::printTime(WyrBuf& buf, int indent, char separator, char const* variable, wyr_time_t value) {
    return PrintField(buf, indent, separator, Name(variable),
                      [&] { return WyrTypeUtil::time2buf(buf, value); });
}

int WyrBufUtil::printTime(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                          wyr_time_t value) {
    return PrintField(buf, indent, separator, Name(variable, index),
                      [&] { return WyrTypeUtil::time2buf(buf, value); });
}

int WyrBufUtil::printDate(WyrBuf& buf, int indent, char separator, char const* variable, wyr_date_t value) {
    return PrintField(buf, indent, separator, Name(variable),
                      [&] { return WyrTypeUtil::date2buf(buf, value); });
}

int WyrBufUtil::printDate(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                          wyr_date_t value) {
    return PrintField(buf, indent, separator, Name(variable, index),
                      [&] { return WyrTypeUtil::date2buf(buf, value); });
}

int WyrBufUtil::printDateTime(WyrBuf& buf, int indent, char separator, char const* variable,
                              wyr_datetime_t value) {
    return PrintField(buf, indent, separator, Name(variable),
                      [&] { return WyrTypeUtil::datetime2buf(buf, value); });
}

int WyrBufUtil::printDateTime(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                              wyr_datetime_t value) {
    return PrintField(buf, indent, separator, Name(variable, index),
                      [&] { return WyrTypeUtil::datetime2buf(buf, value); });
}

}  // namespace Ubrix
