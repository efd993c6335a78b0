// The log engine: builds each line and hands it to the console, the hourly file and the callback.
#pragma once

#include <VelmorCore/Object.h>

#include <atomic>
#include <memory>

#include "Platform/Mutex.h"
#include "Storage/Log/AFileLogger.h"
#include "Storage/Log/ILogger.h"
#include "Storage/Log/LogBlockWriter.h"
#include "Storage/Log/LogCallbackSink.h"
#include "Storage/Log/LogLine.h"

namespace Ubrix {

// Thread-safe, but for Init.
//
// A synchronous logger writes a line on the caller's thread; when Log returns it has gone through the file's
// stream. An asynchronous one collects lines in a block, which a thread of its own writes to a file with the
// extension "xlog" once a third of it is full, once a day, and at StopBlocks. The process-wide logger is
// synchronous.
class Logger : public Velmor::ILogger {
public:
    // `module` is in every line and names the log directory.
    explicit Logger(char const* module);
    // An asynchronous logger; Init starts its thread. If the system refuses that, or after StopBlocks, lines
    // reach the console and the callback only.
    Logger(char const* module, LogBlockOptions const& blocks);
    // An asynchronous logger is stopped first.
    virtual ~Logger();
    Logger(Logger const&) = delete;
    Logger& operator=(Logger const&) = delete;

    bool IsAvailable() override;
    void Reserved1(void* a, void* b) override;
    // The keys are "LogMode", "LogSingleSizeLimit" (MiB), "LogExceedOp" and "LogConsoleOutput" (above 0: on).
    // The limit and its operation reach the file only if they are set before Init.
    void SetOption(char const* key, int value) override;
    void SetCallback(LogCallback callback) override;
    // Sets the level; a level named by "LogLevel" in the module's section of the remote configuration
    // replaces it.
    void SetLevel(ALogPriority level) override;
    void Init() override;
    // `tag` plays no part.
    void Log(ALogPriority level, char const* file, unsigned int line, char const* func, char const* tag,
             char const* msg) override;
    // Writes the record only if "VelmorProntelLogMode" is 1.
    void LogDetail(ALogPriority level, char const* file, unsigned int line, char const* func,
                   char const* module, char const* session, ProntelStage stage, ProntelStatus status,
                   int errCode, int errCode2, char const* errorMsg, char const* userInfo, char const* resv,
                   char const* msg) override;
    ALogPriority GetLevel() override;
    void RemoveOldLogFiles(int hours, int maxCount) override;
    void Reserved2(void* a) override;

    // Writes out what waits and ends the thread of an asynchronous logger. Returns when both are done. Not on
    // two threads at once.
    void StopBlocks();
    // Formats a text, cuts it to 4095 bytes, and puts it into the file at once, in a block of its own,
    // without filter, console or callback. Only an asynchronous logger does; another one drops it.
    void WriteDetached(char const* format, ...) VELMORCORE_PRINTF(2, 3);

private:
    void Write(LogText& line);
    void WriteToFile(LogText& line);
    void AppendToBlock(LogText const& line);
    void WriteBlock(LogText const& text);

    // Held for each use of the block in memory, never while the file is written.
    Platform::RecursiveMutex _lock;
    std::unique_ptr<AFileLogger> _fileLogger;
    std::shared_ptr<LogBlockWriter> _blockWriter;
    LogBlockOptions const _blockOptions;
    std::atomic<int> _level{ALogPriorityInfo};
    std::atomic<int> _consoleOutput{1};
    std::shared_ptr<LogCallbackSink> const _callback = std::make_shared<LogCallbackSink>();
    AString const _module;
    // 1: lines; 0: blocks.
    int const _sync;
    std::atomic<int> _logMode{0};
    std::atomic<int> _singleSizeLimit{0};
    std::atomic<int> _exceedOperation{0};
    bool _inited = false;
};

}  // namespace Ubrix
