// A server's answer to the request for the configuration.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Base/Configure/ConfigAnswer.h"
#include "SilentLog.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    SilentLog::Install();
    // Terminated, as the transfer hands it over.
    std::string const body(reinterpret_cast<char const*>(data), size);
    Velmor::ConfigAnswer answer;
    Velmor::ParseConfigAnswer(body.c_str(), body.size(), answer);
    for (Ubrix::ValueIterator module = answer.modules.begin(); module != answer.modules.end(); ++module) {
        if (module.memberName() == nullptr) {
            __builtin_trap();
        }
    }
    return 0;
}
