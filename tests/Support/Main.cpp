// Entry of the unit tests. Each process works in an empty directory of its own, so that no test sees
// another's files.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace {

// Runs before the library's load steps, which take the working directory as the application's.
__attribute__((constructor(101))) void EnterScratchDirectory() {
    char const* base = std::getenv("TMPDIR");
    static char path[256];
    std::snprintf(path, sizeof path, "%s/velmorcore-test-XXXXXX", base != nullptr ? base : "/tmp");
    if (mkdtemp(path) == nullptr || chdir(path) != 0) {
        std::perror("scratch directory");
        std::_Exit(2);
    }
}

}  // namespace

int main(int argc, char** argv) {
    // A test that runs in a process of its own starts this file again, from inside the scratch directory: a
    // name relative to where the first process stood would lead nowhere.
    char executable[] = "/proc/self/exe";
    argv[0] = executable;
    testing::InitGoogleTest(&argc, argv);
    static std::filesystem::path const scratch = std::filesystem::current_path();
    std::atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(scratch, ignored);
    });
    return RUN_ALL_TESTS();
}
