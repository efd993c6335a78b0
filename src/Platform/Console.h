// Where lines for a developer's eyes go: the debugger's channel or standard error.
#pragma once

namespace Ubrix::Platform {

// Prints `text` and a line feed in one piece, so that lines of several threads don't mix. `text` may not be
// null. Needs no memory and nothing else of the library, and is usable before any of it exists. Keeps the
// thread's last error. Thread-safe; failures are ignored.
void WriteConsoleLine(char const* text);

}  // namespace Ubrix::Platform
