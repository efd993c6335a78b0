#include "Storage/Log/Logger.h"

#include <VelmorCore/velmorcore.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

#include "Readers/Files.h"
#include "Storage/Log/LogFacade.h"
#include "Support/ConsoleCapture.h"
#include "Support/FakeClock.h"
#include "Support/LogCapture.h"
#include "Support/OnThreads.h"

namespace {

using namespace Ubrix;

// What the hourly file of the fixed hour holds.
std::string LogFileText() {
    return ::Test::ReadWholeFile("Cache/VelmorSDKLog/VelmorCore/VelmorCore_2036030507.log");
}

class Logger : public testing::Test {
protected:
    ::Test::FakeClock _clock;
    ::Test::LogCapture _log;
};

TEST_F(Logger, DeliversOneLineToFileAndCallback) {
    errno = 77;
    XLog(ALogPriorityInfo, "a/f.cpp", 3, "F", "value %d", 5);
    EXPECT_EQ(errno, 77);
    VelmorCore_XLog(Velmor::ALogPriorityError, "f", 1, "F", "%s%n");
    EXPECT_TRUE(_log.Has("Info", "| f.cpp:3|F| value 5"));
    EXPECT_TRUE(_log.Has("Error", "| %s%n")) << "the C function reads no format";
    EXPECT_NE(LogFileText().find(_log.Text()), std::string::npos);
    XLog2(ALogPriorityInfo, "f", 1, "F", std::string(5000, 'x').c_str());
    XLog2(ALogPriorityInfo, "f", 1, "F", "after");
    EXPECT_NE(LogFileText().find("xxxx[2036-03-05"), std::string::npos) << "no room for a line feed";
    SetUbrixLogCallback(
        [](ALogPriority, char const*) { EXPECT_EQ(std::exchange(errno, 5), 77) << "as the caller left it"; });
    // The file is opened anew, by calls that fail first.
    std::filesystem::remove_all("Cache/VelmorSDKLog");
    errno = 77;
    XLog(ALogPriorityInfo, "f", 1, "F", "for a callback that looks");
    EXPECT_EQ(errno, 77);
}

TEST_F(Logger, FiltersByLevelAndLetsNoneThrough) {
    SetUbrixLogLevel(ALogPriorityWarning);
    XLog(ALogPriorityInfo, "f", 1, "F", "no");
    EXPECT_FALSE(ACheckLogLevel(ALogPriorityInfo));
    EXPECT_TRUE(ACheckLogLevel(ALogPriorityWarning));
    SetUbrixLogLevel(ALogPriorityNone);
    XLog2(ALogPriorityError, "f", 1, "F", "no");
    XLog(ALogPriorityNone, "f", 1, "F", "yes");
    XLog(ALogPriorityNone, "f", 1, "F", nullptr);
    EXPECT_TRUE(_log.Has("Unkonwn", "| yes"));
    EXPECT_EQ(_log.Text().find("| no\n"), std::string::npos);
    VelmorSDKLog_setLogLevel("velmorcore", 0);
    EXPECT_EQ(CurrentLogger()->GetLevel(), ALogPriorityNone);
    VelmorSDKLog_setLogLevel("VelmorCore", 0);
    EXPECT_EQ(CurrentLogger()->GetLevel(), ALogPriorityDebug);
}

TEST_F(Logger, OptionsAreNamedExactly) {
    ::Test::ConsoleCapture console;
    CurrentLogger()->SetOption(nullptr, 1);
    CurrentLogger()->SetOption("logmode", 1);
    // Any thread may set any: the thread sanitizer tells.
    ::Test::OnThreads(2, [](int) {
        for (char const* key : {"LogMode", "LogSingleSizeLimit", "LogExceedOp"}) {
            CurrentLogger()->SetOption(key, 0);
        }
    });
    SetConsoleOutput(true);
    XLog(ALogPriorityInfo, "f", 1, "F", "seen");
    SetConsoleOutput(false);
    XLog(ALogPriorityInfo, "f", 1, "F", "not on it");
    for (char const* text : {"Logger SetOption key is NULL\n", "Logger invalid key logmode\n", "| seen\n"}) {
        EXPECT_TRUE(console.Has(text)) << text;
    }
    EXPECT_FALSE(console.Has("not on it"));
}

}  // namespace
