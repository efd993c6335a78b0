// The two texts of the log: the line, and the developer-log record that becomes a line's message. They stand
// in the caller's memory: any thread.
#pragma once

#include <VelmorCore/Log.h>

#include <cstdarg>
#include <cstddef>

namespace Ubrix {

// Room for a text of the log, its terminator included. What doesn't fit is cut.
constexpr std::size_t kLogTextSize = 4096;

using LogText = char[kLogTextSize];

// Prints a call's arguments into `text`. A format that can't be printed, since an argument of its can't be
// converted, is the message itself: a strange one is better than none. Leaves the last error number alone.
VELMORCORE_PRINTF(2, 0) void FormatMessage(LogText& text, char const* format, std::va_list arguments);

// Builds the line of `message` at the present moment. `file` is cut to its base name.
void FormatLogLine(LogText& line, ALogPriority level, char const* module, char const* file,
                   unsigned int number, char const* func, char const* message);

// The values of a developer-log record. Texts are borrowed for the length of a call.
struct DetailRecord {
    char const* module;
    char const* session;
    ProntelStage stage;
    ProntelStatus status;
    int errCode;
    int errCode2;
    char const* errorMsg;
    char const* userInfo;
    char const* resv;
};

// True if every text is there and both error codes are other than 0. A record that isn't is refused.
bool IsComplete(DetailRecord const& record);

// Builds the record's text.
void FormatDetailRecord(LogText& text, DetailRecord const& record, char const* message);

// Says on the console that a record was refused.
void ReportIncompleteRecord();

}  // namespace Ubrix
