#include "Serializer/WYR/WyrFieldName.h"

#include <cassert>

#include "Serializer/WYR/WyrError.h"

namespace Ubrix {

namespace {

constexpr int kOk = WyrError::WYR_NO_ERROR;
constexpr char kIndent[] = "    ";

int PrintIndent(WyrBuf& buf, int levels) {
    int result = kOk;
    for (int i = 0; i < levels && result == kOk; ++i) {
        result = buf.textize("%s", kIndent);
    }
    return result;
}

}  // namespace

WyrFieldName::WyrFieldName(char const* variable) : _variable(variable), _index(0), _isElement(false) {
    assert(nullptr != variable);
}

WyrFieldName::WyrFieldName(char const* variable, unsigned index) : WyrFieldName(variable) {
    _index = index;
    _isElement = true;
}

int WyrFieldName::print(WyrBuf& buf, int indent, char separator, bool withSeparator) const {
    return withSeparator ? printAlone(buf, indent, separator) : printBeforeValue(buf, indent);
}

int WyrFieldName::printAlone(WyrBuf& buf, int indent, char separator) const {
    int const result = PrintIndent(buf, indent);
    if (result != kOk) {
        return result;
    }
    return _isElement ? buf.textize("%s[%u]%c", _variable, _index, separator)
                      : buf.textize("%s%c", _variable, separator);
}

int WyrFieldName::printBeforeValue(WyrBuf& buf, int indent) const {
    int const result = PrintIndent(buf, indent);
    if (result != kOk) {
        return result;
    }
    return _isElement ? buf.textize("%s[%u]: ", _variable, _index) : buf.textize("%s: ", _variable);
}

int WyrFieldName::printBeforeElements(WyrBuf& buf, int indent, size_t count) const {
    int const result = PrintIndent(buf, indent);
    return result == kOk ? buf.textize("%s[0 : %lld]:", _variable, static_cast<long long>(count) - 1)
                         : result;
}

}  // namespace Ubrix
