#include "Storage/File/FileReplacement.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "Platform/Random.h"

namespace Ubrix {

namespace {

// A temporary file is named after its target, with a point, eight hexadecimal digits and this behind it.
constexpr std::string_view kTemporaryEnd = ".tmp";
constexpr std::size_t kDigits = 8;

// Empty without randomness.
std::string TemporaryName(std::string const& target) {
    unsigned int number = 0;
    if (target.empty() || !Platform::RandomBytes(&number, sizeof number)) {
        return {};
    }
    char digits[kDigits + 1];
    std::snprintf(digits, sizeof digits, "%08x", number);
    return target + '.' + digits + std::string(kTemporaryEnd);
}

bool IsTemporaryNameOf(std::string_view target, std::string_view name) {
    std::size_t const digits = target.size() + 1;
    return name.size() == digits + kDigits + kTemporaryEnd.size() &&
           name.substr(0, target.size()) == target && name[target.size()] == '.' &&
           name.find_first_not_of("0123456789abcdef", digits) == digits + kDigits &&
           name.substr(digits + kDigits) == kTemporaryEnd;
}

}  // namespace

FileReplacement::FileReplacement(std::string const& target)
    : _target(target),
      _temporary(TemporaryName(target)),
      _file(_temporary.empty() ? Platform::File() : Platform::CreatePrivateFile(_temporary.c_str())),
      _state(_file.IsOpen() ? State::Writing : State::Failed) {}

FileReplacement::~FileReplacement() {
    if (_file.IsOpen() && _state != State::Committed) {
        Platform::DeleteFileAt(_temporary.c_str());
    }
}

void FileReplacement::Write(void const* bytes, std::size_t size) {
    if (_state == State::Writing && !_file.Write(bytes, size)) {
        _state = State::Failed;
    }
}

bool FileReplacement::Finish() {
    if (_state == State::Writing) {
        _state = _file.Finish() ? State::Finished : State::Failed;
    }
    return _state == State::Finished || _state == State::Committed;
}

bool FileReplacement::Commit() {
    if (_state == State::Finished && Platform::RenameOpenFile(_file, _temporary.c_str(), _target.c_str())) {
        _state = State::Committed;
    }
    return _state == State::Committed;
}

char const* FileReplacement::Obstacle() const {
    return _temporary.empty() ? "there is no randomness to be had" : "the disk didn't take it";
}

void FileReplacement::ClearLeftovers(std::string const& target) {
    std::size_t const bare = target.rfind('/') + 1;
    std::string const directory = bare == 0 ? "./" : target.substr(0, bare);
    std::vector<std::string> names;
    if (!Platform::ListDirectory(directory.c_str(), names)) {
        return;
    }
    for (std::string const& name : names) {
        if (IsTemporaryNameOf(std::string_view(target).substr(bare), name)) {
            Platform::DeleteAbandonedFile((directory + name).c_str());
        }
    }
}

}  // namespace Ubrix
