// The two styles of documents. Constants.
#pragma once

namespace Ubrix {

// Any value but WYR_XML_ATTRIBUTES counts as elements.
enum WyrXmlStyle : int {
    WYR_XML_ELEMENTS = 0,    // a simple field is an element with its value as text
    WYR_XML_ATTRIBUTES = 1,  // a simple field is looked up as an attribute of its record's element
};

}  // namespace Ubrix
