#include "Storage/Log/AFileLogger.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <set>
#include <string>

#include "Readers/Files.h"
#include "Support/ConsoleCapture.h"
#include "Support/FakeClock.h"

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

void LogOnce(char const* text) {
    AFileLogger("Mod", 1, 0, 0).Log2File(text);
}

TEST(AFileLogger, StartsAFileEachHourAndAnewWhereOneWasDeleted) {
    ::Test::FakeClock clock;
    AFileLogger logger("Mod", 1, 0, 0);
    EXPECT_FALSE(fs::exists(kRoot + "Mod"));
    logger.Log2File("one\n");
    // Another hour, and the same one of another day, month and year.
    Platform::CalendarTime const hours[] = {{2036, 3, 5, 8, 0, 0, 0},
                                            {2036, 3, 6, 8, 0, 0, 0},
                                            {2036, 4, 6, 8, 0, 0, 0},
                                            {2037, 4, 6, 8, 0, 0, 0}};
    for (Platform::CalendarTime const& hour : hours) {
        clock.SetLocal(hour);
        logger.Log2File("later\n");
    }
    EXPECT_EQ(FilesOf("Mod").size(), 5U);
    EXPECT_EQ(::Test::ReadWholeFile(kRoot + "Mod/Mod_2036030507.log"), "one\n");
    fs::remove_all("Cache");
    ::Test::ConsoleCapture console;
    logger.Log2File("last\n");
    logger.Log2File(nullptr);
    logger.Log2File("", 0);
    EXPECT_EQ(console.Text(), "");
    EXPECT_EQ(FilesOf("Mod"), std::set<std::string>{"Mod_2037040608.log"});
}

// The longer of the two module names leaves no room for itself in the file's.
TEST(AFileLogger, KeepsToItsSizeLimit) {
    ::Test::FakeClock clock;
    std::string const fits(109, 'm');
    AFileLogger restarting(fits.c_str(), 1, 1, AFileLogger::RestartFile);
    restarting.Log2File(std::string(1048576, 'a').c_str());
    restarting.Log2File("b");
    restarting.Log2File("c");
    EXPECT_EQ(::Test::ReadWholeFile(kRoot + fits + "/" + fits + "_2036030507.log"), "c");
    std::string const tooLong(110, 'm');
    ::Test::ConsoleCapture console;
    AFileLogger refusing(tooLong.c_str(), 0, 1, AFileLogger::RefuseLines);
    refusing.Log2File(std::string(1048577, 'a').c_str());
    refusing.Log2File("lost");
    EXPECT_TRUE(console.Has("_logFile size exceed return"));
    EXPECT_EQ(fs::file_size(kRoot + tooLong + "/Ubrix_2036030507.xlog"), 1048577U);
}

TEST(AFileLogger, TellsOnTheConsoleWhyALineIsLostAndRecovers) {
    ::Test::FakeClock clock;
    AFileLogger logger("Mod", 1, 0, 0);
    // A file where a directory belongs stands in for a place that can't be written, also for a superuser.
    fs::remove_all(kRoot);
    ::Test::WriteWholeFile("Cache/VelmorSDKLog", "in the way");
    ::Test::ConsoleCapture console;
    logger.Log2File("lost");
    EXPECT_TRUE(console.Has("VelmorSDKLog failed!")) << console.Text();
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

TEST(AFileLogger, AFileIsThisUsersAloneAndBeginsAtALinesHead) {
    ::Test::FakeClock clock;
    std::string const path = kRoot + "Mod/Mod_2036030507.log";
    fs::create_directories(kRoot + "Mod");
    ::Test::WriteWholeFile(path, "whole\nhal");
    fs::permissions(path, fs::perms{0644});
    ::Test::ConsoleCapture console;
    LogOnce("next\n");
    LogOnce("last\n");
    EXPECT_EQ(::Test::ReadWholeFile(path), "whole\nhal\nnext\nlast\n");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0600});

    // Neither a link nor a pipe is opened, whatever stands behind it.
    ::Test::WriteWholeFile("elsewhere", "");
    fs::remove(path);
    fs::create_symlink(fs::current_path() / "elsewhere", path);
    LogOnce("lost\n");
    EXPECT_EQ(::Test::ReadWholeFile("elsewhere"), "");
    fs::remove(path);
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    LogOnce("lost\n");
    fs::rename("Cache/VelmorSDKLog", "moved");
    fs::create_directory_symlink(fs::current_path() / "moved", "Cache/VelmorSDKLog");
    fs::remove("moved/Mod/Mod_2036030507.log");
    LogOnce("lost\n");
    EXPECT_TRUE(fs::is_empty("moved/Mod"));
}

TEST(AFileLogger, SweepsByAgeAndByCount) {
    ::Test::FakeClock clock({2036, 3, 5, 7, 0, 0, 0});
    // 241, 239, 3, 2 and 1 hours old, and none of the module's log files.
    std::string const names[] = {"Mod_2036022406.log", "Mod_2036022408.log", "Mod_2036030504.xlog",
                                 "Mod_2036030505.log", "Mod_2036030506.log", "Mo_d_2036022406.log",
                                 "Mod_203602240.log",  "Mod_20360224a6.log", "Mod_2036022406.txt",
                                 "Link_2036022406.log"};
    fs::create_directories(kRoot + "Mod");
    for (std::string const& name : names) {
        ::Test::WriteWholeFile(kRoot + "Mod/" + name, "x");
    }
    ::Test::ConsoleCapture console;
    AFileLogger::RemoveOldLogFiles("Mod", 240, -1);
    EXPECT_EQ(FilesOf("Mod"), std::set<std::string>(names + 1, names + 10));
    for (std::string const& told :
         {"|Ubrix::AFileLogger::RemoveOldLogFiles| RemoveOldLog log fileName " + names[0],
          "|GetLogFileTimeStamp| logFile is invalid " + names[5] + "\n",
          "|GetLogFileTimeStamp| logTime is invalid " + names[6] + "\n",
          "|GetLogFileTimeStamp| logTime is invalid " + names[7] + "\n",
          "|GetLogFileTimeStamp| logFile Ext is invalid " + names[8] + " , ext txt\n"}) {
        EXPECT_TRUE(console.Has(told)) << told;
    }
    EXPECT_EQ(AFileLogger::GetLogFileTimeStamp("X_2036030507.xlog"),
              Platform::CalendarToEpoch({2036, 3, 5, 7, 0, 0, 0}, Platform::DaylightSaving::Standard));
    AFileLogger::RemoveOldLogFiles("Mod", 240, 2);
    EXPECT_EQ(FilesOf("Mod"), std::set<std::string>(names + 3, names + 10));
    AFileLogger::RemoveOldLogFiles("Mod", 240, 0);
    AFileLogger::RemoveOldLogFiles("Absent", 240, 0);
    // A module's directory that is a link is somebody else's.
    fs::create_directory_symlink(fs::current_path() / kRoot / "Mod", kRoot + "Link");
    AFileLogger::RemoveOldLogFiles("Link", 240, 0);
    EXPECT_EQ(FilesOf("Mod"), std::set<std::string>(names + 5, names + 10));
    // So is one behind a link in the place of the directory of all modules.
    ::Test::WriteWholeFile(kRoot + "Mod/" + names[0], "x");
    fs::rename("Cache/VelmorSDKLog", "moved");
    fs::create_directory_symlink(fs::current_path() / "moved", "Cache/VelmorSDKLog");
    AFileLogger::RemoveOldLogFiles("Mod", 240, 0);
    EXPECT_EQ(FilesOf("Mod").size(), 6U);
}

}  // namespace
