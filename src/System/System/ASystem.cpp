#include <VelmorCore/File.h>
#include <VelmorCore/System.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <new>

#include "Platform/Boundary.h"
#include "Platform/Guid.h"
#include "Platform/Immortal.h"
#include "Platform/Mutex.h"
#include "Storage/File/IniFileImp.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

constexpr char kSection[] = "System";
constexpr char kKey[] = "Udid";

// The device id, once it is known. The text is never freed: callers keep the pointer.
std::atomic<char const*> g_udid{nullptr};

// Lets one thread at a time look for the id. Held while the file is read and written, so that all first
// callers get the same id. Never destroyed.
Platform::RecursiveMutex& UdidMutex() {
    static Platform::Immortal<Platform::RecursiveMutex> mutex;
    return *mutex;
}

// A copy that nobody frees; null if there is no memory.
char const* KeepForever(AString const& text) {
    auto const size = static_cast<std::size_t>(text.GetLength()) + 1;
    char* kept = new (std::nothrow) char[size];
    if (kept != nullptr) {
        std::memcpy(kept, text.CString(), size);
    }
    return kept;
}

AString NewUdid() {
    Platform::Guid guid{};
    if (!Platform::MakeGuid(guid)) {
        return {};
    }
    char text[65];
    std::snprintf(text, sizeof text, "%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X",
                  static_cast<unsigned int>(guid.data1), static_cast<unsigned int>(guid.data2),
                  static_cast<unsigned int>(guid.data3), static_cast<unsigned int>(guid.data4[0]),
                  static_cast<unsigned int>(guid.data4[1]), static_cast<unsigned int>(guid.data4[2]),
                  static_cast<unsigned int>(guid.data4[3]), static_cast<unsigned int>(guid.data4[4]),
                  static_cast<unsigned int>(guid.data4[5]), static_cast<unsigned int>(guid.data4[6]),
                  static_cast<unsigned int>(guid.data4[7]));
    return text;
}

// A new id, or null.
char const* KeepNewUdid() {
    AString const made = NewUdid();
    return made.Empty() ? nullptr : KeepForever(made);
}

// The stored id, or a new one, stored if that can be done.
char const* FindUdid() {
    AString path(CPath::GetDocPath());
    if (path.Empty()) {
        // No directory of the application's: nothing is to be written at the root of the file system.
        return KeepNewUdid();
    }
    path += "/config.ini";
    CIniFileImpl file(path.CString());
    if (!file.Refresh()) {
        // The device has an id, perhaps, that can't be read now: another one must not take its place.
        return nullptr;
    }
    AString const stored = file.ReadString(kSection, kKey, "");
    if (!stored.Empty()) {
        return KeepForever(stored);
    }
    char const* made = KeepNewUdid();
    if (made != nullptr) {
        file.WriteString(kSection, kKey, made);
        file.Save();
    }
    return made;
}

}  // namespace

char const* CSystem::GetModel() {
    return "Windows";
}

char const* CSystem::GetDeviceBrand() {
    return "Windows";
}

char const* CSystem::GetSysVersion() {
    return "Unknown";
}

char const* CSystem::GetAppVersion() {
    return "N";
}

char const* CSystem::GetBundleId() {
    return "Sarnet";
}

bool CSystem::IsDeviceRooted() {
    return false;
}

bool CSystem::IsFirstLaunch() {
    return false;
}

long long CSystem::GetFreeDiskSpace() {
    return 1073741824;
}

int CSystem::CheckPermission(int /*permission*/) {
    VC_LOG(Warning, "Ubrix::CSystem::CheckPermission", "CheckPermission is deprecated");
    return -1;
}

char const* CSystem::GetUdid() {
    char const* udid = g_udid.load(std::memory_order_acquire);
    if (udid != nullptr) {
        return udid;
    }
    Platform::ScopedLock lock(UdidMutex());
    udid = g_udid.load(std::memory_order_relaxed);
    if (udid == nullptr) {
        udid = AtBoundary(udid, [] { return FindUdid(); });
        g_udid.store(udid, std::memory_order_release);
    }
    return udid;
}

}  // namespace Ubrix
