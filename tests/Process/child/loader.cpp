// Loads the shared library by its path, uses it and unloads it, several times. Linked with nothing of it.
#include <dlfcn.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 2) {
        return 64;
    }
    for (int round = 0; round < 3; ++round) {
        void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            std::fprintf(stderr, "FAILED: %s\n", dlerror());
            return 1;
        }
        auto* const init = reinterpret_cast<int (*)()>(dlsym(library, "velmorcore_init"));
        if (init == nullptr || init() != 0) {
            std::fprintf(stderr, "FAILED: velmorcore_init\n");
            return 1;
        }
        dlclose(library);
    }
    return 0;
}
