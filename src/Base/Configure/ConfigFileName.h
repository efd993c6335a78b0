// Which names a caller's config file can have. No state: any thread.
#pragma once

#include <string_view>

namespace Velmor {

// Whether "<name>.config" is a file of the caller's own in the cache directory, on every system: 200 bytes at
// most, without separators, control characters, and what Windows reserves (`< > : " | ? *`, device names);
// not "." or ".."; nothing that the key store can't keep as a name; and in no spelling "RemoteConfig" or
// "Velmor", whose files the library keeps itself.
bool CanNameConfigFile(std::string_view name);

}  // namespace Velmor
