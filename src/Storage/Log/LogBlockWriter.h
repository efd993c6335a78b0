// The asynchronous way of log lines into the file: a block in memory, and a thread that writes it out.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "Platform/Event.h"
#include "Platform/Mutex.h"
#include "Storage/Log/AFileLogger.h"
#include "Storage/Log/log_buffer.h"

namespace Ubrix {

// What blocks a logger writes instead of lines.
struct LogBlockOptions {
    bool isCompress = true;
    // 128 hexadecimal digits: whoever has the private half reads the blocks. Empty: anybody does.
    std::string serverPublicKey;
    // LogBlockWriter::kBlockLength bytes of the caller's, which outlive the logger. A block that is in
    // them goes to the file before the first line: memory that survives a crash brings the crash's last
    // lines, all that Log had returned for, but for those that found no room (of enciphered blocks see
    // LogBuffer). A crash just behind a write of the file brings that block a second time. Null: the logger's
    // own memory.
    void* memory = nullptr;
};

// Thread-safe. Its lock is its logger's, which covers each use of the buffer. It is not held while the file
// is written, unless the memory is the caller's, who wants it to keep the block until the file has it. So the
// order is the logger's lock first, then the file's, or the wake-up's own.
//
// Lines that find no room are counted. The count comes into the log as soon as there is room again.
//
// All memory is taken at the start: when it is short, lines go on, and the flusher has nothing to fail at.
class LogBlockWriter {
public:
    static constexpr std::size_t kBlockLength = 153600;
    // A fuller buffer takes no more lines, only a warning in the place of each while that fits.
    static constexpr std::size_t kFullLength = kBlockLength * 4 / 5;
    // A fuller buffer is written out.
    static constexpr std::size_t kWriteLength = kBlockLength / 3;
    // The longest time that a line waits.
    static constexpr long long kFlushWaitMs = 86400000;

    // Writes out what is in the memory and starts the flusher. Null if the system refuses the thread;
    // std::bad_alloc if it refuses the memory. `lock` and `file` are the logger's, and stay until Stop has
    // returned.
    static std::shared_ptr<LogBlockWriter> Start(Platform::RecursiveMutex& lock, AFileLogger& file,
                                                 LogBlockOptions const& options);

    // Use Start.
    LogBlockWriter(Platform::RecursiveMutex& lock, AFileLogger& file, LogBlockOptions const& options);
    LogBlockWriter(LogBlockWriter const&) = delete;
    LogBlockWriter& operator=(LogBlockWriter const&) = delete;
    ~LogBlockWriter() = default;

    // Takes `line` into the open block, with a line feed if it has none. After Stop, and if the block refuses
    // it, the line is dropped.
    void Append(char const* line);
    // Puts `text` into the file at once, in a plain block of its own, ahead of lines that still wait. Throws
    // std::bad_alloc if there is no memory for the block.
    void WriteNow(char const* text);
    // Ends the flusher and writes out what waits. Lines that come later are dropped. Waits for a write in
    // hand; not to be called with the logger's lock held.
    void Stop();

private:
    static void RunFlusher(void* self);
    bool AppendToBlock(char const* line);
    bool FlushOnce();
    void WriteToFile(AutoBuffer const& block);
    void WriteOut(LogBuffer& buffer);

    Platform::RecursiveMutex& _lock;
    AFileLogger& _file;
    std::unique_ptr<char[]> const _ownMemory;
    // Null once stopped.
    std::unique_ptr<LogBuffer> _logBuffer VC_GUARDED_BY(_lock);
    // Lines that found no room, and that the log doesn't tell of yet.
    unsigned long long _left VC_GUARDED_BY(_lock) = 0;
    // What is on its way to the file: the flusher's, after its end Stop's. A whole block fits.
    AutoBuffer _closedBlock;
    // Keeps a wake-up that comes while the flusher is busy.
    Platform::Event _flushSignal;
    Platform::Event _flusherEnded;
};

}  // namespace Ubrix
