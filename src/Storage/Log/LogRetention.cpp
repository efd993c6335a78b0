// The retention side of AFileLogger: which files a module's directory keeps.
#include <algorithm>
#include <string>
#include <vector>

#include "Storage/Log/AFileLogger.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

namespace {

constexpr char kStampFunction[] = "GetLogFileTimeStamp";

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
    return text.size() == 10 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int DigitsAt(std::string const& text, std::size_t first, std::size_t count) {
    return std::stoi(text.substr(first, count));
}

void RemoveFile(std::string const& directory, std::string const& name) {
    AString path(directory.c_str());
    CPath::AppendSubPath(path, name.c_str());
    CFile::Remove(path.c_str());
}

// The directory's files with the times of their names, oldest first. Each name is read once, so a foreign one
// is reported once.
std::vector<StampedFile> FilesByAge(AArray const& names) {
    std::vector<StampedFile> files;
    for (int i = 0; i < names.Count(); ++i) {
        std::string const name = names.CStringAtIndex(i);
        files.push_back({name, AFileLogger::GetLogFileTimeStamp(name)});
    }
    std::stable_sort(files.begin(), files.end(),
                     [](StampedFile const& a, StampedFile const& b) { return a.stamp < b.stamp; });
    return files;
}

}  // namespace

void AFileLogger::RemoveOldLogFiles(char const* name, int hours, int maxCount) {
    char const* cache = CPath::GetCachePath();
    if (AString::IsNullOrEmpty(cache)) {
        return;
    }
    AString path(cache);
    CPath::AppendSubPath(path, "VelmorSDKLog");
    CPath::AppendSubPath(path, name);
    AArray names;
    if (!CFile::Exist(path.c_str()) || !CPath::GetFiles(path.c_str(), &names)) {
        return;
    }
    std::string const directory = path.c_str();
    std::vector<StampedFile> const files = FilesByAge(names);
    std::size_t first = 0;
    if (maxCount >= 0 && files.size() > static_cast<std::size_t>(maxCount)) {
        first = files.size() - static_cast<std::size_t>(maxCount);
        for (std::size_t i = 0; i < first; ++i) {
            RemoveFile(directory, files[i].name);
        }
    }
    long long const now = ClockSource::Current().EpochSeconds();
    for (std::size_t i = first; i < files.size(); ++i) {
        if (now - files[i].stamp > static_cast<long long>(hours) * 3600) {
            VC_LOG_CONSOLE(Debug, "Ubrix::AFileLogger::RemoveOldLogFiles", "RemoveOldLog log fileName %s",
                           ForeignText(files[i].name).c_str());
            RemoveFile(directory, files[i].name);
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
    if (tail[1] != "log" && tail[1] != "xlog") {
        VC_LOG_CONSOLE(Warning, kStampFunction, "logFile Ext is invalid %s , ext %s",
                       ForeignText(fileName).c_str(), ForeignText(tail[1]).c_str());
        return 0;
    }
    std::string const& time = tail[0];
    if (!IsTimeText(time)) {
        VC_LOG_CONSOLE(Warning, kStampFunction, "logTime is invalid %s", ForeignText(fileName).c_str());
        return 0;
    }
    Platform::CalendarTime const calendar{
        DigitsAt(time, 0, 4), DigitsAt(time, 4, 2), DigitsAt(time, 6, 2), DigitsAt(time, 8, 2), 0, 0, 0};
    return Platform::CalendarToEpoch(calendar, Platform::DaylightSaving::Standard);
}

}  // namespace Ubrix
