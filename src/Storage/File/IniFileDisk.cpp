// The INI file's dealings with the disk.
#include <utility>

#include "Platform/Boundary.h"
#include "Storage/File/FileReplacement.h"
#include "Storage/File/IniFileImp.h"
#include "Storage/File/OwnDirectories.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

bool CIniFileImpl::Refresh() {
    Platform::ScopedLock lock(_lock);
    return Reload() || _answer != Platform::FileAnswer::Failing;
}

bool CIniFileImpl::IsUnread() {
    Platform::ScopedLock lock(_lock);
    CatchUp();
    return _disk == Disk::Unread;
}

void CIniFileImpl::CatchUp() {
    if (_disk == Disk::Unread) {
        Reload();
    }
}

bool CIniFileImpl::Reload() {
    std::string content;
    if (ReadContent(content) != Platform::FileAnswer::Given) {
        return false;
    }
    IniLines lines;
    TakePlainText(content, lines);
    Take(lines);
    return true;
}

Platform::FileAnswer CIniFileImpl::ReadContent(std::string& content) {
    _answer = IsSafeForValues(_path.c_str())
                  ? Platform::ReadWholeFile(_path.c_str(), kMaxIniFileSize, content)
                  : Platform::FileAnswer::Failing;
    switch (_answer) {
        case Platform::FileAnswer::Given:
            break;
        case Platform::FileAnswer::Absent:
            Know();
            _wasAbsent = true;
            break;
        case Platform::FileAnswer::Failing:
            Leave(true);
            break;
        case Platform::FileAnswer::Refused:
            if (_disk != Disk::Foreign) {
                VC_LOG(Warning, "Ubrix::CIniFileImpl::Load",
                       "config file %s is no regular file of at most %u bytes that this user may read",
                       ForeignText(_path.c_str()).c_str(), kMaxIniFileSize);
            }
            Leave(false);
            break;
    }
    return _answer;
}

void CIniFileImpl::Take(IniLines& lines) {
    if (IsKnown() || !_edited) {
        _edited = false;
        _lines.Swap(lines);
    } else if (!_cleared) {
        lines.WriteAll(_lines);
        _lines.Swap(lines);
    }
    Know();
    _wasAbsent = false;
}

void CIniFileImpl::Know() {
    _disk = Disk::Known;
    _cleared = false;
    _toldUnread = false;
}

void CIniFileImpl::Leave(bool mayBeLater) {
    if (!mayBeLater) {
        _disk = Disk::Foreign;
    } else if (!IsKnown()) {
        _disk = Disk::Unread;
        if (!std::exchange(_toldUnread, true)) {
            VC_LOG(Warning, "Ubrix::CIniFileImpl::Load",
                   "config file %s can't be read now: it is left alone and tried again",
                   ForeignText(_path.c_str()).c_str());
        }
    }
}

bool CIniFileImpl::MoveAside() {
    constexpr char kFunction[] = "Ubrix::CIniFileImpl::Save";
    // What came first is the likeliest to be worth something, so only the last place is taken again.
    constexpr int kPlaces = 8;
    std::string aside;
    for (int place = 1; place <= kPlaces; ++place) {
        aside = _path + ".unreadable-" + std::to_string(place);
        if (!Platform::IsNameTaken(aside.c_str())) {
            break;
        }
    }
    if (!Platform::RenamePath(_path.c_str(), aside.c_str())) {
        return false;
    }
    VC_LOG(Error, kFunction, "config file %s couldn't be read: moved to %s, and begun anew",
           ForeignText(_path.c_str()).c_str(), ForeignText(aside.c_str()).c_str());
    return true;
}

char const* CIniFileImpl::MakeWay() {
    if (!IsSafeForValues(_path.c_str())) {
        return "its directory isn't this user's own";
    }
    if (!IsKnown()) {
        Reload();
    }
    if (_disk == Disk::Unread) {
        return "what stands there can't be read now";
    }
    if (_disk == Disk::Foreign) {
        if (!MoveAside()) {
            return "what stands there can't be read, nor moved aside";
        }
        Know();
    }
    return nullptr;
}

char const* CIniFileImpl::WriteFile() {
    if (char const* const obstacle = MakeWay()) {
        return obstacle;
    }
    FileReplacement replacement(_path);
    std::string_view const lineEnd = Platform::kLineEnd;
    std::size_t size = 0;
    _lines.ForEach([&](std::string const& line) {
        replacement.Write(line.data(), line.size());
        replacement.Write(lineEnd.data(), lineEnd.size());
        size += line.size() + lineEnd.size();
    });
    if (size > kMaxIniFileSize) {
        return "it is too large to be read again";
    }
    replacement.Finish();
    return replacement.Commit() ? nullptr : replacement.Obstacle();
}

bool CIniFileImpl::SaveChecked() {
    Platform::ScopedLock lock(_lock);
    char const* obstacle = nullptr;
    // What fails for a moment doesn't cost the save.
    for (int tries = 0; tries < 2; ++tries) {
        obstacle = AtBoundary("no memory is left", [this]() VC_REQUIRES(_lock) { return WriteFile(); });
        if (obstacle == nullptr) {
            break;
        }
    }
    if (obstacle != nullptr) {
        if (!std::exchange(_toldUnsaved, true)) {
            VC_LOG(Error, "Ubrix::CIniFileImpl::Save", "config file %s isn't saved: %s",
                   ForeignText(_path.c_str()).c_str(), obstacle);
        }
        return false;
    }
    _edited = false;
    _wasAbsent = false;
    _toldUnsaved = false;
    if (!std::exchange(_leftoversCleared, true)) {
        AtBoundary([this] { FileReplacement::ClearLeftovers(_path); });
    }
    return true;
}

void CIniFileImpl::SaveAtEnd() {
    Platform::ScopedLock lock(_lock);
    if (std::exchange(_savesAtEnd, false) &&
        (_edited || (_wasAbsent && !Platform::PathExists(_path.c_str())))) {
        SaveChecked();
    }
}

}  // namespace Ubrix
