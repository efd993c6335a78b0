// What the log facade asks of a logger. Logger, the engine, implements it.
#pragma once

#include <VelmorCore/Log.h>

namespace Velmor {

// The order of the operations is fixed. There is no virtual destructor: the one logger lives until the
// process ends. Any thread may call any operation but Init.
class ILogger {
public:
    virtual bool IsAvailable() = 0;
    // Does nothing; keeps its place.
    virtual void Reserved1(void* a, void* b) = 0;
    virtual void SetOption(char const* key, int value) = 0;
    virtual void SetCallback(Ubrix::LogCallback callback) = 0;
    virtual void SetLevel(ALogPriority level) = 0;
    virtual void Init() = 0;
    virtual void Log(ALogPriority level, char const* file, unsigned int line, char const* func,
                     char const* tag, char const* msg) = 0;
    virtual void LogDetail(ALogPriority level, char const* file, unsigned int line, char const* func,
                           char const* module, char const* session, ProntelStage stage, ProntelStatus status,
                           int errCode, int errCode2, char const* errorMsg, char const* userInfo,
                           char const* resv, char const* msg) = 0;
    virtual ALogPriority GetLevel() = 0;
    virtual void RemoveOldLogFiles(int hours, int maxCount) = 0;
    // Does nothing; keeps its place.
    virtual void Reserved2(void* a) = 0;

protected:
    ILogger() = default;
    ~ILogger() = default;
    ILogger(ILogger const&) = default;
    ILogger& operator=(ILogger const&) = default;
};

}  // namespace Velmor
