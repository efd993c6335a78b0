// The files that an upload order means.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "Base/Configure/Pattern/FilePattern.h"
#include "Base/Configure/UploadOrder.h"
#include "Storage/Log/LineBudget.h"

namespace Velmor {

// A file to be packed.
struct UploadMatch {
    std::string directory;
    std::string name;
};

// One search. It ends at the limits of an order, with what it has, and says so; each path comes up once.
// Belongs to its order's thread; the stop flag may go up on any other.
class UploadSearch {
public:
    UploadSearch(UploadOrder const& order, UploadStop const& stop);

    std::vector<UploadMatch> Run();

private:
    using LineBudget = Ubrix::LineBudget;

    void ReadPatterns();
    bool MayGoOn();
    void SearchDirectory(std::string const& directory);
    bool IsSearchable(char const* path);
    std::vector<std::string> SortedNames(char const* directory);
    void Judge(std::string const& directory, std::string const& name);
    bool Matches(std::string const& name);
    void TellRests() const;

    UploadOrder const& _order;
    UploadStop const& _stop;
    long long const _deadline;
    std::vector<std::string> const _patternTexts;
    std::vector<FilePattern> _patterns;
    std::vector<UploadMatch> _matches;
    std::set<std::string> _paths;
    std::size_t _namesLeft = kMaxOrderNames;
    bool _isCut = false;
    LineBudget _badPatterns;
    LineBudget _badPaths;
    LineBudget _matchLines;
    LineBudget _dismatchLines;
};

}  // namespace Velmor
