#include <VelmorCore/Bundle.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "Platform/Mutex.h"
#include "Storage/Bundle/BundleFactoryLoad.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/Bundle/PlatformMetadata.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

// Guards the pointer to the factory, nothing else.
Platform::RecursiveMutex& InstanceLock() {
    static Platform::RecursiveMutex* const lock = new Platform::RecursiveMutex();
    return *lock;
}

// Guards the pointer to the default bundle; held while that is made.
Platform::RecursiveMutex& DefaultBundleLock() {
    static Platform::RecursiveMutex* const lock = new Platform::RecursiveMutex();
    return *lock;
}

Bundle* g_defaultBundle = nullptr;

}  // namespace

AString Bundle::GetMetaString(char const* section, char const* key, char const* defaultValue) {
    return PlatformMetadata::Get(section, key, defaultValue);
}

// The lock guards the map, and is held while a bundle's file is read or saved: a name has one bundle at any
// time, and its successor sees what it saved. It is taken above the locks of the file.
struct BundleFactory::Registry {
    Platform::RecursiveMutex lock;
    std::map<std::string, std::unique_ptr<Bundle>> bundles VC_GUARDED_BY(lock);
};

BundleFactory* BundleFactory::_Instance = nullptr;

BundleFactory::BundleFactory() : _registry(new Registry) {}

BundleFactory::~BundleFactory() {
    delete _registry;
}

BundleFactory& BundleFactory::GetInstance() {
    Platform::ScopedLock lock(InstanceLock());
    if (_Instance == nullptr) {
        _Instance = new BundleFactory();
    }
    return *_Instance;
}

void BundleFactory::ReleaseInstance() {
    BundleFactory* released = nullptr;
    {
        Platform::ScopedLock lock(InstanceLock());
        std::swap(released, _Instance);
    }
    delete released;
}

void CreateBundleFactory() {
    BundleFactory::GetInstance();
}

Bundle& BundleFactory::GetDefaultBundle() {
    Platform::ScopedLock lock(DefaultBundleLock());
    if (g_defaultBundle == nullptr) {
        auto made = std::make_unique<BundleImpl>();
        // Reading the file logs: a log callback may have asked for the bundle, and then its one stands.
        if (g_defaultBundle == nullptr) {
            g_defaultBundle = made.release();
        }
    }
    return *g_defaultBundle;
}

Bundle& BundleFactory::GetBundle(char const* name) {
    if (name == nullptr) {
        VC_LOG(Error, "Ubrix::BundleFactory::GetBundle", "name is NULL");
        return GetDefaultBundle();
    }
    Platform::ScopedLock lock(_registry->lock);
    auto const standing = _registry->bundles.find(name);
    if (standing != _registry->bundles.end()) {
        return *standing->second;
    }
    // As with the default bundle, one that a log callback has asked for meanwhile stands.
    auto made = std::make_unique<BundleImpl>(name);
    return *_registry->bundles.emplace(name, std::move(made)).first->second;
}

void BundleFactory::DestoryBundle(char const* name) {
    if (name == nullptr) {
        return;
    }
    Platform::ScopedLock lock(_registry->lock);
    _registry->bundles.erase(name);
}

}  // namespace Ubrix
