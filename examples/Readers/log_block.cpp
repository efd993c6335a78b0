// Writes lines through an asynchronous logger into an enciphered log block file below the current directory,
// and reads them back as a support desk would: from the file and the private half of the server's key pair.
#include <cstdio>
#include <string>

#include "BuildConstants.h"
#include "Readers/LogBlockDecoder.h"
#include "Storage/Log/Logger.h"

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

// How many lines stand in the blocks, whole and in their order, for whoever holds `privateKey`.
int Read(std::string const& content, std::string const& privateKey) {
    std::string text;
    for (Test::LogBlock const& block : Test::DecodeBlocks(content, privateKey)) {
        text += block.start == 7 ? block.text : "NOT ENCIPHERED AND COMPRESSED";
    }
    int count = 0;
    std::size_t at = 0;
    while (count < kLines && (at = text.find("| " + Line(count) + "\n", at)) != std::string::npos) {
        ++count;
    }
    return count;
}

int WriteAndRead(char const* keyFile) {
    Write();
    std::string const content = Test::ReadBlockFiles(kModule);
    int const read = Read(content, Test::ReadWholeFile(keyFile).substr(0, 64));
    int const readByOthers = Read(content, kOtherKey);
    std::printf(
        "lines written       %d\nlines read back     %d\nread by another key %d\nbytes enciphered    %zu\n",
        kLines, read, readByOthers, content.size());
    return read == kLines && readByOthers == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("velmorcore_log_block PRIVATE-KEY-FILE\n", stderr);
        return 2;
    }
    return WriteAndRead(argv[1]);
}
