// The binary forms of a record's fields, and the checks of what a message may say: integers are big-endian,
// texts and arrays have their count before them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Serializer/WYR/WyrBuf.h"

namespace Ubrix {

// Results are WyrError codes. A failed write or read leaves the position where the failing value begins. No
// state: any thread may call.
class WyrPack {
public:
    WyrPack() = delete;

    // 1, 2, 4 and 8 bytes. Signed values are cast; dates and times go as their packed integers. An address is
    // in network order already: WyrBuf::writeBytes and readBytes.
    static int writeInteger(WyrBuf& buf, std::uint8_t value);
    static int writeInteger(WyrBuf& buf, std::uint16_t value);
    static int writeInteger(WyrBuf& buf, std::uint32_t value);
    static int writeInteger(WyrBuf& buf, std::uint64_t value);
    // -2 with too few bytes left.
    static int readInteger(WyrBuf& buf, std::uint8_t* value);
    static int readInteger(WyrBuf& buf, std::uint16_t* value);
    static int readInteger(WyrBuf& buf, std::uint32_t* value);
    static int readInteger(WyrBuf& buf, std::uint64_t* value);

    // A text with its terminator: 4 bytes for their count, then the bytes, or 2 bytes a unit of a wide text.
    // `capacity` is the count of the field, terminator included: -3 for more. Reading also gives -4 for a
    // count of 0, and -5 where the count doesn't end at the first zero; the target is whole or untouched.
    static int writeString(WyrBuf& buf, char const* value, size_t capacity);
    static int readString(WyrBuf& buf, char* value, size_t capacity);
    static int writeWideString(WyrBuf& buf, unsigned short const* value, size_t capacity);
    static int readWideString(WyrBuf& buf, unsigned short* value, size_t capacity);

    // The count of used elements of an array with room for `capacity`: -6 for a negative one, -7 for more.
    static int checkRefer(long long count, size_t capacity);

    // The version to pack for: what is asked for, or the current one for 0 and for what is newer. -9 below
    // `base`.
    static int chooseVersion(int asked, int base, int current, int* cutVersion);
    // A version that a message brought: -20 outside of [base, current].
    static int checkVersionFromNet(int cutVersion, int base, int current);
};

}  // namespace Ubrix
