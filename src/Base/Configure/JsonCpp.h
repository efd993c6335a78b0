// The JSON library, under the name by which this code knows it.
#pragma once

#if defined(__GNUC__)
// The reader and writer of the wire format are the library's older ones: their output, to the byte, is what
// servers expect. The newer ones write otherwise.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

#include <json/json.h>

#include <string>
#include <string_view>

namespace Ubrix_Json = Json;

namespace Velmor {

// Compact JSON, members in byte order of their names, with a line feed at the end.
inline std::string WriteCompactJson(Ubrix_Json::Value const& value) {
    Ubrix_Json::FastWriter writer;
    return writer.write(value);
}

// Parses a whole text, comments allowed and not kept. False for a text that isn't JSON or nests deeper than
// the library reads. The text isn't copied.
inline bool ParseJson(std::string_view text, Ubrix_Json::Value& value) {
    try {
        Ubrix_Json::Reader reader;
        return reader.parse(text.data(), text.data() + text.size(), value, false);
    } catch (Ubrix_Json::Exception const&) {
        return false;
    }
}

}  // namespace Velmor

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
