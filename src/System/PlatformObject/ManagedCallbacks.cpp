#include "System/PlatformObject/ManagedCallbacks.h"

#include "Platform/Immortal.h"

namespace Ubrix {

ManagedCallbacks& ManagedCallbacks::Get() {
    static Platform::Immortal<ManagedCallbacks> callbacks;
    return *callbacks;
}

}  // namespace Ubrix
