#include "Storage/Log/AFileLogger.h"

#include <VelmorCore/File.h>

#include <cstdio>
#include <cstring>
#include <new>

#include "Platform/Directory.h"
#include "Platform/MemoryWant.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogDirectories.h"
#include "Storage/Log/LogMacros.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

namespace {

constexpr char kLogFunction[] = "Ubrix::AFileLogger::Log2File";

bool SameHour(Platform::CalendarTime const& a, Platform::CalendarTime const& b) {
    return a.hour == b.hour && a.day == b.day && a.month == b.month && a.year == b.year;
}

bool Exists(AString const& directory) {
    return Platform::Directory(directory.c_str()).IsOpen();
}

bool EnsureDirectoryAt(AString const& path) {
    if (Exists(path) || Platform::MakeDirectory(path.c_str())) {
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
        Platform::UnwindScope const scope;
        Write(data, length, now);
    } catch (std::bad_alloc const&) {
        // The caller, who may be C, must not hear of it, nor the next write find another hour's file open.
        _file.Close();
        VC_LOG_CONSOLE(Error, kLogFunction, "no memory for the log file");
    }
}

void AFileLogger::Write(void const* data, unsigned int length, Platform::CalendarTime const& now) {
    bool const newHour = _lastTime == nullptr || !SameHour(*_lastTime, now);
    if (!EnsureFile(newHour, now) || !EnsureRoom()) {
        return;
    }
    // A process that dies keeps its last line. After a failure the file is looked at anew: half of the text
    // may have gone out.
    bool const written = _file.Write(data, length) && _file.Flush();
    if (!written || _sync == 0) {
        _file.Close();
    }
}

// A file that is where it was opened has its directory: only a missing one asks for more.
bool AFileLogger::EnsureFile(bool newHour, Platform::CalendarTime const& now) {
    if (!newHour && FileExists()) {
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
    if (!FileExists()) {
        VC_LOG_CONSOLE(Error, kLogFunction, "_logFile is null or file not exist");
        return false;
    }
    return true;
}

bool AFileLogger::EnsureDirectory() {
    if (!_directory.empty() && Exists(_directory)) {
        return true;
    }
    LogDirectories const directories(_name.c_str());
    if (directories.cache.empty() || !EnsureDirectoryAt(directories.cache) ||
        !EnsureDirectoryAt(directories.all) || !EnsureDirectoryAt(directories.own)) {
        return false;
    }
    _directory = directories.own;
    return true;
}

bool AFileLogger::FileExists() const {
    return _file.IsOpen() && Platform::PathExists(_filePath.c_str());
}

bool AFileLogger::EnsureRoom() {
    if (_sizeLimit <= 0 || _file.Length() <= _sizeLimit) {
        return true;
    }
    if (_exceedOperation == RefuseLines) {
        VC_LOG_CONSOLE(Info, kLogFunction, "_logFile size exceed return");
        return false;
    }
    if (_exceedOperation != RestartFile) {
        return true;
    }
    _file.Close();
    // If another process holds the file, this one text is lost: the next write opens it again.
    return Platform::DeleteFileAt(_filePath.c_str()) && OpenFileOfHour();
}

bool AFileLogger::OpenFileOfHour() {
    _file.Close();
    if (!FilePathByTime(_filePath)) {
        VC_LOG_CONSOLE(Error, kLogFunction, "GetFilePathByTime failed!");
        return false;
    }
    _file = Platform::OpenPrivateForAppending(_filePath.c_str());
    if (_file.IsOpen() && _sync == 0) {
        // A block goes out in one piece: less of a killed process's last one is half written.
        _file.LeaveUnbuffered();
    }
    if (_file.IsOpen() && EndHalfLine()) {
        return true;
    }
    VC_LOG_CONSOLE(Error, "Ubrix::AFileLogger::_OpenLogFile", "Failed to Open log files");
    _file.Close();
    VC_LOG_CONSOLE(Error, kLogFunction, "OpenLogFile failed!");
    return false;
}

// What a killed process left of its last line mustn't become the head of the next. Blocks need no such thing.
bool AFileLogger::EndHalfLine() {
    if (_sync == 0 || !_file.Seek(-1, Platform::File::From::End)) {
        return true;
    }
    char last = '\n';
    _file.Read(&last, 1);
    return _file.Seek(0, Platform::File::From::End) && (last == '\n' || _file.Write("\n", 1));
}

char const* AFileLogger::FilePrefix(char const* name) {
    return std::strlen(name) <= kLongestNameInFile ? name : "Ubrix";
}

bool AFileLogger::FilePathByTime(AString& path) const {
    if (_lastTime == nullptr || _directory.empty()) {
        return false;
    }
    char fileName[128];
    std::snprintf(fileName, sizeof fileName, "%s_%4d%02d%02d%02d.%s", FilePrefix(_name.c_str()),
                  _lastTime->year, _lastTime->month, _lastTime->day, _lastTime->hour,
                  _sync != 0 ? "log" : "xlog");
    path = _directory;
    CPath::AppendSubPath(path, fileName);
    return true;
}

}  // namespace Ubrix
