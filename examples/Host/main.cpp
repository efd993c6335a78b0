// Plays one life of a game on the library. Exit status 0 only if every step did what it should.
#include <cstdio>
#include <exception>

#include "Host.h"

int main(int argc, char** argv) {
    try {
        Host::CommandLine line;
        if (!line.Read(argc, argv)) {
            return 2;
        }
        Host::Journal journal;
        Host::GameHost host(line, journal);
        if (line.offline) {
            host.PlayOffline();
        } else {
            host.PlayOnline();
        }
        int const failures = journal.Failures();
        std::printf("\n%s\n", failures == 0 ? "every step did what it should" : "SOME STEPS FAILED");
        return failures == 0 ? 0 : 1;
    } catch (std::exception const& problem) {
        std::fprintf(stderr, "velmorcore_host: %s\n", problem.what());
        return 1;
    }
}
