// A window on a byte array of the caller's: what is written or read goes to or comes from `position`.
#pragma once

#include <VelmorCore/Export.h>

#include <cstdarg>
#include <cstddef>

namespace Ubrix {

// Each operation answers a WyrError code. Not thread-safe: a buffer belongs to one thread at a time.
class WyrBuf {
public:
    // An empty window on nothing.
    WyrBuf();
    // The memory has to outlive the buffer. Null memory has length 0, whatever `size` says.
    WyrBuf(char* memory, size_t size);
    ~WyrBuf();
    WyrBuf(WyrBuf const&) = delete;
    WyrBuf& operator=(WyrBuf const&) = delete;

    // Hands the memory, which malloc made, over to the buffer: its destructor frees it.
    void own();

    char* begin() const { return _begin; }
    // Bytes between `position` and `length`. A position beyond the length is a programmer's error; it leaves
    // no room, so that nothing is ever written or read outside the memory.
    size_t freeRoom() const;

    // -8 for a null source, -1 without room for all of it; neither writes anything.
    int writeBytes(void const* src, size_t size);
    // -2 with fewer than `size` bytes left, -8 for a null target; neither moves the position.
    int readBytes(void* dest, size_t size);
    // -1 without room.
    int writeChar(char c);
    // Puts a zero behind `c`, which the next write overwrites: the text stays terminated. -1 without room for
    // both.
    int writeCharWithNull(char c);
    // As printf. The terminator needs room too, and stays behind the position. -1 otherwise: the position
    // stays, the free room may hold part of the text.
    int textize(char const* format, ...) VELMORCORE_PRINTF(2, 3);
    int vtextize(char const* format, va_list args) VELMORCORE_PRINTF(2, 0);

    // The bytes from the position to the length as upper-case hexadecimal digits and a zero. `usedSize`,
    // which may be null, receives the text's size with its terminator. -1 if `destSize` is too small, with
    // nothing written. The position stays.
    int dumpHex(char* destBuf, size_t destSize, size_t* usedSize) const;
    // Fills the window from the position on with the bytes of a hexadecimal text of `srcSize` characters, as
    // many as have room; the length becomes the end of them, the position stays. `usedSize`, which may be
    // null, receives the characters taken. -17 for an odd size; -18 for a character that is no digit, with
    // what was before its pair stored and counted, and the length as it was.
    int loadHex(char const* srcHexStr, size_t srcSize, size_t* usedSize);

private:
    char* _begin;

public:
    size_t position;  // of the next byte, never beyond the length
    size_t length;    // end of the usable memory, from its begin

private:
    bool _owned;
};

}  // namespace Ubrix
