// Loads the shared library by its path, uses it and unloads it, several times. Linked with nothing of it.
#include <dlfcn.h>

#include <cstdio>

int main(int, char** argv) {
    for (int round = 0; round < 3; ++round) {
        void* library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        void* init = library != nullptr ? dlsym(library, "velmorcore_init") : nullptr;
        if (init == nullptr || reinterpret_cast<int (*)()>(init)() != 0) {
            std::fprintf(stderr, "FAILED in round %d\n", round);
            return 1;
        }
        dlclose(library);
    }
    return 0;
}
