#include <VelmorCore/Zip.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "Readers/Files.h"
#include "Support/FileSizeLimit.h"

namespace {

using ::Test::ReadWholeFile;
using ::Test::WriteWholeFile;
using Ubrix::ZipArchive;

// What unzip prints.
std::string Unzip(std::string const& arguments) {
    EXPECT_EQ(std::system(("unzip " + arguments + " >printed 2>&1").c_str()), 0) << ReadWholeFile("printed");
    return ReadWholeFile("printed");
}

TEST(ZipArchive, WhatItWritesAnyToolReads) {
    std::string large;
    for (int i = 0; i < 20000; ++i) {
        large += std::to_string(i * 7919) + "\n";
    }
    WriteWholeFile("large", large);
    WriteWholeFile("a.zip", std::string(1000000, 'z'));
    ZipArchive archive;
    EXPECT_FALSE(archive.AddFileToZip("large", "large"));
    ASSERT_TRUE(archive.CreateZipFile("a.zip"));
    EXPECT_TRUE(archive.AddFileToZip("large", "logs/large.log"));
    EXPECT_FALSE(archive.AddFileToZip("missing", "missing"));
    EXPECT_FALSE(archive.AddFileToZip("large", std::string(65536, 'n').c_str()));
    EXPECT_FALSE(archive.AddFileToZip(nullptr, "x"));
    EXPECT_FALSE(archive.AddFileToZip("large", nullptr));
    EXPECT_TRUE(archive.CloseZipFile());
    EXPECT_FALSE(archive.CloseZipFile());

    EXPECT_EQ(Unzip("-Z1 a.zip"), "logs/large.log\nmissing\n");
    EXPECT_EQ(Unzip("-p a.zip"), large);
    EXPECT_EQ(std::filesystem::status("a.zip").permissions(), std::filesystem::perms{0600});
    // The first entry's head: signature, version 20, flags, method 8, no time and no date.
    std::string const bytes = ReadWholeFile("a.zip");
    EXPECT_EQ(bytes.substr(0, 6), std::string("PK\3\4\x14\0", 6));
    EXPECT_EQ(bytes.substr(8, 6), std::string("\x08\0\0\0\0\0", 6));
    EXPECT_EQ(bytes.substr(28, 2), std::string(2, '\0'));
}

TEST(ZipArchive, ASourceMayVanishWhileItIsRead) {
    std::string const content(3000, 'v');
    WriteWholeFile("vanishing", content);
    std::FILE* const source = std::fopen("vanishing", "rb");
    {
        ZipArchive archive;
        EXPECT_TRUE(archive.CreateZipFile("vanished.zip"));
        std::remove("vanishing");
        EXPECT_TRUE(archive.AddStreamToZip(source, "part", 1500));
        EXPECT_FALSE(archive.AddStreamToZip(source, "stopped", 1500, [](void const*) { return false; }));
        EXPECT_TRUE(archive.AddStreamToZip(source, "entry"));
        EXPECT_FALSE(archive.AddStreamToZip(nullptr, "none"));
        EXPECT_FALSE(archive.AddFileToZip(".", "no file"));
        EXPECT_EQ(mkfifo("fifo", 0600), 0);
        EXPECT_FALSE(archive.AddFileToZip("fifo", "fifo"));
        ::Test::PutFailingFile("failing");
        EXPECT_FALSE(archive.AddFileToZip("failing", "cut"));
    }
    std::fclose(source);
    EXPECT_EQ(Unzip("-p vanished.zip"), content);
    EXPECT_EQ(Unzip("-Z1 vanished.zip"), "part\nstopped\nentry\ncut\n");
}

TEST(ZipArchive, TellsFailures) {
    ZipArchive archive;
    EXPECT_FALSE(archive.CreateZipFile(nullptr));
    EXPECT_FALSE(archive.CreateZipFile("no/such/place.zip"));
    EXPECT_FALSE(archive.CloseZipFile());
    ASSERT_TRUE(archive.CreateZipFile("full.zip"));
    WriteWholeFile("source", "words");
    {
        ::Test::FileSizeLimit const limit(0);
        EXPECT_FALSE(archive.AddFileToZip("source", "source"));
    }
    EXPECT_FALSE(archive.AddFileToZip("source", "source")) << "a broken archive stays one";
    EXPECT_FALSE(archive.CloseZipFile());
    ASSERT_TRUE(archive.CreateZipFile("full.zip"));
    EXPECT_TRUE(archive.AddFileToZip("source", "source"));
    ::Test::FileSizeLimit const limit(0);
    EXPECT_FALSE(archive.CloseZipFile());
    EXPECT_FALSE(archive.CloseZipFile());
}

TEST(ZipArchive, IsWrittenThroughNoLinkAndInPlaceOfAnArchiveThatWasGivenUp) {
    WriteWholeFile("outside", "kept");
    std::filesystem::create_symlink("outside", "link.zip");
    std::filesystem::create_symlink("nowhere", "dangling.zip");
    ZipArchive archive;
    EXPECT_FALSE(archive.CreateZipFile("link.zip"));
    EXPECT_FALSE(archive.CreateZipFile("dangling.zip"));
    EXPECT_EQ(ReadWholeFile("outside"), "kept");
    EXPECT_FALSE(std::filesystem::exists("nowhere"));

    EXPECT_TRUE(archive.CreateZipFile("first.zip"));
    EXPECT_TRUE(archive.CreateZipFile("second.zip"));
    EXPECT_TRUE(archive.AddFileToZip("outside", "entry"));
    EXPECT_TRUE(archive.CloseZipFile());
    EXPECT_EQ(ReadWholeFile("first.zip"), "");
    EXPECT_EQ(Unzip("-p second.zip"), "kept");
}

}  // namespace
