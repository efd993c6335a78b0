// How the library's own code logs: level, qualified function name, format, arguments. Any thread, with
// whatever lock held.
#pragma once

#include <VelmorCore/Log.h>

// A line for all sinks, as VC_LOG(Info, "Ubrix::CPath::GetFiles", "%s not found!", path).
#define VC_LOG(level, func, ...) \
    ::Ubrix::XLog(::Velmor::ALogPriority##level, __FILE__, __LINE__, func, __VA_ARGS__)

// A line for the console only, for code that the logger itself needs.
#define VC_LOG_CONSOLE(level, func, ...) \
    ::Ubrix::PrintLogToConsoleFormat(::Velmor::ALogPriority##level, __FILE__, __LINE__, func, __VA_ARGS__)
