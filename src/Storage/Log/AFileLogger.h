// The log files on disk: one a module and local hour,
// <cache>/VelmorSDKLog/<module>/<module>_<YYYYMMDDHH>.log.
// Sources: AFileLogger.cpp, LogRetention.cpp
#pragma once

#include <VelmorCore/Object.h>

#include <memory>
#include <string>

#include "Platform/FileSystem.h"
#include "Platform/Mutex.h"
#include "Platform/SystemClock.h"

namespace Ubrix {

// Thread-safe. Failures, want of memory included, cost the text at hand and are told on the console, since a
// failing log file can't tell of itself; the next write starts afresh.
//
// Lines hold what others may not read, so the files and their directories are this user's alone, and no link
// at the place of a file or of the two directories is followed.
class AFileLogger {
public:
    // What happens when the file is longer than the limit.
    enum ExceedOperation : int { RestartFile = 0, RefuseLines = 1 };

    // Creates nothing on disk. `sync` other than 0 keeps the file open between writes, under the extension
    // "log"; 0 closes it after each write, under "xlog". `sizeLimitMiB` of 0 or less means no limit.
    AFileLogger(char const* name, int sync, int sizeLimitMiB, int exceedOperation);
    AFileLogger(AFileLogger const&) = delete;
    AFileLogger& operator=(AFileLogger const&) = delete;
    ~AFileLogger() = default;

    // Appends to the file of the current hour. Null `data` or a zero `length` does nothing.
    void Log2File(void const* data, unsigned int length);
    void Log2File(char const* text);

    // Deletes the oldest files of the module `name` beyond `maxCount` (a negative count sets no limit), then
    // all that are older than `hours`. Only files that are named as this class names that module's count;
    // a Warning line on the console tells of each other one.
    static void RemoveOldLogFiles(char const* name, int hours, int maxCount);

    // The time that a bare file name declares, in seconds since 1970-01-01 UTC; 0, with a Warning line, for a
    // name that isn't a log file's.
    static long long GetLogFileTimeStamp(std::string const& fileName);

private:
    // A longer module name leaves no room for itself in a file name.
    static constexpr std::size_t kLongestNameInFile = 109;

    static char const* FilePrefix(char const* name);
    static void Sweep(char const* name, int hours, int maxCount);
    void Write(void const* data, unsigned int length, Platform::CalendarTime const& now) VC_REQUIRES(_lock);
    bool EnsureDirectory() VC_REQUIRES(_lock);
    bool EnsureFile(bool newHour, Platform::CalendarTime const& now) VC_REQUIRES(_lock);
    bool FileExists() const VC_REQUIRES(_lock);
    bool EnsureRoom() VC_REQUIRES(_lock);
    bool OpenFileOfHour() VC_REQUIRES(_lock);
    bool FilePathByTime(AString& path) const VC_REQUIRES(_lock);
    bool EndHalfLine() VC_REQUIRES(_lock);

    // Guards everything below that changes, and is held for the length of a write: that keeps lines whole.
    // Under it only the file system and the console are called.
    Platform::RecursiveMutex _lock;
    Platform::File _file VC_GUARDED_BY(_lock);
    AString _filePath VC_GUARDED_BY(_lock);
    std::unique_ptr<Platform::CalendarTime> _lastTime VC_GUARDED_BY(_lock);
    AString _directory VC_GUARDED_BY(_lock);
    AString const _name;
    int const _sync;
    long long const _sizeLimit;
    int const _exceedOperation;
};

// Runs `start`, the sweep of old files for one, on a detached thread of its own, so that logging needs
// nothing of the worker threads, and logs "CreateThread %s:%p" with `name` and the thread's handle, null if
// the system refused.
void LogCreateThread(void (*start)(), char const* name);

}  // namespace Ubrix
