#include "Platform/FileSystem.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <ios>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Directory.h"
#include "Platform/FileLock.h"
#include "Readers/Files.h"
#include "Support/FileSizeLimit.h"
#include "Support/OnThreads.h"

namespace {

using namespace Ubrix::Platform;
namespace fs = std::filesystem;

// Names that stand for what a caller may meet, in a directory of their own.
class FileSystem : public testing::Test {
protected:
    FileSystem() {
        fs::create_directory("place");
        fs::current_path("place");
        ::Test::WriteWholeFile("file", "0123456789");
        fs::create_symlink("file", "link");
        fs::create_symlink("nothing", "dangling");
        fs::create_symlink("/dev/zero", "device");
        fs::create_directory("directory");
        mkfifo("pipe", 0600);
        ::Test::PutFailingFile("failing");
    }
};

TEST_F(FileSystem, ReadsRegularFilesOfABoundedSizeAndNeverWaits) {
    std::pair<char const*, FileAnswer> const cases[] = {
        {"file", FileAnswer::Given},     {"link", FileAnswer::Given},        {"dangling", FileAnswer::Absent},
        {"absent", FileAnswer::Absent},  {"file/below", FileAnswer::Absent}, {"device", FileAnswer::Refused},
        {"pipe", FileAnswer::Refused},   {"directory", FileAnswer::Refused}, {"", FileAnswer::Absent},
        {"failing", FileAnswer::Failing}};
    std::string content;
    for (auto const& [path, answer] : cases) {
        content = "before";
        EXPECT_EQ(ReadWholeFile(path, 10, content), answer) << path;
        EXPECT_EQ(content, answer == FileAnswer::Given ? "0123456789" : "before") << path;
    }
    EXPECT_EQ(ReadWholeFile("file", 9, content), FileAnswer::Refused);
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit const none{0, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    File file;
    EXPECT_EQ(OpenForReading("file", 10, file), FileAnswer::Failing) << "no descriptor is left";
    setrlimit(RLIMIT_NOFILE, &before);
}

TEST_F(FileSystem, PrivateFilesFollowNoLinkAndAreNarrowed) {
    chmod("file", 0644);
    for (char const* path : {"link", "dangling", "device", "pipe", "directory", "absent/file"}) {
        EXPECT_FALSE(OpenPrivateForWriting(path).IsOpen()) << path;
        EXPECT_FALSE(OpenPrivateForAppending(path).IsOpen()) << path;
        EXPECT_FALSE(CreatePrivateFile(path).IsOpen()) << path;
    }
    EXPECT_FALSE(CreatePrivateFile("file").IsOpen());
    EXPECT_EQ(fs::status("file").permissions(), fs::perms{0644});
    EXPECT_TRUE(OpenPrivateForAppending("file").Write("ab", 2));
    EXPECT_EQ(::Test::ReadWholeFile("file"), "0123456789ab");
    EXPECT_EQ(fs::status("file").permissions(), fs::perms{0600});
    EXPECT_TRUE(OpenPrivateForWriting("file").Write("c", 1));
    EXPECT_EQ(::Test::ReadWholeFile("file"), "c");
}

TEST_F(FileSystem, AFileCountsAsAbandonedOnceItsStreamIsClosed) {
    File file = CreatePrivateFile("new");
    ASSERT_TRUE(file.IsOpen());
    EXPECT_FALSE(DeleteAbandonedFile("new"));
    EXPECT_TRUE(RenameOpenFile(file, "new", "file"));
    EXPECT_FALSE(DeleteAbandonedFile("file"));
    file.Close();
    for (char const* path : {"link", "pipe", "directory", "absent"}) {
        EXPECT_FALSE(DeleteAbandonedFile(path)) << path;
    }
    EXPECT_TRUE(DeleteAbandonedFile("file"));
}

TEST_F(FileSystem, ADirectoryIsTrustedUnlessOthersCanChangeIt) {
    mkdir("own", 0700);
    fs::create_symlink("own", "way");
    for (mode_t const mode : {0700U, 0755U, 0775U, 0777U, 01777U}) {
        chmod("own", mode);
        auto const trust = (mode & 02) == 0 ? DirectoryTrust::Own : DirectoryTrust::Foreign;
        for (char const* path : {"own", "own/", "way", "way/"}) {
            EXPECT_EQ(TrustInDirectory(path), trust) << path << std::oct << mode;
        }
    }
    for (char const* path : {"nothing", "file", ""}) {
        EXPECT_EQ(TrustInDirectory(path), DirectoryTrust::Absent) << path;
    }
    EXPECT_EQ(TrustInDirectory("/"), DirectoryTrust::Own) << "the administrator's";
    // Only the administrator can give something away.
    if (geteuid() == 0) {
        chmod("own", 0755);
        EXPECT_EQ(lchown("way", 1, 1), 0);
        EXPECT_EQ(TrustInDirectory("own"), DirectoryTrust::Own);
        EXPECT_EQ(TrustInDirectory("way/"), DirectoryTrust::Foreign);
        EXPECT_EQ(chown("own", 1, 1), 0);
        EXPECT_EQ(lchown("way", 0, 0), 0);
        EXPECT_EQ(TrustInDirectory("way"), DirectoryTrust::Foreign);
    }
}

TEST_F(FileSystem, ADirectoryHandleStaysInside) {
    fs::create_directory_symlink("directory", "other");
    for (char const* path : {"other", "file", "absent"}) {
        EXPECT_FALSE(Directory(path).IsOpen()) << path;
    }
    Directory const here(".");
    std::vector<std::string> names;
    EXPECT_TRUE(here.List(names));
    EXPECT_EQ(names.size(), 8U);
    EXPECT_TRUE(here.HasRegularFile("file"));
    for (char const* name : {"link", "directory", "pipe", "absent", "../place/file"}) {
        EXPECT_FALSE(here.HasRegularFile(name)) << name;
    }
    for (char const* name : {"../place/file", "directory"}) {
        EXPECT_FALSE(here.Remove(name)) << name;
    }
    EXPECT_TRUE(here.Remove("link"));
    EXPECT_TRUE(fs::exists("file"));
}

TEST_F(FileSystem, OneHolderAtATimeHasALock) {
    {
        FileLock const held("lock", 0);
        ASSERT_TRUE(held.IsHeld());
        for (char const* path : {"lock", "link", "absent/lock"}) {
            EXPECT_FALSE(FileLock(path, 0).IsHeld()) << path;
        }
    }
    ::Test::OnThreads(4, [](int) {
        for (int i = 0; i < 50; ++i) {
            FileLock const turn("lock", 60000);
            EXPECT_TRUE(turn.IsHeld());
        }
    });
}

}  // namespace
