// A name in a directory of log files: the sweep deletes it only if it is a log file's own name and old.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "SilentLog.h"
#include "Storage/Log/AFileLogger.h"

namespace {

constexpr char kModule[] = "Fuzz";

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool IsOwnName(std::string const& name) {
    char extension[6] = {};
    int length = 0;
    return std::sscanf(name.c_str(), "Fuzz_%*10[0-9].%5[a-z]%n", extension, &length) == 1 &&
           static_cast<std::size_t>(length) == name.size() && name.find('.') == 15 &&
           (std::string(extension) == "log" || std::string(extension) == "xlog");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    Ubrix::SetConsoleOutput(false);
    SilentLog::Install();
    for (char const* directory : {"Cache", "Cache/VelmorSDKLog", "Cache/VelmorSDKLog/Fuzz"}) {
        mkdir(directory, S_IRWXU);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const name = std::string(reinterpret_cast<char const*>(data), size).c_str();
    long long const stamp = Ubrix::AFileLogger::GetLogFileTimeStamp(name);
    std::string const path = std::string("Cache/VelmorSDKLog/Fuzz/") + name;
    std::FILE* const file =
        name.find('/') == std::string::npos && !name.empty() ? std::fopen(path.c_str(), "wx") : nullptr;
    if (file == nullptr) {
        return 0;
    }
    std::fclose(file);
    Ubrix::AFileLogger::RemoveOldLogFiles(kModule, 240, 240);
    bool const exists = access(path.c_str(), F_OK) == 0;
    Require(exists || IsOwnName(name));
    // Ten years and more ago.
    Require(!exists || !IsOwnName(name) || stamp > 1400000000);
    std::remove(path.c_str());
    return 0;
}
