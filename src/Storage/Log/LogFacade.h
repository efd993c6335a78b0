// The facade's hooks for layer 7: who the logger is, and from when on it takes lines. Atomic: any thread.
// Sources: XLog.cpp
#pragma once

#include "Storage/Log/ILogger.h"

namespace Ubrix {

// The process-wide logger, or null.
Velmor::ILogger* CurrentLogger();

// Makes `logger` the process-wide one. Level changes and callbacks reach it from now on; lines still go to
// the console only.
void InstallLogger(Velmor::ILogger* logger);

// From now on lines go to the logger.
void MarkLoggerReady();

// The level that a logger starts with: the last one set through the facade, Info at load.
ALogPriority DefaultLogLevel();

}  // namespace Ubrix
