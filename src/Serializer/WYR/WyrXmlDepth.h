// The bound on how deep a document may nest.
#pragma once

namespace Ubrix {

// Each level takes the parser one turn of recursion; records need a few.
constexpr int kMaxXmlDepth = 256;

// Whether the elements of the text nest no deeper than kMaxXmlDepth. Looks at the tags as the parser does, in
// one pass that doesn't recurse; of a text that the parser is going to refuse it looks at what stands before
// the fault.
bool IsWithinXmlDepth(char const* text);

}  // namespace Ubrix
