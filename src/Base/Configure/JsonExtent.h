// How much a JSON text makes of itself, told from its bytes before a parser sees it.
#pragma once

#include <cstddef>
#include <string_view>

namespace Velmor {

// A plain value.
struct JsonExtent {
    // No fewer than the parser makes: one for the text, one for each bracket that opens and one for each
    // comma. In a text that the parser takes, each empty array or object is one too many, and a name that
    // comes again in its object counts again.
    std::size_t values = 1;
    // How deep arrays and objects are nested.
    std::size_t depth = 0;
};

// Reads strings and comments by the parser's rules to the letter, so that nothing that it takes for a value
// hides in one; of the rest only the commas and brackets. Ends where the parser ends, behind the bracket that
// closes the first one. Takes no memory. Any thread.
JsonExtent MeasureJson(std::string_view text);

}  // namespace Velmor
