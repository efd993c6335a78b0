#include <VelmorCore/File.h>
#include <VelmorCore/System.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "Readers/Files.h"
#include "Support/LogCapture.h"
#include "Support/OnThreads.h"

namespace Ubrix {
namespace {

TEST(System, DeviceIdIsMadeOnceAndStored) {
    std::string const path = std::string(CPath::GetDocPath()) + "/config.ini";
    ASSERT_EQ(std::system("\"" VELMORCORE_CHILD "\" persist > out.txt 2>&1"), 0);
    EXPECT_THAT(::Test::ReadWholeFile(path),
                testing::MatchesRegex("\n\\[System\\]\nUdid=[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-"
                                      "[89AB][0-9A-F]{3}-[0-9A-F]{12}\n"));

    // Nothing can be read or stored: the id stands for this run, the same for all who ask first.
    CFile::Remove(path.c_str());
    ASSERT_TRUE(CPath::CreatePath(path.c_str()));
    char const* seen[8] = {};
    ::Test::OnThreads(8, [&](int i) { seen[i] = CSystem::GetUdid(); });
    EXPECT_EQ(std::string(seen[0]).size(), 36U);
    EXPECT_THAT(seen, testing::Each(CSystem::GetUdid()));
}

TEST(System, PermissionsAreNoLongerAskedFor) {
    ::Test::LogCapture const log;
    EXPECT_EQ(CSystem::CheckPermission(1), -1);
    EXPECT_TRUE(log.Has("Warning", "|Ubrix::CSystem::CheckPermission| CheckPermission is deprecated"));
}

}  // namespace
}  // namespace Ubrix
