#include <VelmorCore/Zip.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include "Support/FileSizeLimit.h"
#include "Support/Files.h"

namespace {

using Test::ReadWholeFile;
using Test::WriteWholeFile;
using Ubrix::ZipArchive;

// What a command prints, and what it answers.
std::string OutputOf(std::string const& command, int& status) {
    std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    std::string output;
    std::array<char, 256> piece;
    while (std::fgets(piece.data(), piece.size(), pipe) != nullptr) {
        output += piece.data();
    }
    status = pclose(pipe);
    return output;
}

std::string Unzip(std::string const& arguments) {
    int status = 0;
    std::string const output = OutputOf("unzip " + arguments, status);
    EXPECT_EQ(status, 0) << output;
    return output;
}

TEST(ZipArchiveTest, WhatItWritesAnyToolReads) {
    std::string large;
    for (int i = 0; i < 20000; ++i) {
        large += std::to_string(i * 7919) + "\n";
    }
    WriteWholeFile("large", large);
    WriteWholeFile("exact", std::string(1024, 'e'));
    WriteWholeFile("none", "");
    WriteWholeFile("a.zip", std::string(1000000, 'z'));
    ZipArchive archive;
    ASSERT_TRUE(archive.CreateZipFile("a.zip"));
    EXPECT_TRUE(archive.AddFileToZip("large", "logs/large.log"));
    EXPECT_TRUE(archive.AddFileToZip("exact", "exact"));
    EXPECT_TRUE(archive.AddFileToZip("none", "none"));
    EXPECT_FALSE(archive.AddFileToZip("missing", "missing"));
    EXPECT_FALSE(archive.AddFileToZip("large", std::string(65536, 'n').c_str()));
    EXPECT_FALSE(archive.AddFileToZip(nullptr, "x") || archive.AddFileToZip("exact", nullptr));
    EXPECT_TRUE(archive.CloseZipFile());
    EXPECT_FALSE(archive.CloseZipFile());

    Unzip("-t a.zip");
    EXPECT_EQ(Unzip("-Z1 a.zip"), "logs/large.log\nexact\nnone\nmissing\n");
    EXPECT_EQ(Unzip("-p a.zip logs/large.log"), large);
    EXPECT_EQ(Unzip("-p a.zip exact"), std::string(1024, 'e'));
    EXPECT_EQ(Unzip("-p a.zip missing"), "");
    // The first entry's head: signature, version 20, flags, method 8, no time and no date.
    std::string const bytes = ReadWholeFile("a.zip");
    EXPECT_EQ(bytes.substr(0, 6), std::string("PK\3\4\x14\0", 6));
    EXPECT_EQ(bytes.substr(8, 6), std::string("\x08\0\0\0\0\0", 6));
    EXPECT_EQ(bytes.substr(28, 2), std::string(2, '\0'));
}

TEST(ZipArchiveTest, ClosesWhatIsOpenAndToldFailures) {
    WriteWholeFile("f", "content");
    {
        ZipArchive archive;
        EXPECT_FALSE(archive.AddFileToZip("f", "f"));
        EXPECT_FALSE(archive.CreateZipFile(nullptr) || archive.CreateZipFile("no/such/place.zip"));
        EXPECT_FALSE(archive.CloseZipFile());
        ASSERT_TRUE(archive.CreateZipFile("left.zip"));
        EXPECT_TRUE(archive.AddFileToZip("f", "f"));
        EXPECT_TRUE(archive.AddFileToZip(".", "directory"));
    }
    Unzip("-t left.zip");
    ZipArchive full;
    ASSERT_TRUE(full.CreateZipFile("full.zip"));
    EXPECT_TRUE(full.AddFileToZip("f", "f"));
    ::Test::FileSizeLimit const limit(0);
    EXPECT_FALSE(full.CloseZipFile());
    EXPECT_FALSE(full.CloseZipFile());
}

}  // namespace
