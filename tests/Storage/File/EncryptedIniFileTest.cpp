#include <VelmorCore/File.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "Platform/FileLock.h"
#include "Readers/EncipheredFileDecoder.h"
#include "Readers/Files.h"
#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/File/EncryptedIniFileImp.h"
#include "Storage/File/IniFileImp.h"
#include "Support/FileSizeLimit.h"
#include "Support/LogCapture.h"
#include "Support/OnThreads.h"

namespace {

using namespace Ubrix;
using namespace Test;

char const kPath[] = "./test.config";
char const kEntry[] = "test.config";
char const kFunction[] = "|Ubrix::EncryptedIniFileImpl::Load| ";

std::string StoredText() {
    return CIniFileImpl("Cache/Store.ini").ReadString("Velmor", kEntry, "").CString();
}

std::string StoredKey() {
    return FromBase64(StoredText());
}

std::string ValueAfterLoad(char const* path = kPath) {
    EncryptedIniFileImpl file(path);
    return file.Load() ? file.ReadString("a", "k", "absent").CString() : "not loaded";
}

void SaveValue(EncryptedIniFileImpl& file, char const* value) {
    file.WriteString("a", "k", value);
    EXPECT_TRUE(file.Save());
}

class EncryptedIniFile : public testing::Test {
protected:
    EncryptedIniFile() {
        _file = std::make_unique<EncryptedIniFileImpl>(kPath);
        SaveValue(*_file, "value");
        _content = ReadWholeFile(kPath);
    }
    // Loads `content` and expects a message that begins so, and what the object held before.
    void ExpectRefusal(std::string const& content, std::string const& message) {
        WriteWholeFile(kPath, content);
        LogCapture const log;
        EXPECT_FALSE(_file->Load());
        EXPECT_THAT(log.Text(), testing::HasSubstr("] | Error | ["));
        EXPECT_THAT(log.Text(), testing::HasSubstr(kFunction + message));
        EXPECT_STREQ(_file->ReadString("a", "k", "").CString(), "value");
    }

    std::unique_ptr<EncryptedIniFileImpl> _file;
    std::string _content;
};

TEST_F(EncryptedIniFile, HasTheDocumentedFormUnderAKeyThatStoreAndServerShare) {
    std::string const plain = "\n[a]\nk=value";
    std::string const head = _content.substr(0, kHeadSize);
    std::string const body = _content.substr(kHeadSize);
    EXPECT_EQ(head.substr(0, 16), std::string("\xE4\x08\x02\0\x62\0\0\0\x18\0\0\0\x01\0\x40\0", 16));
    EXPECT_EQ(head.substr(80, 2), std::string("\x10\0", 2));
    EXPECT_EQ(head.substr(82), Md5(body));
    EXPECT_EQ(Decipher(body, StoredKey()), plain);
    std::string const privateKey = ReadWholeFile(VELMORCORE_DEVELOPMENT_KEY).substr(0, 64);
    EXPECT_EQ(ServerKey(privateKey, _content), StoredKey());
    for (char const* path : {kPath, "Cache/Store.ini"}) {
        EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms{0600}) << path;
    }
}

TEST_F(EncryptedIniFile, EachSaveTakesAFreshKeyAndLoadsAgain) {
    _file->Save();
    std::string const again = ReadWholeFile(kPath);
    EXPECT_NE(again.substr(16, 64), _content.substr(16, 64));
    EXPECT_NE(again.substr(kHeadSize), _content.substr(kHeadSize));
    EXPECT_EQ(ValueAfterLoad(), "value");
    // The lines gain no empty ones by a round trip, and the destructor leaves the enciphered form.
    EXPECT_TRUE(_file->Load());
    _file->WriteString("a", "k", "value");
    _file.reset();
    EXPECT_EQ(Decipher(ReadWholeFile(kPath).substr(kHeadSize), StoredKey()), "[a]\nk=value");

    EncryptedIniFileImpl empty(kPath);
    empty.Clear();
    empty.Save();
    EXPECT_EQ(ReadWholeFile(kPath).size(), kHeadSize + 16);
    EXPECT_TRUE(empty.Load());
}

