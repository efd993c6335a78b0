// A hidden window, whose only use is to get messages onto the thread that made it.
//
// A window belongs to the thread that made it: only that thread's pump handles its messages, and only that
// thread can close it. A thread that ends takes its windows with it. Handles are weak: every function may be
// called with a handle whose window is gone, and refuses it. All functions are thread-safe.
#pragma once

#include <cstdint>

namespace Ubrix::Platform {

// Names a window.
enum class WindowHandle : std::uintptr_t { None = 0 };

// What a window does with its messages. Both run on the window's thread with no lock held.
struct WindowProcedure {
    // Handles a message. False leaves it to the system's default treatment.
    bool (*handle)(WindowHandle window, unsigned int message, void* parameter);
    // Gets each posted message that will never be handled, because the window closes before it.
    void (*discard)(unsigned int message, void* parameter);
};

// Makes a window of the calling thread. `None` if the system refuses.
WindowHandle OpenMessageWindow(WindowProcedure const& procedure);

// True while the window exists.
bool MessageWindowExists(WindowHandle window);

// Closes a window of the calling thread: senders that wait for it come back, and its posted messages are
// discarded. False if the window is gone or another thread's; then nothing happens.
bool CloseMessageWindow(WindowHandle window);

// Has the window handle a message, and waits until it did; from the window's own thread that is at once. It
// overtakes posted messages. A thread that waits here goes on handling what others send to its own windows,
// so two threads that send to each other get along. False if the window is gone, or closes before it comes
// to the message.
bool SendToMessageWindow(WindowHandle window, unsigned int message, void* parameter);

// Leaves a message for the window and returns. False if the window is gone; then the parameter stays the
// caller's.
bool PostToMessageWindow(WindowHandle window, unsigned int message, void* parameter);

// Waits at most `waitMilliseconds` for a message to any window of the calling thread, and handles all that
// are there. False if none came.
bool PumpMessages(unsigned int waitMilliseconds);

}  // namespace Ubrix::Platform
