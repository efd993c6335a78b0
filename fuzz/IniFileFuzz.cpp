// Any bytes load as a plain and as an enciphered INI file, and what was loaded survives edits, a save and a
// load.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Storage/File/EncipheredFile.h"
#include "Storage/File/EncryptedIniFileImp.h"

namespace {

char const kPath[] = "fuzz.config";

void WriteFile(std::string const& content) {
    std::FILE* stream = std::fopen(kPath, "wb");
    if (stream == nullptr || std::fwrite(content.data(), 1, content.size(), stream) != content.size() ||
        std::fclose(stream) != 0) {
        std::abort();
    }
}

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    static auto* const file = new Ubrix::EncryptedIniFileImpl(kPath);
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    WriteFile(bytes);
    file->Load();

    // The same bytes behind a head that fits them, so that the cipher is reached.
    unsigned char head[Ubrix::kEncipheredHeadSize];
    unsigned char const publicKey[Ubrix::kEncipheredPublicKeySize] = {};
    Ubrix::MakeEncipheredHead(publicKey, data, static_cast<unsigned int>(size), head);
    WriteFile(std::string(reinterpret_cast<char*>(head), sizeof head) + bytes);
    file->Load();

    WriteFile(bytes);
    Require(file->CIniFileImpl::Load());
    Ubrix::AArray keys;
    file->GetKeys("a", &keys);
    for (int i = 0; i < keys.Count(); ++i) {
        file->ReadInt64("a", keys.CStringAtIndex(i), 0);
        file->HasKey("a", keys.CStringAtIndex(i));
    }
    Require(file->WriteString("a", "key", "value"));
    Require(file->Save() && file->Load());
    Ubrix::AString const value = file->ReadString("a", "key", "");
    Require(value == Ubrix::AString("value"));
    while (file->RemoveKey("a", "key")) {
    }
    while (file->RemoveSection("a")) {
    }
    return 0;
}
