#include "Storage/Log/LogBlockWriter.h"

#include <cstdio>
#include <cstring>
#include <utility>

#include "Platform/Thread.h"
#include "System/Time/ClockSource.h"

namespace Ubrix {

namespace {

// More than any line has; on the stack, so that a line costs no allocation.
constexpr std::size_t kStageSize = 16384;

bool Take(LogBuffer& buffer, char const* line) {
    char area[kStageSize];
    PtrBuffer stage(area, 0, sizeof area);
    stage.Write(line, std::strlen(line));
    if (stage.Length() == 0 || area[stage.Length() - 1] != '\n') {
        stage.Write("\n", 1);
    }
    return buffer.Write(stage.Ptr(), stage.Length());
}

// A line of the writer's own, with a number in it.
VELMORCORE_PRINTF(2, 0) bool WriteNumber(LogBuffer& buffer, char const* format, unsigned long long number) {
    char text[128];
    int const length = std::snprintf(text, sizeof text, format, number);
    return buffer.Write(text, static_cast<std::size_t>(length));
}

// Puts the count of lines that were left out into the log, if there are any and it finds room now.
void TellLeft(LogBuffer& buffer, unsigned long long& left) {
    if (left > 0 && WriteNumber(buffer, "[F][ %llu log lines were left out, for want of room\n", left)) {
        left = 0;
    }
}

}  // namespace

std::shared_ptr<LogBlockWriter> LogBlockWriter::Start(Platform::RecursiveMutex& lock, AFileLogger& file,
                                                      LogBlockOptions const& options) {
    auto writer = std::make_shared<LogBlockWriter>(lock, file, options);
    // Lines can't join every block of an earlier run, nor wait until the thread has come to it.
    writer->FlushOnce();
    // The thread's own share: its last step must not meet a destroyed writer.
    auto share = std::make_unique<std::shared_ptr<LogBlockWriter>>(writer);
    if (!Platform::StartThread(RunFlusher, share.get())) {
        return nullptr;
    }
    static_cast<void>(share.release());
    return writer;
}

LogBlockWriter::LogBlockWriter(Platform::RecursiveMutex& lock, AFileLogger& file,
                               LogBlockOptions const& options)
    : _lock(lock), _file(file), _ownMemory(options.memory == nullptr ? new char[kBlockLength]() : nullptr) {
    void* const memory = options.memory == nullptr ? _ownMemory.get() : options.memory;
    _logBuffer = std::make_unique<LogBuffer>(memory, kBlockLength, options.isCompress,
                                             options.serverPublicKey.c_str());
    _closedBlock.AddCapacity(kBlockLength);
}

void LogBlockWriter::Append(char const* line) {
    if (AppendToBlock(line)) {
        // Threads that log without a pause would keep the lock from the flusher.
        Platform::SleepFor(0);
    }
}

// True if the block is to be written out.
bool LogBlockWriter::AppendToBlock(char const* line) {
    Platform::ScopedLock lock(_lock);
    if (_logBuffer == nullptr) {
        return false;
    }
    std::size_t const waiting = _logBuffer->Buffer().Length();
    if (waiting >= kFullLength) {
        ++_left;
        WriteNumber(*_logBuffer, "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: %llu\n",
                    waiting);
    } else {
        TellLeft(*_logBuffer, _left);
        _left += Take(*_logBuffer, line) ? 0 : 1;
    }
    bool const ripe = _logBuffer->Buffer().Length() >= kWriteLength;
    if (ripe) {
        _flushSignal.Set();
    }
    return ripe;
}

void LogBlockWriter::WriteNow(char const* text) {
    AutoBuffer block;
    {
        Platform::ScopedLock lock(_lock);
        if (_logBuffer == nullptr || !_logBuffer->Write(text, std::strlen(text), block)) {
            return;
        }
    }
    WriteToFile(block);
}

void LogBlockWriter::Stop() {
    std::unique_ptr<LogBuffer> last;
    unsigned long long left = 0;
    {
        Platform::ScopedLock lock(_lock);
        last = std::move(_logBuffer);
        left = std::exchange(_left, 0ULL);
        _flushSignal.Set();
    }
    if (last == nullptr) {
        return;
    }
    // Behind what the flusher has in hand, so that blocks keep their order.
    _flusherEnded.Wait();
    WriteOut(*last);
    TellLeft(*last, left);
    WriteOut(*last);
}

void LogBlockWriter::RunFlusher(void* self) {
    std::unique_ptr<std::shared_ptr<LogBlockWriter>> const share(
        static_cast<std::shared_ptr<LogBlockWriter>*>(self));
    LogBlockWriter& writer = **share;
    Platform::NameCurrentThread("LogFlusher");
    while (writer.FlushOnce()) {
        ClockSource const& clock = ClockSource::Current();
        clock.WaitUntil(writer._flushSignal, clock.MonotonicMilliseconds() + kFlushWaitMs);
    }
    writer._flusherEnded.Set();
}

// False once stopped.
bool LogBlockWriter::FlushOnce() {
    _closedBlock.Length(0, 0);
    {
        Platform::ScopedLock lock(_lock);
        if (_logBuffer == nullptr) {
            return false;
        }
        // Whatever has been signalled so far is met by this turn.
        _flushSignal.Reset();
        if (_ownMemory == nullptr) {
            WriteOut(*_logBuffer);
            return true;
        }
        _logBuffer->Flush(_closedBlock);
    }
    WriteToFile(_closedBlock);
    return true;
}

// The memory keeps the block until the file has it.
void LogBlockWriter::WriteOut(LogBuffer& buffer) {
    _closedBlock.Length(0, 0);
    buffer.Close(_closedBlock);
    WriteToFile(_closedBlock);
    buffer.Clear();
}

void LogBlockWriter::WriteToFile(AutoBuffer const& block) {
    if (block.Length() > 0) {
        _file.Log2File(block.Ptr(), static_cast<unsigned int>(block.Length()));
    }
}

}  // namespace Ubrix
