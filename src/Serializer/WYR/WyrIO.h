// A file read whole, and output to a file or to memory. Each object belongs to one thread.
#pragma once

#include <VelmorCore/Export.h>

#include <cstdarg>
#include <cstddef>
#include <cstdio>

#include "Serializer/WYR/WyrBuf.h"

namespace Ubrix {

class WyrInput {
public:
    WyrInput();
    ~WyrInput();
    WyrInput(WyrInput const&) = delete;
    WyrInput& operator=(WyrInput const&) = delete;

    // Reads the whole file: -22 if it can't be opened, -26 without memory for it, -24 if it can't be read.
    // After a failure the object mustn't be used any more.
    int load(char const* file);

    // The file's bytes with a zero behind them, to be changed at will; null until something was loaded. Owned
    // by the object, until its end or its next load.
    char* content() const { return _content; }
    int state() const { return _state; }

private:
    char* _content;
    int _state;
};

// Once an operation has failed, the caller stops: each of them requires that none has failed before.
class WyrOutput {
public:
    // The file stays the caller's, open and usable.
    explicit WyrOutput(std::FILE* file);
    // The memory stays the caller's and has to outlive the output.
    WyrOutput(char* memory, size_t size);
    virtual ~WyrOutput();
    WyrOutput(WyrOutput const&) = delete;
    WyrOutput& operator=(WyrOutput const&) = delete;

    // All answer the state: 0, -25 for a failure of the file, -1 without room in the memory.
    int print(char const* format, va_list args) VELMORCORE_PRINTF(2, 0);
    int printf(char const* format, ...) VELMORCORE_PRINTF(2, 3);
    int write(void const* src, size_t size);

    int state() const { return _state; }
    // Bytes written to memory so far.
    size_t used() const { return _buffer.position; }

protected:
    std::FILE* _file;
    WyrBuf _buffer;
    int _state;
};

}  // namespace Ubrix
