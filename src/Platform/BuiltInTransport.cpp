#include "Platform/BuiltInTransport.h"

#include "Platform/Immortal.h"
#include "Platform/Mutex.h"

namespace Ubrix::Platform {

namespace {

// The settings and their lock, which is a leaf. Never destroyed: requests may still run while the process
// ends.
struct SettingsRecord {
    RecursiveMutex lock;
    HttpSettings settings VC_GUARDED_BY(lock);
};

SettingsRecord& Record() {
    static Immortal<SettingsRecord> record;
    return *record;
}

}  // namespace

HttpSettings CurrentHttpSettings() {
    SettingsRecord& record = Record();
    ScopedLock const lock(record.lock);
    return record.settings;
}

void SetHttpCaFile(std::string const& path) {
    SettingsRecord& record = Record();
    ScopedLock const lock(record.lock);
    record.settings.caFile = path;
}

void SetHttpConnectAddress(std::string const& address) {
    SettingsRecord& record = Record();
    ScopedLock const lock(record.lock);
    record.settings.connectAddress = address;
}

void SetHttpTimeouts(HttpTimeouts const& timeouts) {
    SettingsRecord& record = Record();
    ScopedLock const lock(record.lock);
    record.settings.timeouts = timeouts;
}

}  // namespace Ubrix::Platform
