// The INI file on plain text.
// Sources: IniFileImp.cpp, IniFileDisk.cpp
#pragma once

#include <string>
#include <string_view>

#include "Platform/FileSystem.h"
#include "Platform/Mutex.h"
#include "Storage/File/CutKeys.h"
#include "Storage/File/IniFile.h"
#include "Storage/File/IniLines.h"

namespace Ubrix {

// File form: lines that end in a carriage return or a line feed; empty lines and a last line without an end
// are not taken in. A save writes each line with the system's line end, on a file that only this user can
// read.
//
// What is on the disk and wasn't read is never deleted or overwritten:
// - What can't be read now, for want of descriptors for one, is tried again at each operation. Until then the
//   object works as an empty one and nothing is saved; edits made meanwhile are laid over what is read.
// - What can't be taken in, now or later, is moved aside before a save, to the first free name of
//   "<file>.unreadable-1" to 8, with an Error line. Only where all eight are taken the last one is replaced.
// The object saves at its end only what was edited, or where there is nothing.
//
// The lock guards the lines and covers each operation in full. The disk is read and written under it.
class CIniFileImpl : public IniFile {
public:
    // Reads the file as plain text.
    explicit CIniFileImpl(char const* path) : CIniFileImpl(path, nullptr) {}
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
    bool IsUnread() override;

    // As Save, and tells whether the file has the content now.
    bool SaveChecked();
    // As Load. False only if something is on the disk that can't be read now, whatever was read before.
    bool Refresh();

protected:
    // `isOtherForm` tells of content that the file form of a derived class has; the constructor leaves it to
    // that class's Reload.
    CIniFileImpl(char const* path, bool (*isOtherForm)(std::string_view content));

    // Takes in what is on the disk, without a message of its own. True if there was something.
    virtual bool Reload() VC_REQUIRES(_lock);
    // Puts the lines on the disk. Gives null, or the reason why what is there stays.
    virtual char const* WriteFile() VC_REQUIRES(_lock);
    // For the destructor of each class that overrides WriteFile.
    void SaveAtEnd();

    // For Reload. The content of the file; unless the answer is Given, all is done.
    Platform::FileAnswer ReadContent(std::string& content) VC_REQUIRES(_lock);
    // Makes `lines` the object's.
    void Take(IniLines& lines) VC_REQUIRES(_lock);
    // What is there can't be taken in now, but `mayBeLater`.
    void Leave(bool mayBeLater) VC_REQUIRES(_lock);
    // For WriteFile, before it does anything: makes sure that nothing unread is overwritten. Gives null, or
    // the reason why something would be.
    char const* MakeWay() VC_REQUIRES(_lock);
    bool IsKnown() const VC_REQUIRES(_lock) { return _disk == Disk::Known; }

    std::string const _path;
    Platform::RecursiveMutex _lock;
    IniLines _lines VC_GUARDED_BY(_lock);
    bool _edited VC_GUARDED_BY(_lock) = false;

private:
    // What the object knows of what is at its path.
    enum class Disk {
        Known,    // it was taken in, or there was nothing
        Unread,   // it can't be read now
        Foreign,  // it can't be taken in
    };

    bool MoveAside() VC_REQUIRES(_lock);
    // Reads what couldn't be read before.
    void CatchUp() VC_REQUIRES(_lock);
    void Know() VC_REQUIRES(_lock);

    Disk _disk VC_GUARDED_BY(_lock) = Disk::Unread;
    // To the latest look at the disk.
    Platform::FileAnswer _answer VC_GUARDED_BY(_lock) = Platform::FileAnswer::Absent;
    // Nothing was there when it was looked at.
    bool _wasAbsent VC_GUARDED_BY(_lock) = false;
    // Cleared since it was unread: of what is there nothing is to be kept.
    bool _cleared VC_GUARDED_BY(_lock) = false;
    bool _toldUnread VC_GUARDED_BY(_lock) = false;
    bool _toldUnsaved VC_GUARDED_BY(_lock) = false;
    bool _leftoversCleared VC_GUARDED_BY(_lock) = false;
    bool _savesAtEnd VC_GUARDED_BY(_lock) = true;
    CutKeys _cutKeys VC_GUARDED_BY(_lock);
};

// No file is read or written that is larger.
constexpr unsigned int kMaxIniFileSize = 256U * 1024U * 1024U;

// The lines of a text, by the rules of the plain form.
void TakePlainText(std::string_view text, IniLines& lines);

}  // namespace Ubrix
