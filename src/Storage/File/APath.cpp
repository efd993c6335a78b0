#include <VelmorCore/File.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Base/Ubrix/CoreParameters.h"
#include "Platform/FileSystem.h"
#include "Platform/MemoryWant.h"
#include "Storage/File/OwnDirectories.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

using Platform::WithoutThrow;

namespace {

Platform::File::Mode OpenMode(FileMode mode) {
    switch (mode) {
        case FileModeCreate:
        case FileModeReadWrite:
            return Platform::File::Mode::ReadWrite;
        case FileModeAppend:
            return Platform::File::Mode::Append;
        case FileModeWrite:
            return Platform::File::Mode::Write;
        case FileModeRead:
        default:
            return Platform::File::Mode::Read;
    }
}

Platform::File::From Origin(FilePosition from) {
    switch (from) {
        case FilePositionCurrent:
            return Platform::File::From::Here;
        case FilePositionEnd:
            return Platform::File::From::End;
        case FilePositionBegin:
        default:
            return Platform::File::From::Begin;
    }
}

// Texts that are made at their first use and stay. Threads that come at once may each make one; the first to
// arrive is the one that everybody gets.
using KeptText = std::atomic<char const*>;

KeptText g_appPath{nullptr};
KeptText g_defaultConfigFile{nullptr};

char const* Keep(KeptText& kept, char const* text) {
    std::size_t const size = std::strlen(text) + 1;
    char* copy = new char[size];
    std::memcpy(copy, text, size);
    char const* expected = nullptr;
    if (!kept.compare_exchange_strong(expected, copy, std::memory_order_acq_rel)) {
        delete[] copy;
        return expected;
    }
    return copy;
}

// A directory in which the library stores its state.
struct OwnDirectory {
    char const* name;
    KeptText path{nullptr};
    // It was seen to exist. What fails before that is tried again at the next use.
    std::atomic<bool> exists{false};
    // It was told of as one that isn't trusted.
    std::atomic<bool> isToldOf{false};
};

OwnDirectory g_doc{"Doc"};
OwnDirectory g_cache{"Cache"};

char const* PathOf(OwnDirectory& directory) {
    if (char const* path = directory.path.load(std::memory_order_acquire)) {
        return path;
    }
    char const* app = CPath::GetAppPath();
    if (app == nullptr) {
        return nullptr;
    }
    AString path;
    CPath::GetSubPath(path, app, directory.name);
    path += Platform::kPathSeparator;
    return Keep(directory.path, path.CString());
}

char const* MadePath(OwnDirectory& directory) {
    char const* const path = PathOf(directory);
    if (path != nullptr && !directory.exists.load(std::memory_order_relaxed)) {
        directory.exists.store(CPath::CreatePath(path) || Platform::IsDirectory(path),
                               std::memory_order_relaxed);
    }
    return path;
}

bool IsTrusted(OwnDirectory& directory, char const* path) {
    auto trust = Platform::TrustInDirectory(path);
    if (trust == Platform::DirectoryTrust::Absent && CPath::CreatePath(path)) {
        trust = Platform::TrustInDirectory(path);
    }
    bool const isForeign = trust == Platform::DirectoryTrust::Foreign;
    if (!directory.isToldOf.exchange(isForeign) && isForeign) {
        VC_LOG(Error, "Ubrix::IsSafeForValues",
               "%s belongs to another user, or everybody may write there: no keys or values are read from it "
               "or stored in it",
               ForeignText(path).c_str());
    }
    return !isForeign;
}

}  // namespace

CFile::CFile() : _file(nullptr), _mode(FileModeRead), _hasRead(false) {}

CFile::~CFile() {
    Close();
}

bool CFile::Open(char const* path, FileMode mode) {
    if (path == nullptr) {
        return false;
    }
    return WithoutThrow([&] {
        Close();
        _path = path;
        _mode = mode;
        _hasRead = false;
        auto file = std::make_unique<Platform::File>(Platform::File::Open(_path.CString(), OpenMode(mode)));
        _file = file->IsOpen() ? file.release() : nullptr;
        return _file != nullptr;
    });
}

void CFile::Close() {
    delete _file;
    _file = nullptr;
}

bool CFile::Exist() {
    return _file != nullptr && Exist(_path.CString());
}

bool CFile::Exist(char const* path) {
    return path != nullptr && WithoutThrow([path] { return Platform::PathExists(path); });
}

bool CFile::IsDir(char const* /*path*/) {
    return true;
}

bool CFile::Remove(char const* path) {
    return path != nullptr && WithoutThrow([path] { return Platform::DeleteFileAt(path); });
}

bool CFile::Remove() {
    return Remove(_path.CString());
}

bool CFile::Rename(char const* from, char const* to) {
    return from != nullptr && to != nullptr && WithoutThrow([=] { return Platform::RenamePath(from, to); });
}

int CFile::Read(void* buffer, unsigned int size) {
    return Read(buffer, 0, size);
}

