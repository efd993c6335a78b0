#include <VelmorCore/File.h>

#include <optional>
#include <string>

#include "Platform/FileLock.h"
#include "Platform/Immortal.h"
#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/File/OwnDirectories.h"

namespace Ubrix {

namespace {

constexpr unsigned int kLongestWait = 2000;

// One lock file for the store and all files whose keys it has.
struct Process {
    Platform::RecursiveMutex mutex;
    int depth = 0;
    std::optional<Platform::FileLock> lock;
    bool hasWaitedInVain = false;
};

Process& ThisProcess() {
    static Platform::Immortal<Process> process;
    return *process;
}

}  // namespace

SecurityStore::Turn::Turn() : _held(false) {
    char const* const cache = CPath::GetCachePath();
    bool const isOurs = cache != nullptr && IsSafeForValues(cache);
    std::string const path = isOurs ? std::string(cache) + kSecurityStoreFile + ".lock" : "";
    Process& process = ThisProcess();
    process.mutex.Lock();
    if (process.depth++ == 0) {
        process.lock.emplace(path.c_str(), process.hasWaitedInVain ? 0 : kLongestWait);
        process.hasWaitedInVain = process.lock->IsElsewhere();
    }
    _held = process.lock->IsHeld();
}

SecurityStore::Turn::~Turn() {
    Process& process = ThisProcess();
    if (--process.depth == 0) {
        process.lock.reset();
    }
    process.mutex.Unlock();
}

}  // namespace Ubrix
