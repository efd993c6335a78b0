// The log facade. It takes no lock: the logger is installed once, while the library is loaded, and only read
// afterwards; the default level is a plain number.
//
// Texts are built on the stack: a line costs no allocation.
#include <VelmorCore/Log.h>

#include <atomic>
#include <cstdarg>

#include "Platform/Console.h"
#include "Platform/LastError.h"
#include "Storage/Log/LogFacade.h"
#include "Storage/Log/LogLine.h"

namespace Ubrix {

namespace {

std::atomic<Velmor::ILogger*> g_logger{nullptr};
std::atomic<bool> g_loggerReady{false};
std::atomic<int> g_defaultLevel{ALogPriorityInfo};

constexpr char kModule[] = "VelmorCore";

// The logger once it takes lines; null before.
Velmor::ILogger* ReadyLogger() {
    return g_loggerReady.load(std::memory_order_acquire) ? g_logger.load(std::memory_order_relaxed) : nullptr;
}

}  // namespace

Velmor::ILogger* CurrentLogger() {
    return g_logger.load(std::memory_order_acquire);
}

void InstallLogger(Velmor::ILogger* logger) {
    g_logger.store(logger, std::memory_order_release);
}

void MarkLoggerReady() {
    g_loggerReady.store(true, std::memory_order_release);
}

ALogPriority DefaultLogLevel() {
    return static_cast<ALogPriority>(g_defaultLevel.load(std::memory_order_relaxed));
}

void XLog(ALogPriority level, char const* file, unsigned int line, char const* func, char const* fmt, ...) {
    if (fmt == nullptr) {
        return;
    }
    Velmor::ILogger* logger = ReadyLogger();
    if (logger != nullptr && level < logger->GetLevel()) {
        return;
    }
    LogText message;
    va_list arguments;
    va_start(arguments, fmt);
    FormatMessage(message, fmt, arguments);
    va_end(arguments);
    if (logger != nullptr) {
        logger->Log(level, file, line, func, "", message);
    } else {
        PrintLogToConsoleFormat2(level, file, line, func, message);
    }
}

void XLog2(ALogPriority level, char const* file, unsigned int line, char const* func, char const* msg) {
    if (msg == nullptr) {
        return;
    }
    Velmor::ILogger* logger = ReadyLogger();
    if (logger == nullptr) {
        PrintLogToConsoleFormat2(level, file, line, func, msg);
    } else if (level >= logger->GetLevel()) {
        logger->Log(level, file, line, func, "", msg);
    }
}

void XLogDetail(ALogPriority level, char const* file, unsigned int line, char const* func, char const* module,
                char const* session, ProntelStage stage, ProntelStatus status, int errCode, int errCode2,
                char const* errorMsg, char const* userInfo, char const* resv, char const* fmt, ...) {
    DetailRecord const record{module, session, stage, status, errCode, errCode2, errorMsg, userInfo, resv};
    if (!IsComplete(record) || fmt == nullptr) {
        ReportIncompleteRecord();
        return;
    }
    LogText message;
    va_list arguments;
    va_start(arguments, fmt);
    FormatMessage(message, fmt, arguments);
    va_end(arguments);
    if (Velmor::ILogger* logger = ReadyLogger()) {
        logger->LogDetail(level, file, line, func, module, session, stage, status, errCode, errCode2,
                          errorMsg, userInfo, resv, message);
        return;
    }
    LogText text;
    FormatDetailRecord(text, record, message);
    Platform::WriteConsoleLine(text);
}

void PrintLogToConsoleFormat(ALogPriority level, char const* file, unsigned int line, char const* func,
                             char const* fmt, ...) {
    if (fmt == nullptr) {
        return;
    }
    LogText message;
    va_list arguments;
    va_start(arguments, fmt);
    FormatMessage(message, fmt, arguments);
    va_end(arguments);
    PrintLogToConsoleFormat2(level, file, line, func, message);
}

void PrintLogToConsoleFormat2(ALogPriority level, char const* file, unsigned int line, char const* func,
                              char const* msg) {
    if (msg == nullptr) {
        return;
    }
    // The clock reads the time zone's file at its first use.
    Platform::LastErrorKeeper const keeper;
    LogText text;
    FormatLogLine(text, level, kModule, file, line, func, msg);
    Platform::WriteConsoleLine(text);
}

void SetUbrixLogLevel(ALogPriority level) {
    g_defaultLevel.store(level, std::memory_order_relaxed);
    if (Velmor::ILogger* logger = CurrentLogger()) {
        logger->SetLevel(level);
    }
}

bool ACheckLogLevel(ALogPriority level) {
    Velmor::ILogger* logger = CurrentLogger();
    return logger == nullptr || logger->GetLevel() <= level;
}

void SetUbrixLogCallback(LogCallback callback) {
    if (Velmor::ILogger* logger = CurrentLogger()) {
        logger->SetCallback(callback);
    }
}

void SetConsoleOutput(bool enabled) {
    if (Velmor::ILogger* logger = CurrentLogger()) {
        logger->SetOption("LogConsoleOutput", enabled ? 1 : 0);
    }
}

}  // namespace Ubrix
