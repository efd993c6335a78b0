#include "Base/Configure/Pattern/FilePattern.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <vector>

#include "Base/Configure/Pattern/PatternElement.h"
#include "Base/Configure/Pattern/PatternProgram.h"

namespace Velmor {

namespace {

using Kind = PatternStep::Kind;
using Bits = std::uint64_t;

constexpr int kBits = 64;

bool IsSet(Bits const* row, int bit) {
    return (row[bit / kBits] >> (bit % kBits) & 1U) != 0;
}

void Set(Bits* row, int bit) {
    row[bit / kBits] |= Bits{1} << (bit % kBits);
}

std::size_t Size(int count) {
    return static_cast<std::size_t>(count);
}

}  // namespace

// For each place in the name, from its end to its start, it notes which steps lead to a match from there. The
// match itself is then a walk that never turns back.
//
// A turn of a loop that took nothing must not be followed by another one, so for a step inside of loops the
// answer also depends on how many of them, counted from the outermost, have taken something in their turn
// under way: `moved`. Each number has a row of bits, one a step. Beyond the loops around a step the number
// makes no difference, and the last row holds what counts after a byte was taken.
class FilePattern::Search {
public:
    explicit Search(std::string_view pattern);

    int Problem() const { return _program.Problem(); }
    int Match(std::string_view name, PatternCapture* captures, int captureCount);

private:
    PatternStep const& At(int step) const { return _program.Steps()[Size(step)]; }
    int NameSize() const { return static_cast<int>(_name.size()); }
    Bits* Row(int moved) { return &_rows[Size(moved) * _words]; }
    // The last row of a place.
    Bits* LastRow(int place) { return &_lastRows[Size(place) * _words]; }
    bool Leads(int step, int moved) { return IsSet(Row(moved), step); }
    bool StepLeads(PatternStep const& step, int number, int moved, int place);
    Bits const* TakersOf(unsigned char byte);
    void FillBytes(int place);
    void FillRows(int place);
    bool BeginsAsTold() const;
    int Start();
    int Walk(int place, PatternCapture* captures);
    int AfterTurn(PatternStep const& leave, int number, int& moved);

