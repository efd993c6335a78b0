#include "Storage/File/IniLines.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using Ubrix::IniLines;
using Lines = std::vector<std::string>;

Lines All(IniLines const& lines) {
    Lines all;
    lines.ForEach([&](std::string const& line) { all.push_back(line); });
    return all;
}

// The answers to all that can be asked about two names.
Lines Answers(IniLines const& lines, std::string const& section, std::string const& key) {
    Lines answers = lines.Keys(section);
    lines.Read(section, key, answers.emplace_back("absent"));
    answers.push_back(lines.HasLineWithPrefix(section, key) ? "begins a line" : "begins none");
    return answers;
}

void Edit(IniLines& lines, unsigned action, Lines const& names) {
    if (action == 0) {
        lines.RemoveSection(names[0]);
    } else if (action == 1) {
        lines.RemoveKey(names[0], names[1]);
    } else if (action < 5) {
        lines.Append(names[0] + names[1] + names[2]);
    } else {
        lines.Write(names[0], names[1], names[2]);
    }
}

TEST(IniLines, EditsLeaveTheIndexThatAFreshReadWouldMake) {
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
        // Half of the runs begin with headers that crowd behind one line.
        for (unsigned i = 0; i < seed % 2 * 50; ++i) {
            lines.Write("a", "[b]", "");
        }
        for (int step = 0; step < 120 && !HasFailure(); ++step) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
            Edit(lines, below(16), {name(), name(), name()});
            IniLines fresh;
            for (std::string const& line : All(lines)) {
                fresh.Append(line);
            }
            for (int probe = 0; probe < 8; ++probe) {
                std::string const section = name();
                std::string const key = name();
                EXPECT_EQ(Answers(lines, section, key), Answers(fresh, section, key));
            }
            Lines const names = {name(), name(), name()};
            unsigned const action = below(16);
            Edit(lines, action, names);
            Edit(fresh, action, names);
            EXPECT_EQ(All(lines), All(fresh));
        }
    }
}

// Lookups that walk, or insertions that move what is behind them, would take minutes.
TEST(IniLines, LargeBatchesTakeLittleTime) {
    struct {
        int sections, keys;
        char const* prefix;
    } const batches[] = {{1, 200000, "k"}, {100000, 1, "k"}, {1, 50000, "[b]"}};
    for (auto const& batch : batches) {
        IniLines lines;
        lines.Write("0", "", "");
        lines.Write("later", "", "");
        int const count = batch.sections * batch.keys;
        for (int i = 0; i < count; ++i) {
            lines.Write(std::to_string(i % batch.sections), batch.prefix + std::to_string(i), "v");
        }
        EXPECT_EQ(static_cast<int>(All(lines).size()), 4 + count + 2 * batch.sections) << batch.prefix;
    }
}

}  // namespace
