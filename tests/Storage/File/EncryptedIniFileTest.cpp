#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/File/EncryptedIniFileImp.h"
#include "Storage/File/IniFileImp.h"
#include "Support/EncipheredFileDecoder.h"
#include "Support/FileSizeLimit.h"
#include "Support/Files.h"
#include "Support/LogCapture.h"

namespace {

using namespace Ubrix;
using Test::CountFilesWith;
using Test::Decipher;
using Test::FileSizeLimit;
using Test::FromBase64;
using Test::kHeadSize;
using Test::LittleEndian;
using Test::LogCapture;
using Test::Md5;
using Test::ReadWholeFile;
using Test::ServerKey;
using Test::WriteWholeFile;

char const kPath[] = "./test.config";
char const kEntry[] = "test.config";
char const kFunction[] = "|Ubrix::EncryptedIniFileImpl::Load| ";

std::string StoredKey() {
    CIniFileImpl store("Cache/Store.ini");
    return FromBase64(store.ReadString("Velmor", kEntry, "").CString());
}

std::string ValueAfterLoad() {
    EncryptedIniFileImpl file(kPath);
    return file.Load() ? file.ReadString("a", "k", "absent").CString() : "not loaded";
}

// In KiB, of the process so far.
long PeakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class EncryptedIniFileTest : public testing::Test {
protected:
    EncryptedIniFileTest() {
        unlink(kPath);
        _file = std::make_unique<EncryptedIniFileImpl>(kPath);
        _file->WriteString("a", "k", "value");
        _file->Save();
        _content = ReadWholeFile(kPath);
    }
    // Loads `content` and expects the one message, and what the object held before.
    void ExpectRefusal(std::string const& content, std::string const& message) {
        WriteWholeFile(kPath, content);
        LogCapture const log;
        EXPECT_FALSE(_file->Load());
        EXPECT_EQ(log.Count("Error", kFunction + message), 1) << message << "\n" << log.Text();
        EXPECT_STREQ(_file->ReadString("a", "k", "").CString(), "value");
    }

    std::unique_ptr<EncryptedIniFileImpl> _file;
    std::string _content;
};

TEST_F(EncryptedIniFileTest, HasTheDocumentedFormUnderAKeyThatStoreAndServerShare) {
    std::string const plain = "\n[a]\nk=value";
    std::string const head = _content.substr(0, kHeadSize);
    std::string const body = _content.substr(kHeadSize);
    EXPECT_EQ(body.size(), (plain.size() + 10 + 7) / 8 * 8);
    struct {
        std::size_t at, size;
        std::uint32_t number;
    } const fields[] = {
        {0, 2, 0x08E4}, {2, 2, 2},   {4, 4, 98}, {8, 4, static_cast<std::uint32_t>(body.size())},
        {12, 2, 1},     {14, 2, 64}, {80, 2, 16}};
    for (auto const& field : fields) {
        EXPECT_EQ(LittleEndian(head, field.at, field.size), field.number) << field.at;
    }
    EXPECT_EQ(head.substr(82), Md5(body));
    EXPECT_EQ(Decipher(body, StoredKey()), plain);
    std::string const privateKey = ReadWholeFile(VELMORCORE_DEVELOPMENT_KEY).substr(0, 64);
    EXPECT_EQ(ServerKey(privateKey, _content), StoredKey());

    for (char const* path : {kPath, "Cache/Store.ini"}) {
        struct stat status {};
        ASSERT_EQ(stat(path, &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0600u) << path;
    }
}

TEST_F(EncryptedIniFileTest, EachSaveTakesAFreshKeyAndLoadsAgain) {
    _file->Save();
    std::string const again = ReadWholeFile(kPath);
    EXPECT_NE(again.substr(16, 64), _content.substr(16, 64));
    EXPECT_NE(again.substr(kHeadSize), _content.substr(kHeadSize));
    EXPECT_EQ(ValueAfterLoad(), "value");
    // The lines gain no empty ones by a round trip, and the destructor leaves the enciphered form.
    EXPECT_TRUE(_file->Load());
    _file.reset();
    EXPECT_EQ(Decipher(ReadWholeFile(kPath).substr(kHeadSize), StoredKey()), "[a]\nk=value");

    EncryptedIniFileImpl empty(kPath);
    empty.Clear();
    empty.Save();
    EXPECT_EQ(ReadWholeFile(kPath).size(), kHeadSize + 16);
    EXPECT_TRUE(empty.Load());
}

TEST_F(EncryptedIniFileTest, AFileCutAnywhereIsRefused) {
    for (std::size_t size = 0; size < _content.size(); ++size) {
        SCOPED_TRACE(size);
        ExpectRefusal(_content.substr(0, size), size < 12          ? "config file read headbase failed"
                                                : size < kHeadSize ? "config file read headext failed"
                                                                   : "config file read body failed!");
    }
    WriteWholeFile(kPath, _content + "behind");
    EXPECT_TRUE(_file->Load());
}

// What a head with one changed bit is answered with; empty if it still loads.
std::string Answer(std::string const& changed, std::size_t at, std::uint32_t bodySize) {
    auto const field = [&](std::size_t place) { return std::to_string(LittleEndian(changed, place, 2)); };
    if (at < 2) {
        return "config file magic not match file magic is " + field(0) + ", program magic is 2276";
    }
    if (at < 4) {
        return LittleEndian(changed, 2, 2) >= 2
                   ? ""
                   : "config file version not match, file version is " + field(2) + ", program version is 2";
    }
    if (at < 8) {
        return "config file read headext failed";
    }
    if (at < 12) {
        bool const longer = LittleEndian(changed, 8, 4) > bodySize;
        return longer ? "config file read body failed!" : "config file md5 check failed!";
    }
    if (at < 14) {
        return "config file Encytion is not TEA, encyption is " + field(12);
    }
    if (at < 16) {
        return "config file PubKeyLen is not 64, PubKeyLen is " + field(14);
    }
    if (at < 80) {
        return "";
    }
    return at < 82 ? "config file Md5Len is not 16, Md5Len is " + field(80) : "config file md5 check failed!";
}

TEST_F(EncryptedIniFileTest, EachFlippedBitOfTheHeadGetsItsAnswer) {
    auto const bodySize = static_cast<std::uint32_t>(_content.size() - kHeadSize);
    for (std::size_t bit = 0; bit < kHeadSize * 8; ++bit) {
        SCOPED_TRACE(bit);
        std::string changed = _content;
        changed[bit / 8] = static_cast<char>(changed[bit / 8] ^ (1 << bit % 8));
        std::string const answer = Answer(changed, bit / 8, bodySize);
        if (answer.empty()) {
            WriteWholeFile(kPath, changed);
            EXPECT_TRUE(_file->Load());
        } else {
            ExpectRefusal(changed, answer);
        }
    }
    std::string huge = _content;
    huge.replace(8, 4, "\xFF\xFF\xFF\xFF");
    long const before = PeakMemory();
    ExpectRefusal(huge, "config file read body failed!");
    EXPECT_LT(PeakMemory() - before, 100000) << "KiB";
    std::string body = _content;
    body.back() = static_cast<char>(body.back() ^ 1);
    ExpectRefusal(body, "config file md5 check failed!");
}

TEST_F(EncryptedIniFileTest, AMissingOrDamagedKeyIsRefused) {
    // The last is a good key's text, cut short by a foreign character.
    for (char const* key : {"", "!", "AAAA", "AAAAAAAA!AAAAAAAAAAAAA=="}) {
        SecurityStore::GetInstance()->Set(kEntry, key);
        ExpectRefusal(_content, "config file zk_symmetry_decrypt2 failed!");
    }
}

TEST_F(EncryptedIniFileTest, APlainFileIsUsableAtOnceAndAMissingOneIsNoError) {
    WriteWholeFile(kPath, "[a]\nk=plain\n");
    {
        EncryptedIniFileImpl file(kPath);
        LogCapture const log;
        EXPECT_FALSE(file.Load());
        EXPECT_TRUE(
            log.Has("Error", "config file magic not match file magic is 24923, program magic is 2276"));
        EXPECT_STREQ(file.ReadString("a", "k", "").CString(), "plain");
    }
    EXPECT_EQ(ValueAfterLoad(), "plain");
    unlink(kPath);
    LogCapture const log;
    EXPECT_FALSE(_file->Load());
    EXPECT_TRUE(log.Has("Info", std::string(kFunction) + "config file ./test.config is not exist"));
}

TEST_F(EncryptedIniFileTest, AFailedSaveLeavesFileAndKeyTogether) {
    std::string const key = StoredKey();
    _file->WriteString("a", "k", std::string(5000, 'x').c_str());
    {
        FileSizeLimit const limit(4000);
        EXPECT_TRUE(_file->Save());
    }
    EXPECT_EQ(ReadWholeFile(kPath), _content) << "no room for the file";
    EXPECT_EQ(StoredKey(), key);

    SecurityStore::GetInstance()->Set("padding", std::string(5000, 'x').c_str());
    _file->WriteString("a", "k", "new");
    {
        FileSizeLimit const limit(4000);
        EXPECT_TRUE(_file->Save());
    }
    EXPECT_EQ(ReadWholeFile(kPath), _content) << "no room for the key";
    EXPECT_EQ(StoredKey(), key);
    EXPECT_STREQ(SecurityStore::GetInstance()->Get(kEntry, "").CString(),
                 CIniFileImpl("Cache/Store.ini").ReadString("Velmor", kEntry, "").CString());

    ASSERT_EQ(rename(kPath, "aside"), 0);
    ASSERT_EQ(mkdir(kPath, 0700), 0);
    EXPECT_TRUE(_file->Save());
    ASSERT_EQ(rmdir(kPath), 0);
    ASSERT_EQ(rename("aside", kPath), 0);
    EXPECT_EQ(StoredKey(), key) << "no way to rename";
    EXPECT_EQ(CountFilesWith(".tmp") + CountFilesWith(".tmp", "Cache"), 0);
    EXPECT_EQ(ValueAfterLoad(), "value");
}

TEST_F(EncryptedIniFileTest, ManyThreadsOnOneFileNeverPartItFromItsKey) {
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this, i] {
            EncryptedIniFileImpl own(kPath);
            for (int round = 0; round < 10; ++round) {
                EXPECT_TRUE(own.Load());
                own.WriteInt("a", "n", i);
                own.Save();
                _file->WriteInt("a", "n", round);
                _file->ReadInt("a", "n", 0);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(ValueAfterLoad(), "value");
}

}  // namespace
