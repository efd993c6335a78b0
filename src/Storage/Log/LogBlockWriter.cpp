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

}  // namespace

std::shared_ptr<LogBlockWriter> LogBlockWriter::Start(Platform::RecursiveMutex& lock, AFileLogger& file,
                                                      LogBlockOptions const& options) {
    auto writer = std::make_shared<LogBlockWriter>(lock, file, options);
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
    char area[kStageSize];
    PtrBuffer stage(area, 0, sizeof area);
    stage.Write(line, std::strlen(line));
    if (stage.Length() == 0 || area[stage.Length() - 1] != '\n') {
        stage.Write("\n", 1);
    }
    std::size_t const waiting = _logBuffer->Buffer().Length();
    if (waiting >= kFullLength) {
        int const length = std::snprintf(area, sizeof area,
                                         "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: %d\n",
                                         static_cast<int>(waiting));
        stage.Length(0, static_cast<std::size_t>(length));
    }
    bool const ripe =
        _logBuffer->Write(stage.Ptr(), stage.Length()) && _logBuffer->Buffer().Length() >= kWriteLength;
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
    {
        Platform::ScopedLock lock(_lock);
        last = std::move(_logBuffer);
        _flushSignal.Set();
    }
    if (last == nullptr) {
        return;
    }
    // Behind what the flusher has in hand, so that blocks keep their order.
    _flusherEnded.Wait();
    _closedBlock.Length(0, 0);
    last->Flush(_closedBlock);
    WriteToFile(_closedBlock);
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
        _logBuffer->Flush(_closedBlock);
    }
    WriteToFile(_closedBlock);
    return true;
}

void LogBlockWriter::WriteToFile(AutoBuffer const& block) {
    if (block.Length() > 0) {
        _file.Log2File(block.Ptr(), static_cast<unsigned int>(block.Length()));
    }
}

}  // namespace Ubrix
