#include "Storage/Log/AFileLogger.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

namespace {

constexpr char kLogFunction[] = "Ubrix::AFileLogger::Log2File";
constexpr char kRootDirectory[] = "VelmorSDKLog";
// A longer module name leaves no room for itself in a file name.
constexpr int kLongestNameInFile = 109;

bool SameHour(Platform::CalendarTime const& a, Platform::CalendarTime const& b) {
    return a.hour == b.hour && a.day == b.day && a.month == b.month && a.year == b.year;
}

bool EnsureDirectoryAt(AString const& path) {
    if (CFile::Exist(path.c_str()) || CPath::CreatePath(path.c_str())) {
        return true;
    }
    VC_LOG_CONSOLE(Error, kLogFunction, "CreatePath %s failed!", ForeignText(path.c_str()).c_str());
    return false;
}

}  // namespace

AFileLogger::AFileLogger(char const* name, int sync, int sizeLimitMiB, int exceedOperation)
    : _name(name),
      _sync(sync),
      _sizeLimit(static_cast<long long>(sizeLimitMiB) * 1024 * 1024),
      _exceedOperation(exceedOperation) {}

void AFileLogger::Log2File(char const* text) {
    if (text != nullptr) {
        Log2File(text, static_cast<unsigned int>(std::strlen(text)));
    }
}

void AFileLogger::Log2File(void const* data, unsigned int length) {
    if (data == nullptr || length == 0) {
        return;
    }
    Platform::CalendarTime const now = ClockSource::Current().Local();
    Platform::ScopedLock lock(_lock);
    try {
        Write(data, length, now);
    } catch (std::bad_alloc const&) {
        // The caller, who may be C, must not hear of it, nor the next write find another hour's file open.
        _file.reset();
        VC_LOG_CONSOLE(Error, kLogFunction, "no memory for the log file");
    }
}

void AFileLogger::Write(void const* data, unsigned int length, Platform::CalendarTime const& now) {
    bool const newHour = _lastTime == nullptr || !SameHour(*_lastTime, now);
    if (!EnsureFile(newHour, now) || !EnsureRoom()) {
        return;
    }
    _file->Append(data, length);
    // A process that dies keeps its last line.
    _file->Flush();
    if (_sync == 0) {
        _file.reset();
    }
}

// A file that stands where it was opened has its directory: only a missing one asks for more.
bool AFileLogger::EnsureFile(bool newHour, Platform::CalendarTime const& now) {
    if (!newHour && _file != nullptr && _file->Exist()) {
        return true;
    }
    if (!EnsureDirectory()) {
        return false;
    }
    _lastTime = std::make_unique<Platform::CalendarTime>(now);
    if (!OpenFileOfHour()) {
        return false;
    }
    // Somebody may have deleted it again at once.
    if (!_file->Exist()) {
        VC_LOG_CONSOLE(Error, kLogFunction, "_logFile is null or file not exist");
        return false;
    }
    return true;
}

bool AFileLogger::EnsureDirectory() {
    if (!_directory.empty() && CFile::Exist(_directory.c_str())) {
        return true;
    }
    char const* cache = CPath::GetCachePath();
    if (AString::IsNullOrEmpty(cache)) {
        return false;
    }
    AString path(cache);
    CPath::AppendSubPath(path, kRootDirectory);
    if (!EnsureDirectoryAt(path)) {
        return false;
    }
    CPath::AppendSubPath(path, _name.c_str());
    if (!EnsureDirectoryAt(path)) {
        return false;
    }
    _directory = path;
    return true;
}

bool AFileLogger::EnsureRoom() {
    if (_sizeLimit <= 0 || static_cast<long long>(_file->GetLength()) <= _sizeLimit) {
        return true;
    }
    if (_exceedOperation == RefuseLines) {
        VC_LOG_CONSOLE(Info, kLogFunction, "_logFile size exceed return");
        return false;
    }
    if (_exceedOperation != RestartFile) {
        return true;
    }
    _file->Close();
    // If another process holds the file, this one text is lost: the next write opens it again.
    bool const removed = _file->Remove();
    _file.reset();
    return removed && OpenFileOfHour();
}

bool AFileLogger::OpenFileOfHour() {
    AString path;
    if (!FilePathByTime(path)) {
        VC_LOG_CONSOLE(Error, kLogFunction, "GetFilePathByTime failed!");
        return false;
    }
    _file = std::make_unique<CFile>();
    if (_file->Open(path.c_str(), FileModeAppend)) {
        return true;
    }
    VC_LOG_CONSOLE(Error, "Ubrix::AFileLogger::_OpenLogFile", "Failed to Open log files");
    _file.reset();
    VC_LOG_CONSOLE(Error, kLogFunction, "OpenLogFile failed!");
    return false;
}

bool AFileLogger::FilePathByTime(AString& path) const {
    if (_lastTime == nullptr || _directory.empty()) {
        return false;
    }
    char const* name = _name.length() <= kLongestNameInFile ? _name.c_str() : "Ubrix";
    char fileName[128];
    std::snprintf(fileName, sizeof fileName, "%s_%4d%02d%02d%02d.%s", name, _lastTime->year, _lastTime->month,
                  _lastTime->day, _lastTime->hour, _sync != 0 ? "log" : "xlog");
    path = _directory;
    CPath::AppendSubPath(path, fileName);
    return true;
}

}  // namespace Ubrix
