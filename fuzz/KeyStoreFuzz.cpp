// Any bytes as the key store's file, behind a first line that names a file: its keys can be read, and those
// that are set come back, also from the disk.
#include <VelmorCore/File.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Security/SecurityStore/SecurityStoreImp.h"
#include "SilentLog.h"

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void WriteStore(std::string const& content) {
    std::string const path = std::string(Ubrix::CPath::GetCachePath()) + Ubrix::kSecurityStoreFile;
    std::FILE* const stream = std::fopen(path.c_str(), "wb");
    Require(stream != nullptr && std::fwrite(content.data(), 1, content.size(), stream) == content.size() &&
            std::fclose(stream) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*arguments*/) {
    Ubrix::SetConsoleOutput(false);
    SilentLog::Install();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const input(reinterpret_cast<char const*>(data), size);
    std::string const name = input.substr(0, input.find('\n')).c_str();
    WriteStore(name.size() < size ? input.substr(name.size() + 1) : "");
    Ubrix::SecurityStoreImp store;
    Ubrix::StoredKeys keys;
    Require(store.ReadKeys(name.c_str(), keys));
    Ubrix::StoredKeys wanted;
    wanted.current = "QUJDREVGR0hJSktMTU5PUA==";
    wanted.earlier = keys.current.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdef") == std::string::npos
                         ? keys.current
                         : "";
    if (store.WriteKeys(name.c_str(), wanted)) {
        Ubrix::StoredKeys back;
        Require(Ubrix::SecurityStoreImp().ReadKeys(name.c_str(), back));
        Require(back.current == wanted.current && back.earlier == wanted.earlier);
    }
    store.Get(name.c_str(), "");
    return 0;
}
