// Writes a record as indented XML.
#pragma once

#include "Serializer/WYR/WyrIO.h"
#include "Serializer/WYR/WyrTypes.h"
#include "Serializer/WYR/WyrXmlStyle.h"

namespace Ubrix {

// Records hold fields and further records; a field is open between its begin and its end, and holds nothing
// but text. Each operation answers the state, and requires that it is 0 and that no name or text is null.
// What is inside of a tag is written with WyrOutput's printf: an attribute-style record adds its
// attributes right after beginRecord.
class WyrXmlWriter : public WyrOutput {
public:
    WyrXmlWriter(std::FILE* file, int style);
    WyrXmlWriter(char* memory, size_t size, int style);

    int beginField(char const* name);
    int endField(char const* name);
    int beginRecord(char const* name);
    int endRecord(char const* name);

    // The text with its special characters as entities. `blank` puts one blank behind it, which keeps the
    // items of an array apart.
    int writeText(char const* src, bool blank);
    int writeIp(wyr_ip_t v, bool blank);
    int writeDate(wyr_date_t v, bool blank);
    int writeTime(wyr_time_t v, bool blank);
    int writeDateTime(wyr_datetime_t v, bool blank);

    int style() const { return _style; }

private:
    static constexpr int kMaxIndent = 32;

    bool writesAttributes() const { return _style == WYR_XML_ATTRIBUTES; }
    void goDeeper();
    void goShallower();
    // Text that needs no entities.
    int writePlain(char const* text, bool blank);
    // A value in its text form.
    template <class Value>
    int writeValue(int (*show)(char*, size_t, Value), Value v, bool blank);

    int _style;
    bool _isSimple = false;          // a field is open
    bool _tagOpen = false;           // a record's start tag still lacks its '>'
    int _depth = 0;                  // counts on beyond the indent's end
    char _indent[kMaxIndent + 1]{};  // as many tabs as the depth, and a zero
};

}  // namespace Ubrix
