#include <VelmorCore/File.h>
#include <gtest/gtest.h>

#include <string>

#include "Security/SecurityStore/SecurityStoreImp.h"
#include "Support/FileSizeLimit.h"
#include "Support/Files.h"

namespace {

using namespace Ubrix;

TEST(SecurityStoreTest, EntriesStandInOneSectionOfStoreIniAndLast) {
    std::string const path = std::string(CPath::GetCachePath()) + "Store.ini";
    ::Test::WriteWholeFile(path, "[Other]\nk=0\n");
    {
        SecurityStoreImp store;
        EXPECT_STREQ(store.Get("k", "default").CString(), "default");
        store.Set("k", "AAA=");
        store.Set("k", "QUI=");
        store.Set("h", "cut#off");
        EXPECT_STREQ(store.Get("h", "").CString(), "cut");
        EXPECT_FALSE(store.SetChecked(nullptr, "x"));
        EXPECT_EQ(::Test::ReadWholeFile(path), "[Other]\nk=0\n\n[Velmor]\nk=QUI=\nh=cut#off\n");
    }
    SecurityStoreImp store;
    EXPECT_STREQ(store.Get("k", "").CString(), "QUI=");
    {
        ::Test::FileSizeLimit const limit(4);
        EXPECT_FALSE(store.SetChecked("k", "new"));
        EXPECT_FALSE(store.SetChecked("l", "new"));
    }
    EXPECT_STREQ(store.Get("k", "").CString(), "QUI=");
    EXPECT_STREQ(store.Get("l", "default").CString(), "default");
    EXPECT_TRUE(store.SetChecked("k", "new"));
}

}  // namespace
