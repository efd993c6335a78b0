// The INI file on plain text.
#pragma once

#include <string>

#include "Platform/Mutex.h"
#include "Storage/File/CutKeys.h"
#include "Storage/File/IniFile.h"
#include "Storage/File/IniLines.h"

namespace Ubrix {

// File form: lines that end in a carriage return or a line feed; empty lines and a last line without an end
// are not taken in. A save writes each line with the system's line end, on a file that only this user can
// read.
//
// The lock guards the lines and covers each operation in full. The disk is read and written under it.
class CIniFileImpl : public IniFile {
public:
    // Reads the file as plain text. One that can't be read is deleted, to start anew.
    explicit CIniFileImpl(char const* path);
    ~CIniFileImpl() override;
    CIniFileImpl(CIniFileImpl const&) = delete;
    CIniFileImpl& operator=(CIniFileImpl const&) = delete;

    bool Load() override;
    bool Save() override;
    AString ReadString(char const* section, char const* key, char const* defaultValue, bool* found) override;
    AString ReadString(char const* section, char const* key, char const* defaultValue) override;
    int ReadInt(char const* section, char const* key, int defaultValue, bool* found) override;
    int ReadInt(char const* section, char const* key, int defaultValue) override;
    long long ReadInt64(char const* section, char const* key, long long defaultValue, bool* found) override;
    long long ReadInt64(char const* section, char const* key, long long defaultValue) override;
    bool WriteString(char const* section, char const* key, char const* value) override;
    bool WriteInt(char const* section, char const* key, int value) override;
    bool WriteInt64(char const* section, char const* key, long long value) override;
    void GetKeys(char const* section, AArray* keys) override;
    bool HasKey(char const* section, char const* key) override;
    bool RemoveSection(char const* section) override;
    bool RemoveKey(char const* section, char const* key) override;
    bool Clear() override;
    void Swap(IniLines& lines) override;

    // As Save of plain text, and tells whether the file has the content now.
    bool SaveChecked();

protected:
    // For the destructor of a class with a file form of its own, which has saved in that form.
    void SkipSaveAtEnd() { _savesAtEnd = false; }

    std::string const _path;
    Platform::RecursiveMutex _lock;
    IniLines _lines VC_GUARDED_BY(_lock);

private:
    bool _savesAtEnd = true;
    CutKeys _cutKeys VC_GUARDED_BY(_lock);
};

}  // namespace Ubrix
