#include "Storage/Log/LogBlockWriter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "Storage/Log/Logger.h"
#include "Support/Files.h"
#include "Support/LogBlockDecoder.h"
#include "Support/SteppedClock.h"

namespace {

using namespace Ubrix;

constexpr long long kDay = 86400000;

// The texts of all blocks on disk.
std::vector<std::string> Blocks() {
    std::set<std::filesystem::path> paths;
    std::filesystem::path const directory = "Cache/VelmorSDKLog/Blocks";
    if (std::filesystem::exists(directory)) {
        for (auto const& entry : std::filesystem::directory_iterator(directory)) {
            EXPECT_EQ(entry.path().extension(), ".xlog");
            paths.insert(entry.path());
        }
    }
    std::vector<std::string> texts;
    for (std::filesystem::path const& path : paths) {
        for (::Test::LogBlock const& block : ::Test::DecodeBlocks(::Test::ReadWholeFile(path.string()))) {
            texts.push_back(block.text);
        }
    }
    return texts;
}

int Count(std::vector<std::string> const& texts, std::string const& part) {
    int count = 0;
    for (std::string const& text : texts) {
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
            ++count;
        }
    }
    return count;
}

int g_called = 0;

class LogBlockWriterTest : public testing::Test {
protected:
    LogBlockWriterTest() {
        g_called = 0;
        std::filesystem::remove_all("Cache/VelmorSDKLog/Blocks");
    }
    ~LogBlockWriterTest() override { ::Test::SteppedClock::Remove(); }
    static void Quiet(Logger& logger) {
        logger.SetOption("LogConsoleOutput", 0);
        logger.Init();
    }
    static void Log(Logger& logger, std::string const& text) {
        logger.Log(ALogPriorityError, "f.cpp", 1, "F", "", text.c_str());
    }
    ::Test::SteppedClock& _clock = ::Test::SteppedClock::Install();
};

TEST_F(LogBlockWriterTest, WritesOnceADayAtAThirdAndAtTheEnd) {
    LogBlockOptions options;
    options.isCompress = false;
    Logger logger("Blocks", options);
    Quiet(logger);
    logger.SetCallback([](ALogPriority, char const*) { ++g_called; });
    ASSERT_TRUE(_clock.AwaitWaiters({kDay}));
    Log(logger, "one");
    EXPECT_TRUE(Blocks().empty());
    logger.WriteDetached("at %s\n", "once");
    EXPECT_EQ(Blocks(), std::vector<std::string>{"at once\n"});
    _clock.Advance(kDay);
    ASSERT_TRUE(_clock.AwaitWaiters({2 * kDay}));
    EXPECT_EQ(Count(Blocks(), "| one\n"), 1);

    _clock.Advance(1);
    for (int i = 0; i < 12; ++i) {
        EXPECT_EQ(Blocks().size(), 2U);
        Log(logger, std::string(5000, 'x'));
    }
    // Twelve lines stay below a third of the block; the thirteenth passes it.
    Log(logger, std::string(5000, 'x'));
    ASSERT_TRUE(_clock.AwaitWaiters({2 * kDay + 1}));
    EXPECT_EQ(Count(Blocks(), "x\n"), 13);

    Log(logger, "last");
    logger.StopBlocks();
    EXPECT_EQ(Count(Blocks(), "| last\n"), 1);
    Log(logger, "too late");
    logger.StopBlocks();
    EXPECT_EQ(Count(Blocks(), "too late"), 0);
    EXPECT_EQ(g_called, 16);
}

TEST_F(LogBlockWriterTest, AFullBlockWarnsInThePlaceOfLines) {
    Platform::RecursiveMutex lock;
    AFileLogger file("Blocks", 0, 0, 0);
    std::vector<char> memory(LogBlockWriter::kBlockLength);
    LogBuffer(memory.data(), memory.size(), false, nullptr).Write("of a crash\n", 11);
    LogBlockOptions options;
    options.isCompress = false;
    options.memory = memory.data();
    std::shared_ptr<LogBlockWriter> const writer = LogBlockWriter::Start(lock, file, options);
    ASSERT_TRUE(writer != nullptr && _clock.AwaitWaiters({kDay}));
    EXPECT_EQ(Blocks(), std::vector<std::string>{"of a crash\n"});
    {
        // The flusher waits for the lock.
        Platform::ScopedLock const held(lock);
        for (int i = 0; i < 14; ++i) {
            writer->Append(std::string(10000, 'y').c_str());
        }
    }
    writer->Stop();
    EXPECT_EQ(Count(Blocks(), "y\n"), 13);
    EXPECT_EQ(Count(Blocks(), "\n[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: 130086\n"), 1);
}

// Where the threads are too quick for the flusher, a warning stands for each line.
TEST_F(LogBlockWriterTest, LinesOfManyThreadsComeOutOnceAndWhole) {
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    Logger logger("Blocks", LogBlockOptions{});
    Quiet(logger);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&logger, t] {
            for (int i = 0; i < kLines; ++i) {
                // Hard to compress, so that blocks fill.
                std::string text = "<" + std::to_string(t) + ".";
                for (unsigned int j = 0, word = static_cast<unsigned int>(i * kThreads + t + 1); j < 60;
                     ++j) {
                    word = word * 1664525U + 1013904223U;
                    text += std::to_string(word);
                }
                Log(logger, text + ">");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    logger.StopBlocks();
    std::vector<std::string> const blocks = Blocks();
    EXPECT_GT(blocks.size(), 1U);
    EXPECT_EQ(Count(blocks, ">\n"), Count(blocks, "|F| <"));
    EXPECT_EQ(Count(blocks, ">\n") + Count(blocks, "\n[F][ sg_buffer"), kThreads * kLines);
}

}  // namespace