TEST_F(EncryptedIniFile, ACutOrChangedFileGetsItsAnswer) {
    auto const changed = [this](std::size_t at, int mask) {
        std::string content = _content;
        content[at] = static_cast<char>(content[at] ^ mask);
        return content;
    };
    std::size_t const last = _content.size() - 1;
    std::pair<std::string, std::string> const refused[] = {
        {"", "config file read headbase failed"},
        {_content.substr(0, 11), "config file read headbase failed"},
        {_content.substr(0, 12), "config file read headext failed"},
        {_content.substr(0, 97), "config file read headext failed"},
        {_content.substr(0, 98), "config file read body failed!"},
        {_content.substr(0, last), "config file read body failed!"},
        {changed(1, 1), "config file magic not match file magic is 2532, program magic is 2276"},
        {changed(2, 3), "config file version not match, file version is 1, program version is 2"},
        {changed(7, 128), "config file read headext failed"},
        {changed(8, 1), "config file read body failed!"},
        {changed(8, 8), "config file md5 check failed!"},
        {changed(11, 255), "config file read body failed!"},
        {changed(13, 1), "config file Encytion is not TEA, encyption is 257"},
        {changed(15, 1), "config file PubKeyLen is not 64, PubKeyLen is 320"},
        {changed(81, 1), "config file Md5Len is not 16, Md5Len is 272"},
        {changed(97, 1), "config file md5 check failed!"},
        {changed(last, 1), "config file md5 check failed!"},
    };
    for (auto const& [content, message] : refused) {
        ExpectRefusal(content, message);
    }
    for (std::string const& taken : {changed(2, 1), changed(3, 1), changed(16, 1), _content + "behind"}) {
        WriteWholeFile(kPath, taken);
        EXPECT_TRUE(_file->Load());
    }
}

TEST_F(EncryptedIniFile, AMissingOrDamagedKeyIsRefused) {
    // The last is a good key's text, cut short by a foreign character.
    for (char const* key : {"", "!", "AAAA", "AAAAAAAA!AAAAAAAAAAAAA=="}) {
        SecurityStore::GetInstance()->Set(kEntry, key);
        ExpectRefusal(_content, "config file zk_symmetry_decrypt2 failed!");
    }
}

// The one outside of the cache directory came first, and neither takes the other's key.
TEST_F(EncryptedIniFile, NamesakesInTwoDirectoriesKeepTheirKeys) {
    std::string const path = std::string(CPath::GetCachePath()) + kEntry;
    for (char const* value : {"1", "2", "3"}) {
        EncryptedIniFileImpl namesake(path.c_str());
        EXPECT_EQ(namesake.Load(), *value != '1');
        SaveValue(namesake, value);
        if (*value != '2') {
            _file->Save();
        }
        EXPECT_EQ(ValueAfterLoad(), "value");
    }
    EXPECT_EQ(ValueAfterLoad((std::string("Cache/../Cache/") + kEntry).c_str()), "3");
}

TEST_F(EncryptedIniFile, APlainFileIsUsableAtOnceAndAMissingOneIsNoError) {
    WriteWholeFile(kPath, "[a]\nk=plain\n");
    LogCapture const log;
    {
        EncryptedIniFileImpl file(kPath);
        EXPECT_FALSE(file.Load());
        EXPECT_TRUE(log.Has("Error", "magic not match file magic is 24923, program magic is 2276"));
        EXPECT_STREQ(file.ReadString("a", "k", "").CString(), "plain");
    }
    EXPECT_EQ(ValueAfterLoad(), "plain");
    unlink(kPath);
    EXPECT_FALSE(_file->Load());
    EXPECT_TRUE(log.Has("Info", std::string(kFunction) + "config file ./test.config is not exist"));
}

TEST_F(EncryptedIniFile, AFailedSaveLeavesFileAndKeyTogether) {
    std::string const key = StoredText();
    auto const saveInto = [&](char const* obstacle, std::string const& value, rlim_t room) {
        FileSizeLimit const limit(room);
        SaveValue(*_file, value.c_str());
        EXPECT_EQ(StoredText(), key) << obstacle;
        EXPECT_STREQ(SecurityStore::GetInstance()->Get(kEntry, "").CString(), key.c_str()) << obstacle;
    };
    saveInto("no room for the file", std::string(5000, 'x'), 4000);
    SecurityStore::GetInstance()->Set("padding", std::string(5000, 'x').c_str());
    saveInto("no room for the key", "new", 4000);
    EXPECT_EQ(ReadWholeFile(kPath), _content);
    unlink(kPath);
    ASSERT_EQ(mkdir(kPath, 0700), 0);
    saveInto("no way to rename", "new", 1000000);
    ASSERT_EQ(rmdir(kPath), 0);
    WriteWholeFile(kPath, _content);
    EXPECT_EQ(CountFilesWith(".tmp"), 0);
    EXPECT_EQ(CountFilesWith(".tmp", "Cache"), 0);
    EXPECT_EQ(ValueAfterLoad(), "value");
}

