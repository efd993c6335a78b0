#include "Storage/Log/LogBlockWriter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "Readers/LogBlockDecoder.h"
#include "Storage/Log/Logger.h"
#include "Support/OnThreads.h"
#include "Support/SteppedClock.h"

namespace {

using namespace Ubrix;

constexpr long long kDay = 86400000;

// The texts of all blocks on disk, a brace before each.
std::string Blocks() {
    std::string texts;
    for (::Test::LogBlock const& block : ::Test::DecodeBlocks(::Test::ReadBlockFiles("Blocks"))) {
        texts += "{" + block.text;
    }
    return texts;
}

// How often `part` stands in them.
int Count(std::string const& part) {
    int count = 0;
    std::string const text = Blocks();
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) {
        ++count;
    }
    return count;
}

class LogBlockWriter : public testing::Test {
protected:
    LogBlockWriter() {
        _options.isCompress = false;
        std::filesystem::create_directories("Cache/VelmorSDKLog/Blocks");
    }
    ~LogBlockWriter() override { ::Test::SteppedClock::Remove(); }
    static void Quiet(Logger& logger) {
        logger.SetOption("LogConsoleOutput", 0);
        logger.Init();
    }
    static void Log(Logger& logger, std::string const& text) {
        logger.Log(ALogPriorityError, "f.cpp", 1, "F", "", text.c_str());
    }
    LogBlockOptions _options;
    ::Test::SteppedClock& _clock = ::Test::SteppedClock::Install();
};

TEST_F(LogBlockWriter, WritesOnceADayAtAThirdAndAtTheEnd) {
    Logger logger("Blocks", _options);
    Quiet(logger);
    static int called;
    called = 0;
    logger.SetCallback([](ALogPriority, char const*) { ++called; });
    ASSERT_TRUE(_clock.AwaitWaiters({kDay}));
    Log(logger, "one\n");
    EXPECT_EQ(Blocks(), "");
    logger.WriteDetached("at %s\n", "once");
    EXPECT_EQ(Blocks(), "{at once\n");
    _clock.Advance(kDay);
    ASSERT_TRUE(_clock.AwaitWaiters({2 * kDay}));
    EXPECT_EQ(Count("\n"), 2) << "one line feed a line";

    _clock.Advance(1);
    // Twelve lines stay below a third of the block; the thirteenth passes it.
    for (int i = 0; i < 13; ++i) {
        EXPECT_EQ(Count("{"), 2);
        Log(logger, std::string(5000, 'x'));
    }
    ASSERT_TRUE(_clock.AwaitWaiters({2 * kDay + 1}));
    EXPECT_EQ(Count("x\n"), 13);

    Log(logger, "last");
    logger.StopBlocks();
    EXPECT_EQ(Count("| last\n"), 1);
    Log(logger, "too late");
    logger.StopBlocks();
    EXPECT_EQ(Count("{"), 4);
    EXPECT_EQ(called, 16);
}

TEST_F(LogBlockWriter, AFullBlockWarnsInThePlaceOfLines) {
    Platform::RecursiveMutex lock;
    AFileLogger file("Blocks", 0, 0, 0);
    std::vector<char> memory(Ubrix::LogBlockWriter::kBlockLength);
    // No text can join a block that another run has compressed.
    LogBuffer(memory.data(), memory.size(), true, nullptr).Write("of a crash\n", 11);
    _options.memory = memory.data();
    std::shared_ptr<Ubrix::LogBlockWriter> writer;
    {
        // The flusher waits for the lock.
        Platform::ScopedLock const held(lock);
        writer = Ubrix::LogBlockWriter::Start(lock, file, _options);
        writer->Append("first");
        EXPECT_EQ(Blocks(), "{of a crash\n");
    }
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(_clock.AwaitWaiters({kDay + round}));
        _clock.Advance(1);
        Platform::ScopedLock const held(lock);
        for (int i = 0; i < 11; ++i) {
            writer->Append(std::string(12350, 'y').c_str());
        }
    }
    writer->Stop();
    EXPECT_EQ(Count("first\n"), 1);
    EXPECT_EQ(Count("y\n"), 20);
    EXPECT_EQ(Count("\n[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: 123583\n"), 1);
    EXPECT_EQ(Count("{[F][ 1 log lines were left out, for want of room\n"), 2);
}

// Few enough to find room however late the writing thread is.
TEST_F(LogBlockWriter, LinesOfManyThreadsComeOutOnceAndWhole) {
    Logger logger("Blocks", _options);
    Quiet(logger);
    std::string const text = "<" + std::string(600, 'z') + ">";
    ::Test::OnThreads(4, [&](int) {
        for (int i = 0; i < 40; ++i) {
            Log(logger, text);
        }
    });
    logger.StopBlocks();
    EXPECT_EQ(Count("|F| " + text + "\n"), 160);
}

}  // namespace
