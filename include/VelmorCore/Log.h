/// @file
/// The log facade: one entry for every message of the library and of its callers.
///
/// A message passes if its level is not below the logger's. It becomes one line of at most 4095 bytes
///   [2026-03-05 07:59:01 042] | Info | [VelmorCore] |4711| file.cpp:12|Ns::Func| message
/// in local time, which goes to the console, to the hourly log file and to the callback, all on the caller's
/// thread, and before the call returns: a line of the library's own may reach the callback a little later.
/// Before the logger stands, lines go to the console only, unfiltered.
///
/// All functions may be called on any thread and never fail visibly: what can't be had, memory included,
/// costs the line at hand. Those that log leave the caller's last error number alone. Text is bytes of any
/// encoding. `file` and `func` must not be null.
#pragma once

#include <VelmorCore/Export.h>

namespace Velmor {

/// Levels. The numbers are stored and cross to managed code. A message of any other number, None included, is
/// filtered by it like the rest and shows as "Unkonwn".
enum ALogPriority : int {
    /// For who develops the library.
    ALogPriorityDebug = 0,
    /// What goes on.
    ALogPriorityInfo = 1,
    /// What a caller may want to look at.
    ALogPriorityWarning = 2,
    /// A step in the life of a service; ranks above a warning.
    ALogPriorityEvent = 3,
    /// What went wrong.
    ALogPriorityError = 4,
    /// As a level to set: nothing passes.
    ALogPriorityNone = 5,
};

/// Stage of a developer-log record; its meaning is the caller's own.
enum ProntelStage : int {};
/// Status of a developer-log record; its meaning is the caller's own.
enum ProntelStatus : int {};

}  // namespace Velmor

namespace Ubrix {

using Velmor::ALogPriority;
using Velmor::ALogPriorityDebug;
using Velmor::ALogPriorityError;
using Velmor::ALogPriorityEvent;
using Velmor::ALogPriorityInfo;
using Velmor::ALogPriorityNone;
using Velmor::ALogPriorityWarning;
using Velmor::ProntelStage;
using Velmor::ProntelStatus;

/// Receives each finished line, on the logging thread. No line feed is added; a message that ends in one of
/// its own, as three of the library's do, keeps it. `line` is valid during the call only. A callback may
/// call every function of the library. What it logs itself reaches it inside that call. Lines of other
/// threads wait for its end, unless it waits inside the library; so it must not wait in code of the host's
/// own for a thread that logs.
using LogCallback = void (*)(ALogPriority level, char const* line);

/// Makes the process-wide logger; a second call changes nothing. Runs while the library is loaded: not for
/// several threads at once.
VELMORCORE_API void VelmorLogInit();

/// Logs a printf-style message. A null `fmt` is ignored. A filtered message costs one comparison: no
/// formatting, no allocation. Messages are cut at 4095 bytes.
VELMORCORE_API void XLog(ALogPriority level, char const* file, unsigned int line, char const* func,
                         char const* fmt, ...) VELMORCORE_PRINTF(5, 6);

/// Logs a finished message: no character of it is read as a format. A null `msg` is ignored.
VELMORCORE_API void XLog2(ALogPriority level, char const* file, unsigned int line, char const* func,
                          char const* msg);

/// Writes a developer-log record: the module, the session, the numbers and the texts in one message, cut at
/// 4095 bytes, under the usual filter. The logger takes records only while the kit's setting
/// "VelmorProntelLogMode" is 1; by default it isn't, and the record is dropped without a word. Before the
/// logger stands the bare record goes to the console. If any text is null or any error code is 0, prints
/// "Error, Parameter is NULL." on the console instead.
VELMORCORE_API void XLogDetail(ALogPriority level, char const* file, unsigned int line, char const* func,
                               char const* module, char const* session, ProntelStage stage,
                               ProntelStatus status, int errCode, int errCode2, char const* errorMsg,
                               char const* userInfo, char const* resv, char const* fmt, ...)
    VELMORCORE_PRINTF(14, 15);

/// Prints a printf-style message as a line on the console only, never filtered. A null `fmt` is ignored.
VELMORCORE_API void PrintLogToConsoleFormat(ALogPriority level, char const* file, unsigned int line,
                                            char const* func, char const* fmt, ...) VELMORCORE_PRINTF(5, 6);
/// Prints a finished message as a line on the console only, never filtered. A null `msg` is ignored.
VELMORCORE_API void PrintLogToConsoleFormat2(ALogPriority level, char const* file, unsigned int line,
                                             char const* func, char const* msg);

/// Sets the level: messages below it are dropped. A valid "LogLevel" in section "VelmorCore" of the remote
/// configuration's cache, also of an earlier run's, takes the place of `level` at each such call; without a
/// call a new one has no effect before the next start.
VELMORCORE_API void SetUbrixLogLevel(ALogPriority level);

/// True if a message of `level` would pass. Callers ask it before they build an expensive message.
VELMORCORE_API bool ACheckLogLevel(ALogPriority level);

/// Sets the callback, replacing the one before; null clears it. A call that is running on another thread may
/// still end afterwards. Ignored while no logger stands.
VELMORCORE_API void SetUbrixLogCallback(LogCallback callback);

/// Turns the console output of passing lines on or off; on is the default. Ignored while no logger stands.
VELMORCORE_API void SetConsoleOutput(bool enabled);

}  // namespace Ubrix
