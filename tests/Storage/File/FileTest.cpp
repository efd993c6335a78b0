#include <VelmorCore/File.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <string>

#include "Support/Files.h"
#include "Support/LogCapture.h"

namespace {

using namespace Ubrix;
using Test::LogCapture;
using Test::ReadWholeFile;
using Test::WriteWholeFile;

TEST(FileTest, EachModeKeepsAndAllowsWhatItSays) {
    struct {
        int mode;
        char const* content;  // of an existing "0123456789" after a Write of "ab"
        bool writes;
        int read;  // of 4 bytes from the beginning, after that
    } const cases[] = {{FileModeCreate, "ab", true, 2},        {FileModeAppend, "0123456789ab", true, 4},
                       {FileModeRead, "0123456789", false, 4}, {FileModeReadWrite, "ab", true, 2},
                       {FileModeWrite, "ab", true, -1},        {99, "0123456789", false, 4}};
    for (auto const& one : cases) {
        SCOPED_TRACE(one.mode);
        WriteWholeFile("f", "0123456789");
        char buffer[4];
        CFile file;
        ASSERT_TRUE(file.Open("f", static_cast<FileMode>(one.mode)));
        EXPECT_EQ(file.Write("ab", 2), one.writes);
        EXPECT_EQ(file.Read(buffer, 4), one.read);
        file.Close();
        EXPECT_EQ(ReadWholeFile("f"), one.content);
    }
}

TEST(FileTest, WritesAtTheBeginningAppendsAtTheEndReadsAnywhere) {
    CFile file;
    ASSERT_TRUE(file.Open("f", FileModeCreate));
    EXPECT_TRUE(file.Write("abcd", 4));
    EXPECT_TRUE(file.Write("XY", 2));
    EXPECT_EQ(ReadWholeFile("f"), "XYcd");
    EXPECT_TRUE(file.Append(std::string(1000, 'z').data(), 1000));
    EXPECT_EQ(file.GetLength(), 1004u);
    char buffer[2000];
    EXPECT_EQ(file.Read(buffer, 2, 2000), 1002);
    EXPECT_EQ(std::string(buffer, 4), "cdzz");
    EXPECT_EQ(file.Read(buffer, INT_MAX, 1), 0);
    EXPECT_EQ(file.Read(buffer, -1, 1), 0);
    EXPECT_EQ(file.Read(buffer, 0, 0), 0);
    EXPECT_EQ(file.Read(nullptr, 0, 1), -1);
    EXPECT_FALSE(file.Write(nullptr, 1));
    EXPECT_TRUE(file.Append("", 0));
}

TEST(FileTest, SeeksByTheLow32BitsAndKeepsThePositionOverGetLength) {
    WriteWholeFile("f", "0123456789");
    CFile file;
    EXPECT_EQ(file.Seek(3, FilePositionBegin), 0u);
    ASSERT_TRUE(file.Open("f", FileModeRead));
    EXPECT_EQ(file.Seek(0x100000003ULL, FilePositionBegin), 3u);
    EXPECT_EQ(file.GetLength(), 10u);
    EXPECT_EQ(file.Seek(2, FilePositionCurrent), 5u);
    EXPECT_EQ(file.Seek(0xFFFFFFFFULL, FilePositionEnd), 9u);
    EXPECT_EQ(file.Seek(4, static_cast<FilePosition>(7)), 4u);
    EXPECT_EQ(file.Seek(0xFFFFFFFFULL, FilePositionBegin), 0u);
}

TEST(FileTest, KeepsThePathOfAFailedOpenAndSeesRemovals) {
    CFile file;
    EXPECT_FALSE(file.Open("gone/f", FileModeCreate));
    EXPECT_FALSE(file.Append("a", 1));
    ASSERT_TRUE(CPath::CreatePath("gone"));
    WriteWholeFile("gone/f", "x");
    EXPECT_FALSE(file.Exist());
    EXPECT_FALSE(file.Open(nullptr, FileModeRead));
    EXPECT_TRUE(file.Remove());
    EXPECT_FALSE(CFile::Exist("gone/f"));

    ASSERT_TRUE(file.Open("g", FileModeCreate));
    EXPECT_TRUE(file.Exist());
    EXPECT_TRUE(CFile::Rename("g", "h"));
    EXPECT_FALSE(file.Exist());
    EXPECT_FALSE(CFile::Rename("g", "h"));
    EXPECT_TRUE(CFile::Remove("h"));
    EXPECT_FALSE(CFile::Remove("gone"));  // a directory
    EXPECT_TRUE(CFile::IsDir("nowhere"));
}

TEST(PathTest, JoinsAndTakesApart) {
    struct {
        char const *dir, *sub, *joined;
    } const joins[] = {
        {"", "s", "s"}, {"d", "s", "d/s"}, {"d/", "s", "d/s"}, {"d\\", "s", "d\\s"}, {"d", "", "d/"}};
    for (auto const& one : joins) {
        AString out(one.dir);
        EXPECT_STREQ(CPath::AppendSubPath(out, one.sub).CString(), one.joined);
    }
    AString same("a");
    CPath::GetSubPath(same, same.CString(), same.CString());
    EXPECT_STREQ(same.CString(), "a/a");
    CPath::GetSubPath(same, nullptr, "x");
    EXPECT_STREQ(same.CString(), "a/a");

    struct {
        char const *path, *name;
    } const names[] = {{"a/b.txt", "b.txt"}, {"a\\b/c", "b/c"}, {"plain", "plain"}, {"a/", ""}};
    for (auto const& one : names) {
        AString out(one.path);
        CPath::GetFileName(out.CString(), out);
        EXPECT_STREQ(out.CString(), one.name);
    }
}

TEST(PathTest, OwnDirectoriesArePrivateAndStay) {
    std::string const app = CPath::GetAppPath();
    EXPECT_EQ(CPath::GetDocPath(), app + "/Doc/");
    EXPECT_EQ(CPath::GetDocPath(), CPath::GetDocPath());
    EXPECT_EQ(CPath::GetCachePath(), app + "/Cache/");
    EXPECT_EQ(CPath::GetDefaultConfigFile(), app + "/Cache/Velmor.ini");
    for (char const* directory : {"Doc", "Cache"}) {
        struct stat status {};
        ASSERT_EQ(stat(directory, &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0700u);
    }
    EXPECT_FALSE(CPath::CreatePath("Doc"));
    EXPECT_FALSE(CPath::CreatePath("x/y"));
    EXPECT_TRUE(CPath::RemovePath("Doc"));
    EXPECT_TRUE(CFile::Exist("Doc"));
}

TEST(PathTest, ListsADirectory) {
    ASSERT_TRUE(CPath::CreatePath("list"));
    AArray files;
    EXPECT_TRUE(CPath::GetFiles("list", &files));
    EXPECT_EQ(files.Count(), 0);
    CPath::CreatePath("list/sub");
    EXPECT_TRUE(CPath::GetFiles("list", &files));
    ASSERT_EQ(files.Count(), 1);
    EXPECT_STREQ(files.CStringAtIndex(0), "sub");

    LogCapture log;
    EXPECT_FALSE(CPath::GetFiles("nowhere", &files));
    EXPECT_FALSE(CPath::GetFiles("list", nullptr));
    EXPECT_TRUE(log.Has("Error", "|Ubrix::CPath::GetFiles| nowhere not found!")) << log.Text();
    EXPECT_TRUE(log.Has("Error", "|Ubrix::CPath::GetFiles| pszPath or files is NULL!"));
}

}  // namespace
