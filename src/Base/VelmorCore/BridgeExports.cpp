// The C functions of the managed bridge. They hold no state and, since managed code may call them at any
// rate, log nothing.
#include <VelmorCore/velmorcore.h>

#include "Platform/Boundary.h"
#include "System/PlatformObject/ManagedCallbacks.h"
#include "System/PlatformObject/PlatformObjects.h"

using Ubrix::AtBoundary;
using Ubrix::ManagedCallback;
using Ubrix::ManagedCallbacks;

namespace {

// Without memory the earlier callback stays.
template <class... Words>
void Set(ManagedCallback<Words...> ManagedCallbacks::*place, void (*callback)(std::int64_t, Words...)) {
    AtBoundary([=] { (ManagedCallbacks::Get().*place).Set(callback); });
}

}  // namespace

bool addPlatformObject(int64_t objectId, char const* className) {
    return AtBoundary(false, [=] { return Ubrix::AddPlatformObject(objectId, className); });
}

void removePlatformObject(int64_t objectId) {
    AtBoundary([objectId] { Ubrix::RemovePlatformObject(objectId); });
}

void setSarnetSendMessageCallback(VelmorCoreSendCallback2 callback) {
    Set(&ManagedCallbacks::message, callback);
}

void setSarnetSendStructCallback(VelmorCoreSendCallback2 callback) {
    Set(&ManagedCallbacks::structure, callback);
}

void setSarnetSendResultCallback(VelmorCoreSendCallback2 callback) {
    Set(&ManagedCallbacks::result, callback);
}

void setSarnetSendResultStructCallback(VelmorCoreSendCallback3 callback) {
    Set(&ManagedCallbacks::resultStruct, callback);
}

void setSarnetSendBufferCallback(VelmorCoreSendCallback3 callback) {
    Set(&ManagedCallbacks::buffer, callback);
}

void setSarnetSendResultBufferCallback(VelmorCoreSendCallback4 callback) {
    Set(&ManagedCallbacks::resultBuffer, callback);
}

void setSarnetSendResultStructBufferCallback(VelmorCoreSendCallback5 callback) {
    Set(&ManagedCallbacks::resultStructBuffer, callback);
}

void setSarnetSendVoidMethodCallback(VelmorCoreSendCallback1 callback) {
    Set(&ManagedCallbacks::voidMethod, callback);
}

void setSarnetSendVoidMethodParamCallback(VelmorCoreSendCallback2 callback) {
    Set(&ManagedCallbacks::voidMethodParam, callback);
}

void setSarnetSendVoidMethodBufferCallback(VelmorCoreSendCallback3 callback) {
    Set(&ManagedCallbacks::voidMethodBuffer, callback);
}
