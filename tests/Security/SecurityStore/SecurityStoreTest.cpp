#include <VelmorCore/File.h>
#include <gtest/gtest.h>

#include <string>

#include "Readers/Files.h"
#include "Security/SecurityStore/SecurityStoreImp.h"
#include "Support/FileSizeLimit.h"

namespace {

using namespace Ubrix;

TEST(SecurityStore, EntriesStandInOneSectionOfStoreIniAndLast) {
    std::string const path = std::string(CPath::GetCachePath()) + "Store.ini";
    ::Test::WriteWholeFile(path, "[Other]\nk=0\n");
    {
        SecurityStoreImp store;
        EXPECT_STREQ(store.Get("k", "default").CString(), "default");
        store.Set("k", "AAA=");
        store.Set("k", "QUI=");
        store.Set("h", "cut#off");
        EXPECT_STREQ(store.Get("h", "").CString(), "cut");
        EXPECT_EQ(::Test::ReadWholeFile(path), "[Other]\nk=0\n[Velmor]\nk=QUI=\nh=cut#off\n");
    }
    SecurityStoreImp store;
    SecurityStoreImp other;
    EXPECT_STREQ(store.Get("k", "").CString(), "QUI=");
    StoredKeys keys;
    keys.current = "bmV3";
    keys.earlier = "b2xk";
    {
        ::Test::FileSizeLimit const limit(4);
        EXPECT_FALSE(store.WriteKeys("k", keys));
        EXPECT_FALSE(store.WriteKeys("l", keys));
    }
    EXPECT_FALSE(store.WriteKeys("a=b", keys));
    EXPECT_STREQ(store.Get("k", "").CString(), "QUI=");
    EXPECT_STREQ(store.Get("l", "default").CString(), "default");
    EXPECT_TRUE(store.WriteKeys("k", keys));
    other.Set("by another", "AAA=");
    keys.earlier.clear();
    EXPECT_TRUE(store.WriteKeys("l", keys));
    StoredKeys read;
    EXPECT_TRUE(other.ReadKeys("k", read));
    EXPECT_EQ(read.current, "bmV3");
    EXPECT_EQ(read.earlier, "b2xk");
    EXPECT_EQ(::Test::ReadWholeFile(path),
              "[Other]\nk=0\n[Velmor]\nk=bmV3\nh=cut#off\nearlier/k=b2xk\nby another=AAA=\nl=bmV3\n");
}

}  // namespace
