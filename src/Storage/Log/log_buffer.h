// Collects log text in a fixed piece of memory, as one open block.
#pragma once

#include <zlib.h>

#include <cstddef>
#include <memory>
#include <string>

#include "Storage/Log/LogCrypt.h"
#include "Storage/Log/autobuffer.h"
#include "Storage/Log/ptrbuffer.h"

namespace Ubrix {

// No lock: one thread at a time.
//
// The memory at any moment, also if the process dies there, holds a block that lacks but its end byte, with
// all text that Write has answered for; only, of an enciphered one, a death inside a Write may spoil the last
// 7 bytes that were before it. Given the memory of an earlier run, the buffer starts with that block, and
// Flush hands it out. Text is added to it only if it is plain and uncompressed, as the buffer's own blocks
// would be: its deflate stream and its key are gone. Until a Flush has closed another one, Write answers
// false.
class LogBuffer {
public:
    // `memory` has `length` bytes, of which at most AutoBuffer::kLongest are used; the caller owns it and
    // keeps it as long as the buffer. `serverPublicKey` as for LogCrypt.
    LogBuffer(void* memory, std::size_t length, bool isCompress, char const* serverPublicKey);
    ~LogBuffer();
    LogBuffer(LogBuffer const&) = delete;
    LogBuffer& operator=(LogBuffer const&) = delete;

    // Appends text to the open block; opens one if there is none. False, and no change of the block, for null
    // or empty text, or if the text can't be compressed. Text that outgrows the memory is cut. Allocates
    // nothing but, for a new block, zlib's state; false if there is no memory for that.
    bool Write(void const* data, std::size_t length);
    // Sets `out` to a whole plain block of the text, and leaves the open block alone. False for null or empty
    // text, or more of it than an AutoBuffer takes.
    bool Write(void const* data, std::size_t length, AutoBuffer& out);
    // Closes the open block and appends it to `out`. Without text since the last time, nothing comes. Throws
    // std::bad_alloc if `out` can't grow; the block then stays open.
    void Flush(AutoBuffer& out);
    // The two steps of Flush, for memory that is to outlive the process: it keeps the block until Clear, so
    // that the block can be stored in between. Nothing is written in between.
    void Close(AutoBuffer& out);
    void Clear();
    PtrBuffer& Buffer() { return buff_; }

    static bool FindHourRange(char const* logPath, int beginHour, int endHour, unsigned long& beginPos,
                              unsigned long& endPos, std::string& errorText);

private:
    bool OpenBlock();
    bool CanContinue() const;
    std::size_t Room() const;
    bool Compress(void const* data, std::size_t length, std::size_t& written);
    void Seal(std::size_t before, std::size_t written);
    void EndStream();

    PtrBuffer buff_;
    bool const isCompress_;
    z_stream cstream_ = {};
    std::unique_ptr<LogCrypt> const log_crypt_;
    // How many bytes at the end of the open block aren't enciphered yet.
    unsigned int plainTailLength_ = 0;
    // Room for one piece on its way through the cipher.
    AutoBuffer sealed_{AutoBuffer::kUnit};
};

}  // namespace Ubrix
