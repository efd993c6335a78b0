#include "Base/Configure/ConfigRequest.h"

#include <VelmorCore/Object.h>

#include "Base/Configure/JsonCpp.h"
#include "Serializer/URLEncoder.h"

namespace Velmor {

std::string ComposeConfigUrl(std::string const& baseUrl, std::string const& requestText,
                             long long epochSeconds) {
    // Always 0: the server sends the whole configuration each time.
    std::string const rule = ComposeJson([](Ubrix_Json::Value& members) { members["rule_id"] = 0; });
    return baseUrl + "/cfgpush/getConfig?" + "com_params=" + Ubrix::URLEncoder::Encode(requestText) +
           "&biz_params=" + Ubrix::URLEncoder::Encode(rule) + "&r=" + Ubrix::ll2str(epochSeconds).c_str();
}

}  // namespace Velmor
