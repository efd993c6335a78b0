#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "Readers/Files.h"
#include "Storage/File/IniFileImp.h"
#include "Storage/File/IniLines.h"
#include "Support/ConsoleCapture.h"
#include "Support/FileSizeLimit.h"
#include "Support/LogCapture.h"

namespace {

using namespace Ubrix;
using namespace Test;
using testing::Each;

char const kPath[] = "test.ini";

std::unique_ptr<IniFile> Open(std::string const& content) {
    WriteWholeFile(kPath, content);
    return std::make_unique<CIniFileImpl>(kPath);
}

TEST(IniFile, ReadsByTheRulesOfLines) {
    struct {
        char const *content, *value;  // null: not found
        char const *key = "k", *section = "a";
    } const cases[] = {{"[a]\nk = 1 # c\n", "1"},    {"[a]\nk=\n", nullptr},
                       {"[a]\nk=\nk=2\n", nullptr},  {"[a]\nk= \n", ""},
                       {"[a]\nk=#x\n", ""},          {"[a]\nkk=1\n", nullptr},
                       {"[a]\nkk=1\nk=2\n", "2"},    {"[a]\n#k=1\n", nullptr},
                       {"[a]\n# a=b\n", "b", "# a"}, {"[a]\nk\t=1\n", nullptr},
                       {"[a]\n  k  =\t1 \n", "\t1"}, {"[a]\nK=1\n", nullptr},
                       {"[a]\nk=x=y\n", "x=y"},      {"[a]\nx=1\n[b]\n[a]\nk=3\n", "3"},
                       {"[a]\nk=1", nullptr},        {"[a]\r\n\r\nk=1\r\n", "1"},
                       {"[ a ]\nk=1\n", "1"},        {"[a]x\nk=1\n", "1"},
                       {" [a]\nk=1\n", nullptr},     {"[a]\n[\nk=1\n", nullptr},
                       {"[a]\n [b]\nk=1\n", "1"},    {"k=1\n[a]\n", nullptr},
                       {"[]\n=v\n", "v", "", ""},    {"[a]\nk=1\n[a]\nk=2\n", "1"},
                       {"[a]\n", nullptr, "k", "b"}};
    for (auto const& one : cases) {
        bool found = one.value == nullptr;
        AString const read = Open(one.content)->ReadString(one.section, one.key, "default", &found);
        EXPECT_STREQ(read.CString(), one.value != nullptr ? one.value : "default") << one.content;
        EXPECT_EQ(found, one.value != nullptr) << one.content;
    }
}

TEST(IniFile, WritesIntoTheLinesThatStand) {
    char const* const cases[][3] = {
        // the file, the value written to k of a, the file then
        {"[a]\nk = 1 # c\n", "2", "[a]\nk =2# c\n"},
        {"[a]\nk=1\n", "", "[a]\nk=\n"},
        {"", "1", "\n[a]\nk=1\n"},
        {"[a]\n[b]\n", "1", "[a]\nk=1\n[b]\n"},
        {"[a]\nx=1\ny=2\n[b]\n", "1", "[a]\nx=1\nk=1\ny=2\n[b]\n"},
        {"[a]\nx=1\n", "1", "[a]\nx=1\nk=1\n"},
        {"[a]\n[b]\n[a]\nk=1\n", "2", "[a]\nk=2\n[b]\n[a]\nk=1\n"},
        {"; free text\n[a]\nno key here\n", nullptr, "; free text\n[a]\nno key here\nk=\n"}};
    for (auto const& row : cases) {
        auto const file = Open(row[0]);
        EXPECT_TRUE(file->WriteString("a", "k", row[1]));
        EXPECT_EQ(ReadWholeFile(kPath), row[0]) << "only a save writes";
        EXPECT_TRUE(file->Save());
        EXPECT_EQ(ReadWholeFile(kPath), row[2]);
    }
    // Sections that edits made stay separated by their empty lines.
    auto const file = Open("");
    file->WriteString("a", "x", "1");
    file->WriteInt("b", "y", -2);
    file->WriteInt64("a", "z", LLONG_MIN);
    file->Save();
    EXPECT_EQ(ReadWholeFile(kPath), "\n[a]\nx=1\nz=-9223372036854775808\n\n[b]\ny=-2\n");
    EXPECT_FALSE(file->WriteString(nullptr, "k", "v"));
    EXPECT_FALSE(file->WriteInt("a", nullptr, 1));
}

// Each of these would read back as another name, as another line, or hide its neighbours.
TEST(IniFile, RefusesWhatALineCannotHold) {
    std::string const content = "[a]\nk=1 #c\nz=9\n[b]\nk=2\n";
    struct {
        char const *section, *key, *value;
    } const cases[] = {{"a\n[b", "k", "v"}, {"a]", "k", "v"},   {" a", "k", "v"}, {"a ", "k", "v"},
                       {"a\rx", "k", "v"},  {"a", "[n", "v"},   {"a", "#n", "v"}, {"a", "n=k", "v"},
                       {"a", " n", "v"},    {"a", "n ", "v"},   {"a", " ", "v"},  {"a", "n\nk", "v"},
                       {"a", "n\rk", "v"},  {"a", "k", "v\nz"}, {"a", "k", "v\r"}};
    auto const file = Open(content);
    for (auto const& one : cases) {
        LogCapture log;
        EXPECT_FALSE(file->WriteString(one.section, one.key, one.value))
            << one.section << one.key << one.value;
        EXPECT_EQ(log.Count("Error", ": refused"), 1);
        file->Save();
        EXPECT_EQ(ReadWholeFile(kPath), content);
    }
    EXPECT_FALSE(file->WriteInt("a", "n=", 1));
    EXPECT_FALSE(file->WriteInt64("a]", "n", 1));
}

TEST(IniFile, TellsOnceOfAKeyWhoseValueDoesNotComeBack) {
    auto const file = Open("[a]\nk=1 #c\n");
    LogCapture log;
    char const tail[] = "won't come back";
    for (char const* value : {"#", "", " v", "v ", "v#w"}) {
        for (char const* key : {"k", "key with \t [odd] # name"}) {
            EXPECT_TRUE(file->WriteString("a", key, value)) << value;
        }
    }
    EXPECT_EQ(log.Count("Warning", tail), 2);
    file->Save();
    EXPECT_EQ(ReadWholeFile(kPath), "[a]\nk=v#w\nkey with \t [odd] # name=v#w\n") << "no line grows";
    for (int i = 0; i < 1000; ++i) {
        file->WriteString("a", std::to_string(i).c_str(), "");
    }
    EXPECT_EQ(log.Count("Warning", ""), 65) << "and one that tells that no more are told of";
}

TEST(IniFile, ReadsNumbersAsStreamsDo) {
    char const* const low = "-99999999999999999999";
    std::pair<char const*, long long> const cases[] = {
        {"12x", 12},      {"\t+7", 7},         {"-5 5", -5}, {"abc", 0}, {"- 5", 0},
        {"+-5", 0},       {"0x10", 0},         {"1.9", 1},   {"#", 3},   {"4294967296", 1LL << 32},
        {low, LLONG_MIN}, {low + 1, LLONG_MAX}};
    for (auto const& [text, number] : cases) {
        auto const file = Open(std::string("[a]\nk=") + text + "\n");
        bool found = false;
        EXPECT_EQ(file->ReadInt64("a", "k", 3), number) << text;
        EXPECT_EQ(file->ReadInt("a", "k", 3, &found), std::clamp<long long>(number, INT_MIN, INT_MAX));
        EXPECT_TRUE(found) << text;
        EXPECT_EQ(file->ReadInt64("a", "absent", 4, &found), 4);
        EXPECT_FALSE(found);
    }
}

TEST(IniFile, ListsFindsAndRemoves) {
    auto const file = Open("[a]\nkk=1\n#x = 2\nplain\nkk=3\n[b]\nj=1\nk=2\n[a]\nz=1\n");
    AArray keys;
    file->GetKeys("a", &keys);
    file->GetKeys("none", &keys);
    ASSERT_EQ(keys.Count(), 3);
    EXPECT_STREQ(keys.CStringAtIndex(1), "#x");
    EXPECT_STREQ(keys.CStringAtIndex(2), "kk");
    EXPECT_TRUE(file->HasKey("a", "k")) << "a beginning";
    EXPECT_TRUE(file->HasKey("a", "j")) << "in a later section";
    bool const removed[] = {file->RemoveKey("a", "kk"), file->RemoveKey("a", "z"), file->RemoveSection("b")};
    EXPECT_THAT(removed, Each(true)) << "where a read finds it";
    bool const missed[] = {file->HasKey("b", "k"), file->HasKey("none", "k"), file->RemoveKey("a", "k"),
                           file->RemoveKey("a", "j"), file->RemoveSection("b")};
    EXPECT_THAT(missed, Each(false));
    file->Save();
    EXPECT_EQ(ReadWholeFile(kPath), "[a]\n#x = 2\nplain\nkk=3\n[a]\n");
}

TEST(IniFile, NullArgumentsAreAnsweredNeutrally) {
    auto const file = Open("[a]\nk=1\n");
    LogCapture log;
    bool found = true;
    EXPECT_STREQ(file->ReadString("a", nullptr, "d", &found).CString(), "");
    EXPECT_STREQ(file->ReadString(nullptr, "k", "d", nullptr).CString(), "");
    EXPECT_EQ(log.Count("Error", "|Ubrix::CIniFileImpl::ReadString| s == NULL || key == NULL"), 2);
    file->GetKeys(nullptr, nullptr);
    bool const answers[] = {found, file->HasKey("a", nullptr), file->RemoveKey(nullptr, "k"),
                            file->RemoveSection(nullptr)};
    EXPECT_THAT(answers, Each(false));
}

TEST(IniFile, TheDestructorSavesPrivatelyAndTheConstructorTellsItsCost) {
    {
        ConsoleCapture console;
        CIniFileImpl file("fresh.ini");
        EXPECT_TRUE(console.Has("|Ubrix::CIniFileImpl::CIniFileImpl| load config file cost "));
        EXPECT_FALSE(file.Load());
        EXPECT_FALSE(std::filesystem::exists("fresh.ini"));
    }
    EXPECT_EQ(std::filesystem::status("fresh.ini").permissions(), std::filesystem::perms{0600});
    EXPECT_EQ(std::filesystem::file_size("fresh.ini"), 0U);
    Open("[a]\nk=1\n")->Clear();
    EXPECT_EQ(ReadWholeFile(kPath), "");
    Open("[a]\nk=1\n")->WriteString("a", "k", "2");
    EXPECT_EQ(ReadWholeFile(kPath), "[a]\nk=2\n");
    CIniFileImpl(nullptr).Save();
}

TEST(IniFile, WhatCannotBeReadNowIsLeftAloneAndReadLater) {
    struct {
        char const* then;
        void (*edit)(IniFile& file);
    } const cases[] = {{"[a]\nk=1\n", [](IniFile&) {}},
                       {"[a]\nk=1\n\n[b]\nj=2\n", [](IniFile& file) { file.WriteInt("b", "j", 2); }},
                       {"[a]\nk=3\n", [](IniFile& file) { file.WriteInt("a", "k", 3); }},
                       {"\n[b]\nj=2\n", [](IniFile& file) {
                            file.Clear();
                            file.WriteInt("b", "j", 2);
                        }}};
    for (auto const& one : cases) {
        PutFailingFile(kPath);
        CIniFileImpl file(kPath);
        LogCapture const log;
        EXPECT_EQ(file.ReadInt("a", "k", 7), 7);
        one.edit(file);
        EXPECT_TRUE(file.Save());
        EXPECT_EQ(log.Count("Error", "isn't saved: what stands there can't be read now"), 1);
        {
            CIniFileImpl other(kPath);
            one.edit(other);
        }
        EXPECT_TRUE(std::filesystem::is_symlink(kPath));
        std::filesystem::remove(kPath);
        WriteWholeFile(kPath, "[a]\nk=1\n");
        EXPECT_EQ(file.HasKey("a", "k"), std::strchr(one.then, 'k') != nullptr);
        file.Save();
        EXPECT_EQ(ReadWholeFile(kPath), one.then);
    }
}

TEST(IniFile, WhatCannotBeTakenInIsMovedAsideByASave) {
    std::pair<char const*, void (*)(char const*)> const kinds[] = {
        {"pipe", [](char const* path) { ASSERT_EQ(mkfifo(path, 0600), 0); }},
        {"directory", [](char const* path) { std::filesystem::create_directory(path); }},
        {"device", [](char const* path) { std::filesystem::create_symlink("/dev/zero", path); }},
        {"too large", [](char const* path) {
             WriteWholeFile(path, "[a]\n");
             std::filesystem::resize_file(path, kMaxIniFileSize + 1ULL);
         }}};
    for (auto const& [path, plant] : kinds) {
        SCOPED_TRACE(path);
        plant(path);
        LogCapture const log;
        CIniFileImpl(path).ReadString("a", "k", "");
        EXPECT_EQ(CountFilesWith("unreadable"), 0) << "nothing was edited";
        CIniFileImpl file(path);
        for (int value : {1, 2}) {
            file.WriteInt("a", "k", value);
            EXPECT_TRUE(file.Save());
        }
        EXPECT_EQ(ReadWholeFile(path), "\n[a]\nk=2\n");
        EXPECT_EQ(CountFilesWith(std::string(path) + ".unreadable-"), 1);
        EXPECT_EQ(log.Count("Error", ", and begun anew"), 1);
        std::filesystem::remove_all(std::string(path) + ".unreadable-1");
    }
}

TEST(IniFile, ASaveClearsWhatDeadProcessesLeft) {
    WriteWholeFile("test.ini.0123abcd.tmp", "dead");
    Platform::File const living = Platform::CreatePrivateFile("test.ini.89abcdef.tmp");
    char const* const others[] = {"test.ini.0123abc.tmp", "test.ini.0123abcX.tmp", "best.ini.0123abcd.tmp",
                                  "test.ini.0123abcd.tmpx", "test.ini0123abcd.tmp"};
    for (char const* other : others) {
        WriteWholeFile(other, "");
    }
    Open("")->Save();
    EXPECT_FALSE(std::filesystem::exists("test.ini.0123abcd.tmp"));
    EXPECT_TRUE(std::filesystem::exists("test.ini.89abcdef.tmp"));
    for (char const* other : others) {
        EXPECT_TRUE(std::filesystem::remove(other)) << other;
    }
}

// Lookups that walk, or insertions that move what is behind them, would take minutes.
TEST(IniLines, LargeBatchesTakeLittleTime) {
    struct {
        int sections, keys;
        char const* prefix;
    } const batches[] = {{1, 200000, "k"}, {100000, 1, "k"}, {1, 50000, "[b]"}};
    for (auto const& batch : batches) {
        IniLines lines;
        lines.Write("0", "", "");
        lines.Write("later", "", "");
        int const count = batch.sections * batch.keys;
        for (int i = 0; i < count; ++i) {
            lines.Write(std::to_string(i % batch.sections), batch.prefix + std::to_string(i), "v");
        }
        int all = 0;
        lines.ForEach([&](std::string const&) { ++all; });
        EXPECT_EQ(all, 4 + count + 2 * batch.sections) << batch.prefix;
    }
}

}  // namespace
