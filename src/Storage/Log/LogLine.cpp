#include "Storage/Log/LogLine.h"

#include <cstdio>
#include <cstring>

#include "Platform/Console.h"
#include "Platform/LastError.h"
#include "Platform/Thread.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

namespace {

char const* LevelName(ALogPriority level) {
    switch (level) {
        case ALogPriorityDebug:
            return "Debug";
        case ALogPriorityInfo:
            return "Info";
        case ALogPriorityWarning:
            return "Warning";
        case ALogPriorityEvent:
            return "Event";
        case ALogPriorityError:
            return "Error";
        default:
            return "Unkonwn";
    }
}

char const* BaseName(char const* file) {
    if (char const* backslash = std::strrchr(file, '\\')) {
        return backslash + 1;
    }
    char const* slash = std::strrchr(file, '/');
    return slash != nullptr ? slash + 1 : file;
}

}  // namespace

void FormatMessage(LogText& text, char const* format, std::va_list arguments) {
    Platform::LastErrorKeeper const keeper;
    if (std::vsnprintf(text, sizeof text, format, arguments) < 0) {
        std::snprintf(text, sizeof text, "%s", format);
    }
}

void FormatLogLine(LogText& line, ALogPriority level, char const* module, char const* file,
                   unsigned int number, char const* func, char const* message) {
    Platform::CalendarTime const now = ClockSource::Current().Local();
    std::snprintf(line, sizeof line, "[%.4d-%.2d-%.2d %.2d:%.2d:%.2d %.3d] | %s | [%s] |%u| %s:%d|%s| %s",
                  now.year, now.month, now.day, now.hour, now.minute, now.second, now.millisecond,
                  LevelName(level), module, Platform::CurrentThreadNumber(), BaseName(file),
                  static_cast<int>(number), func, message);
}

bool IsComplete(DetailRecord const& record) {
    return record.module != nullptr && record.session != nullptr && record.errCode != 0 &&
           record.errCode2 != 0 && record.errorMsg != nullptr && record.userInfo != nullptr &&
           record.resv != nullptr;
}

void FormatDetailRecord(LogText& text, DetailRecord const& record, char const* message) {
    std::snprintf(text, sizeof text,
                  "|ProntelLog|  Module:%s Session:%s Stage:%d Status:%d ErrCode:%d ErrCode2:%d ErrorMsg:%s "
                  "UserInfo:%s Resv:%s %s",
                  record.module, record.session, static_cast<int>(record.stage),
                  static_cast<int>(record.status), record.errCode, record.errCode2, record.errorMsg,
                  record.userInfo, record.resv, message);
}

void ReportIncompleteRecord() {
    Platform::WriteConsoleLine("Error, Parameter is NULL.");
}

}  // namespace Ubrix
