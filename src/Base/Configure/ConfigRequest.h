// The request that asks the server for its configuration. No state: any thread.
#pragma once

#include <string>

namespace Velmor {

// The whole URL: `baseUrl` as it is, the path, `requestText` and the rule as query values, and the time
// in seconds since 1970-01-01 UTC.
std::string ComposeConfigUrl(std::string const& baseUrl, std::string const& requestText,
                             long long epochSeconds);

}  // namespace Velmor
