// Collects every line that the logger passes on while a scope lasts, with the level at Debug and the console
// off.
#pragma once

#include <VelmorCore/Log.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "Storage/Log/LogFacade.h"

namespace Test {

class LogCapture {
public:
    LogCapture() : _level(Ubrix::CurrentLogger()->GetLevel()) {
        {
            // Threads of an earlier capture may still be in the callback.
            std::lock_guard<std::mutex> lock(All().mutex);
            All().lines.clear();
        }
        Ubrix::SetUbrixLogLevel(Ubrix::ALogPriorityDebug);
        Ubrix::SetConsoleOutput(false);
        Ubrix::SetUbrixLogCallback([](Ubrix::ALogPriority, char const* line) {
            std::lock_guard<std::mutex> lock(All().mutex);
            All().lines.emplace_back(line);
            All().came.notify_all();
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
        std::lock_guard<std::mutex> lock(All().mutex);
        return CountLocked(level, message);
    }
    bool Has(std::string const& level, std::string const& message) const { return Count(level, message) > 0; }
    // Waits until a line of `level` that ends in `message` has come. False after ten seconds.
    bool Await(std::string const& level, std::string const& message) const {
        std::unique_lock<std::mutex> lock(All().mutex);
        return All().came.wait_for(lock, std::chrono::seconds(10),
                                   [&] { return CountLocked(level, message) > 0; });
    }
    // All lines, for a failed test's message.
    std::string Text() const {
        std::lock_guard<std::mutex> lock(All().mutex);
        std::string text;
        for (std::string const& line : All().lines) {
            text += line + "\n";
        }
        return text;
    }

private:
    struct Shared {
        std::mutex mutex;
        std::condition_variable came;
        std::vector<std::string> lines;
    };
    static Shared& All() {
        // Never destroyed: a thread may log to the very end of the process.
        static Shared& all = *new Shared;
        return all;
    }
    static int CountLocked(std::string const& level, std::string const& message) {
        int count = 0;
        for (std::string const& line : All().lines) {
            bool const ends = line.size() >= message.size() &&
                              line.compare(line.size() - message.size(), message.size(), message) == 0;
            count += ends && line.find("] | " + level + " | [") != std::string::npos ? 1 : 0;
        }
        return count;
    }

    Ubrix::ALogPriority _level;
};

}  // namespace Test
