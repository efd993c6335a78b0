#include "Storage/Log/Logger.h"

#include <VelmorCore/velmorcore.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "Storage/Log/LogFacade.h"
#include "Support/ConsoleCapture.h"
#include "Support/FakeClock.h"
#include "Support/Files.h"

namespace {

using namespace Ubrix;

// What the hourly file of the fixed hour holds.
std::string LogFileText() {
    return ::Test::ReadWholeFile("Cache/VelmorSDKLog/VelmorCore/VelmorCore_2036030507.log");
}

std::vector<std::string> g_lines;

void KeepLine(ALogPriority, char const* line) {
    g_lines.emplace_back(line);
}

void LogInside(ALogPriority, char const* line) {
    g_lines.emplace_back(line);
    if (g_lines.size() == 1) {
        XLog(ALogPriorityError, "f", 1, "F", "inner");
        EXPECT_NE(LogFileText().find("inner"), std::string::npos);
    }
}

class LoggerTest : public testing::Test {
protected:
    LoggerTest() {
        g_lines.clear();
        SetConsoleOutput(false);
    }
    ~LoggerTest() override {
        SetUbrixLogCallback(nullptr);
        SetConsoleOutput(true);
        SetUbrixLogLevel(ALogPriorityInfo);
    }
    ::Test::FakeClock _clock;
};

TEST_F(LoggerTest, DeliversOneLineToFileAndCallback) {
    SetUbrixLogCallback(KeepLine);
    errno = 77;
    XLog(ALogPriorityInfo, "a/f.cpp", 3, "F", "value %d", 5);
    EXPECT_EQ(errno, 77);
    ASSERT_EQ(g_lines.size(), 1U);
    EXPECT_NE(g_lines[0].find("| f.cpp:3|F| value 5"), std::string::npos);
    EXPECT_NE(LogFileText().find(g_lines[0] + "\n"), std::string::npos);
}

TEST_F(LoggerTest, ALineThatFillsItsRoomGoesWithoutALineFeed) {
    XLog2(ALogPriorityInfo, "f", 1, "F", std::string(5000, 'x').c_str());
    XLog2(ALogPriorityInfo, "f", 1, "F", "after");
    EXPECT_NE(LogFileText().find("xxxx[2036-03-05"), std::string::npos);
}

TEST_F(LoggerTest, FiltersByLevelAndLetsNoneThrough) {
    SetUbrixLogCallback(KeepLine);
    SetUbrixLogLevel(ALogPriorityWarning);
    XLog(ALogPriorityInfo, "f", 1, "F", "no");
    EXPECT_FALSE(ACheckLogLevel(ALogPriorityInfo));
    EXPECT_TRUE(ACheckLogLevel(ALogPriorityError));
    SetUbrixLogLevel(ALogPriorityNone);
    XLog(ALogPriorityError, "f", 1, "F", "no");
    XLog(ALogPriorityNone, "f", 1, "F", "yes");
    XLog(ALogPriorityNone, "f", 1, "F", nullptr);
    ASSERT_EQ(g_lines.size(), 1U);
    EXPECT_NE(g_lines[0].find("] | Unkonwn | ["), std::string::npos);
}

TEST_F(LoggerTest, ACallbackMayLog) {
    SetUbrixLogCallback(LogInside);
    XLog(ALogPriorityError, "f", 1, "F", "outer");
    ASSERT_EQ(g_lines.size(), 2U);
    EXPECT_NE(g_lines[1].find("inner"), std::string::npos);
}

TEST_F(LoggerTest, OptionsAreNamedExactly) {
    ::Test::ConsoleCapture console;
    CurrentLogger()->SetOption(nullptr, 1);
    CurrentLogger()->SetOption("logmode", 1);
    SetConsoleOutput(true);
    XLog(ALogPriorityInfo, "f", 1, "F", "seen");
    SetConsoleOutput(false);
    XLog(ALogPriorityInfo, "f", 1, "F", "unseen");
    EXPECT_TRUE(console.Has("Logger SetOption key is NULL"));
    EXPECT_TRUE(console.Has("Logger invalid key logmode"));
    EXPECT_TRUE(console.Has("| seen\n"));
    EXPECT_FALSE(console.Has("unseen"));
}

TEST_F(LoggerTest, LinesOfManyThreadsStayWhole) {
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < kLines; ++i) {
                XLog(ALogPriorityInfo, "f", 1, "F", "%s", std::string(100, 'z').c_str());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::string const text = LogFileText();
    std::string const tail = "| " + std::string(100, 'z') + "\n";
    int whole = 0;
    for (std::size_t at = text.find(tail); at != std::string::npos; at = text.find(tail, at + 1)) {
        ++whole;
    }
    EXPECT_EQ(whole, kThreads * kLines);
}

TEST_F(LoggerTest, TheCFunctionReadsNoFormat) {
    SetUbrixLogCallback(KeepLine);
    VelmorCore_XLog(Velmor::ALogPriorityError, "f", 1, "F", "%s%n");
    ASSERT_EQ(g_lines.size(), 1U);
    EXPECT_NE(g_lines[0].find("| %s%n"), std::string::npos);
    VelmorSDKLog_setLogLevel("velmorcore", 0);
    EXPECT_EQ(CurrentLogger()->GetLevel(), ALogPriorityInfo);
    VelmorSDKLog_setLogLevel("VelmorCore", 0);
    EXPECT_EQ(CurrentLogger()->GetLevel(), ALogPriorityDebug);
}

}  // namespace
