#include <VelmorCore/File.h>
#include <VelmorCore/System.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "Support/ConsoleCapture.h"
#include "Support/Files.h"

namespace Ubrix {
namespace {

std::string ConfigPath() {
    return std::string(CPath::GetDocPath()) + "/config.ini";
}

// The device id that a run of another process in this directory sees.
std::string IdOfAnotherRun() {
    EXPECT_EQ(std::system("\"" VELMORCORE_CHILD "\" persist > seen.txt 2> errors.txt"), 0);
    std::string const seen = ::Test::ReadWholeFile("seen.txt");
    return seen.substr(0, seen.find(' '));
}

TEST(System, DeviceIdIsMadeOnceAndKept) {
    CPath::GetDocPath();
    std::string const id = IdOfAnotherRun();
    EXPECT_EQ(id.size(), 36U);
    EXPECT_THAT(id, testing::MatchesRegex(
                        "[0-9A-F]+-[0-9A-F]+-4[0-9A-F][0-9A-F][0-9A-F]-[89AB][0-9A-F][0-9A-F][0-9A-F]-"
                        "[0-9A-F]+"));
    EXPECT_THAT(::Test::ReadWholeFile(ConfigPath()),
                testing::ContainsRegex("\\[System\\]\r?\nUdid=" + id + "\r?\n"));
    EXPECT_EQ(IdOfAnotherRun(), id);
    ::Test::WriteWholeFile(ConfigPath(), "[System]\nUdid=abc\n");
    EXPECT_EQ(IdOfAnotherRun(), "abc") << "any text counts";

    // Nothing can be read or stored: the id stands for this run, the same for all who ask first.
    CFile::Remove(ConfigPath().c_str());
    ASSERT_TRUE(CPath::CreatePath(ConfigPath().c_str()));
    std::vector<char const*> seen(8);
    std::vector<std::thread> threads;
    threads.reserve(seen.size());
    std::atomic<bool> go{false};
    for (char const*& one : seen) {
        threads.emplace_back([&one, &go] {
            while (!go) {
                std::this_thread::yield();
            }
            one = CSystem::GetUdid();
        });
    }
    go = true;
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::string(CSystem::GetUdid()).size(), 36U);
    EXPECT_NE(CSystem::GetUdid(), id);
    EXPECT_EQ(seen, std::vector<char const*>(8, CSystem::GetUdid()));
}

TEST(System, AnswersOfThisPlatform) {
    EXPECT_EQ(std::string(CSystem::GetModel()) + CSystem::GetDeviceBrand() + CSystem::GetSysVersion() +
                  CSystem::GetAppVersion() + CSystem::GetBundleId(),
              "WindowsWindowsUnknownNSarnet");
    EXPECT_FALSE(CSystem::IsDeviceRooted() || CSystem::IsFirstLaunch());
    EXPECT_EQ(CSystem::GetFreeDiskSpace(), 1LL << 30);
    for (int i = 0; i < 2; ++i) {
        ::Test::ConsoleCapture console;
        EXPECT_EQ(CSystem::CheckPermission(i), -1);
        EXPECT_TRUE(console.Has("| Warning |"));
        EXPECT_TRUE(console.Has("|Ubrix::CSystem::CheckPermission| CheckPermission is deprecated"));
    }
}

}  // namespace
}  // namespace Ubrix
