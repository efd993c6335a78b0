#include "Storage/Log/AFileLogger.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <set>
#include <string>

#include "Support/ConsoleCapture.h"
#include "Support/FakeClock.h"
#include "Support/Files.h"

namespace {

using namespace Ubrix;
namespace fs = std::filesystem;

std::string const kRoot = "Cache/VelmorSDKLog/";

std::set<std::string> FilesOf(std::string const& module) {
    std::set<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(kRoot + module)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

// A name of `module` stamped `hours` before the clock's 2036-03-05 07h; local time keeps to one offset in
// March before the change of the clocks.
std::string StampedName(char const* module, int hours) {
    long long const now =
        Platform::CalendarToEpoch({2036, 3, 5, 7, 0, 0, 0}, Platform::DaylightSaving::Standard);
    auto const then = static_cast<std::time_t>(now - hours * 3600LL);
    std::tm const* local = std::localtime(&then);
    char name[64];
    std::snprintf(name, sizeof name, "%s_%04d%02d%02d%02d.log", module, local->tm_year + 1900,
                  local->tm_mon + 1, local->tm_mday, local->tm_hour);
    return name;
}

TEST(AFileLogger, StartsAFileEachHourAndAnewWhereOneWasDeleted) {
    ::Test::FakeClock clock;
    AFileLogger logger("Mod", 1, 0, 0);
    EXPECT_FALSE(fs::exists(kRoot + "Mod"));
    logger.Log2File("one\n");
    clock.SetLocal({2036, 3, 5, 8, 0, 0, 0});
    logger.Log2File("two\n");
    EXPECT_EQ(FilesOf("Mod"), (std::set<std::string>{"Mod_2036030507.log", "Mod_2036030508.log"}));
    EXPECT_EQ(::Test::ReadWholeFile(kRoot + "Mod/Mod_2036030507.log"), "one\n");
    fs::remove_all(kRoot + "Mod");
    ::Test::ConsoleCapture console;
    logger.Log2File("three\n");
    logger.Log2File(nullptr);
    logger.Log2File("", 0);
    EXPECT_EQ(console.Text(), "");
    EXPECT_EQ(FilesOf("Mod"), (std::set<std::string>{"Mod_2036030508.log"}));
}

TEST(AFileLogger, KeepsToItsSizeLimit) {
    ::Test::FakeClock clock;
    std::string const path = kRoot + "Mod/Mod_2036030507.log";
    AFileLogger restarting("Mod", 1, 1, AFileLogger::RestartFile);
    restarting.Log2File(std::string(1048576, 'a').c_str());
    restarting.Log2File("b");
    restarting.Log2File("c");
    EXPECT_EQ(fs::file_size(path), 1U) << "the line stands alone in a new file";
    fs::remove(path);
    ::Test::ConsoleCapture console;
    AFileLogger refusing("Mod", 0, 1, AFileLogger::RefuseLines);
    refusing.Log2File(std::string(1048577, 'a').c_str());
    refusing.Log2File("lost");
    EXPECT_TRUE(console.Has("| Info | [VelmorCore]"));
    EXPECT_TRUE(console.Has("_logFile size exceed return"));
    EXPECT_EQ(fs::file_size(kRoot + "Mod/Mod_2036030507.xlog"), 1048577U);
}

TEST(AFileLogger, LongModuleNamesStayOutOfTheFileName) {
    ::Test::FakeClock clock;
    std::string const fits(109, 'm');
    std::string const tooLong(110, 'm');
    AFileLogger(fits.c_str(), 1, 0, 0).Log2File("x");
    AFileLogger(tooLong.c_str(), 1, 0, 0).Log2File("x");
    EXPECT_EQ(FilesOf(fits).count(fits + "_2036030507.log"), 1U);
    EXPECT_EQ(FilesOf(tooLong).count("Ubrix_2036030507.log"), 1U);
}

TEST(AFileLogger, TellsOnTheConsoleWhyALineIsLostAndRecovers) {
    ::Test::FakeClock clock;
    AFileLogger logger("Mod", 1, 0, 0);
    // A file where a directory belongs stands in for a place that can't be written, also for a superuser.
    fs::remove_all(kRoot);
    ::Test::WriteWholeFile("Cache/VelmorSDKLog", "in the way");
    ::Test::ConsoleCapture console;
    logger.Log2File("lost");
    EXPECT_TRUE(console.Has("| Error | [VelmorCore]"));
    EXPECT_TRUE(console.Has("CreatePath "));
    EXPECT_TRUE(console.Has("VelmorSDKLog/Mod failed!")) << console.Text();
    fs::remove("Cache/VelmorSDKLog");
    fs::create_directories(kRoot + "Mod/Mod_2036030507.log");
    ::Test::ConsoleCapture again;
    logger.Log2File("lost");
    EXPECT_TRUE(again.Has("|Ubrix::AFileLogger::_OpenLogFile| Failed to Open log files"));
    EXPECT_TRUE(again.Has("|Ubrix::AFileLogger::Log2File| OpenLogFile failed!"));
    fs::remove_all(kRoot + "Mod/Mod_2036030507.log");
    logger.Log2File("kept");
    EXPECT_EQ(FilesOf("Mod").size(), 1U);
}

TEST(AFileLogger, ReadsTheTimeOfAFileName) {
    long long const stamp =
        Platform::CalendarToEpoch({2036, 3, 5, 7, 0, 0, 0}, Platform::DaylightSaving::Standard);
    EXPECT_EQ(AFileLogger::GetLogFileTimeStamp("VelmorCore_2036030507.log"), stamp);
    EXPECT_EQ(AFileLogger::GetLogFileTimeStamp("X_2036030507.xlog"), stamp);
    struct {
        char const* name;
        char const* message;
    } const bad[] = {
        {"VelmorCore_2036030507.txt", "logFile Ext is invalid VelmorCore_2036030507.txt , ext txt"},
        {"VelmorCore_203603050.log", "logTime is invalid VelmorCore_203603050.log"},
        {"Velmor_Core_2036030507.log", "logFile is invalid Velmor_Core_2036030507.log"},
        {"VelmorCore_20360305a7.log", "logTime is invalid VelmorCore_20360305a7.log"},
        {"VelmorCore_2036030507", "logFile is invalid VelmorCore_2036030507"},
        {"", "logFile is invalid "},
    };
    for (auto const& row : bad) {
        ::Test::ConsoleCapture console;
        EXPECT_EQ(AFileLogger::GetLogFileTimeStamp(row.name), 0);
        EXPECT_TRUE(console.Has(std::string("| Warning | [VelmorCore]"))) << row.name;
        EXPECT_TRUE(console.Has(std::string("|GetLogFileTimeStamp| ") + row.message + "\n")) << row.name;
    }
}

TEST(AFileLogger, SweepsByAgeAndByCount) {
    ::Test::FakeClock clock({2036, 3, 5, 7, 0, 0, 0});
    fs::create_directories(kRoot + "Mod");
    std::string const old = StampedName("Mod", 241);
    std::string const recent[] = {StampedName("Mod", 239), StampedName("Mod", 3), StampedName("Mod", 2),
                                  StampedName("Mod", 1)};
    for (std::string const& name :
         {old, recent[0], recent[1], recent[2], recent[3], std::string("readme.txt")}) {
        ::Test::WriteWholeFile(kRoot + "Mod/" + name, "x");
    }
    ::Test::ConsoleCapture console;
    AFileLogger::RemoveOldLogFiles("Mod", 240, -1);
    EXPECT_EQ(FilesOf("Mod"), (std::set<std::string>{recent[0], recent[1], recent[2], recent[3]}));
    EXPECT_TRUE(console.Has("| Debug | [VelmorCore]"));
    EXPECT_TRUE(console.Has("|Ubrix::AFileLogger::RemoveOldLogFiles| RemoveOldLog log fileName " + old));
    AFileLogger::RemoveOldLogFiles("Mod", 240, 2);
    EXPECT_EQ(FilesOf("Mod"), (std::set<std::string>{recent[2], recent[3]}));
    AFileLogger::RemoveOldLogFiles("Mod", 240, 0);
    EXPECT_TRUE(FilesOf("Mod").empty());
    AFileLogger::RemoveOldLogFiles("Absent", 240, 0);
}

}  // namespace
