#include "Base/Configure/ConfigFile.h"

#include <VelmorCore/velmorcore.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "Support/Files.h"
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
    EXPECT_EQ(::Test::ReadWholeFile("Cache/Saves.config").find("some words"), std::string::npos);
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

TEST(ConfigFile, CutsATextToItsRoomAndSaysSo) {
    ::Test::LogCapture log;
    Velmor::IConfigFile* file = VelmorCore_NewConfigFile("Cut");
    file->SetCache("s", "k", "123456789");
    struct {
        int room;
        bool whole;
        char const* text;
    } const rows[] = {{10, true, "123456789"}, {9, false, "12345678"}, {1, false, ""}};
    for (auto const& row : rows) {
        char text[16];
        std::memset(text, '?', sizeof text);
        int size = row.room;
        EXPECT_EQ(file->GetFromCache("s", "k", text, &size, ""), row.whole) << row.room;
        EXPECT_STREQ(text, row.text);
        EXPECT_EQ(size, static_cast<int>(std::strlen(row.text)));
        EXPECT_EQ(text[row.room], '?');
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
