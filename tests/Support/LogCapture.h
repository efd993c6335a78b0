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
            std::lock_guard<std::mutex> lock(Guard());
            Lines().clear();
        }
        Ubrix::SetUbrixLogLevel(Ubrix::ALogPriorityDebug);
        Ubrix::SetConsoleOutput(false);
        Ubrix::SetUbrixLogCallback(Take);
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
        std::lock_guard<std::mutex> lock(Guard());
        int count = 0;
        for (std::string const& line : Lines()) {
            bool const ends = line.size() >= message.size() &&
                              line.compare(line.size() - message.size(), message.size(), message) == 0;
            count += ends && line.find("] | " + level + " | [") != std::string::npos ? 1 : 0;
        }
        return count;
    }
    bool Has(std::string const& level, std::string const& message) const { return Count(level, message) > 0; }
    // Waits until a line of `level` that ends in `message` has come. False after ten seconds.
    bool Await(std::string const& level, std::string const& message) const {
        auto const limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!Has(level, message)) {
            std::unique_lock<std::mutex> lock(Guard());
            if (Came().wait_until(lock, limit) == std::cv_status::timeout) {
                lock.unlock();
                return Has(level, message);
            }
        }
        return true;
    }
    // All lines, for a failed test's message.
    std::string Text() const {
        std::lock_guard<std::mutex> lock(Guard());
        std::string text;
        for (std::string const& line : Lines()) {
            text += line + "\n";
        }
        return text;
    }

private:
    static std::mutex& Guard() {
        static std::mutex guard;
        return guard;
    }
    static std::vector<std::string>& Lines() {
        static std::vector<std::string> lines;
        return lines;
    }
    static void Take(Ubrix::ALogPriority, char const* line) {
        std::lock_guard<std::mutex> lock(Guard());
        Lines().emplace_back(line);
        Came().notify_all();
    }
    static std::condition_variable& Came() {
        static std::condition_variable came;
        return came;
    }

    Ubrix::ALogPriority _level;
};

}  // namespace Test
