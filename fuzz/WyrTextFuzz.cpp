// The readers of Wyr's text forms: nothing but their codes, values inside of the types' rules, addresses as
// the system reads them, and dates that come back from their own text.
#include <arpa/inet.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Serializer/WYR/WyrBuf.h"
#include "Serializer/WYR/WyrParse.h"
#include "Serializer/WYR/WyrStrptime.h"
#include "Serializer/WYR/WyrTypeUtil.h"

using namespace Ubrix;

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

template <class T>
void ReadIntegers(int (*parse)(T*, unsigned, char*, unsigned*, T, WyrParse::Callback, void*),
                  std::string text) {
    T values[4];
    unsigned found = 0;
    Require(parse(values, 4, text.data(), &found, 0, nullptr, nullptr) <= 0 && found <= 4);
}

void CheckTypes(char const* text) {
    wyr_ip_t ip = 0;
    in_addr_t const address = inet_addr(text);
    Require((WyrTypeUtil::str2ip(&ip, text) == 0) == (address != INADDR_NONE));
    Require(address == INADDR_NONE || ip == address);
    wyr_datetime_t moment = 0;
    if (WyrTypeUtil::str2datetime(&moment, text) == 0) {
        char shown[64];
        wyr_datetime_t back = 0;
        Require(WyrTypeUtil::datetime2str(shown, sizeof shown, moment) == 0);
        Require(WyrTypeUtil::str2datetime(&back, shown) == 0 && back == moment);
    }
}

void CheckHex(std::string const& text) {
    std::string memory(text.size() / 2, '\0');
    WyrBuf buf(memory.data(), memory.size());
    std::string shown(text.size() + 1, '\0');
    size_t used = 0;
    if (buf.loadHex(text.data(), text.size(), &used) == 0) {
        Require(used == text.size() && buf.dumpHex(shown.data(), shown.size(), nullptr) == 0);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    ReadIntegers(WyrParse::parseByteArray, text);
    ReadIntegers(WyrParse::parseInt16Array, text);
    ReadIntegers(WyrParse::parseUInt32Array, text);
    ReadIntegers(WyrParse::parseUInt64Array, text);
    double reals[4];
    std::string words = text;
    Require(WyrParse::parseDoubleArray(reals, 4, words.data(), nullptr, 0) <= 0);
    CheckTypes(text.c_str());
    CheckHex(text);
    // The first line as the format, the rest as the input.
    size_t const line = text.find('\n');
    if (line != std::string::npos) {
        std::tm calendar{};
        std::string const input = text.substr(line + 1);
        char const* const end = wyrStrptime(input.c_str(), text.substr(0, line).c_str(), &calendar);
        Require(end == nullptr || (end >= input.c_str() && end <= input.c_str() + input.size()));
    }
    return 0;
}
