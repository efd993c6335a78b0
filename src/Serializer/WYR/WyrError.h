// The result codes of everything in Wyr: 0 is success, every failure is negative. Any thread.
#pragma once

namespace Ubrix {

class WyrError {
public:
    WyrError() = delete;

    enum Code : int {
        WYR_NO_ERROR = 0,
        WYR_ERR_WRITE_SPACE = -1,
        WYR_ERR_READ_DATA = -2,
        WYR_ERR_STRING_TOO_LONG = -3,
        WYR_ERR_STRING_TOO_SHORT = -4,
        WYR_ERR_STRING_SIZEINFO = -5,
        WYR_ERR_REFER_NEGATIVE = -6,
        WYR_ERR_REFER_TOO_BIG = -7,
        WYR_ERR_NULL_ARGUMENT = -8,
        WYR_ERR_CUTVER_BELOW_BASE = -9,
        WYR_ERR_CUTVER_INDICATOR = -10,
        WYR_ERR_IP_NTOA = -11,
        WYR_ERR_IP_VALUE = -12,
        WYR_ERR_TIME_VALUE = -13,
        WYR_ERR_DATE_VALUE = -14,
        WYR_ERR_DATETIME_VALUE = -15,
        WYR_ERR_LOCALTIME = -16,
        WYR_ERR_HEX_LENGTH = -17,
        WYR_ERR_HEX_FORMAT = -18,
        WYR_ERR_NULL_PARAMETER = -19,
        WYR_ERR_CUTVER_FROM_NET = -20,
        WYR_ERR_VALUE_RANGE = -21,
        WYR_ERR_OPEN_READ = -22,
        WYR_ERR_OPEN_WRITE = -23,
        WYR_ERR_FILE_READ = -24,
        WYR_ERR_FILE_WRITE = -25,
        WYR_ERR_NO_MEMORY = -26,
        WYR_ERR_XML_PARSE = -27,
        WYR_ERR_XML_ROOT = -28,
        WYR_ERR_NUMBER_PARSE = -29,
        WYR_ERR_MACRO_UNDEFINED = -30,
        WYR_ERR_NOT_IMPLEMENTED = -31,
        WYR_ERR_TLV_MAGIC = -32,
        WYR_ERR_SELECTOR = -33,
        WYR_ERR_LENGTH_MISMATCH = -34,
        WYR_ERR_TYPE_ID = -35,
        WYR_ERR_REQUIRED_FIELD = -36,
        WYR_ERR_NULL_ARRAY = -37,
    };

    // The code's text, valid for ever. A positive code reads as success; "unknown error" below the last code.
    static char const* errorText(int code);
};

}  // namespace Ubrix
