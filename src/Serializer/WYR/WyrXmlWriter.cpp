#include "Serializer/WYR/WyrXmlWriter.h"

#include <cassert>
#include <cstring>

#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrTypeUtil.h"

namespace Ubrix {

namespace {

char const* EntityOf(char c) {
    switch (c) {
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '&':
            return "&amp;";
        case '\'':
            return "&apos;";
        default:
            return "&quot;";
    }
}

}  // namespace

WyrXmlWriter::WyrXmlWriter(std::FILE* file, int style) : WyrOutput(file), _style(style) {}

WyrXmlWriter::WyrXmlWriter(char* memory, size_t size, int style) : WyrOutput(memory, size), _style(style) {}

void WyrXmlWriter::goDeeper() {
    if (_depth < kMaxIndent) {
        _indent[_depth] = '\t';
    }
    ++_depth;
}

void WyrXmlWriter::goShallower() {
    --_depth;
    if (_depth >= 0 && _depth < kMaxIndent) {
        _indent[_depth] = '\0';
    }
}

int WyrXmlWriter::beginField(char const* name) {
    assert(nullptr != name);
    assert(false == _isSimple);
    char const* const close = _tagOpen ? ">\n" : "";
    printf(writesAttributes() ? "%s%s<%s" : "%s%s<%s>\n", close, _indent, name);
    if (!writesAttributes()) {
        goDeeper();
    }
    _tagOpen = false;
    _isSimple = true;
    return _state;
}

int WyrXmlWriter::endField(char const* name) {
    assert(nullptr != name);
    assert(true == _isSimple);
    _isSimple = false;
    if (writesAttributes()) {
        return printf("/>\n");
    }
    goShallower();
    return printf("%s</%s>\n", _indent, name);
}

int WyrXmlWriter::beginRecord(char const* name) {
    assert(nullptr != name);
    assert(false == _isSimple);
    printf("%s\n%s<%s", _tagOpen ? ">" : "", _indent, name);
    goDeeper();
    _tagOpen = true;
    return _state;
}

int WyrXmlWriter::endRecord(char const* name) {
    assert(nullptr != name);
    assert(false == _isSimple);
    goShallower();
    if (_tagOpen) {
        _tagOpen = false;
        return printf("/>\n");
    }
    return printf("%s</%s>\n", _indent, name);
}

int WyrXmlWriter::writeText(char const* src, bool blank) {
    assert(nullptr != src);
    assert(WyrError::WYR_NO_ERROR == _state);
    for (;;) {
        char const* const special = std::strpbrk(src, "<>&'\"");
        if (special == nullptr) {
            return writePlain(src, blank);
        }
        char const* const entity = EntityOf(*special);
        if (write(src, static_cast<size_t>(special - src)) != WyrError::WYR_NO_ERROR ||
            write(entity, std::strlen(entity)) != WyrError::WYR_NO_ERROR) {
            return _state;
        }
        src = special + 1;
    }
}

int WyrXmlWriter::writePlain(char const* text, bool blank) {
    return blank ? printf("%s ", text) : printf("%s", text);
}

template <class Value>
int WyrXmlWriter::writeValue(int (*show)(char*, size_t, Value), Value v, bool blank) {
    assert(WyrError::WYR_NO_ERROR == _state);
    char text[64];
    int const result = show(text, sizeof text, v);
    if (result != WyrError::WYR_NO_ERROR) {
        _state = result;
        return _state;
    }
    return writePlain(text, blank);
}

int WyrXmlWriter::writeIp(wyr_ip_t v, bool blank) {
    return writeValue(WyrTypeUtil::ip2str, v, blank);
}

int WyrXmlWriter::writeDate(wyr_date_t v, bool blank) {
    return writeValue(WyrTypeUtil::date2str, v, blank);
}

int WyrXmlWriter::writeTime(wyr_time_t v, bool blank) {
    return writeValue(WyrTypeUtil::time2str, v, blank);
}

int WyrXmlWriter::writeDateTime(wyr_datetime_t v, bool blank) {
    return writeValue(WyrTypeUtil::datetime2str, v, blank);
}

}  // namespace Ubrix
