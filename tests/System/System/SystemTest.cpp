#include <VelmorCore/File.h>
#include <VelmorCore/System.h>

#include <atomic>
#include <string>
#include <thread>

#include "Support/Files.h"
#include "Support/LogCapture.h"
#include "Support/OnThreads.h"

namespace Ubrix {
namespace {

TEST(System, AllWhoAskFirstGetTheOneDeviceIdThatIsStored) {
    std::string const path = std::string(CPath::GetDocPath()) + "/config.ini";
    CFile::Remove(path.c_str());
    std::atomic<int> waiting{8};
    char const* seen[8] = {};
    ::Test::OnThreads(8, [&](int i) {
        for (--waiting; waiting > 0;) {
            std::this_thread::yield();
        }
        seen[i] = CSystem::GetUdid();
    });
    std::string const id = seen[0];
    EXPECT_THAT(seen, testing::Each(CSystem::GetUdid()));
    EXPECT_THAT(id, testing::MatchesRegex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
    EXPECT_TRUE(id[14] == '4' && std::string("89AB").find(id[19]) != std::string::npos) << id;
    EXPECT_EQ(::Test::ReadWholeFile(path), "\n[System]\nUdid=" + id + "\n");
}

TEST(System, PermissionsAreNoLongerAskedFor) {
    ::Test::LogCapture const log;
    EXPECT_EQ(CSystem::CheckPermission(1), -1);
    EXPECT_TRUE(log.Has("Warning", "|Ubrix::CSystem::CheckPermission| CheckPermission is deprecated"));
}

}  // namespace
}  // namespace Ubrix
