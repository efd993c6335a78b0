#include "Base/Configure/BundleConfigFile.h"

#include <VelmorCore/Bundle.h>
#include <VelmorCore/File.h>
#include <VelmorCore/velmorcore.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "Readers/Files.h"
#include "Support/LogCapture.h"

namespace {

TEST(ConfigFile, KeepsTypedValuesInItsOwnEncipheredFile) {
    Velmor::IConfigFile* file = VelmorCore_NewConfigFile("Saves");
    EXPECT_TRUE(file->SetCache("s", "flag", true));
    EXPECT_TRUE(file->SetCache("s", "text", "some words"));
    EXPECT_TRUE(file->SetCache("s", "long", std::int64_t{1234567890123}));
    EXPECT_EQ(::Test::ReadWholeFile("Cache/Saves.config"), "") << "the file changes only when it is saved";
    EXPECT_TRUE(file->SaveCacheToFile());
    EXPECT_TRUE(file->SetAndSave("s", "int", 5));
    std::string const content = ::Test::ReadWholeFile("Cache/Saves.config");
    EXPECT_EQ(content.substr(0, 2), "\xE4\x08");
    EXPECT_EQ(content.find("some words"), std::string::npos);
    VelmorCore_DeleteConfigFile(&file);
    EXPECT_EQ(file, nullptr);
    VelmorCore_DeleteConfigFile(&file);
    VelmorCore_DeleteConfigFile(nullptr);

    file = VelmorCore_NewConfigFile("Saves");
    EXPECT_TRUE(file->GetFromCache("s", "flag", false));
    EXPECT_EQ(file->GetFromCache("s", "long", std::int64_t{0}), 1234567890123);
    EXPECT_EQ(file->GetFromCache("s", "int", 0), 5);
    EXPECT_EQ(file->GetFromCache("s", "none", 9), 9);
    EXPECT_TRUE(file->IsContainKey("s", "int"));
    EXPECT_TRUE(file->RemoveValueForKeyAndSave("s", "int"));
    EXPECT_FALSE(file->IsContainKey("s", "int"));
    EXPECT_TRUE(file->RemoveSection("s"));
    EXPECT_TRUE(file->RemoveAllAndSave());
    VelmorCore_DeleteConfigFile(&file);
}

TEST(ConfigFile, StaysOpenAsLongAsOneObjectOfItsNameOrAHandedOutBundle) {
    std::string const path = std::string(Ubrix::CPath::GetCachePath()) + "Shared.config";
    Ubrix::BundleFactory& factory = Ubrix::BundleFactory::GetInstance();
    Velmor::IConfigFile* first = VelmorCore_NewConfigFile("Shared");
    Velmor::IConfigFile* second = VelmorCore_NewConfigFile("Shared");
    first->SetCache("s", "k", 1);
    VelmorCore_DeleteConfigFile(&first);
    EXPECT_NE(::Test::ReadWholeFile(path), "") << "a deletion saves";
    Ubrix::Bundle& bundle = factory.GetBundle(path.c_str());
    EXPECT_EQ(bundle.Get("s", "k", 0), 1);
    factory.DestoryBundle(path.c_str());
    Ubrix::BundleFactory::ReleaseInstance();
    EXPECT_EQ(second->GetFromCache("s", "k", 0), 1);
    factory.GetBundle(path.c_str());
    VelmorCore_DeleteConfigFile(&second);
    EXPECT_TRUE(bundle.SetNoSave("s", "k", 2));
    factory.DestoryBundle(path.c_str());
    second = VelmorCore_NewConfigFile("Shared");
    EXPECT_EQ(second->GetFromCache("s", "k", 0), 2);
    VelmorCore_DeleteConfigFile(&second);
}

// What another file, the library itself, or another system has a use for. Of each, no file may be left.
TEST(ConfigFile, TakesNoNameThatIsNotItsOwn) {
    std::string const longest(200, 'n');
    std::string const names[] = {"../up",        "a/b",          "a\\b",        "..",     ".",      "c:x",
                                 "a\nb=1",       "a=b",          "#a",          "[a",     " a",     "a?",
                                 "RemoteConfig", "remoteconfig", "VELMOR",      "nul",    "Con.x",  "lpt1",
                                 "aux .y",       "\x7F",         longest + "n", "conin$", "\x1B[2J"};
    for (std::string const& name : names) {
        ::Test::LogCapture log;
        Velmor::BundleConfigFile file(name.c_str());
        EXPECT_EQ(log.Count("Error", ": refused"), 1) << name;
        EXPECT_FALSE(file.SetAndSave("s", "k", 1)) << name;
        EXPECT_EQ(file.GetFromCache("s", "k", 7), 7) << name;
        EXPECT_EQ(log.Count("Error", "_bundle is null"), 2) << name;
        EXPECT_FALSE(std::filesystem::exists("Cache/" + name + ".config")) << name;
    }
    for (std::string const& name :
         {longest, std::string("nulls"), std::string("com10"), std::string("a [b]#.c ")}) {
        Velmor::BundleConfigFile(name.c_str()).SetAndSave("s", "k", 1);
        EXPECT_EQ(Velmor::BundleConfigFile(name.c_str()).GetFromCache("s", "k", 7), 1) << name;
    }
}

TEST(ConfigFile, CutsATextToItsRoomAndSaysSo) {
    ::Test::LogCapture log;
    Velmor::IConfigFile* file = VelmorCore_NewConfigFile("Cut");
    file->SetCache("s", "k", "123456789");
    for (int const room : {10, 9, 1}) {
        char text[] = "???????????";
        int size = room;
        EXPECT_EQ(file->GetFromCache("s", "k", text, &size, ""), room == 10);
        EXPECT_EQ(text, std::string("123456789", static_cast<std::size_t>(room) - 1));
        EXPECT_EQ(size, room - 1);
        EXPECT_EQ(text[room], '?');
    }
    EXPECT_EQ(log.Count("Error", "cut string"), 2);
    char text[2] = "?";
    int none = 0;
    EXPECT_FALSE(file->GetFromCache("s", "k", text, &none, ""));
    EXPECT_TRUE(log.Has("Error", "len <= 0"));
    VelmorCore_DeleteConfigFile(&file);
}

TEST(ConfigFile, TheKitsOwnIsOneAndOutlivesItsHandles) {
    EXPECT_EQ(VelmorCore_GetDefaultHandler(), VelmorCore_GetDefaultHandler());
    Velmor::IConfigFile* own = VelmorCore_NewConfigFile("Velmor");
    EXPECT_NE(own, VelmorCore_GetDefaultHandler());
    own->SetCache("s", "k", 3);
    VelmorCore_DeleteConfigFile(&own);
    EXPECT_EQ(VelmorCore_GetDefaultHandler()->GetFromCache("s", "k", 0), 3);
}

}  // namespace
