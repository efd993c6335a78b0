// Any bytes are scanned as a block file, and taken over as the memory of an earlier run; a range that is
// found lies inside the file.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Storage/Log/log_buffer.h"

namespace {

char const kPath[] = "fuzz.xlog";

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void Scan(std::string const& bytes, int beginHour, int endHour) {
    unsigned long begin = 0;
    unsigned long end = 0;
    std::string error;
    bool const found = Ubrix::LogBuffer::FindHourRange(kPath, beginHour, endHour, begin, end, error);
    Require(found == error.empty());
    Require(end <= bytes.size() && (!found || begin < end));
}

void TakeOver(std::string memory, bool compress) {
    Ubrix::LogBuffer buffer(memory.data(), memory.size(), compress, nullptr);
    buffer.Write("text", 4);
    Ubrix::AutoBuffer out;
    buffer.Flush(out);
    Require(out.Length() <= memory.size());
    Require(buffer.Write("text", 4) == (memory.size() >= 74 + (compress ? 1 : 0)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    if (size < 2) {
        return 0;
    }
    std::string const bytes(reinterpret_cast<char const*>(data) + 2, size - 2);
    std::FILE* stream = std::fopen(kPath, "wb");
    Require(stream != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() &&
            std::fclose(stream) == 0);
    Scan(bytes, static_cast<signed char>(data[0]), static_cast<signed char>(data[1]));
    Scan(bytes, 0, 24);
    TakeOver(bytes, false);
    TakeOver(bytes, true);
    return 0;
}
