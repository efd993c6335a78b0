// Threads of the log itself: plain ones, so that logging needs nothing of the worker threads.
#pragma once

namespace Ubrix {

// Runs `start` on a detached thread of its own and logs "CreateThread %s:%p" with `name` and the thread's
// handle, null if the system refused.
void LogCreateThread(void (*start)(), char const* name);

}  // namespace Ubrix
