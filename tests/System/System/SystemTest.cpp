#include <VelmorCore/File.h>
#include <VelmorCore/System.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "Support/ConsoleCapture.h"

namespace Ubrix {
namespace {

std::string ConfigPath() {
    return std::string(CPath::GetDocPath()) + "/config.ini";
}

std::string ConfigFile() {
    std::ifstream file(ConfigPath());
    return {std::istreambuf_iterator<char>(file), {}};
}

// One run of an application: makes sure of the id and ends.
[[noreturn]] void RunThatSees(std::string const& id) {
    std::_Exit(CSystem::GetUdid() == id ? 0 : 1);
}

TEST(SystemDeathTest, DeviceIdIsMadeOnceAndKept) {
    CPath::GetDocPath();
    EXPECT_EXIT(std::_Exit(CSystem::GetUdid() != nullptr ? 0 : 1), testing::ExitedWithCode(0), "");
    std::string const file = ConfigFile();
    std::size_t const at = file.find("Udid=");
    ASSERT_NE(at, std::string::npos) << file;
    EXPECT_LT(file.find("[System]"), at);
    std::string const id = file.substr(at + 5, 36);
    EXPECT_EQ(file.find_first_not_of("\r\n", at + 41), std::string::npos);
    EXPECT_THAT(id, testing::MatchesRegex(
                        "[0-9A-F]+-[0-9A-F]+-4[0-9A-F][0-9A-F][0-9A-F]-[89AB][0-9A-F][0-9A-F][0-9A-F]-"
                        "[0-9A-F]+"));
    EXPECT_EXIT(RunThatSees(id), testing::ExitedWithCode(0), "") << "the second run";

    std::ofstream(ConfigPath()) << "[System]\nUdid=abc\n";
    EXPECT_EXIT(RunThatSees("abc"), testing::ExitedWithCode(0), "") << "any text counts";

    // Nothing can be read or stored: the id stands for this run, the same for all who ask first.
    CFile::Remove(ConfigPath().c_str());
    ASSERT_TRUE(CPath::CreatePath(ConfigPath().c_str()));
    std::vector<char const*> seen(8);
    std::vector<std::thread> threads;
    for (char const*& one : seen) {
        threads.emplace_back([&one] { one = CSystem::GetUdid(); });
    }
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
