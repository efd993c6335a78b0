// A pattern of the server's, up to the first line feed, on a file's name, behind it. What the library answers
// is held against a matcher that tries every way, where that comes to an end.
#include "Base/Configure/Pattern/FilePattern.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "Base/Configure/Pattern/PatternElement.h"
#include "Base/Configure/Pattern/PatternTables.h"

namespace {

using namespace Velmor;

// Each may nest in the one before, on the stack.
constexpr int kMaxTries = 5000;

// Tries every way, in the order that the pattern gives, on the pattern's text itself.
class Trial {
public:
    Trial(std::string_view pattern, std::string_view name) : _pattern(pattern), _name(name) {
        _tables.Read(pattern);
    }
    bool IsGivenUp() const { return _tries > kMaxTries; }
    int Run() {
        int const last = !_pattern.empty() && _pattern[0] == '^' ? 0 : static_cast<int>(_name.size());
        for (int start = 0; start <= last && !IsGivenUp(); ++start) {
            int found = -1;
            if (Alternatives(_tables.At(0), start, [&](int end) { return (found = end) >= 0; })) {
                return found;
            }
        }
        return kPatternNoMatch;
    }

private:
    using Then = std::function<bool(int)>;
    struct Loop {
        int least, most, length;
        bool isSeldom;
    };

    char PatternAt(int at) const { return _pattern[static_cast<std::size_t>(at)]; }
    std::string_view PatternFrom(int at) const { return _pattern.substr(static_cast<std::size_t>(at)); }
    Loop LoopAt(int at, int end) const {
        int const length = at < end ? QuantifierLength(PatternFrom(at)) : 0;
        if (length == 0) {
            return {1, 1, 0, false};
        }
        return {PatternAt(at) == '+' ? 1 : 0, PatternAt(at) == '?' ? 1 : 1000000, length, length == 2};
    }
    bool Alternatives(PatternTables::Group const& group, int place, Then const& then) {
        int begin = group.begin;
        for (int bar = group.firstBar; bar >= 0; bar = _tables.NextBar(bar)) {
            if (Sequence(begin, _tables.BarOffset(bar), place, then)) {
                return true;
            }
            begin = _tables.BarOffset(bar) + 1;
        }
        return Sequence(begin, group.end, place, then);
    }
    bool Sequence(int at, int end, int place, Then const& then) {
        if (++_tries > kMaxTries) {
            return false;
        }
        if (at == end) {
            return then(place);
        }
        char const kind = PatternAt(at);
        if (kind == '^' || kind == '$') {
            bool const holds = place == (kind == '^' ? 0 : static_cast<int>(_name.size()));
            return holds && Sequence(at + 1, end, place, then);
        }
        if (kind == '(') {
            PatternTables::Group const& group = _tables.At(_tables.GroupThatBeginsAt(at + 1));
            Loop const loop = LoopAt(group.end + 1, end);
            int const after = group.end + 1 + loop.length;
            auto const once = [&](int from, Then const& next) {
                return group.begin != group.end && Alternatives(group, from, next);
            };
            return Turns(once, loop, 0, place, [&](int next) { return Sequence(after, end, next, then); });
        }
        int const length = kind == '['    ? SetLength(PatternFrom(at))
                           : kind == '\\' ? EscapeLength(PatternFrom(at))
                                          : 1;
        Loop const loop = LoopAt(at + length, end);
        int const after = at + length + loop.length;
        auto const once = [&](int from, Then const& next) {
            return from < static_cast<int>(_name.size()) &&
                   ElementMatches(PatternFrom(at).substr(0, static_cast<std::size_t>(length)),
                                  static_cast<unsigned char>(_name[static_cast<std::size_t>(from)])) &&
                   next(from + 1);
        };
        return Turns(once, loop, 0, place, [&](int next) { return Sequence(after, end, next, then); });
    }
    using Once = std::function<bool(int, Then const&)>;
    bool Turns(Once const& once, Loop const& loop, int count, int place, Then const& then) {
        if (++_tries > kMaxTries) {
            return false;
        }
        auto const another = [&] {
            return count < loop.most && once(place, [&](int next) {
                       return next == place ? then(next) : Turns(once, loop, count + 1, next, then);
                   });
        };
        if (count < loop.least) {
            return another();
        }
        return loop.isSeldom ? then(place) || another() : another() || then(place);
    }

    std::string_view const _pattern;
    std::string_view const _name;
    PatternTables _tables;
    int _tries = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const input(reinterpret_cast<char const*>(data), size);
    std::size_t const feed = input.find('\n');
    std::string_view const pattern = input.substr(0, feed);
    std::string_view const name =
        feed == std::string_view::npos ? std::string_view() : input.substr(feed + 1);
    PatternCapture captures[kMaxPatternGroups];
    int const result = MatchPattern(pattern, name, captures, kMaxPatternGroups);
    if (result < kPatternTooManyGroups || result > static_cast<int>(name.size()) ||
        result != MatchPattern(pattern, name)) {
        __builtin_trap();
    }
    if (result >= kPatternNoMatch && pattern.size() < 200) {
        Trial trial(pattern, name);
        int const expected = trial.Run();
        if (!trial.IsGivenUp() && result != expected) {
            __builtin_trap();
        }
    }
    return 0;
}
