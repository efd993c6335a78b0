// The bound on how deep a document may nest.
#pragma once

namespace Ubrix {

// Each level takes the parser one turn of recursion; records need a few.
constexpr int kMaxXmlDepth = 256;

// Whether the elements of the text nest no deeper than kMaxXmlDepth, up to the text's first fault, where the
// parser stops. One pass that doesn't recurse. It must read tags exactly as the parser does: whatever the two
// see differently can hide levels from the bound.
bool IsWithinXmlDepth(char const* text);

}  // namespace Ubrix
