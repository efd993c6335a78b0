// Where a module's log files are.
#pragma once

#include <VelmorCore/File.h>

namespace Ubrix {

// One below the other: the cache directory, all modules' logs, one module's own. The cache directory is empty
// if there is none; the others then lead nowhere. A value: nothing is made or opened. Any thread.
struct LogDirectories {
    explicit LogDirectories(char const* module) : cache(CPath::GetCachePath()), all(cache) {
        CPath::AppendSubPath(all, "VelmorSDKLog");
        own = all;
        CPath::AppendSubPath(own, module);
    }

    AString cache;
    AString all;
    AString own;
};

}  // namespace Ubrix
