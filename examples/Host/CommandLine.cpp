#include "CommandLine.h"

#include <cstdio>
#include <cstring>

namespace Host {

namespace {

void Explain() {
    std::fputs(
        "velmorcore_host [--url URL] [--connect HOST:PORT] [--ca FILE] [--offline]\n"
        "  --url      base address of the configuration server (https://config.velmor.example)\n"
        "  --connect  connect to this address instead; the URL's name is still verified\n"
        "  --ca       PEM file of certificate authorities to trust beside the system's\n"
        "  --offline  a later start of the game: read what an earlier run here fetched, with the server "
        "gone\n"
        "Everything is kept below the current directory.\n",
        stderr);
}

}  // namespace

bool CommandLine::Read(int argc, char** argv) {
    struct Option {
        char const* name;
        std::string* value;
    };
    Option const options[] = {{"--url", &url}, {"--connect", &connect}, {"--ca", &caFile}};
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--offline") == 0) {
            offline = true;
            continue;
        }
        std::string* value = nullptr;
        for (Option const& option : options) {
            value = std::strcmp(argv[i], option.name) == 0 ? option.value : value;
        }
        if (value == nullptr || i + 1 == argc) {
            Explain();
            return false;
        }
        *value = argv[++i];
    }
    return true;
}

}  // namespace Host
