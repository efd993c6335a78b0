#include <VelmorCore/Zip.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "Support/FileSizeLimit.h"
#include "Support/Files.h"

namespace {

using ::Test::ReadWholeFile;
using ::Test::WriteWholeFile;
using Ubrix::ZipArchive;

// What unzip prints.
std::string Unzip(std::string const& arguments) {
    EXPECT_EQ(std::system(("unzip " + arguments + " >printed 2>&1").c_str()), 0) << ReadWholeFile("printed");
    return ReadWholeFile("printed");
}

TEST(ZipArchiveTest, WhatItWritesAnyToolReads) {
    std::string large;
    for (int i = 0; i < 20000; ++i) {
        large += std::to_string(i * 7919) + "\n";
    }
    WriteWholeFile("large", large);
    WriteWholeFile("none", "");
    WriteWholeFile("a.zip", std::string(1000000, 'z'));
    ZipArchive archive;
    EXPECT_FALSE(archive.AddFileToZip("large", "large"));
    ASSERT_TRUE(archive.CreateZipFile("a.zip"));
    EXPECT_TRUE(archive.AddFileToZip("large", "logs/large.log"));
    EXPECT_TRUE(archive.AddFileToZip("none", "none"));
    EXPECT_FALSE(archive.AddFileToZip("missing", "missing"));
    EXPECT_FALSE(archive.AddFileToZip("large", std::string(65536, 'n').c_str()));
    EXPECT_FALSE(archive.AddFileToZip(nullptr, "x") || archive.AddFileToZip("none", nullptr));
    EXPECT_TRUE(archive.CloseZipFile());
    EXPECT_FALSE(archive.CloseZipFile());

    Unzip("-t a.zip");
    EXPECT_EQ(Unzip("-Z1 a.zip"), "logs/large.log\nnone\nmissing\n");
    EXPECT_EQ(Unzip("-p a.zip logs/large.log"), large);
    EXPECT_EQ(Unzip("-p a.zip missing"), "");
    // The first entry's head: signature, version 20, flags, method 8, no time and no date.
    std::string const bytes = ReadWholeFile("a.zip");
    EXPECT_EQ(bytes.substr(0, 6), std::string("PK\3\4\x14\0", 6));
    EXPECT_EQ(bytes.substr(8, 6), std::string("\x08\0\0\0\0\0", 6));
    EXPECT_EQ(bytes.substr(28, 2), std::string(2, '\0'));
}

TEST(ZipArchiveTest, ASourceThatVanishesDuringTheCopyEndsThere) {
    std::string const content(3000, 'v');
    ASSERT_EQ(mkfifo("vanishing", 0600), 0);
    std::thread writer([&content] {
        // Opens once the copy has, which then waits for what comes.
        std::ofstream source("vanishing");
        std::remove("vanishing");
        source << content;
    });
    {
        ZipArchive archive;
        EXPECT_TRUE(archive.CreateZipFile("vanished.zip"));
        EXPECT_TRUE(archive.AddFileToZip("vanishing", "entry"));
        EXPECT_TRUE(archive.AddFileToZip(".", "no file"));
    }
    writer.join();
    Unzip("-t vanished.zip");
    EXPECT_EQ(Unzip("-p vanished.zip entry"), content);
}

TEST(ZipArchiveTest, TellsFailures) {
    ZipArchive archive;
    EXPECT_FALSE(archive.CreateZipFile(nullptr) || archive.CreateZipFile("no/such/place.zip"));
    EXPECT_FALSE(archive.CloseZipFile());
    ASSERT_TRUE(archive.CreateZipFile("full.zip"));
    ::Test::FileSizeLimit const limit(0);
    EXPECT_FALSE(archive.CloseZipFile());
    EXPECT_FALSE(archive.CloseZipFile());
}

}  // namespace
