#include <VelmorCore/Bundle.h>
#include <VelmorCore/File.h>
#include <VelmorCore/Value.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <climits>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "Readers/Files.h"
#include "Security/SecurityStore/SecurityStoreImp.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/File/IniFile.h"
#include "Support/LogCapture.h"

namespace {

using namespace Ubrix;
using namespace Test;
using testing::Each;

char const kPath[] = "bundle.config";

TEST(Bundle, KeepsTypedValuesAsTextAndFindsThemAgain) {
    {
        BundleImpl bundle(kPath);
        bool const taken[] = {bundle.Set("s", "k", 5),      bundle.Set("s", "wide", LLONG_MIN),
                              bundle.Set("s", "yes", true), bundle.Set("s", "no", false),
                              bundle.Set("own", "kit"),     bundle.Set("flag", true),
                              bundle.Set("int", 7),         bundle.Set("long", 1LL << 40)};
        EXPECT_THAT(taken, Each(true));
        EXPECT_FALSE(bundle.Set("s", nullptr, 1));
    }
    BundleImpl bundle(kPath);
    EXPECT_STREQ(bundle.Get("s", "k", "").CString(), "5");
    EXPECT_EQ(bundle.Get("s", "k", 0), 5);
    EXPECT_EQ(bundle.Get("s", "wide", 0LL), LLONG_MIN);
    EXPECT_TRUE(bundle.Get("s", "yes", false));
    EXPECT_FALSE(bundle.Get("s", "no", true));
    EXPECT_TRUE(bundle.Get("flag", false));
    EXPECT_STREQ(bundle.Get("Velmor", "own", "").CString(), "kit");
    EXPECT_STREQ(bundle.Get("own", "").CString(), "kit");
    EXPECT_EQ(bundle.Get("int", 0), 7);
    EXPECT_EQ(bundle.Get("long", 0LL), 1LL << 40);
    EXPECT_EQ(bundle.Get("s", "absent", 3), 3);
    EXPECT_EQ(bundle.Get("absent", 4), 4);
    EXPECT_STREQ(bundle.Get("s", "absent", static_cast<char const*>(nullptr)).CString(), "");
    EXPECT_STREQ(bundle.GetMetaString("s", "k", "meta").CString(), "meta");
    EXPECT_TRUE(bundle.HasKey("s", "wi"));
    AArray keys;
    bundle.GetKeys("s", &keys);
    EXPECT_EQ(keys.Count(), 4);
}

TEST(Bundle, ReadsBoolsInBothForms) {
    BundleImpl bundle(kPath);
    // An empty text is the default.
    std::map<std::string, bool> const cases = {{"TRUE", true}, {"tRue", true}, {"1", true},    {"0", false},
                                               {"2", false},   {"11", false},  {"yes", false}, {"#", true}};
    for (auto const& [text, value] : cases) {
        bundle.SetNoSave("s", "flag", text.c_str());
        EXPECT_EQ(bundle.Get("s", "flag", true), value) << text;
    }
}

TEST(Bundle, StoresObjectsMemberByMember) {
    BundleImpl bundle(kPath);
    Value values;
    values["a"][0] = 1;
    values["a"][7] = 2;
    values["b"]["inner"] = 1;
    values["c"] = 2.5;
    values["d"] = "abc";
    values["e"] = 25;
    LogCapture const log;
    EXPECT_TRUE(bundle.Set("s", values));
    EXPECT_EQ(log.Count("Error", "|Ubrix::BundleImpl::Set| Bundle unsupport Object type"), 1);
    EXPECT_STREQ(bundle.Get("s", "a", "").CString(), "1,2");

    Value read;
    Value array;
    Value single;
    bool const given[] = {bundle.Get("s", read), bundle.Get("s", "a", array), bundle.Get("s", "e", single)};
    EXPECT_THAT(given, Each(true));
    EXPECT_EQ(read.Size(), 4U);
    EXPECT_STREQ(read["a"][1].asCString(), "2") << "a number has no such text";
    EXPECT_EQ(read["c"], Value(2.5));
    EXPECT_EQ(read["d"], Value("abc"));
    EXPECT_EQ(read["e"], Value(25));
    EXPECT_EQ(array, read["a"]);
    EXPECT_EQ(single["e"], Value(25LL));
    bool const missed[] = {bundle.Get("s", "none", single), bundle.Get("s", nullptr, single),
                           bundle.Get("none", read), bundle.Get(nullptr, read)};
    EXPECT_THAT(missed, Each(false));

    // Which kind a text needs isn't the reader's to know.
    for (Value* wrong : {&single, &array, &(read = Value(1))}) {
        Value const before = *wrong;
        EXPECT_FALSE(bundle.Get("s", wrong == &array ? "e" : "a", *wrong));
        EXPECT_EQ(*wrong, before);
        EXPECT_EQ(bundle.Get("s", *wrong), wrong == &single);
    }

    Value sections;
    sections["x"]["k"] = Value(1);
    sections["y"] = Value(1);
    EXPECT_TRUE(bundle.Set(sections));
    EXPECT_FALSE(bundle.Set(Value(1)));
    EXPECT_FALSE(bundle.Set("s", Value(1)));
    EXPECT_EQ(log.Count("Error", "|Ubrix::BundleImpl::Set| Value is not Object type"), 3);
    // What a line can't hold costs its neighbours nothing.
    sections["x"]["[n"] = Value(2);
    sections["x"]["t"] = "1\n[s]";
    sections["x"]["u"] = Value(3);
    EXPECT_FALSE(bundle.Set(sections));
    EXPECT_FALSE(bundle.Set("x]", sections["x"]));
    EXPECT_EQ(log.Count("Error", ": refused"), 3);
    EXPECT_EQ(bundle.Get("x", "u", 0), 3);
    EXPECT_TRUE(bundle.Set("s", Value()));
    EXPECT_TRUE(log.Has("Info", "|Ubrix::BundleImpl::Set| value is null"));
    EXPECT_EQ(bundle.Get("x", "k", 0), 1);
}

// The key of the one would stand in the place of another's.
TEST(Bundle, AFileWhoseKeyHasNoPlaceIsNotWritten) {
    for (char const* path : {"x=y.config", "x\nVelmor.config", "#x", "./[x"}) {
        LogCapture const log;
        BundleImpl bundle(path);
        EXPECT_EQ(log.Count("Error", ": refused"), 1) << path;
        bool const answers[] = {bundle.Set("s", "k", 1), bundle.Save(), CFile::Exist(path)};
        EXPECT_THAT(answers, Each(false)) << path;
    }
}

// What somebody else could have put there is not read, and nothing is given away; the run goes on in memory.
TEST(Bundle, TrustsNoDirectoryThatOthersCanChange) {
    std::string const path = std::string(CPath::GetCachePath()) + "trusted.config";
    EXPECT_TRUE(BundleImpl(path.c_str()).Set("s", "k", 1));
    std::string const file = ReadWholeFile(path);
    std::string const store = ReadWholeFile("Cache/Store.ini");
    std::string const plainPath = std::string(CPath::GetCachePath()) + "plain.ini";
    std::unique_ptr<IniFile> const plain(CreateIniFile(plainPath.c_str()));
    for (mode_t const mode : {0777U, 01777U}) {
        LogCapture const log;
        EXPECT_EQ(chmod("Cache", mode), 0);
        {
            BundleImpl bundle(path.c_str());
            EXPECT_EQ(bundle.Get("s", "k", 0), 0);
            bundle.Set("s", "k", 2);
            EXPECT_EQ(bundle.Get("s", "k", 0), 2);
            EXPECT_STREQ(SecurityStoreImp().Get("trusted.config", "none").CString(), "none");
        }
        plain->WriteInt("s", "k", 1);
        EXPECT_TRUE(plain->Save());
        EXPECT_FALSE(CFile::Exist(plainPath.c_str()));
        EXPECT_EQ(log.Count("Error", "no keys or values are read from it or stored in it"), 1);
        EXPECT_EQ(ReadWholeFile(path), file);
        EXPECT_EQ(ReadWholeFile("Cache/Store.ini"), store);
        EXPECT_EQ(chmod("Cache", 0700), 0);
        EXPECT_EQ(BundleImpl(path.c_str()).Get("s", "k", 0), 1);
    }
}

TEST(Bundle, ADirectoryThatIsMissingIsMadeAtTheNextSave) {
    std::string const path = std::string(CPath::GetCachePath()) + "made.config";
    std::filesystem::remove_all("Cache");
    WriteWholeFile("Cache", "in the way");
    BundleImpl bundle(path.c_str());
    bundle.Set("s", "k", 1);
    std::filesystem::remove("Cache");
    bundle.Set("s", "k", 2);
    EXPECT_EQ(BundleImpl(path.c_str()).Get("s", "k", 0), 2);
}

TEST(Bundle, OnlyTheSavingFormsReachTheDisk) {
    BundleImpl bundle(kPath);
    bool const done[] = {bundle.SetNoSave("s", "a", 1), bundle.SetNoSave("s", "b", 2LL),
                         bundle.SetNoSave("t", "c", true), bundle.RemoveKeyNoSave("s", "b"),
                         bundle.RemoveSectionNoSave("t")};
    EXPECT_THAT(done, Each(true));
    EXPECT_FALSE(bundle.RemoveKey("s", "b"));
    EXPECT_FALSE(bundle.RemoveSection("t"));
    EXPECT_FALSE(CFile::Exist(kPath));
    bool const saved[] = {bundle.Save(), bundle.RemoveKey("s", "a"), bundle.RemoveSection("s")};
    EXPECT_THAT(saved, Each(true));
    EXPECT_TRUE(CFile::Exist(kPath));
}

TEST(Bundle, WithoutAPathEverythingIsAnsweredNeutrally) {
    LogCapture const log;
    BundleImpl bundle("");
    EXPECT_TRUE(log.Has(
        "Info", "|Ubrix::IniBundle::IniBundle| CachePath is empty, do not use bundle in JNI_ONLoad!!!"));
    bool const answers[] = {bundle.Set("s", "k", 1),
                            bundle.Save(),
                            bundle.Clear(),
                            bundle.HasKey("s", "k"),
                            bundle.RemoveSection("s"),
                            bundle.SetNoSave("s", "k", "v")};
    EXPECT_THAT(answers, Each(false));
    EXPECT_TRUE(bundle.RemoveKey("s", "k"));
    EXPECT_TRUE(bundle.Get("s", "k", true));
    EXPECT_EQ(bundle.Get("s", "k", 3), 3);
    EXPECT_STREQ(bundle.Get("s", "k", "d").CString(), "d");
}

TEST(BundleFactory, OneBundleANameUntilItIsDestroyed) {
    BundleFactory& factory = BundleFactory::GetInstance();
    Bundle& named = factory.GetBundle("named.config");
    EXPECT_EQ(&named, &factory.GetBundle("named.config"));
    EXPECT_NE(&named, &factory.GetBundle("other.config"));
    named.SetNoSave("s", "k", 1);
    EXPECT_FALSE(CFile::Exist("named.config"));
    factory.DestoryBundle("named.config");
    EXPECT_TRUE(CFile::Exist("named.config"));
    factory.DestoryBundle("named.config");
    factory.DestoryBundle(nullptr);
    EXPECT_EQ(factory.GetBundle("named.config").Get("s", "k", 0), 1);

    LogCapture const log;
    Bundle& standard = factory.GetBundle(nullptr);
    EXPECT_TRUE(log.Has("Error", "|Ubrix::BundleFactory::GetBundle| name is NULL"));
    EXPECT_EQ(&standard, &factory.GetDefaultBundle());
    standard.Set("s", "k", 1);
    EXPECT_TRUE(CFile::Exist((std::string(CPath::GetCachePath()) + "Velmor.config").c_str()));

    factory.GetBundle("other.config").SetNoSave("s", "k", 2);
    BundleFactory::ReleaseInstance();
    EXPECT_EQ(BundleFactory::GetInstance().GetBundle("other.config").Get("s", "k", 0), 2);
    EXPECT_EQ(&BundleFactory::GetInstance().GetDefaultBundle(), &standard);
}

}  // namespace
