#include "Serializer/WYR/WyrBufUtil.h"

#include <cassert>

#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrFieldName.h"
#include "Serializer/WYR/WyrTypeUtil.h"

namespace Ubrix {

namespace {

constexpr int kOk = WyrError::WYR_NO_ERROR;

// `write` puts the value into the buffer.
template <class Write>
int PrintField(WyrBuf& buf, int indent, char separator, WyrFieldName const& name, Write write) {
    int result = name.printBeforeValue(buf, indent);
    if (result == kOk) {
        result = write();
    }
    return result == kOk ? buf.writeCharWithNull(separator) : result;
}

int PrintText(WyrBuf& buf, int indent, char separator, WyrFieldName const& name, char const* value) {
    assert(nullptr != value);
    return PrintField(buf, indent, separator, name, [&] { return buf.textize("%s", value); });
}

int PrintUnits(WyrBuf& buf, int indent, char separator, WyrFieldName const& name,
               unsigned short const* value) {
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
    return WyrFieldName(variable).print(buf, indent, separator, withSeparator);
}

int WyrBufUtil::printName(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                          bool withSeparator) {
    return WyrFieldName(variable, index).print(buf, indent, separator, withSeparator);
}

int WyrBufUtil::printArrayName(WyrBuf& buf, int indent, char const* variable, size_t count) {
    return WyrFieldName(variable).printBeforeElements(buf, indent, count);
}

int WyrBufUtil::printValue(WyrBuf& buf, int indent, char separator, char const* variable, char const* format,
                           ...) {
    va_list args;
    va_start(args, format);
    int const result = PrintField(buf, indent, separator, WyrFieldName(variable),
                                  [&] { return buf.vtextize(format, args); });
    va_end(args);
    return result;
}

int WyrBufUtil::printValue(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                           char const* format, ...) {
    va_list args;
    va_start(args, format);
    int const result = PrintField(buf, indent, separator, WyrFieldName(variable, index),
                                  [&] { return buf.vtextize(format, args); });
    va_end(args);
    return result;
}

int WyrBufUtil::printString(WyrBuf& buf, int indent, char separator, char const* variable,
                            char const* value) {
    return PrintText(buf, indent, separator, WyrFieldName(variable), value);
}

int WyrBufUtil::printString(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                            char const* value) {
    return PrintText(buf, indent, separator, WyrFieldName(variable, index), value);
}

int WyrBufUtil::printWideString(WyrBuf& buf, int indent, char separator, char const* variable,
                                unsigned short const* value) {
    return PrintUnits(buf, indent, separator, WyrFieldName(variable), value);
}

int WyrBufUtil::printWideString(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                                unsigned short const* value) {
    return PrintUnits(buf, indent, separator, WyrFieldName(variable, index), value);
}

int WyrBufUtil::printIp(WyrBuf& buf, int indent, char separator, char const* variable, wyr_ip_t value) {
    return PrintField(buf, indent, separator, WyrFieldName(variable),
                      [&] { return WyrTypeUtil::ip2buf(buf, value); });
}

int WyrBufUtil::printIp(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                        wyr_ip_t value) {
    return PrintField(buf, indent, separator, WyrFieldName(variable, index),
                      [&] { return WyrTypeUtil::ip2buf(buf, value); });
}

int WyrBufUtil::printTime(WyrBuf& buf, int indent, char separator, char const* variable, wyr_time_t value) {
    return PrintField(buf, indent, separator, WyrFieldName(variable),
                      [&] { return WyrTypeUtil::time2buf(buf, value); });
}

int WyrBufUtil::printTime(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                          wyr_time_t value) {
    return PrintField(buf, indent, separator, WyrFieldName(variable, index),
                      [&] { return WyrTypeUtil::time2buf(buf, value); });
}

int WyrBufUtil::printDate(WyrBuf& buf, int indent, char separator, char const* variable, wyr_date_t value) {
    return PrintField(buf, indent, separator, WyrFieldName(variable),
                      [&] { return WyrTypeUtil::date2buf(buf, value); });
}

int WyrBufUtil::printDate(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                          wyr_date_t value) {
    return PrintField(buf, indent, separator, WyrFieldName(variable, index),
                      [&] { return WyrTypeUtil::date2buf(buf, value); });
}

int WyrBufUtil::printDateTime(WyrBuf& buf, int indent, char separator, char const* variable,
                              wyr_datetime_t value) {
    return PrintField(buf, indent, separator, WyrFieldName(variable),
                      [&] { return WyrTypeUtil::datetime2buf(buf, value); });
}

int WyrBufUtil::printDateTime(WyrBuf& buf, int indent, char separator, char const* variable, unsigned index,
                              wyr_datetime_t value) {
    return PrintField(buf, indent, separator, WyrFieldName(variable, index),
                      [&] { return WyrTypeUtil::datetime2buf(buf, value); });
}

}  // namespace Ubrix
