// Writes lines through an asynchronous logger into an enciphered log block file below the current directory,
// and reads them back as a support desk would: from the file and the private half of the server's key pair.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "BuildConstants.h"
#include "Storage/Log/Logger.h"
#include "Support/Files.h"
#include "Support/LogBlockDecoder.h"

namespace {

constexpr char const* kModule = "Blocks";
constexpr char const* kOtherKey = "1";
// Some 66,000 bytes compressed: more than lets a block in memory be written out, too little to fill it up,
// which would cost lines however late the writing thread is.
constexpr int kLines = 3000;

std::string Line(int number) {
    return "line " + std::to_string(number) + " of a game, seed " + std::to_string(number * 2654435761LL);
}

void Write() {
    Ubrix::LogBlockOptions options;
    options.serverPublicKey = VELMORCORE_SERVER_PUBLIC_KEY;
    Ubrix::Logger logger(kModule, options);
    logger.SetOption("LogConsoleOutput", 0);
    logger.Init();
    for (int i = 0; i < kLines; ++i) {
        logger.Log(Velmor::ALogPriorityEvent, "game.cpp", 1, "Play", "", Line(i).c_str());
    }
    logger.StopBlocks();
}

// All files together: the hour may have changed meanwhile.
std::string Content() {
    namespace fs = std::filesystem;
    fs::path const directory = fs::path("Cache") / "VelmorSDKLog" / kModule;
    std::set<fs::path> const paths{fs::directory_iterator(directory), {}};
    std::string content;
    for (fs::path const& path : paths) {
        content += Test::ReadWholeFile(path.string());
    }
    return content;
}

// How many lines stand in the blocks, whole and in their order.
int CountLines(std::vector<Test::LogBlock> const& blocks) {
    std::string text;
    for (Test::LogBlock const& block : blocks) {
        text += block.text;
    }
    int count = 0;
    std::size_t at = 0;
    while (count < kLines && (at = text.find("| " + Line(count) + "\n", at)) != std::string::npos) {
        ++count;
    }
    return count;
}

int WriteAndRead(char const* keyFile) {
    std::string const privateKey = Test::ReadWholeFile(keyFile).substr(0, 64);
    Write();
    std::string const content = Content();
    std::vector<Test::LogBlock> const blocks = Test::DecodeBlocks(content, privateKey);
    bool const sealed = std::all_of(blocks.begin(), blocks.end(),
                                    [](Test::LogBlock const& block) { return block.start == 7; });
    int const read = CountLines(blocks);
    int const readByOthers = CountLines(Test::DecodeBlocks(content, kOtherKey));
    std::printf("lines written       %d\nlines read back     %d\nread by another key %d\n", kLines, read,
                readByOthers);
    std::printf("blocks              %zu, %s, %zu bytes\n", blocks.size(),
                sealed ? "enciphered and compressed" : "NOT ALL ENCIPHERED", content.size());
    return read == kLines && readByOthers == 0 && sealed ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("velmorcore_log_block PRIVATE-KEY-FILE\n", stderr);
        return 2;
    }
    try {
        return WriteAndRead(argv[1]);
    } catch (std::exception const& problem) {
        std::fprintf(stderr, "velmorcore_log_block: %s\n", problem.what());
        return 1;
    }
}
