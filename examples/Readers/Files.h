// Whole files in one call.
#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace Test {

inline std::string ReadWholeFile(std::string const& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline void WriteWholeFile(std::string const& path, std::string const& content) {
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << content;
}

}  // namespace Test
