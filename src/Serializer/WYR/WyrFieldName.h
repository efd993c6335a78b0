// Prints the name of a record's field, with or without the index of an element. The name isn't copied.
#pragma once

#include <cstddef>

#include "Serializer/WYR/WyrBuf.h"

namespace Ubrix {

// Each operation stops at the first write that fails and answers its WyrError code. The name is one write
// with what follows it, so that one without room leaves the position behind the indent. One thread at a time.
class WyrFieldName {
public:
    explicit WyrFieldName(char const* variable);
    WyrFieldName(char const* variable, unsigned index);

    // With the separator behind it, or with ": " for a value that is to follow.
    int print(WyrBuf& buf, int indent, char separator, bool withSeparator) const;
    int printBeforeValue(WyrBuf& buf, int indent) const;
    // "name[0 : 4]:" for five elements.
    int printBeforeElements(WyrBuf& buf, int indent, size_t count) const;

private:
    int printAlone(WyrBuf& buf, int indent, char separator) const;

    char const* _variable;
    unsigned _index;
    bool _isElement;
};

}  // namespace Ubrix
