#include "Platform/TextEncoding.h"

#include <iconv.h>

#include <cerrno>

namespace Ubrix::Platform {

bool CodePage936ToUtf8(std::string const& text, std::string& utf8) {
    iconv_t const converter = iconv_open("UTF-8", "CP936");
    // iconv_open reports failure as the pointer value of -1.
    if (converter == reinterpret_cast<iconv_t>(-1)) {  // NOLINT(performance-no-int-to-ptr)
        return false;
    }
    std::string result;
    std::string source(text);
    char* next = source.data();
    std::size_t left = source.size();
    while (left > 0) {
        char piece[256];
        char* out = piece;
        std::size_t room = sizeof piece;
        std::size_t const count = iconv(converter, &next, &left, &out, &room);
        result.append(piece, sizeof piece - room);
        if (count == static_cast<std::size_t>(-1) && errno != E2BIG) {
            result += '?';
            ++next;
            --left;
        }
    }
    iconv_close(converter);
    utf8.swap(result);
    return true;
}

}  // namespace Ubrix::Platform
