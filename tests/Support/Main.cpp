// Entry of the unit tests. Each process works in a directory of its own, and each test finds it empty and the
// services as they are after load, whatever ran before in the same process.
#include <VelmorCore/File.h>
#include <VelmorCore/velmorcore.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "System/WWW/Task/TransportChoice.h"

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

std::filesystem::path const& Scratch() {
    static std::filesystem::path const scratch = std::filesystem::current_path();
    return scratch;
}

class FreshStart : public testing::EmptyTestEventListener {
    void OnTestEnd(testing::TestInfo const& /*test*/) override {
        Ubrix::TransportChoice::Reopen(nullptr);
        velmorcore_getInstance();
        velmorcore_releaseInstance();
        std::filesystem::current_path(Scratch());
        for (auto const& entry : std::filesystem::directory_iterator(".")) {
            if (entry.is_directory() && !entry.is_symlink()) {
                std::filesystem::permissions(entry, std::filesystem::perms::owner_all);
            }
            // A thread on its way out may open a log file in it meanwhile.
            std::error_code error;
            for (int tries = 0; tries < 100; ++tries) {
                std::filesystem::remove_all(entry, error);
                if (!error) {
                    break;
                }
            }
            EXPECT_FALSE(error) << entry << " " << error.message();
        }
        Ubrix::CPath::CreatePath("Cache");
        Ubrix::CPath::CreatePath("Doc");
    }
};

}  // namespace

int main(int argc, char** argv) {
    // A test that runs in a process of its own starts this file again, from inside the scratch directory: a
    // name relative to where the first process stood would lead nowhere.
    char executable[] = "/proc/self/exe";
    argv[0] = executable;
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new FreshStart);
    Scratch();
    std::atexit([] {
        std::error_code ignored;
        std::filesystem::remove_all(Scratch(), ignored);
    });
    return RUN_ALL_TESTS();
}
