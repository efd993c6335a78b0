#include "Storage/File/FileReplacement.h"

#include "Platform/FileSystem.h"
#include "Platform/Random.h"

namespace Ubrix {

namespace {

std::string TemporaryName(std::string const& target) {
    unsigned int number = 0;
    if (!Platform::RandomBytes(&number, sizeof number)) {
        number = 0;  // Less distinct, no less safe.
    }
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, ".%08x.tmp", number);
    return target + suffix;
}

}  // namespace

FileReplacement::FileReplacement(std::string const& target)
    : _target(target),
      _temporary(TemporaryName(target)),
      _stream(target.empty() ? nullptr : Platform::OpenPrivateForWriting(_temporary.c_str())),
      _state(_stream != nullptr ? State::Writing : State::Failed) {}

FileReplacement::~FileReplacement() {
    Finish();
    if (_state == State::Finished) {
        Platform::DeleteFileAt(_temporary.c_str());
    }
}

void FileReplacement::Write(void const* bytes, std::size_t size) {
    if (_state == State::Writing && size != 0 && std::fwrite(bytes, 1, size, _stream) != size) {
        _state = State::Failed;
    }
}

bool FileReplacement::Finish() {
    if (_stream != nullptr) {
        bool const closed = std::fclose(_stream) == 0;
        _stream = nullptr;
        if (_state == State::Writing) {
            _state = closed ? State::Finished : State::Failed;
        }
        if (_state == State::Failed) {
            Platform::DeleteFileAt(_temporary.c_str());
        }
    }
    return _state == State::Finished || _state == State::Committed;
}

bool FileReplacement::Commit() {
    if (_state == State::Finished && Platform::RenamePath(_temporary.c_str(), _target.c_str())) {
        _state = State::Committed;
    }
    return _state == State::Committed;
}

}  // namespace Ubrix
