#include "Storage/Log/LogLine.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "Platform/Thread.h"
#include "Storage/Log/LogFacade.h"
#include "Support/ConsoleCapture.h"
#include "Support/FakeClock.h"

namespace {

using namespace Ubrix;

std::string Line(char const* file, char const* message, int level = ALogPriorityInfo) {
    ::Test::FakeClock clock;
    LogText line;
    FormatLogLine(line, static_cast<ALogPriority>(level), "VelmorCore", file, 12, "Ns::Func", message);
    return line;
}

TEST(LogLine, HoldsEveryFieldInItsPlace) {
    std::string const thread = std::to_string(Platform::CurrentThreadNumber());
    EXPECT_EQ(Line("a/b.cpp", "hello"),
              "[2036-03-05 07:59:01 042] | Info | [VelmorCore] |" + thread + "| b.cpp:12|Ns::Func| hello");
}

TEST(LogLine, NamesLevelsAndCutsFilesAndTails) {
    char const* const levels[] = {"Debug", "Info", "Warning", "Event", "Error", "Unkonwn", "Unkonwn"};
    for (int level = 0; level < 7; ++level) {
        EXPECT_NE(Line("f", "", level).find(std::string("] | ") + levels[level] + " | ["), std::string::npos);
    }
    std::pair<char const*, std::string> const bases[] = {
        {"c:\\a/b\\c.cpp", "c.cpp"}, {"a/b.cpp", "b.cpp"}, {"b.cpp", "b.cpp"}, {"a\\b/c", "b/c"}};
    for (auto const& [file, base] : bases) {
        EXPECT_NE(Line(file, "").find("| " + base + ":12|"), std::string::npos) << file;
    }
    std::string const line = Line("f.cpp", std::string(5000, 'x').c_str());
    EXPECT_EQ(std::to_string(line.size()) + line.substr(0, 12), "4095[2036-03-05 ");
}

TEST(LogFacade, PrintsALiteralMessageAndRefusesAnIncompleteRecord) {
    ::Test::ConsoleCapture console;
    PrintLogToConsoleFormat2(ALogPriorityDebug, "f", 1, "F", "100%s %n");
    auto const stage = static_cast<ProntelStage>(0);
    auto const status = static_cast<ProntelStatus>(0);
    XLogDetail(ALogPriorityError, "f", 1, "F", "m", "s", stage, status, 0, 1, "e", "u", "r", "x");
    // A complete record is subject to a switch that nothing sets.
    XLogDetail(ALogPriorityError, "f", 1, "F", "m", "s", stage, status, 1, 1, "e", "u", "r", "%d", 5);
    std::string const text = console.Text();
    EXPECT_NE(text.find("|F| 100%s %n\n"), std::string::npos);
    EXPECT_EQ(text.find("ProntelLog"), std::string::npos);
    EXPECT_NE(text.find("Error, Parameter is NULL.\n"), std::string::npos);
}

}  // namespace
