#include "System/PlatformObject/IPlatformObject.h"

#include <cstring>

#include "System/PlatformObject/SharedPlatformObjects.h"

namespace Ubrix {

IPlatformObject::~IPlatformObject() {
    SharedPlatformObjects::Forget(this);
    delete[] className;
}

void IPlatformObject::SetClassName(char const* name) {
    std::size_t const room = std::strlen(name) + 1;
    char* const copy = new char[room];
    std::memcpy(copy, name, room);
    delete[] className;
    className = copy;
}

}  // namespace Ubrix