TEST_F(EncryptedIniFile, AProcessThatDiesInASaveLeavesAFileThatAKeyOpens) {
    // Again and again, since each unfinished save stores another key.
    for (bool const loadsFirst : {true, false, true}) {
        EncryptedIniFileImpl next(kPath);
        if (loadsFirst) {
            EXPECT_TRUE(next.Load());
        }
        SaveValue(next, "newer");
        EXPECT_EQ(ValueAfterLoad(), "newer");
        WriteWholeFile(kPath, _content);  // Killed between the key and the file.
        EXPECT_EQ(ValueAfterLoad(), "value");
    }
}

TEST_F(EncryptedIniFile, WhatCannotBeReadNowIsNotOverwritten) {
    // The file, or the store with its key.
    for (char const* path : {kPath, "Cache/Store.ini"}) {
        std::string const content = ReadWholeFile(path);
        auto file = std::make_unique<EncryptedIniFileImpl>(kPath);
        PutFailingFile(path);
        EXPECT_FALSE(file->Load());
        EncryptedIniFileImpl(kPath).WriteString("a", "k", "lost");
        file->WriteString("a", "j", path);
        file->Save();
        EXPECT_TRUE(std::filesystem::is_symlink(path));
        std::filesystem::remove(path);
        WriteWholeFile(path, content);
        file.reset();
        EXPECT_EQ(ValueAfterLoad(), "value");
        EXPECT_TRUE(_file->Load());
        EXPECT_STREQ(_file->ReadString("a", "j", "").CString(), path);
    }
}

// The first ones stay, and the last one is there too; their number is bounded.
TEST_F(EncryptedIniFile, ADamagedFileIsKeptAside) {
    std::string const aside = std::string(kPath) + ".unreadable-";
    std::string damaged;
    for (std::size_t time = 1; time <= 10; ++time) {
        damaged = _content + std::to_string(time);
        char& byte = damaged[time % 2 * kHeadSize];
        byte = static_cast<char>(~byte);
        WriteWholeFile(kPath, damaged);
        EXPECT_EQ(ValueAfterLoad(), "not loaded");
        EXPECT_EQ(ReadWholeFile(kPath), damaged);
        {
            EncryptedIniFileImpl file(kPath);
            file.Load();
            file.WriteString("a", "k", "anew");
        }
        EXPECT_EQ(ValueAfterLoad(), "anew");
    }
    EXPECT_EQ(CountFilesWith("test.config.unreadable-"), 8);
    EXPECT_EQ(ReadWholeFile(aside + "1").back(), '1');
    EXPECT_EQ(ReadWholeFile(aside + "8"), damaged);
}

TEST_F(EncryptedIniFile, WithoutItsTurnNothingIsSaved) {
    Platform::FileLock const other("Cache/Store.ini.lock", 0);
    ASSERT_TRUE(other.IsHeld());
    LogCapture const log;
    SaveValue(*_file, "1");
    SaveValue(*_file, "2");
    EXPECT_EQ(log.Count("Error", "isn't saved: another process has the key store, or it can't be reached"),
              1);
    EXPECT_EQ(ReadWholeFile(kPath), _content);
    EXPECT_EQ(ValueAfterLoad(), "value") << "reading needs no turn";
}

TEST_F(EncryptedIniFile, ManyThreadsOnOneFileNeverPartItFromItsKey) {
    OnThreads(4, [this](int i) {
        EncryptedIniFileImpl own(kPath);
        for (int round = 0; round < 10; ++round) {
            EXPECT_TRUE(own.Load());
            own.WriteInt("a", "n", i);
            own.Save();
            _file->WriteInt("a", "n", round);
            _file->ReadInt("a", "n", 0);
        }
    });
    EXPECT_EQ(ValueAfterLoad(), "value");
}

}  // namespace
