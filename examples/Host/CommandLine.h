// What the host was told to do.
#pragma once

#include <string>

namespace Host {

struct CommandLine {
    std::string url = "https://config.velmor.example";
    std::string connect;  // "host:port" in place of the URL's own, for a server under test; empty for none
    std::string caFile;   // certificates to trust beside the system's; empty for none
    bool offline = false;

    // False, after words on standard error, if the arguments aren't understood.
    bool Read(int argc, char** argv);
};

}  // namespace Host