int CFile::Read(void* buffer, int position, unsigned int size) {
    if (_file == nullptr || buffer == nullptr) {
        return -1;
    }
    if (size == 0 || !_file->Seek(position, Platform::File::From::Begin)) {
        return 0;
    }
    _hasRead = true;
    std::size_t const wanted = size < INT_MAX ? size : INT_MAX;
    std::size_t const count = _file->Read(buffer, wanted);
    return count < wanted && _file->HasFailed() ? -1 : static_cast<int>(count);
}

bool CFile::Write(void const* data, unsigned int size) {
    if (_file == nullptr || data == nullptr) {
        return false;
    }
    if (size == 0) {
        return true;
    }
    return _file->Seek(0, Platform::File::From::Begin) && _file->Write(data, size) && _file->Flush();
}

bool CFile::Append(void const* data, unsigned int size) {
    if (_file == nullptr || data == nullptr) {
        return false;
    }
    if (size == 0) {
        return true;
    }
    // A stream that was opened for appending finds the end by itself, and wants a seek only between reading
    // and writing.
    if ((_mode != FileModeAppend || _hasRead) && !_file->Seek(0, Platform::File::From::End)) {
        return false;
    }
    _hasRead = false;
    return _file->Write(data, size);
}

bool CFile::Flush() {
    return _file != nullptr && _file->Flush();
}

unsigned int CFile::GetLength() {
    if (_file == nullptr) {
        return 0;
    }
    long long const length = _file->Length();
    return length < 0 || length > UINT_MAX ? 0 : static_cast<unsigned int>(length);
}

unsigned long long CFile::Seek(unsigned long long offset, FilePosition from) {
    if (_file == nullptr) {
        return 0;
    }
    if (!_file->Seek(static_cast<int>(static_cast<unsigned int>(offset)), Origin(from))) {
        return 0;
    }
    long long const position = _file->Position();
    return position < 0 ? 0 : static_cast<unsigned long long>(position);
}

void CFile::SeekToBegin() {
    Seek(0, FilePositionBegin);
}

void CFile::SeekToEnd() {
    Seek(0, FilePositionEnd);
}

char const* CPath::GetAppPath() {
    if (char const* path = g_appPath.load(std::memory_order_acquire)) {
        return path;
    }
    return WithoutThrow([]() -> char const* {
        std::string directory;
        if (!Platform::WorkingDirectory(directory)) {
            std::perror("getcwd error");
            return nullptr;
        }
        return Keep(g_appPath, directory.c_str());
    });
}

char const* CPath::GetDocPath() {
    return WithoutThrow([] { return MadePath(g_doc); });
}

char const* CPath::GetCachePath() {
    return WithoutThrow([] { return MadePath(g_cache); });
}

bool IsSafeForValues(char const* path) {
    for (OwnDirectory* directory : {&g_doc, &g_cache}) {
        char const* const own = PathOf(*directory);
        if (own != nullptr && std::strncmp(path, own, std::strlen(own)) == 0) {
            return IsTrusted(*directory, own);
        }
    }
    return true;
}

char const* CPath::GetDefaultConfigFile() {
    if (char const* path = g_defaultConfigFile.load(std::memory_order_acquire)) {
        return path;
    }
    return WithoutThrow([]() -> char const* {
        char const* cache = GetCachePath();
        if (cache == nullptr) {
            return nullptr;
        }
        AString name = CoreParameters::Get(CoreParameters::Field::KitName);
        name += ".ini";
        AString path(cache);
        return Keep(g_defaultConfigFile, AppendSubPath(path, name.CString()).CString());
    });
}

bool CPath::CreatePath(char const* path) {
    return path != nullptr && WithoutThrow([path] { return Platform::MakeDirectory(path); });
}

bool CPath::RemovePath(char const* /*path*/) {
    return true;
}

void CPath::GetSubPath(AString& out, char const* dir, char const* sub) {
    if (dir == nullptr || sub == nullptr) {
        return;
    }
    WithoutThrow([&] {
        std::string path(dir);
        if (!path.empty() && path.back() != '/' && path.back() != '\\') {
            path += '/';
        }
        path += sub;
        out = path.c_str();
    });
}

AString& CPath::AppendSubPath(AString& path, char const* sub) {
    GetSubPath(path, path.CString(), sub);
    return path;
}

void CPath::GetFileName(char const* path, AString& out) {
    WithoutThrow([&] {
        std::string const whole(path != nullptr ? path : "");
        std::size_t separator = whole.rfind('\\');
        if (separator == std::string::npos) {
            separator = whole.rfind('/');
        }
        out = whole.c_str() + (separator == std::string::npos ? 0 : separator + 1);
    });
}

bool CPath::GetFiles(char const* path, AArray* files) {
    if (path == nullptr || files == nullptr) {
        VC_LOG(Error, "Ubrix::CPath::GetFiles", "pszPath or files is NULL!");
        return false;
    }
    return WithoutThrow([&] {
        std::vector<std::string> names;
        if (!Platform::ListDirectory(path, names)) {
            VC_LOG(Error, "Ubrix::CPath::GetFiles", "%s not found!", ForeignText(path).c_str());
            return false;
        }
        // All or none.
        AArray found;
        for (std::string const& name : names) {
            found.Add(name.c_str());
        }
        files->Add(&found);
        return true;
    });
}

}  // namespace Ubrix
