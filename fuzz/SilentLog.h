// Keeps the log quiet: a fuzzer's inputs would fill it.
#pragma once

#include "Storage/Log/LogFacade.h"

class SilentLog : public Velmor::ILogger {
public:
    // Puts one in force for the rest of the process.
    static void Install() {
        static SilentLog log;
        Ubrix::InstallLogger(&log);
        Ubrix::MarkLoggerReady();
    }

    bool IsAvailable() override { return true; }
    void Reserved1(void*, void*) override {}
    void SetOption(char const*, int) override {}
    void SetCallback(Ubrix::LogCallback) override {}
    void SetLevel(Velmor::ALogPriority) override {}
    void Init() override {}
    void Log(Velmor::ALogPriority, char const*, unsigned int, char const*, char const*,
             char const*) override {}
    void LogDetail(Velmor::ALogPriority, char const*, unsigned int, char const*, char const*, char const*,
                   Velmor::ProntelStage, Velmor::ProntelStatus, int, int, char const*, char const*,
                   char const*, char const*) override {}
    Velmor::ALogPriority GetLevel() override { return Velmor::ALogPriorityDebug; }
    void RemoveOldLogFiles(int, int) override {}
    void Reserved2(void*) override {}
};
