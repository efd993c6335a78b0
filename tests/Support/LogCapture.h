// Collects every line that the logger passes on while a scope lasts, with the level at Debug and the console
// off.
#pragma once

#include <VelmorCore/Log.h>

#include <string>
#include <vector>

#include "Storage/Log/LogFacade.h"
#include "Support/Watched.h"

namespace Test {

class LogCapture {
public:
    LogCapture() : _level(Ubrix::CurrentLogger()->GetLevel()) {
        // Threads of an earlier capture may still be in the callback.
        All().With([](Lines& lines) { lines.clear(); });
        Ubrix::SetUbrixLogLevel(Ubrix::ALogPriorityDebug);
        Ubrix::SetConsoleOutput(false);
        Ubrix::SetUbrixLogCallback([](Ubrix::ALogPriority, char const* line) {
            All().With([line](Lines& lines) { lines.emplace_back(line); });
        });
    }
    ~LogCapture() {
        Ubrix::SetUbrixLogCallback(nullptr);
        Ubrix::SetConsoleOutput(true);
        Ubrix::SetUbrixLogLevel(_level);
    }
    LogCapture(LogCapture const&) = delete;
    LogCapture& operator=(LogCapture const&) = delete;

    // How many lines hold `level` as their level and end in `message`.
    int Count(std::string const& level, std::string const& message) const {
        return All().With([&](Lines const& lines) { return CountIn(lines, level, message); });
    }
    bool Has(std::string const& level, std::string const& message) const { return Count(level, message) > 0; }
    // Waits until `count` lines of `level` that end in `message` have come. False after ten seconds.
    bool Await(std::string const& level, std::string const& message, int count = 1) const {
        return All().Await([&](Lines const& lines) { return CountIn(lines, level, message) >= count; });
    }
    // All lines, for a failed test's message.
    std::string Text() const {
        std::string text;
        for (std::string const& line : All().With([](Lines const& lines) { return lines; })) {
            text += line + "\n";
        }
        return text;
    }

private:
    using Lines = std::vector<std::string>;

    static Watched<Lines>& All() {
        // Never destroyed: a thread may log to the very end of the process.
        static auto& all = *new Watched<Lines>;
        return all;
    }
    static int CountIn(Lines const& lines, std::string const& level, std::string const& message) {
        int count = 0;
        for (std::string const& line : lines) {
            bool const ends = line.size() >= message.size() &&
                              line.compare(line.size() - message.size(), message.size(), message) == 0;
            count += ends && line.find("] | " + level + " | [") != std::string::npos ? 1 : 0;
        }
        return count;
    }

    Ubrix::ALogPriority _level;
};

}  // namespace Test
