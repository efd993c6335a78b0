// The XML reader in both styles: the first byte picks the style, the second how the cursor moves.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Serializer/WYR/WyrError.h"
#include "Serializer/WYR/WyrXmlReader.h"

using namespace Ubrix;

namespace {

// Whatever comes before them, more levels than any stack holds are refused: nothing hides them.
void CheckDepth(std::string text) {
    if (text.find('\0') != std::string::npos) {
        return;
    }
    for (int i = 0; i < 100000; ++i) {
        text += "<a>";
    }
    if (WyrXmlReader(text.data(), WYR_XML_ELEMENTS).state() != WyrError::WYR_ERR_XML_PARSE) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    if (size < 2) {
        return 0;
    }
    CheckDepth(std::string(reinterpret_cast<char const*>(data) + 2, size - 2));
    WyrXmlReader reader(reinterpret_cast<char const*>(data) + 2, size - 2, data[0] & 1);
    if (reader.state() != 0) {
        if (reader.state() != WyrError::WYR_ERR_XML_PARSE) {
            std::abort();
        }
        return 0;
    }
    char const* const names[] = {"a", "b", "r"};
    std::string entered;
    for (unsigned step = 0; step < 64; ++step) {
        char const* const name = names[(data[1] + step * step) % 3];
        char const* const value = reader.value(name);
        if (value != nullptr && *value == '\0') {
            std::abort();
        }
        if (step % 4 != 3 && reader.enter(name) == 0) {
            entered += *name;
        } else if (!entered.empty()) {
            reader.leave(std::string(1, entered.back()).c_str());
            entered.pop_back();
        }
    }
    return 0;
}
