// Any bytes may be in the place of a plain and of an enciphered INI file: an edit survives its save, and
// what couldn't be read is kept aside.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
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

// What the last input's save moved out of its way.
void RemoveAside() {
    for (auto const& entry : std::filesystem::directory_iterator(".")) {
        if (entry.path().filename().string().find(".unreadable-") != std::string::npos) {
            std::filesystem::remove(entry.path());
        }
    }
}

void ReadAll(Ubrix::IniFile& file) {
    Ubrix::AArray keys;
    file.GetKeys("a", &keys);
    for (int i = 0; i < keys.Count(); ++i) {
        file.ReadInt64("a", keys.CStringAtIndex(i), 0);
        file.HasKey("a", keys.CStringAtIndex(i));
    }
}

// Edits and saves what was loaded, and finds the edit in a fresh object.
template <class File>
void EditAndReload() {
    {
        File file(kPath);
        file.Load();
        ReadAll(file);
        Require(file.WriteString("a", "key", "value") && file.Save());
    }
    File file(kPath);
    file.Load();
    Ubrix::AString const value = file.ReadString("a", "key", "");
    Require(value == Ubrix::AString("value"));
    while (file.RemoveKey("a", "key")) {
    }
    while (file.RemoveSection("a")) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size) {
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    WriteFile(bytes);
    EditAndReload<Ubrix::CIniFileImpl>();

    // Also behind a head that fits them, so that the cipher is reached.
    unsigned char head[Ubrix::kEncipheredHeadSize];
    unsigned char const publicKey[Ubrix::kEncipheredPublicKeySize] = {};
    Ubrix::MakeEncipheredHead(publicKey, data, static_cast<unsigned int>(size), head);
    for (std::string const& content :
         {bytes, std::string(reinterpret_cast<char*>(head), sizeof head) + bytes}) {
        WriteFile(content);
        EditAndReload<Ubrix::EncryptedIniFileImpl>();
    }
    RemoveAside();
    return 0;
}
