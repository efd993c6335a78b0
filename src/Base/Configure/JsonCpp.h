// The JSON library, under the name by which this code knows it. A value belongs to one thread at a time; the
// functions keep no state.
#pragma once

#if defined(__GNUC__)
// The reader and writer of the wire format are the library's older ones: their output, to the byte, is what
// servers expect. The newer ones write otherwise.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
#endif

#include <json/json.h>

#include <new>
#include <string>
#include <string_view>

namespace Ubrix_Json = Json;

namespace Velmor {

// Compact JSON, members in byte order of their names, with a line feed at the end.
inline std::string WriteCompactJson(Ubrix_Json::Value const& value) {
    Ubrix_Json::FastWriter writer;
    return writer.write(value);
}

// The text of an object whose members `compose` sets. Its values can't be wrong: what the library throws
// there is its word for a want of memory, and goes on as std::bad_alloc.
template <class Compose>
std::string ComposeJson(Compose const& compose) {
    try {
        Ubrix_Json::Value object(Ubrix_Json::objectValue);
        compose(object);
        return WriteCompactJson(object);
    } catch (Ubrix_Json::Exception const&) {
        throw std::bad_alloc();
    }
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
