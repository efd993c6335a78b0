// Threads: start, number, name, sleep.
#pragma once

namespace Ubrix::Platform {

// Starts a detached thread of default attributes that runs `body(argument)` and ends when it returns.
// `*handle`, if not null, receives a value that identifies the thread for a log line; it owns nothing.
// False if the system refused: then nothing runs, and `*handle` is null.
bool StartThread(void (*body)(void* argument), void* argument, void** handle = nullptr);

// The calling thread's number as the system's own tools show it. Any thread.
unsigned int CurrentThreadNumber();

// Names the calling thread for debuggers. Systems that limit the length cut the name; failure is silent.
void NameCurrentThread(char const* name);

// Sleeps at least `milliseconds`; 0 yields the processor.
void SleepFor(unsigned int milliseconds);

}  // namespace Ubrix::Platform
