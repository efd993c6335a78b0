// From nothing to the first export served: loads the library in a fresh process and a fresh directory, and
// prints the milliseconds, of which the system's own part (loading what the library needs) is told apart. Run
// by scripts/bench.
#include <dlfcn.h>

#include <chrono>
#include <cstdio>

namespace {

using Clock = std::chrono::steady_clock;

double Milliseconds(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s LIBRARY [NEEDED...]\n", argv[0]);
        return 64;
    }
    Clock::time_point const start = Clock::now();
    for (int i = 2; i < argc; ++i) {
        if (dlopen(argv[i], RTLD_NOW | RTLD_GLOBAL) == nullptr) {
            std::fprintf(stderr, "%s\n", dlerror());
            return 1;
        }
    }
    Clock::time_point const needed = Clock::now();
    void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    auto* const init = reinterpret_cast<int (*)()>(dlsym(library, "velmorcore_init"));
    if (init == nullptr || init() != 0) {
        return 1;
    }
    Clock::time_point const end = Clock::now();
    std::printf("%.3f %.3f\n", Milliseconds(start, needed), Milliseconds(needed, end));
    return 0;
}
