#include "Base/Configure/ConfigRequest.h"

#include <VelmorCore/Object.h>

#include "Base/Configure/JsonCpp.h"
#include "Serializer/URLEncoder.h"

namespace Velmor {

std::string ComposeConfigUrl(std::string const& baseUrl, std::string const& requestText,
                             long long epochSeconds) {
    Ubrix_Json::Value rule(Ubrix_Json::objectValue);
    // Always 0: the server sends the whole configuration each time.
    rule["rule_id"] = 0;
    return baseUrl + "/cfgpush/getConfig?" + "com_params=" + Ubrix::URLEncoder::Encode(requestText) +
           "&biz_params=" + Ubrix::URLEncoder::Encode(WriteCompactJson(rule)) +
           "&r=" + Ubrix::ll2str(epochSeconds).c_str();
}

}  // namespace Velmor
