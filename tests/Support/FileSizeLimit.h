// A disk that takes no more: while a scope lasts, no write of this process reaches beyond a file's first
// bytes.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <string>

namespace Test {

class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : _handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &_before);
        rlimit const now{bytes, _before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &now), 0);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &_before);
        std::signal(SIGXFSZ, _handler);
    }
    FileSizeLimit(FileSizeLimit const&) = delete;
    FileSizeLimit& operator=(FileSizeLimit const&) = delete;

private:
    void (*_handler)(int);
    rlimit _before{};
};

// Puts a regular file that fails whoever reads it in the place of what stands there.
inline void PutFailingFile(char const* path) {
    std::filesystem::remove(path);
    std::filesystem::create_symlink("/proc/self/mem", path);
}

// How many names in a directory contain `piece`.
inline int CountFilesWith(std::string const& piece, char const* path = ".") {
    int count = 0;
    for (auto const& entry : std::filesystem::directory_iterator(path)) {
        count += entry.path().filename().string().find(piece) != std::string::npos ? 1 : 0;
    }
    return count;
}

}  // namespace Test
