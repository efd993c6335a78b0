// The C functions of the managed bridge. They hold no state and, since managed code may call them at any
// rate, log nothing.
#include <VelmorCore/velmorcore.h>

#include "System/PlatformObject/ManagedCallbacks.h"
#include "System/PlatformObject/PlatformObjects.h"

using Ubrix::ManagedCallbacks;

bool addPlatformObject(int64_t objectId, char const* className) {
    return Ubrix::AddPlatformObject(objectId, className);
}

void removePlatformObject(int64_t objectId) {
    Ubrix::RemovePlatformObject(objectId);
}

void setSarnetSendMessageCallback(VelmorCoreSendCallback2 callback) {
    ManagedCallbacks::Get().message.Set(callback);
}

void setSarnetSendStructCallback(VelmorCoreSendCallback2 callback) {
    ManagedCallbacks::Get().structure.Set(callback);
}

void setSarnetSendResultCallback(VelmorCoreSendCallback2 callback) {
    ManagedCallbacks::Get().result.Set(callback);
}

void setSarnetSendResultStructCallback(VelmorCoreSendCallback3 callback) {
    ManagedCallbacks::Get().resultStruct.Set(callback);
}

void setSarnetSendBufferCallback(VelmorCoreSendCallback3 callback) {
    ManagedCallbacks::Get().buffer.Set(callback);
}

void setSarnetSendResultBufferCallback(VelmorCoreSendCallback4 callback) {
    ManagedCallbacks::Get().resultBuffer.Set(callback);
}

void setSarnetSendResultStructBufferCallback(VelmorCoreSendCallback5 callback) {
    ManagedCallbacks::Get().resultStructBuffer.Set(callback);
}

void setSarnetSendVoidMethodCallback(VelmorCoreSendCallback1 callback) {
    ManagedCallbacks::Get().voidMethod.Set(callback);
}

void setSarnetSendVoidMethodParamCallback(VelmorCoreSendCallback2 callback) {
    ManagedCallbacks::Get().voidMethodParam.Set(callback);
}

void setSarnetSendVoidMethodBufferCallback(VelmorCoreSendCallback3 callback) {
    ManagedCallbacks::Get().voidMethodBuffer.Set(callback);
}
