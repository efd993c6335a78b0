#include "System/PlatformObject/ManagedCallbacks.h"

namespace Ubrix {

ManagedCallbacks& ManagedCallbacks::Get() {
    static ManagedCallbacks& callbacks = *new ManagedCallbacks;
    return callbacks;
}

}  // namespace Ubrix
