#include <VelmorCore/File.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <filesystem>
#include <string>
#include <utility>

#include "Readers/Files.h"
#include "Support/LogCapture.h"

namespace {

using namespace Ubrix;
using namespace Test;
using testing::Each;

TEST(File, EachModeKeepsAndAllowsWhatItSays) {
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

TEST(File, WritesAtTheBeginningAppendsAtTheEndReadsAndSeeksAnywhere) {
    CFile file;
    EXPECT_EQ(file.Seek(3, FilePositionBegin), 0u);
    ASSERT_TRUE(file.Open("f", FileModeCreate));
    bool const done[] = {file.Write("abcd", 4), file.Write("XY", 2),
                         file.Append(std::string(999, 'z').data(), 999), file.Append("z", 1),
                         file.Append("", 0)};
    EXPECT_THAT(done, Each(true));
    EXPECT_FALSE(file.Write(nullptr, 1));
    EXPECT_FALSE(file.Append(nullptr, 1));
    char buffer[2000];
    EXPECT_EQ(file.Read(buffer, 1, 2000), 1003);
    EXPECT_EQ(std::string(buffer, 5), "Ycdzz");
    int const nothing[] = {file.Read(buffer, INT_MAX, 1), file.Read(buffer, -1, 1), file.Read(buffer, 0, 0)};
    EXPECT_THAT(nothing, Each(0));
    EXPECT_EQ(file.Read(nullptr, 0, 1), -1);

    EXPECT_EQ(file.Seek(0x100000003ULL, FilePositionBegin), 3u) << "the low 32 bits";
    EXPECT_EQ(file.GetLength(), 1004u);
    EXPECT_EQ(file.Seek(2, FilePositionCurrent), 5u) << "GetLength kept the position";
    EXPECT_EQ(file.Seek(0xFFFFFFFFULL, FilePositionEnd), 1003u);
    EXPECT_EQ(file.Seek(4, static_cast<FilePosition>(7)), 4u);
    EXPECT_EQ(file.Seek(0xFFFFFFFFULL, FilePositionBegin), 0u);
}

TEST(File, KeepsThePathOfAFailedOpenAndSeesRemovals) {
    CFile file;
    EXPECT_FALSE(file.Open("gone/f", FileModeCreate));
    ASSERT_TRUE(CPath::CreatePath("gone"));
    WriteWholeFile("gone/f", "x");
    EXPECT_FALSE(file.Exist());
    EXPECT_FALSE(file.Open(nullptr, FileModeRead));
    EXPECT_TRUE(file.Remove());
    EXPECT_FALSE(CFile::Exist("gone/f"));
    EXPECT_FALSE(CFile::Remove("gone"));

    bool const done[] = {file.Open("g", FileModeCreate), file.Exist(), CFile::Rename("g", "h"),
                         CFile::IsDir("nowhere")};
    EXPECT_THAT(done, Each(true));
    EXPECT_FALSE(file.Exist());
    EXPECT_FALSE(CFile::Rename("g", "h"));
    EXPECT_TRUE(CFile::Remove("h"));
}

TEST(Path, JoinsAndTakesApart) {
    for (std::string const dir : {"", "d", "d/", "d\\"}) {
        AString out(dir.c_str());
        EXPECT_EQ(CPath::AppendSubPath(out, "s").CString(), (dir == "d" ? "d/" : dir) + "s");
    }
    AString same("a");
    CPath::GetSubPath(same, same.CString(), same.CString());
    CPath::GetSubPath(same, nullptr, "x");
    EXPECT_STREQ(same.CString(), "a/a");
    std::pair<char const*, char const*> const names[] = {
        {"a/b.txt", "b.txt"}, {"a\\b/c", "b/c"}, {"plain", "plain"}, {"a/", ""}};
    for (auto const& [path, name] : names) {
        AString out;
        CPath::GetFileName(path, out);
        EXPECT_STREQ(out.CString(), name);
    }
}

TEST(Path, OwnDirectoriesArePrivateAndStay) {
    std::string const app = CPath::GetAppPath();
    EXPECT_EQ(CPath::GetDocPath(), app + "/Doc/");
    EXPECT_EQ(CPath::GetDefaultConfigFile(), app + "/Cache/Velmor.ini");
    for (char const* directory : {"Doc", "Cache"}) {
        EXPECT_EQ(std::filesystem::status(directory).permissions(), std::filesystem::perms{0700});
    }
    EXPECT_FALSE(CPath::CreatePath("Doc"));
    EXPECT_FALSE(CPath::CreatePath("x/y"));
    EXPECT_TRUE(CPath::RemovePath("Doc"));
    EXPECT_TRUE(CFile::Exist("Doc"));
}

TEST(Path, ListsADirectory) {
    AArray files;
    CPath::CreatePath("list");
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
