#include <VelmorCore/Bundle.h>

#include <map>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "Base/Ubrix/Service.h"
#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Storage/Bundle/BundleFactoryLoad.h"
#include "Storage/Bundle/BundleHold.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/Bundle/PlatformMetadata.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

// A bundle by name, and who keeps it.
struct NamedBundle {
    explicit NamedBundle(std::string const& path) : bundle(path.c_str()) {}
    bool IsKept() const { return isHandedOut || holds != 0; }

    BundleImpl bundle;
    // From GetBundle to DestoryBundle: the factory's callers are one keeper.
    bool isHandedOut = false;
    int holds = 0;
};

// The holder's lock is also held while a bundle's file is read or saved: a name has one bundle at any time,
// and its successor sees what it saved. It is taken above the locks of the file.
struct NamedBundles {
    std::map<std::string, NamedBundle> all;

    NamedBundle& Find(std::string const& path) { return all.try_emplace(path, path).first->second; }
    // The bundle is saved, with its end or by hand.
    void LetGo(std::map<std::string, NamedBundle>::iterator entry) {
        if (entry->second.IsKept()) {
            entry->second.bundle.Save();
        } else {
            all.erase(entry);
        }
    }
};

Service<NamedBundles>& TheBundles() {
    static Platform::Immortal<Service<NamedBundles>> bundles(nullptr);
    return *bundles;
}

// Lasts as long as the process.
Service<BundleImpl>& TheDefaultBundle() {
    static Platform::Immortal<Service<BundleImpl>> bundle(nullptr);
    return *bundle;
}

// What a caller gets if there is no memory for a bundle.
Bundle& NoBundle() {
    static Platform::Immortal<BundleImpl> bundle{IniBundle::WithoutFile()};
    return *bundle;
}

}  // namespace

AString Bundle::GetMetaString(char const* section, char const* key, char const* defaultValue) {
    return PlatformMetadata::Get(section, key, defaultValue);
}

BundleFactory& BundleFactory::GetInstance() {
    static Platform::Immortal<BundleFactory> factory([](void* room) { return new (room) BundleFactory; });
    return *factory;
}

void BundleFactory::ReleaseInstance() {
    AtBoundary([] {
        TheBundles().With([](NamedBundles& bundles) {
            for (auto entry = bundles.all.begin(); entry != bundles.all.end();) {
                auto const next = std::next(entry);
                if (std::exchange(entry->second.isHandedOut, false)) {
                    bundles.LetGo(entry);
                }
                entry = next;
            }
        });
    });
}

void CreateBundleFactory() {
    BundleFactory::GetInstance();
    TheBundles();
    TheDefaultBundle();
    NoBundle();
}

Bundle& BundleFactory::GetDefaultBundle() {
    Bundle* bundle = &NoBundle();
    AtBoundary([&bundle] { bundle = TheDefaultBundle().Share().get(); });
    return *bundle;
}

Bundle& BundleFactory::GetBundle(char const* name) {
    if (name == nullptr) {
        VC_LOG(Error, "Ubrix::BundleFactory::GetBundle", "name is NULL");
        return GetDefaultBundle();
    }
    Bundle* bundle = &NoBundle();
    AtBoundary([&] {
        TheBundles().With([&](NamedBundles& bundles) {
            NamedBundle& named = bundles.Find(name);
            named.isHandedOut = true;
            bundle = &named.bundle;
        });
    });
    return *bundle;
}

void BundleFactory::DestoryBundle(char const* name) {
    if (name == nullptr) {
        return;
    }
    AtBoundary([name] {
        TheBundles().With([name](NamedBundles& bundles) {
            auto const entry = bundles.all.find(name);
            if (entry != bundles.all.end() && std::exchange(entry->second.isHandedOut, false)) {
                bundles.LetGo(entry);
            }
        });
    });
}

Bundle& BundleHold::Take(std::string path) {
    return TheBundles().With([&](NamedBundles& bundles) -> Bundle& {
        NamedBundle& named = bundles.Find(path);
        ++named.holds;
        _path = std::move(path);
        return named.bundle;
    });
}

BundleHold::~BundleHold() {
    if (_path.empty()) {
        return;
    }
    AtBoundary([this] {
        TheBundles().With([this](NamedBundles& bundles) {
            auto const entry = bundles.all.find(_path);
            --entry->second.holds;
            bundles.LetGo(entry);
        });
    });
}

}  // namespace Ubrix
