// Dates and times as numbers, and a format with the text to be read by it, parted by a line feed.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Serializer/WYR/WyrStrptime.h"
#include "Serializer/WYR/WyrTypeUtil.h"

using namespace Ubrix;

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void CheckSeconds(long long seconds) {
    wyr_datetime_t moment = 0;
    long long back = 0;
    if (WyrTypeUtil::utc2datetime(&moment, seconds) == 0 && seconds != -1) {
        Require(WyrTypeUtil::datetime2utc(&back, moment) == 0 && back == seconds);
    }
}

void CheckPacked(wyr_datetime_t moment) {
    WyrDateTime const parts(moment);
    Require(parts.packed() == moment);
    Require(WyrTypeUtil::compareDateTime(moment, moment) == 0);
    long long seconds = 0;
    Require(WyrTypeUtil::datetime2utc(&seconds, moment) != 0 || parts.isValid());
    char text[64];
    wyr_datetime_t back = 0;
    if (WyrTypeUtil::datetime2str(text, sizeof text, moment) == 0 && parts.isValid()) {
        Require(WyrTypeUtil::str2datetime(&back, text) == 0 && back == moment);
    }
    Require(WyrTypeUtil::datetime2str(text, 1, moment) != 0);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    return setenv("TZ", "UTC0", 1);
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    long long number = 0;
    std::memcpy(&number, data, size < sizeof number ? size : sizeof number);
    CheckSeconds(number);
    CheckSeconds(number % (1LL << 38));
    CheckPacked(static_cast<wyr_datetime_t>(number));

    std::string const input(reinterpret_cast<char const*>(data), size);
    std::string const format = input.substr(0, input.find('\n'));
    std::string const text = format.size() < size ? input.substr(format.size() + 1) : "";
    std::tm calendar{};
    char const* const rest = wyrStrptime(text.c_str(), format.c_str(), &calendar);
    Require(rest == nullptr || (rest >= text.c_str() && rest <= text.c_str() + text.size()));
    return 0;
}
