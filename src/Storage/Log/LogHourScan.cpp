// The search of a block file by hour.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "Platform/File.h"
#include "Storage/Log/LogCrypt.h"

namespace Ubrix {

namespace {

using Layout = LogBlockLayout;

constexpr long long kHeader = Layout::kHeaderSize;
constexpr long long kTail = Layout::kTailSize;

template <typename... Arguments>
std::string Message(char const* format, Arguments... arguments) {
    char text[1024];
    std::snprintf(text, sizeof text, format, arguments...);
    return text;
}

char const* SystemError() {
    return std::strerror(errno);
}

// A file read mostly forwards. Heads come from a piece in memory, so that junk costs no system call a byte.
class PieceReader {
public:
    PieceReader(Platform::File& file, long long size) : _file(file), _size(size) {}

    long long Size() const { return _size; }
    // The head at `position`; null if it can't be read.
    char const* HeadAt(long long position) {
        if (!Holds(position, kHeader) && !Load(position)) {
            return nullptr;
        }
        return _piece + (position - _begin);
    }
    // Goes to a byte that ByteThere then reads. Both answer false if the system refuses.
    bool GoTo(long long position) {
        _there = position;
        return Holds(position, 1) || _file.Seek(position, Platform::File::From::Begin);
    }
    bool ByteThere(char& byte) {
        if (Holds(_there, 1)) {
            byte = _piece[_there - _begin];
            return true;
        }
        return _file.Read(&byte, 1) == 1;
    }

private:
    bool Holds(long long position, long long count) const {
        return position >= _begin && position + count <= _end;
    }
    bool Load(long long position) {
        _begin = _end = position;
        if (!_file.Seek(position, Platform::File::From::Begin)) {
            return false;
        }
        _end += static_cast<long long>(_file.Read(_piece, sizeof _piece));
        return Holds(position, kHeader);
    }

    Platform::File& _file;
    long long const _size;
    long long _begin = 0;
    long long _end = 0;
    long long _there = 0;
    char _piece[4096];
};

// Takes the blocks of a file in their order, and keeps the range that holds the hours asked for.
class HourRange {
public:
    HourRange(int beginHour, int endHour) : _beginHour(beginHour), _endHour(endHour) {}

    void Take(long long from, long long to, int begin, int end) {
        if (end < begin) {
            // Over midnight: the block counts as of the later day.
            begin = end;
        }
        if (!_found && Opens(begin, end)) {
            _beginPos = from;
            _found = true;
        }
        if (_found) {
            if (begin < _endHour && _endHour <= end) {
                _endPos = to;
            }
            if (_lastEnd < _endHour && _endHour <= begin) {
                _endPos = _lastEndPos;
            }
        }
        _lastEnd = end;
        _lastEndPos = to;
    }
    void Finish(long long fileSize) {
        if (_found && _lastEnd < _endHour) {
            _endPos = fileSize;
        }
    }
    long long BeginPos() const { return _beginPos; }
    long long EndPos() const { return _endPos; }

private:
    bool Opens(int begin, int end) const {
        return (begin < _beginHour && _beginHour <= end) || (_lastEnd < _beginHour && _beginHour <= begin);
    }

    int const _beginHour;
    int const _endHour;
    bool _found = false;
    int _lastEnd = -1;
    long long _lastEndPos = 0;
    long long _beginPos = 0;
    long long _endPos = 0;
};

enum class Step { Sound, Damaged, Stop };

// Whether a block starts at `position`, and where it ends. `note` says why a scan stops.
Step ReadBlock(PieceReader& file, long long position, long long& end, char const*& head, std::string& note) {
    if (position + kHeader + kTail > file.Size()) {
        note = "ftell(file) + __GetHeaderLen() + sizeof(kMagicEnd)) > file_size error";
        return Step::Stop;
    }
    auto const before = static_cast<long>(position);
    head = file.HeadAt(position);
    if (head == nullptr) {
        note = Message("fread(buff.Ptr(), 1, __GetHeaderLen(), file) error:%s, before_len:%ld.",
                       SystemError(), before);
        return Step::Stop;
    }
    int begin = 0;
    int last = 0;
    std::uint32_t const length = LogCrypt::GetBodyLength(head, Layout::kHeaderSize);
    end = position + kHeader + kTail + length;
    if (!LogCrypt::ReadHours(head, Layout::kHeaderSize, begin, last) || end > file.Size()) {
        return Step::Damaged;
    }
    if (!file.GoTo(end - kTail)) {
        note =
            Message("fseek(file, len, SEEK_CUR):%s, before_len:%ld, len:%u.", SystemError(), before, length);
        return Step::Stop;
    }
    char endByte = 0;
    if (!file.ByteThere(endByte)) {
        note =
            Message("fread(&end, 1, 1, file) err:%s, before_len:%ld, len:%u.", SystemError(), before, length);
        return Step::Stop;
    }
    return endByte == LogCrypt::kMagicEnd ? Step::Sound : Step::Damaged;
}

// Each turn goes ahead by a byte at least, so the file's size bounds them.
std::string ScanBlocks(PieceReader& file, HourRange& range) {
    std::string note;
    for (long long position = 0;;) {
        long long end = 0;
        char const* head = nullptr;
        Step const step = ReadBlock(file, position, end, head, note);
        if (step == Step::Stop) {
            return note;
        }
        if (step == Step::Damaged) {
            ++position;
            continue;
        }
        int begin = 0;
        int last = 0;
        LogCrypt::ReadHours(head, Layout::kHeaderSize, begin, last);
        range.Take(position, end, begin, last);
        position = end;
    }
}

}  // namespace

bool LogCrypt::FindHourRange(char const* logPath, int beginHour, int endHour, unsigned long& beginPos,
                             unsigned long& endPos, std::string& errorText) {
    if (logPath == nullptr || endHour <= beginHour) {
        errorText += Message("NULL == _logPath || _endHour <= _beginHour, %d, %d", beginHour, endHour);
        return false;
    }
    Platform::File file = Platform::File::Open(logPath, Platform::File::Mode::Read);
    if (!file.IsOpen()) {
        errorText += Message("open file fail:%s", SystemError());
        return false;
    }
    // The reader's piece is buffer enough.
    file.LeaveUnbuffered();
    bool const hasEnd = file.Seek(0, Platform::File::From::End);
    long long const size = hasEnd ? file.Position() : -1;
    if (size < 0) {
        errorText += Message("fseek(file, 0, SEEK_END):%s", SystemError());
        return false;
    }
    if (!file.Seek(0, Platform::File::From::Begin)) {
        errorText += Message("fseek(file, 0, SEEK_SET) error:%s", SystemError());
        return false;
    }
    PieceReader reader(file, size);
    HourRange range(beginHour, endHour);
    std::string const note = ScanBlocks(reader, range);
    range.Finish(size);
    beginPos = static_cast<unsigned long>(range.BeginPos());
    endPos = static_cast<unsigned long>(range.EndPos());
    if (beginPos < endPos) {
        return true;
    }
    errorText += note + Message("begintpos:%lu, endpos:%lu, filesize:%lld.", beginPos, endPos, size);
    return false;
}

}  // namespace Ubrix
