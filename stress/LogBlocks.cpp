// Kills a process that logs into blocks, at any moment, and looks for every line that it had logged: in the
// files, or brought there out of the memory that outlived it.
#include <sys/mman.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "Children.h"
#include "Readers/LogBlockDecoder.h"
#include "Storage/Log/LogBlockWriter.h"
#include "Storage/Log/LogCrypt.h"
#include "Storage/Log/Logger.h"

namespace {

using Ubrix::LogBlockWriter;

constexpr char kMemoryFile[] = "memory";
constexpr char kFiles[] = "Cache/VelmorSDKLog/Blocks";

// What the two processes share: the block's memory, and how many lines Log has returned for.
struct Shared {
    char memory[LogBlockWriter::kBlockLength];
    std::atomic<int> logged;
};

Shared& MapShared() {
    std::FILE* const file = std::fopen(kMemoryFile, "rb+");
    void* const mapped = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, fileno(file), 0);
    std::fclose(file);
    if (mapped == MAP_FAILED) {
        std::perror("mmap");
        std::_Exit(2);
    }
    return *static_cast<Shared*>(mapped);
}

Ubrix::LogBlockOptions Options(Shared& shared, bool isCompress) {
    Ubrix::LogBlockOptions options;
    options.isCompress = isCompress;
    options.memory = shared.memory;
    return options;
}

// Logs until it is killed, and waits where the flusher is slow: no line is to be left out for want of room.
[[noreturn]] void LogForEver(bool isCompress) {
    Shared& shared = MapShared();
    static Ubrix::Logger logger("Blocks", Options(shared, isCompress));
    logger.SetOption("LogConsoleOutput", 0);
    logger.Init();
    for (int number = 1;; ++number) {
        while (Ubrix::LogCrypt::GetBodyLength(shared.memory, sizeof shared.memory) >
               LogBlockWriter::kWriteLength * 2) {
            std::this_thread::yield();
        }
        std::string const text = "<" + std::to_string(number) + ">" + std::string(200, 'x');
        logger.Log(Ubrix::ALogPriorityError, "f.cpp", 1, "F", "", text.c_str());
        shared.logged = number;
    }
}

// The numbers of all lines in the files. A write of the file that the kill cut is no whole block.
std::vector<bool> Found(int most) {
    std::string const content = Test::ReadBlockFiles("Blocks");
    std::string const noKey(64, '\0');
    std::vector<bool> found(static_cast<std::size_t>(most) + 1);
    for (std::size_t at = 0; at + 74 <= content.size(); ++at) {
        bool const isHead = (content[at] == 8 || content[at] == 9) && content.compare(at + 9, 64, noKey) == 0;
        std::size_t const length = isHead ? Test::LittleEndian(content.substr(at, 9), 5, 4) : content.size();
        if (length > content.size() - at - 74) {
            continue;
        }
        std::string const text = Test::DecodeBlocks(content.substr(at, length + 74)).at(0).text;
        for (std::size_t mark = 0; (mark = text.find("| <", mark)) != std::string::npos; ++mark) {
            int const number = std::atoi(text.c_str() + mark + 3);
            std::size_t const end = text.find(">" + std::string(200, 'x') + "\n", mark);
            if (end != std::string::npos && number <= most) {
                found[static_cast<std::size_t>(number)] = true;
            }
        }
    }
    return found;
}

// How many of the lines that a killed process had logged are missing.
int OneKill(int lines, bool isCompress) {
    std::filesystem::remove_all(kFiles);
    std::filesystem::create_directories(kFiles);
    std::ofstream(kMemoryFile) << std::string(sizeof(Shared), '\0');
    Shared& shared = MapShared();
    Stress::Child child({"child", isCompress ? "compress" : "plain"});
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (shared.logged < lines && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    child.Kill();
    int const logged = shared.logged;
    {
        Ubrix::Logger logger("Blocks", Options(shared, isCompress));
        logger.SetOption("LogConsoleOutput", 0);
        logger.Init();
    }
    std::vector<bool> const found = Found(logged);
    auto const missing = std::count(found.begin() + 1, found.end(), false);
    munmap(&shared, sizeof shared);
    return logged < lines ? lines : static_cast<int>(missing);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::strcmp(argv[1], "child") == 0) {
        LogForEver(std::strcmp(argv[2], "compress") == 0);
    }
    int const kills = argc > 1 && std::strcmp(argv[1], "full") == 0 ? 2000 : 30;
    int lost = 0;
    for (int i = 0; i < kills; ++i) {
        // Some 200 plain lines make a block ripe, so the kills fall before, into and behind a write.
        lost += OneKill(1 + i * 37 % 900, i % 2 == 0);
    }
    std::printf("%d kills of a process that logs into blocks: %d logged lines missing\n", kills, lost);
    return lost == 0 ? 0 : 1;
}
