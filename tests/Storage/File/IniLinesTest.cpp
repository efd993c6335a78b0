#include "Storage/File/IniLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

using Ubrix::IniLines;
using Lines = std::vector<std::string>;

std::string Trim(std::string const& text) {
    std::size_t const first = text.find_first_not_of(' ');
    return first == text.npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Where a walk over all lines finds things; the number of lines stands for nowhere.
struct Walk {
    Walk(Lines const& lines, std::string const& section, std::string const& key)
        : header(lines.size()), end(header), found(header) {
        bool inside = false;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            std::string const& line = lines[i];
            if (line[0] == '[') {
                end = header < i ? std::min(end, i) : end;
                inside = line.find(']') != line.npos && Trim(line.substr(1, line.find(']') - 1)) == section;
                header = inside ? std::min(header, i) : header;
                continue;
            }
            std::size_t const equals = line.find('=', line.find(key));
            if (inside && found == lines.size() && equals != line.npos &&
                Trim(line.substr(0, equals)) == key) {
                found = i;
                behind = equals + 1;
            }
        }
    }
    std::size_t header, end, found, behind = 0;
};

void WriteByWalk(Lines& lines, std::string const& section, std::string const& key, std::string const& value) {
    Walk const walk(lines, section, key);
    if (walk.header == lines.size()) {
        lines.insert(lines.end(), {"", "[" + section + "]", key + "=" + value});
    } else if (walk.found < walk.end) {
        std::string& line = lines[walk.found];
        line.replace(walk.behind, std::min(line.find('#', walk.behind), line.size()) - walk.behind, value);
    } else {
        bool const inFront = walk.end < lines.size() && walk.end > walk.header + 1;
        lines.insert(lines.begin() + static_cast<int>(walk.end) - inFront, key + "=" + value);
    }
}

void ExpectSameAnswers(IniLines const& lines, Lines const& walked, std::string const& section,
                       std::string const& key) {
    SCOPED_TRACE("'" + section + "', '" + key + "'");
    Walk const walk(walked, section, key);
    std::string const rest = walk.found < walked.size() ? walked[walk.found].substr(walk.behind) : "";
    std::string value = "absent";
    lines.Read(section, key, value);
    EXPECT_EQ(value, rest.empty() ? "absent" : Trim(rest.substr(0, rest.find('#'))));
    Lines keys;
    bool prefix = false;
    for (std::size_t i = walk.header + 1; i < walked.size(); ++i) {
        prefix = prefix || walked[i].substr(0, key.size()) == key;
        if (i < walk.end && walked[i].find('=') != std::string::npos) {
            keys.push_back(Trim(walked[i].substr(0, walked[i].find('='))));
        }
    }
    EXPECT_EQ(lines.HasLineWithPrefix(section, key), prefix);
    EXPECT_EQ(lines.Keys(section), keys);
}

void EditBoth(unsigned action, IniLines& lines, Lines& walked, Lines const& names) {
    Walk const walk(walked, names[0], names[1]);
    auto const begin = walked.begin();
    if (action == 0) {
        EXPECT_EQ(lines.RemoveSection(names[0]), walk.header < walked.size());
        walked.erase(begin + static_cast<int>(walk.header), begin + static_cast<int>(walk.end));
    } else if (action == 1) {
        EXPECT_EQ(lines.RemoveKey(names[0], names[1]), walk.found < walked.size());
        walked.erase(begin + static_cast<int>(walk.found),
                     begin + static_cast<int>(std::min(walk.found + 1, walked.size())));
    } else if (action < 5) {
        lines.Append(names[0] + names[1] + names[2]);
        walked.push_back(names[0] + names[1] + names[2]);
    } else {
        lines.Write(names[0], names[1], names[2]);
        WriteByWalk(walked, names[0], names[1], names[2]);
    }
}

TEST(IniLinesTest, TheIndexAnswersAsAWalkWould) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        std::mt19937 random(seed);
        auto const below = [&random](std::size_t bound) { return static_cast<unsigned>(random() % bound); };
        auto const name = [&below] {
            std::string text(1, "ab"[below(2)]);
            for (unsigned size = below(10); size > 5; --size) {
                text.insert(below(text.size() + 1), 1, " =#[]a"[below(6)]);
            }
            return text.substr(below(6) / 5);
        };
        IniLines lines;
        Lines walked;
        // Half of the runs begin with headers that crowd behind one line.
        for (unsigned i = 0; i < seed % 2 * 50; ++i) {
            EditBoth(5, lines, walked, {"a", "[b]", ""});
        }
        for (int step = 0; step < 120 && !HasFailure(); ++step) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
            EditBoth(below(16), lines, walked, {name(), name(), name()});
            Lines all;
            lines.ForEach([&](std::string const& line) { all.push_back(line); });
            EXPECT_EQ(all, walked);
            for (int probe = 0; probe < 8; ++probe) {
                ExpectSameAnswers(lines, walked, name(), name());
            }
        }
    }
}

// Lookups that walk, or insertions that move what is behind them, would take minutes.
TEST(IniLinesTest, LargeBatchesTakeLittleTime) {
    struct {
        int sections, keys;
        char const* prefix;
    } const batches[] = {{1, 200000, "k"}, {100000, 1, "k"}, {1, 50000, "[b]"}};
    for (auto const& batch : batches) {
        SCOPED_TRACE(batch.prefix);
        IniLines lines;
        lines.Write("0", "", "");
        lines.Write("later", "", "");
        for (int i = 0; i < batch.sections * batch.keys; ++i) {
            lines.Write(std::to_string(i % batch.sections), batch.prefix + std::to_string(i), "v");
        }
        int count = 0;
        lines.ForEach([&](std::string const&) { ++count; });
        EXPECT_EQ(count, 6 + batch.sections * batch.keys + 2 * (batch.sections - 1));
    }
}

}  // namespace
