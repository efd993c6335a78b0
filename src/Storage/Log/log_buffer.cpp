#include "Storage/Log/log_buffer.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>

namespace Ubrix {

LogBuffer::LogBuffer(void* memory, std::size_t length, bool isCompress, char const* serverPublicKey)
    : buff_(memory, std::min(length, AutoBuffer::kLongest), std::min(length, AutoBuffer::kLongest)),
      isCompress_(isCompress),
      log_crypt_(std::make_unique<LogCrypt>(serverPublicKey)) {
    sealed_.AddCapacity(AutoBuffer::kUnit);
    bool compressed = false;
    std::uint32_t bodyLength = 0;
    std::size_t used = 0;
    // A block that wouldn't fit, its end byte included, was never this memory's.
    if (log_crypt_->ReadOpenHeader(buff_.Ptr(), buff_.Length(), compressed, bodyLength) &&
        bodyLength < buff_.Length() - log_crypt_->GetHeaderLen()) {
        used = log_crypt_->GetHeaderLen() + bodyLength;
    }
    buff_.Length(used, used);
}

LogBuffer::~LogBuffer() {
    EndStream();
}

bool LogBuffer::Write(void const* data, std::size_t length) {
    if (data == nullptr || length == 0 || (buff_.Length() == 0 && !OpenBlock()) || !CanContinue()) {
        return false;
    }
    std::size_t const before = buff_.Length();
    std::size_t written = std::min(length, Room());
    if (!isCompress_) {
        buff_.Write(data, written);
    } else if (!Compress(data, length, written)) {
        return false;
    }
    Seal(before, written);
    return true;
}

bool LogBuffer::Write(void const* data, std::size_t length, AutoBuffer& out) {
    std::size_t const around = log_crypt_->GetHeaderLen() + log_crypt_->GetTailLen();
    if (data == nullptr || length == 0 || length > AutoBuffer::kLongest - around) {
        return false;
    }
    log_crypt_->SealPlainBlock(static_cast<char const*>(data), length, out);
    return true;
}

void LogBuffer::Flush(AutoBuffer& out) {
    Close(out);
    Clear();
}

void LogBuffer::Close(AutoBuffer& out) {
    if (LogCrypt::GetBodyLength(buff_.Ptr(), buff_.Length()) == 0) {
        EndStream();
        return;
    }
    RequireOfBuffer(buff_.Length() >= log_crypt_->GetHeaderLen(),
                    "buff_.Length() >= log_crypt_->GetHeaderLen()");
    std::size_t const whole = buff_.Length() + log_crypt_->GetTailLen();
    // What can fail goes first: without memory for it the block stays open, its stream included.
    out.AddCapacity(out.Length() + whole);
    EndStream();
    LogCrypt::WriteEndHour(buff_.Ptr());
    log_crypt_->WriteEndByte(buff_.Ptr() + buff_.Length());
    buff_.Length(whole, whole);
    out.Seek(0, FromEnd);
    out.Write(buff_.Ptr(), whole);
}

bool LogBuffer::FindHourRange(char const* logPath, int beginHour, int endHour, unsigned long& beginPos,
                              unsigned long& endPos, std::string& errorText) {
    return LogCrypt::FindHourRange(logPath, beginHour, endHour, beginPos, endPos, errorText);
}

bool LogBuffer::OpenBlock() {
    std::size_t const header = log_crypt_->GetHeaderLen();
    if (buff_.MaxLength() < header + log_crypt_->GetTailLen()) {
        return false;
    }
    Clear();
    // Raw deflate: negative window bits mean no wrapper.
    if (isCompress_ && deflateInit2(&cstream_, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, MAX_MEM_LEVEL,
                                    Z_DEFAULT_STRATEGY) != Z_OK) {
        cstream_ = {};
        return false;
    }
    log_crypt_->WriteHeader(buff_.Ptr(), isCompress_);
    buff_.Length(header, header);
    return true;
}

bool LogBuffer::CanContinue() const {
    return log_crypt_->IsOwnHeader(buff_.Ptr(), isCompress_) && (!isCompress_ || cstream_.state != nullptr);
}

// The end byte always has its place.
std::size_t LogBuffer::Room() const {
    return buff_.MaxLength() - buff_.Length() - log_crypt_->GetTailLen();
}

bool LogBuffer::Compress(void const* data, std::size_t length, std::size_t& written) {
    std::size_t const room = Room();
    if (length > std::numeric_limits<uInt>::max()) {
        return false;
    }
    // zlib doesn't write through its input pointer, which is mutable only by the age of its interface.
    cstream_.next_in = static_cast<Bytef*>(const_cast<void*>(data));
    cstream_.avail_in = static_cast<uInt>(length);
    cstream_.next_out = reinterpret_cast<Bytef*>(buff_.Ptr() + buff_.Length());
    cstream_.avail_out = static_cast<uInt>(room);
    if (deflate(&cstream_, Z_SYNC_FLUSH) != Z_OK) {
        return false;
    }
    written = room - cstream_.avail_out;
    return true;
}

// Enciphers what was written behind `before`, together with the tail that was left before it: in pieces of
// whole units that need no new memory, since the stream has consumed the text by now.
void LogBuffer::Seal(std::size_t before, std::size_t written) {
    std::size_t const end = before + written;
    for (std::size_t at = before - plainTailLength_; at < end; at += AutoBuffer::kUnit) {
        std::size_t const length = std::min(AutoBuffer::kUnit, end - at);
        log_crypt_->EncipherSpan(buff_.Ptr() + at, length, sealed_, plainTailLength_);
        std::memcpy(buff_.Ptr() + at, sealed_.Ptr(), length);
    }
    buff_.Length(end, end);
    LogCrypt::AddBodyLength(buff_.Ptr(), static_cast<std::uint32_t>(written));
}

void LogBuffer::EndStream() {
    if (cstream_.state != nullptr) {
        deflateEnd(&cstream_);
        cstream_ = {};
    }
}

void LogBuffer::Clear() {
    if (buff_.Length() > 0) {
        // The start byte first: what dies in the middle of this leaves no block.
        *buff_.Ptr() = 0;
        std::atomic_signal_fence(std::memory_order_seq_cst);
        std::memset(buff_.Ptr(), 0, buff_.Length());
    }
    buff_.Length(0, 0);
    plainTailLength_ = 0;
}

}  // namespace Ubrix
