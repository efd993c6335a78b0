// Reads a record back from XML: a cursor that goes down and up the tree of elements by name.
#pragma once

#include <cstddef>
#include <memory>

#include "Serializer/WYR/WyrXmlStyle.h"

namespace Ubrix {

// Comments, declarations and processing instructions are passed over, the name of a closing tag isn't
// compared. A document that nests deeper than kMaxXmlDepth counts as malformed. Belongs to one thread. Once
// the state isn't 0, only that may be asked for.
class WyrXmlReader {
public:
    // Parses the text in place: it is changed, and has to outlive the reader. It must not be null.
    WyrXmlReader(char* string, int style);
    // Parses a copy of `size` bytes, which the reader owns. It ends at a zero among them.
    WyrXmlReader(char const* buffer, size_t size, int style);
    ~WyrXmlReader();
    WyrXmlReader(WyrXmlReader const&) = delete;
    WyrXmlReader& operator=(WyrXmlReader const&) = delete;

    // 0, -27 for malformed text, -26 without memory.
    int state() const { return _state; }
    int style() const { return _style; }

    // Goes down to a child with this name: the next one behind the child that was just left if that has the
    // name, otherwise the first. 1 if there is none, with the cursor where it was; that is no failure.
    int enter(char const* name);
    // Goes back up from the element with this name.
    void leave(char const* name);
    // The trimmed value of a field: an attribute of the element, or the text of the child that enter would go
    // to, which counts as left afterwards. Null if there is none or nothing but white space. Points into the
    // document.
    char const* value(char const* name);

private:
    struct Body;

    void parse(char* text);
    static char const* trim(char* head, size_t size);

    std::unique_ptr<char[]> _content;
    int _style;
    int _state;
    std::unique_ptr<Body> _body;
};

}  // namespace Ubrix