    PatternProgram const _program;
    std::size_t const _words;
    // The steps that are no Byte, last first.
    std::vector<int> _moves;
    // For each byte that a name held so far, which steps take it; where its row begins, or -1.
    std::vector<Bits> _takers;
    std::vector<int> _takersAt;
    std::vector<Bits> _rows;
    std::vector<Bits> _lastRows;
    std::string_view _name;
};

FilePattern::Search::Search(std::string_view pattern)
    : _program(pattern), _words(_program.Steps().size() / kBits + 1), _takersAt(UCHAR_MAX + 1, -1) {
    for (int step = static_cast<int>(_program.Steps().size()) - 1; step >= 0; --step) {
        if (At(step).kind != Kind::Byte) {
            _moves.push_back(step);
        }
    }
    _rows.resize(Size(_program.Depth() + 1) * _words);
}

int FilePattern::Search::Match(std::string_view name, PatternCapture* captures, int captureCount) {
    if (_program.Problem() != 0) {
        return _program.Problem();
    }
    if (captures != nullptr && captureCount < _program.GroupCount()) {
        return kPatternTooFewCaptures;
    }
    if (name.size() > kMaxPatternName) {
        return kPatternInternalError;
    }
    _name = name;
    if (!BeginsAsTold()) {
        return kPatternNoMatch;
    }
    _lastRows.resize(std::max(_lastRows.size(), (name.size() + 1) * _words));
    for (int place = NameSize(); place >= 0; --place) {
        FillRows(place);
        std::copy_n(Row(_program.Depth()), _words, LastRow(place));
    }
    int const start = Start();
    if (start < 0) {
        return kPatternNoMatch;
    }
    PatternCapture taken[kMaxPatternGroups];
    std::fill_n(taken, kMaxPatternGroups, PatternCapture{-1, 0});
    int const end = Walk(start, taken);
    if (captures != nullptr) {
        std::copy_n(taken, _program.GroupCount(), captures);
    }
    return end;
}

// False for a name whose first bytes aren't those that an anchored pattern begins with: most names, as a
// rule, and these cost no more.
bool FilePattern::Search::BeginsAsTold() const {
    if (At(0).kind != Kind::AtStart) {
        return true;
    }
    int step = 1;
    for (char const byte : _name) {
        if (At(step).kind != Kind::Byte) {
            return true;
        }
        if (!ElementMatches(At(step).element, static_cast<unsigned char>(byte))) {
            return false;
        }
        ++step;
    }
    return At(step).kind != Kind::Byte;
}

int FilePattern::Search::Start() {
    int const last = _program.IsAnchored() ? 0 : NameSize();
    for (int place = 0; place <= last; ++place) {
        if (IsSet(LastRow(place), 0)) {
            return place;
        }
    }
    return -1;
}

Bits const* FilePattern::Search::TakersOf(unsigned char byte) {
    int& at = _takersAt[byte];
    if (at < 0) {
        at = static_cast<int>(_takers.size());
        _takers.resize(_takers.size() + _words);
        for (int step = 0; step < static_cast<int>(_program.Steps().size()); ++step) {
            if (At(step).kind == Kind::Byte && ElementMatches(At(step).element, byte)) {
                Set(&_takers[Size(at)], step);
            }
        }
    }
    return &_takers[Size(at)];
}

// The bits of the steps that take the byte at `place`, into the first row.
void FilePattern::Search::FillBytes(int place) {
    Bits* const row = Row(0);
    if (place == NameSize()) {
        std::fill_n(row, _words, Bits{0});
        return;
    }
    Bits const* const takers = TakersOf(static_cast<unsigned char>(_name[Size(place)]));
    Bits const* const next = LastRow(place + 1);
    for (std::size_t word = 0; word < _words; ++word) {
        Bits const above = word + 1 < _words ? next[word + 1] << (kBits - 1) : 0;
        row[word] = (next[word] >> 1U | above) & takers[word];
    }
}

void FilePattern::Search::FillRows(int place) {
    FillBytes(place);
    for (int moved = 1; moved <= _program.Depth(); ++moved) {
        std::copy_n(Row(0), _words, Row(moved));
    }
    for (int moved = 0; moved <= _program.Depth(); ++moved) {
        for (int const number : _moves) {
            if (StepLeads(At(number), number, moved, place)) {
                Set(Row(moved), number);
            }
        }
    }
}

bool FilePattern::Search::StepLeads(PatternStep const& step, int number, int moved, int place) {
    switch (step.kind) {
        case Kind::AtStart:
            return place == 0 && Leads(number + 1, moved);
        case Kind::AtEnd:
            return place == NameSize() && Leads(number + 1, moved);
        case Kind::Fork:
            return Leads(step.first, moved) || Leads(step.second, moved);
        case Kind::Enter:
            return Leads(number + 1, step.level > 0 ? std::min(moved, step.level - 1) : moved);
        case Kind::Leave:
            return Leads(number + 1, moved) ||
                   (step.level > 0 && moved >= step.level && Leads(step.turn, step.level - 1));
        case Kind::Done:
            return true;
        default:
            return false;
    }
}

// Where to go on behind a turn that is through.
int FilePattern::Search::AfterTurn(PatternStep const& leave, int number, int& moved) {
    bool const mayGoOn = leave.level > 0 && moved >= leave.level && Leads(leave.turn, leave.level - 1);
    if (mayGoOn && !(leave.isSeldom && Leads(number + 1, moved))) {
        moved = leave.level - 1;
        return leave.turn;
    }
    return number + 1;
}

int FilePattern::Search::Walk(int place, PatternCapture* captures) {
    int turnBegin[kMaxPatternGroups];
    int moved = 0;
    FillRows(place);
    for (int number = 0;;) {
        PatternStep const& step = At(number);
        switch (step.kind) {
            case Kind::Byte:
                FillRows(++place);
                moved = _program.Depth();
                ++number;
                break;
            case Kind::Fork:
                number = Leads(step.first, moved) ? step.first : step.second;
                break;
            case Kind::Enter:
                turnBegin[step.group] = place;
                moved = step.level > 0 ? std::min(moved, step.level - 1) : moved;
                ++number;
                break;
            case Kind::Leave:
                captures[step.group] = {turnBegin[step.group], place - turnBegin[step.group]};
                turnBegin[step.group] = place;
                number = AfterTurn(step, number, moved);
                break;
            case Kind::Done:
                return place;
            default:
                ++number;
                break;
        }
    }
}

FilePattern::FilePattern(std::string_view pattern) : _search(std::make_unique<Search>(pattern)) {}

FilePattern::~FilePattern() = default;

FilePattern::FilePattern(FilePattern&&) noexcept = default;

int FilePattern::Problem() const {
    return _search->Problem();
}

int FilePattern::Match(std::string_view name, PatternCapture* captures, int captureCount) {
    return _search->Match(name, captures, captureCount);
}

int MatchPattern(std::string_view pattern, std::string_view name, PatternCapture* captures,
                 int captureCount) {
    return FilePattern(pattern).Match(name, captures, captureCount);
}

}  // namespace Velmor
