// The retention side of AFileLogger: which files a module's directory keeps, and the thread that looks.
#include <algorithm>
#include <new>
#include <string>
#include <vector>

#include "Platform/Directory.h"
#include "Platform/MemoryWant.h"
#include "Platform/Thread.h"
#include "Storage/Log/AFileLogger.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LineBudget.h"
#include "Storage/Log/LogDirectories.h"
#include "Storage/Log/LogMacros.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

namespace {

constexpr char kStampFunction[] = "GetLogFileTimeStamp";
constexpr char kSweepFunction[] = "Ubrix::AFileLogger::RemoveOldLogFiles";

// YYYYMMDDHH.
constexpr std::size_t kTimeLength = 10;

struct StampedFile {
    std::string name;
    long long stamp;
};

// Cuts at every separator, so that "a__b" has three pieces.
std::vector<std::string> Pieces(std::string const& text, char separator) {
    std::vector<std::string> pieces(1);
    for (char const c : text) {
        if (c == separator) {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

bool IsTimeText(std::string const& text) {
    return text.size() == kTimeLength &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int DigitsAt(std::string const& text, std::size_t first, std::size_t count) {
    return std::stoi(text.substr(first, count));
}

bool IsExtension(std::string const& text) {
    return text == "log" || text == "xlog";
}

long long TimeOf(std::string const& text) {
    Platform::CalendarTime const calendar{
        DigitsAt(text, 0, 4), DigitsAt(text, 4, 2), DigitsAt(text, 6, 2), DigitsAt(text, 8, 2), 0, 0, 0};
    return Platform::CalendarToEpoch(calendar, Platform::DaylightSaving::Standard);
}

// The time of a file that is named `<prefix>_<time>.<extension>`. False for any other name.
bool ReadOwnName(std::string const& name, std::string const& prefix, long long& stamp) {
    std::size_t const time = prefix.size() + 1;
    std::size_t const point = time + kTimeLength;
    if (name.size() <= point || name.compare(0, time, prefix + "_") != 0 || name[point] != '.' ||
        !IsTimeText(name.substr(time, kTimeLength)) || !IsExtension(name.substr(point + 1))) {
        return false;
    }
    stamp = TimeOf(name.substr(time, kTimeLength));
    return true;
}

// The module's own files with the times of their names, oldest first.
std::vector<StampedFile> FilesByAge(std::vector<std::string> const& names, std::string const& prefix) {
    std::vector<StampedFile> files;
    LineBudget foreign;
    for (std::string const& name : names) {
        long long stamp = 0;
        if (ReadOwnName(name, prefix, stamp)) {
            files.push_back({name, stamp});
        } else if (foreign.Allows()) {
            AFileLogger::GetLogFileTimeStamp(name);
        }
    }
    foreign.TellRest(ALogPriorityWarning, kSweepFunction);
    std::stable_sort(files.begin(), files.end(),
                     [](StampedFile const& a, StampedFile const& b) { return a.stamp < b.stamp; });
    return files;
}

struct Plan {
    void (*start)();
    char const* name;
};

void RunPlan(void* argument) {
    Plan const plan = *static_cast<Plan*>(argument);
    delete static_cast<Plan*>(argument);
    Platform::NameCurrentThread(plan.name);
    try {
        Platform::UnwindScope const scope;
        plan.start();
    } catch (std::bad_alloc const&) {
        VC_LOG_CONSOLE(Error, "Ubrix::LogCreateThread", "no memory for the work of %s", plan.name);
    }
}

}  // namespace

void LogCreateThread(void (*start)(), char const* name) {
    auto* const plan = new (std::nothrow) Plan{start, name};
    void* handle = nullptr;
    if (plan != nullptr && !Platform::StartThread(RunPlan, plan, &handle)) {
        delete plan;
    }
    VC_LOG_CONSOLE(Info, "Ubrix::LogCreateThread", "CreateThread %s:%p", name, handle);
}

void AFileLogger::RemoveOldLogFiles(char const* name, int hours, int maxCount) {
    try {
        Platform::UnwindScope const scope;
        Sweep(name, hours, maxCount);
    } catch (std::bad_alloc const&) {
        VC_LOG_CONSOLE(Error, kSweepFunction, "no memory for the sweep of old log files");
    }
}

void AFileLogger::Sweep(char const* name, int hours, int maxCount) {
    LogDirectories const directories(name);
    // A link in the place of either directory leads to what isn't ours.
    if (directories.cache.empty() || !Platform::Directory(directories.all.c_str()).IsOpen()) {
        return;
    }
    Platform::Directory const directory(directories.own.c_str());
    std::vector<std::string> names;
    if (!directory.IsOpen() || !directory.List(names)) {
        return;
    }
    std::vector<StampedFile> const files = FilesByAge(names, FilePrefix(name));
    std::size_t first = 0;
    if (maxCount >= 0 && files.size() > static_cast<std::size_t>(maxCount)) {
        first = files.size() - static_cast<std::size_t>(maxCount);
        for (std::size_t i = 0; i < first; ++i) {
            directory.Remove(files[i].name.c_str());
        }
    }
    long long const now = ClockSource::Current().EpochSeconds();
    for (std::size_t i = first; i < files.size(); ++i) {
        if (now - files[i].stamp > static_cast<long long>(hours) * 3600) {
            VC_LOG_CONSOLE(Debug, kSweepFunction, "RemoveOldLog log fileName %s", files[i].name.c_str());
            directory.Remove(files[i].name.c_str());
        }
    }
}

long long AFileLogger::GetLogFileTimeStamp(std::string const& fileName) {
    std::vector<std::string> const parts = Pieces(fileName, '_');
    std::vector<std::string> const tail =
        parts.size() == 2 ? Pieces(parts[1], '.') : std::vector<std::string>();
    if (tail.size() != 2) {
        VC_LOG_CONSOLE(Warning, kStampFunction, "logFile is invalid %s", ForeignText(fileName).c_str());
        return 0;
    }
    if (!IsExtension(tail[1])) {
        VC_LOG_CONSOLE(Warning, kStampFunction, "logFile Ext is invalid %s , ext %s",
                       ForeignText(fileName).c_str(), ForeignText(tail[1]).c_str());
        return 0;
    }
    std::string const& time = tail[0];
    if (!IsTimeText(time)) {
        VC_LOG_CONSOLE(Warning, kStampFunction, "logTime is invalid %s", ForeignText(fileName).c_str());
        return 0;
    }
    return TimeOf(time);
}

}  // namespace Ubrix
