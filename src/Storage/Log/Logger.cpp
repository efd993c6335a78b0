#include "Storage/Log/Logger.h"

#include <VelmorCore/Clock.h>
#include <VelmorCore/Configure.h>

#include <cstdarg>
#include <cstring>
#include <new>

#include "Base/Container/AsciiText.h"
#include "Base/Ubrix/ConfigurationKeys.h"
#include "Base/Ubrix/CoreConfigReader.h"
#include "Platform/Console.h"
#include "Platform/LastError.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogLine.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

constexpr char const* kLevelNames[] = {"Debug", "Info", "Warning", "Event", "Error", "None"};

bool EqualIgnoringCase(char const* a, char const* b) {
    while (*a != '\0' && LowerAscii(*a) == LowerAscii(*b)) {
        ++a;
        ++b;
    }
    return LowerAscii(*a) == LowerAscii(*b);
}

// The level of that name, or `otherwise`.
int LevelByName(char const* name, int otherwise) {
    int level = 0;
    for (char const* known : kLevelNames) {
        if (EqualIgnoringCase(known, name)) {
            return level;
        }
        ++level;
    }
    return otherwise;
}

}  // namespace

Logger::Logger(char const* module) : _module(module), _sync(1) {}

Logger::Logger(char const* module, LogBlockOptions const& blocks)
    : _blockOptions(blocks), _module(module), _sync(0) {}

Logger::~Logger() {
    StopBlocks();
}

bool Logger::IsAvailable() {
    return true;
}

void Logger::Reserved1(void* /*a*/, void* /*b*/) {}

void Logger::Reserved2(void* /*a*/) {}

void Logger::SetOption(char const* key, int value) {
    if (key == nullptr) {
        VC_LOG_CONSOLE(Error, "Ubrix::Logger::SetOption", "Logger SetOption key is NULL");
    } else if (std::strcmp(key, "LogMode") == 0) {
        _logMode.store(value, std::memory_order_relaxed);
    } else if (std::strcmp(key, "LogSingleSizeLimit") == 0) {
        _singleSizeLimit.store(value, std::memory_order_relaxed);
    } else if (std::strcmp(key, "LogExceedOp") == 0) {
        _exceedOperation.store(value, std::memory_order_relaxed);
    } else if (std::strcmp(key, "LogConsoleOutput") == 0) {
        _consoleOutput.store(value, std::memory_order_relaxed);
    } else {
        VC_LOG_CONSOLE(Error, "Ubrix::Logger::SetOption", "Logger invalid key %s", ForeignText(key).c_str());
    }
}

void Logger::SetCallback(LogCallback callback) {
    _callback->Set(callback);
}

void Logger::SetLevel(ALogPriority level) {
    _level.store(level, std::memory_order_relaxed);
    AString const configured =
        Velmor::Configure::GetInstance()->GetString(_module.c_str(), ConfigurationKey::kLogLevel, "");
    if (!configured.empty()) {
        _level.store(LevelByName(configured.c_str(), level), std::memory_order_relaxed);
    }
}

ALogPriority Logger::GetLevel() {
    return static_cast<ALogPriority>(_level.load(std::memory_order_relaxed));
}

void Logger::Init() {
    if (_inited) {
        return;
    }
    _fileLogger = std::make_unique<AFileLogger>(_module.c_str(), _sync, _singleSizeLimit, _exceedOperation);
    // No file is mapped into memory; the words of this line are what readers of old logs look for.
    long long const before = CTime::GetTimeTick();
    long long const cost = CTime::GetTimeTick() - before;
    VC_LOG(Info, "Ubrix::Logger::Init",
           "log init module %s, logMode %d, sync:%d, use mmap:%d, mmap cost %lld us", _module.c_str(),
           _logMode.load(), _sync, 1, cost);
    if (_sync != 1) {
        _blockWriter = LogBlockWriter::Start(_lock, *_fileLogger, _blockOptions);
        if (_blockWriter == nullptr) {
            VC_LOG_CONSOLE(Error, "Ubrix::Logger::Init", "log flusher of module %s can't start",
                           _module.c_str());
        }
    }
    _inited = true;
}

void Logger::Log(ALogPriority level, char const* file, unsigned int line, char const* func,
                 char const* /*tag*/, char const* msg) {
    if (msg == nullptr || level < GetLevel()) {
        return;
    }
    // A caller that logs between a failed system call and its error check must not notice; nor the callback,
    // which finds the caller's number as well.
    Platform::LastErrorKeeper const keeper;
    LogText text;
    {
        Platform::LastErrorKeeper const forCallback;
        FormatLogLine(text, level, _module.c_str(), file, line, func, msg);
        Write(text);
    }
    _callback->Pass(level, text);
}

void Logger::Write(LogText& line) {
    if (_consoleOutput.load(std::memory_order_relaxed) > 0) {
        Platform::WriteConsoleLine(line);
    }
    if (_sync == 1) {
        WriteToFile(line);
    } else {
        AppendToBlock(line);
    }
}

void Logger::WriteToFile(LogText& line) {
    if (_fileLogger == nullptr) {
        return;
    }
    // A line that fills its room goes without a line feed.
    std::size_t const length = std::strlen(line);
    bool const hasRoom = length + 1 < sizeof line;
    line[length] = hasRoom ? '\n' : '\0';
    _fileLogger->Log2File(line, static_cast<unsigned int>(hasRoom ? length + 1 : length));
    line[length] = '\0';
}

void Logger::AppendToBlock(LogText const& line) {
    if (_blockWriter == nullptr) {
        return;
    }
    try {
        _blockWriter->Append(line);
    } catch (...) {
        VC_LOG_CONSOLE(Error, "Ubrix::Logger::Log", "XLog AsyncAppend catch Exception.");
    }
}

void Logger::StopBlocks() {
    if (_blockWriter != nullptr) {
        _blockWriter->Stop();
    }
}

void Logger::WriteDetached(char const* format, ...) {
    if (_blockWriter == nullptr || format == nullptr) {
        return;
    }
    LogText text;
    std::va_list arguments;
    va_start(arguments, format);
    FormatMessage(text, format, arguments);
    va_end(arguments);
    WriteBlock(text);
}

void Logger::WriteBlock(LogText const& text) {
    try {
        _blockWriter->WriteNow(text);
    } catch (std::bad_alloc const&) {
        VC_LOG_CONSOLE(Error, "Ubrix::Logger::WriteDetached", "no memory for a log block");
    }
}

void Logger::LogDetail(ALogPriority level, char const* file, unsigned int line, char const* func,
                       char const* module, char const* session, ProntelStage stage, ProntelStatus status,
                       int errCode, int errCode2, char const* errorMsg, char const* userInfo,
                       char const* resv, char const* msg) {
    DetailRecord const record{module, session, stage, status, errCode, errCode2, errorMsg, userInfo, resv};
    if (!IsComplete(record) || msg == nullptr) {
        ReportIncompleteRecord();
        return;
    }
    if (CoreConfigReader::GetInt(ConfigurationKey::kLogRecordMode, -1) != 1) {
        return;
    }
    LogText text;
    FormatDetailRecord(text, record, msg);
    Log(level, file, line, func, "", text);
}

void Logger::RemoveOldLogFiles(int hours, int maxCount) {
    AFileLogger::RemoveOldLogFiles(_module.c_str(), hours, maxCount);
}

}  // namespace Ubrix
