#include <VelmorCore/File.h>

#include <atomic>
#include <climits>
#include <cstring>
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

char const* StreamMode(FileMode mode) {
    switch (mode) {
        case FileModeCreate:
        case FileModeReadWrite:
            return "wb+";
        case FileModeAppend:
            return "ab+";
        case FileModeWrite:
            return "wb";
        case FileModeRead:
        default:
            return "rb";
    }
}

int Origin(FilePosition from) {
    switch (from) {
        case FilePositionCurrent:
            return SEEK_CUR;
        case FilePositionEnd:
            return SEEK_END;
        case FilePositionBegin:
        default:
            return SEEK_SET;
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

CFile::CFile() : _stream(nullptr), _mode(FileModeRead), _hasRead(false) {}

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
        _stream = std::fopen(_path.CString(), StreamMode(mode));
        return _stream != nullptr;
    });
}

void CFile::Close() {
    if (_stream != nullptr) {
        std::fclose(_stream);
        _stream = nullptr;
    }
}

bool CFile::Exist() {
    return _stream != nullptr && Exist(_path.CString());
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
    if (_stream == nullptr || buffer == nullptr) {
        return -1;
    }
    if (size == 0 || std::fseek(_stream, position, SEEK_SET) != 0) {
        return 0;
    }
    _hasRead = true;
    std::size_t const wanted = size < INT_MAX ? size : INT_MAX;
    std::size_t const count = std::fread(buffer, 1, wanted, _stream);
    if (count < wanted && std::ferror(_stream) != 0) {
        std::clearerr(_stream);
        return -1;
    }
    return static_cast<int>(count);
}

bool CFile::Write(void const* data, unsigned int size) {
    if (_stream == nullptr || data == nullptr) {
        return false;
    }
    if (size == 0) {
        return true;
    }
    return std::fseek(_stream, 0, SEEK_SET) == 0 && std::fwrite(data, 1, size, _stream) == size &&
           std::fflush(_stream) == 0;
}

bool CFile::Append(void const* data, unsigned int size) {
    if (_stream == nullptr || data == nullptr) {
        return false;
    }
    if (size == 0) {
        return true;
    }
    // A stream that was opened for appending finds the end by itself, and wants a seek only between reading
    // and writing.
    if ((_mode != FileModeAppend || _hasRead) && std::fseek(_stream, 0, SEEK_END) != 0) {
        return false;
    }
    _hasRead = false;
    return std::fwrite(data, 1, size, _stream) == size;
}

bool CFile::Flush() {
    return _stream != nullptr && std::fflush(_stream) == 0;
}

unsigned int CFile::GetLength() {
    if (_stream == nullptr) {
        return 0;
    }
    long const position = std::ftell(_stream);
    if (position < 0 || std::fseek(_stream, 0, SEEK_END) != 0) {
        return 0;
    }
    long long const length = std::ftell(_stream);
    if (std::fseek(_stream, position, SEEK_SET) != 0 || length < 0 || length > UINT_MAX) {
        return 0;
    }
    return static_cast<unsigned int>(length);
}

unsigned long long CFile::Seek(unsigned long long offset, FilePosition from) {
    if (_stream == nullptr) {
        return 0;
    }
    long const low = static_cast<int>(static_cast<unsigned int>(offset));
    if (std::fseek(_stream, low, Origin(from)) != 0) {
        return 0;
    }
    long const position = std::ftell(_stream);
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
