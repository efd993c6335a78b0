#include "Storage/Log/LogLine.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <new>
#include <string>
#include <tuple>
#include <utility>

#include "Platform/Event.h"
#include "Platform/Thread.h"
#include "Storage/Log/AFileLogger.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogFacade.h"
#include "Support/ConsoleCapture.h"
#include "Support/FakeClock.h"

namespace {

using namespace Ubrix;

std::string Line(char const* file, char const* message, int level) {
    ::Test::FakeClock clock;
    LogText line;
    FormatLogLine(line, static_cast<ALogPriority>(level), "VelmorCore", file, 12, "Ns::Func", message);
    return line;
}

TEST(LogLine, HoldsEveryFieldInItsPlaceAndIsCutAtItsEnd) {
    std::string const thread = std::to_string(Platform::CurrentThreadNumber());
    std::tuple<int, std::string, char const*, std::string> const rows[] = {
        {0, "Debug", "c:\\a/b\\c.cpp", "c.cpp"},
        {1, "Info", "a/b.cpp", "b.cpp"},
        {2, "Warning", "b.cpp", "b.cpp"},
        {3, "Event", "a\\b/c", "b/c"},
        {4, "Error", "f", "f"},
        {5, "Unkonwn", "f", "f"},
        {6, "Unkonwn", "f", "f"}};
    for (auto const& [level, name, file, base] : rows) {
        std::string const line = "[2036-03-05 07:59:01 042] | " + name + " | [VelmorCore] |" + thread + "| " +
                                 base + ":12|Ns::Func| ";
        EXPECT_EQ(Line(file, "hello", level), line + "hello");
        std::string const tail(5000, 'x');
        EXPECT_EQ(Line(file, tail.c_str(), level), (line + tail).substr(0, 4095));
    }
}

TEST(LogLine, ShowsWhatAForeignTextWouldDoToALine) {
    std::pair<std::string, std::string> const rows[] = {
        {"a\nb\r\tc\\n", "a\\nb\\r\\tc\\n"},
        {std::string("\x1b[31m\0\x7f", 7), "\\x1b[31m\\x00\\x7f"},
        {"Stra\xC3\x9F"
         "e \xE6\x97\xA5 \xF0\x9F\x8E\xAE",
         "Stra\xC3\x9F"
         "e \xE6\x97\xA5 \xF0\x9F\x8E\xAE"},
        {"\x9B\xC2\x9B\xC2\xA0", "\\x9b\\xc2\\x9b\xC2\xA0"},
        {"\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA6", "\\xe2\\x80\\xa8\\xe2\\x80\\xae\\xe2\\x81\\xa6"},
        // Too long a form, a surrogate, beyond the last character, cut short.
        {"\xE0\x80\x9B\xED\xA0\x80", "\\xe0\\x80\\x9b\\xed\\xa0\\x80"},
        {"\xF4\x90\x80\x80\xC3", "\\xf4\\x90\\x80\\x80\\xc3"},
    };
    for (auto const& [text, shown] : rows) {
        EXPECT_EQ(ForeignText(std::string_view(text)).c_str(), shown);
    }
    EXPECT_STREQ(ForeignText(nullptr).c_str(), "");
    std::string const wide(4094, 'x');
    EXPECT_EQ(ForeignText((wide + "yz").c_str()).c_str(), wide + "y");
    EXPECT_EQ(ForeignText((wide + "\xC3\x9F").c_str()).c_str(), wide) << "no half character";
}

TEST(LogFacade, PrintsALiteralMessageAndRefusesAnIncompleteRecord) {
    ::Test::ConsoleCapture console;
    PrintLogToConsoleFormat2(ALogPriorityDebug, "f", 1, "F", "100%s %n");
    auto const stage = static_cast<ProntelStage>(0);
    auto const status = static_cast<ProntelStatus>(0);
    XLogDetail(ALogPriorityError, "f", 1, "F", "m", "s", stage, status, 0, 1, "e", "u", "r", "x");
    // A complete record is subject to a switch that nothing sets.
    XLogDetail(ALogPriorityError, "f", 1, "F", "m", "s", stage, status, 1, 1, "e", "u", "r", "%d", 5);
    // No byte stands for this letter.
    errno = 77;
    XLog(ALogPriorityError, "f", 1, "F", "cannot print %ls", L"\x100");
    EXPECT_EQ(errno, 77);
    std::string const text = console.Text();
    EXPECT_NE(text.find("|F| 100%s %n\n"), std::string::npos);
    EXPECT_NE(text.find("|F| cannot print %ls\n"), std::string::npos);
    EXPECT_EQ(text.find("ProntelLog"), std::string::npos);
    EXPECT_NE(text.find("Error, Parameter is NULL.\n"), std::string::npos);
}

Platform::Event g_left;
struct Leaving {
    ~Leaving() { g_left.Set(); }
};

TEST(LogThread, WantOfMemoryEndsItsWorkAlone) {
    ::Test::ConsoleCapture console;
    LogCreateThread(
        [] {
            static thread_local Leaving leaving;
            static_cast<void>(&leaving);
            throw std::bad_alloc();
        },
        "Short");
    EXPECT_TRUE(g_left.WaitFor(60000));
    EXPECT_TRUE(console.Has("no memory for the work of Short\n"));
}

}  // namespace
