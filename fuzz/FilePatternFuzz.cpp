// A pattern of the server's, up to the first line feed, on a file's name, behind it.
#include "Base/Configure/FilePattern.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const input(reinterpret_cast<char const*>(data), size);
    std::size_t const feed = input.find('\n');
    std::string_view const pattern = input.substr(0, feed);
    std::string_view const name =
        feed == std::string_view::npos ? std::string_view() : input.substr(feed + 1);
    Velmor::PatternCapture captures[Velmor::kMaxPatternGroups];
    int const result = Velmor::MatchPattern(pattern, name, captures, Velmor::kMaxPatternGroups);
    if (result < Velmor::kPatternTooManyGroups || result > static_cast<int>(name.size()) ||
        result != Velmor::MatchPattern(pattern, name)) {
        __builtin_trap();
    }
    return 0;
}
