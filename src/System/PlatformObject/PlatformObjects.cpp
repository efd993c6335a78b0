#include "System/PlatformObject/PlatformObjects.h"

#include <array>

#include "Base/Ubrix/Service.h"
#include "Platform/Immortal.h"
#include "System/PlatformObject/CPlatformClassRegistry.h"
#include "System/PlatformObject/CPlatformObject.h"

namespace Ubrix {

namespace {

// The three managers, by role. They go in the order of their roles.
struct Managers {
    Managers() = default;
    ~Managers() {
        for (auto& manager : all) {
            manager.reset();
        }
    }
    Managers(Managers const&) = delete;
    Managers& operator=(Managers const&) = delete;

    std::array<std::shared_ptr<CPlatformObjectManager>, 3> all{std::make_shared<CPlatformObjectManager>(),
                                                               std::make_shared<CPlatformObjectManager>(),
                                                               std::make_shared<CPlatformObjectManager>()};
};

Service<Managers>& TheManagers() {
    static Platform::Immortal<Service<Managers>> managers(nullptr);
    return *managers;
}

// True if an object was made.
bool AddInRole(PlatformObjectRole role, char const* className, char const* suffix, long long objectId) {
    IPlatformObject* const made = CPlatformClassRegistry::GetInstance().Create(className, suffix);
    auto* const object = dynamic_cast<CPlatformObject*>(made);
    if (object == nullptr) {
        return false;
    }
    object->objectId = objectId;
    PlatformObjectManager(role)->AddObject(objectId, object);
    return true;
}

}  // namespace

std::shared_ptr<CPlatformObjectManager> PlatformObjectManager(PlatformObjectRole role) {
    return TheManagers().With(
        [role](Managers& managers) { return managers.all.at(static_cast<std::size_t>(role)); });
}

bool AddPlatformObject(long long objectId, char const* className) {
    if (className == nullptr || *className == '\0') {
        return false;
    }
    AddInRole(PlatformObjectRole::Main, className, nullptr, objectId);
    bool const request = AddInRole(PlatformObjectRole::Request, className, ".REQ", objectId);
    bool const response = AddInRole(PlatformObjectRole::Response, className, ".RESP", objectId);
    return request || response;
}

void RemovePlatformObject(long long objectId) {
    PlatformObjectManager(PlatformObjectRole::Request)->RemoveObject(objectId);
    PlatformObjectManager(PlatformObjectRole::Response)->RemoveObject(objectId);
}

void ReleasePlatformObjects() {
    std::shared_ptr<Managers> const managers = TheManagers().ShareIfMade();
    if (managers == nullptr) {
        return;
    }
    for (auto const& manager : managers->all) {
        manager->DestroyAll();
    }
    TheManagers().Release();
}

}  // namespace Ubrix
