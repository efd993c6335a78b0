#include "Base/Configure/UploadSearch.h"

#include <VelmorCore/File.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "Platform/FileSystem.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogDirectories.h"
#include "Storage/Log/LogMacros.h"
#include "System/Time/ClockSource.h"

namespace Velmor {

using Ubrix::CFile;
using Ubrix::ClockSource;
using Ubrix::ForeignText;

namespace {

// What a search path means: a marker means a directory of log files, whatever follows it.
std::string ResolvePath(std::string const& path) {
    static constexpr struct {
        char const* marker;
        char const* module;
    } kMarkers[] = {{"VELMOR_LOG_DIR", "Velmor"}, {"VELMOR_CORE_LOG_DIR", "VelmorCore"}};
    for (auto const& one : kMarkers) {
        if (path.rfind(one.marker, 0) == 0) {
            return Ubrix::LogDirectories(one.module).own.c_str();
        }
    }
    return path;
}

}  // namespace

UploadSearch::UploadSearch(UploadOrder const& order, UploadStop const& stop)
    : _order(order),
      _stop(stop),
      _deadline(ClockSource::Current().MonotonicMilliseconds() + kMaxOrderSearchMilliseconds),
      _patternTexts(SplitAtBars(order.filePatterns)) {}

std::vector<UploadMatch> UploadSearch::Run() {
    ReadPatterns();
    for (std::string const& path : SplitAtBars(_order.searchPaths)) {
        if (!MayGoOn()) {
            break;
        }
        SearchDirectory(ResolvePath(path));
    }
    TellRests();
    return std::move(_matches);
}

void UploadSearch::ReadPatterns() {
    for (std::string const& text : _patternTexts) {
        int const problem = _patterns.emplace_back(text).Problem();
        if (problem != 0 && _badPatterns.Allows()) {
            VC_LOG(Warning, kUploadOrderFunction, "filePattern %s matches nothing, %d",
                   ForeignText(text).c_str(), problem);
        }
    }
}

bool UploadSearch::MayGoOn() {
    bool const isOver = _matches.size() >= kMaxOrderFiles || _namesLeft == 0 ||
                        ClockSource::Current().MonotonicMilliseconds() > _deadline;
    if (isOver && !std::exchange(_isCut, true)) {
        VC_LOG(Warning, kUploadOrderFunction,
               "the search ends at its limits, %zu files of %zu names, the rest is left out", _matches.size(),
               kMaxOrderNames - _namesLeft);
    }
    return !isOver && !_stop;
}

bool UploadSearch::IsSearchable(char const* path) {
    bool const exists = CFile::Exist(path);
    if (exists && CFile::IsDir(path)) {
        return true;
    }
    if (_badPaths.Allows()) {
        VC_LOG(Error, kUploadOrderFunction,
               exists ? "search path %s is not a dir" : "search path %s is not exit",
               ForeignText(path).c_str());
    }
    return false;
}

// One more than may be looked at shows that there are more.
std::vector<std::string> UploadSearch::SortedNames(char const* directory) {
    std::vector<std::string> names;
    if (!Ubrix::Platform::ListDirectory(directory, names, _namesLeft + 1)) {
        std::printf("%s not found!!!\n", ForeignText(directory).c_str());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void UploadSearch::SearchDirectory(std::string const& directory) {
    if (!IsSearchable(directory.c_str())) {
        return;
    }
    for (std::string const& name : SortedNames(directory.c_str())) {
        if (!MayGoOn()) {
            return;
        }
        Judge(directory, name);
        --_namesLeft;
    }
}

void UploadSearch::Judge(std::string const& directory, std::string const& name) {
    if (Matches(name) && _paths.insert(directory + "/" + name).second) {
        _matches.push_back({directory, name});
    }
}

// The first pattern that matches ends the look: a path is packed once.
bool UploadSearch::Matches(std::string const& name) {
    for (std::size_t i = 0; i < _patterns.size() && MayGoOn(); ++i) {
        if (_patterns[i].Match(name) >= 0) {
            if (_matchLines.Allows()) {
                VC_LOG(Info, kUploadOrderFunction, "fileName %s match ", ForeignText(name).c_str());
            }
            return true;
        }
        if (_dismatchLines.Allows()) {
            VC_LOG(Warning, kUploadOrderFunction, "fileName %s dismatch filePattern %s",
                   ForeignText(name).c_str(), ForeignText(_patternTexts[i]).c_str());
        }
    }
    return false;
}

void UploadSearch::TellRests() const {
    _badPatterns.TellRest(ALogPriorityWarning, kUploadOrderFunction);
    _badPaths.TellRest(ALogPriorityError, kUploadOrderFunction);
    _matchLines.TellRest(ALogPriorityInfo, kUploadOrderFunction);
    _dismatchLines.TellRest(ALogPriorityWarning, kUploadOrderFunction);
}

}  // namespace Velmor
