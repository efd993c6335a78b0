#include "Serializer/WYR/WyrError.h"

namespace Ubrix {

namespace {

constexpr char const* kTexts[] = {
    "no error",
    "available free space in buffer is not enough",
    "available data in buffer is not enough",
    "string length surpass defined size",
    "string length smaller than min string length",
    "string sizeinfo inconsistent with real length",
    "reffer value can not be minus",
    "reffer value bigger than count or size",
    "pointer-type argument is NULL",
    "cut-version is smaller than base-version",
    "cut-version not covers entry refered by versionindicator",
    "inet_ntoa failed when parse wyr_ip_t",
    "value variable of wyr_ip_t is invalid",
    "value variable of wyr_time_t is invalid",
    "value variable of wyr_date_t is invalid",
    "value variable of wyr_datetime_t is invalid",
    "function 'localtime' or 'localtime_r' failed",
    "invalid hex-string length, must be an even number",
    "invalid hex-string format, each character must be a hex-digit",
    "NULL pointer as parameter",
    "cutVer from net-msg not in [BASEVERSION, CURRVERSION]",
    "string-formated value underflow or overflow",
    "failed to open file with read-mode",
    "failed to open file with write-mode",
    "failed to read data from file",
    "failed to write data into file",
    "failed to allocate heap memory",
    "failed to parse XML-formated data",
    "XML root-node is NOT what expected",
    "failed to parse integer or float from string",
    "specified macro name has NOT been defined",
    "function has NOT been implemented by derived class",
    "bad tlv encode magic",
    "invalid selector",
    "unmatched length",
    "unknown type id",
    "at least 1 required field been lost",
    "null array shouldn't be packed",
};
static_assert(sizeof kTexts / sizeof kTexts[0] == 1 - WyrError::WYR_ERR_NULL_ARRAY, "one text a code");

}  // namespace

char const* WyrError::errorText(int code) {
    if (code >= 0) {
        return kTexts[0];
    }
    return code < WYR_ERR_NULL_ARRAY ? "unknown error" : kTexts[-code];
}

}  // namespace Ubrix
