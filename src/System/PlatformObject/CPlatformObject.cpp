#include "System/PlatformObject/CPlatformObject.h"

#include "System/PlatformObject/ManagedCallbacks.h"

namespace Ubrix {

void CPlatformObject::SendMessage(Word first, Word second) const {
    ManagedCallbacks::Get().message.Call(objectId, first, second);
}

void CPlatformObject::SendStruct(Word first, Word second) const {
    ManagedCallbacks::Get().structure.Call(objectId, first, second);
}

void CPlatformObject::SendResult(Word first, Word second) const {
    ManagedCallbacks::Get().result.Call(objectId, first, second);
}

void CPlatformObject::SendResultStruct(Word first, Word second, Word third) const {
    ManagedCallbacks::Get().resultStruct.Call(objectId, first, second, third);
}

void CPlatformObject::SendBuffer(Word first, Word second, Word third) const {
    ManagedCallbacks::Get().buffer.Call(objectId, first, second, third);
}

void CPlatformObject::SendResultBuffer(Word first, Word second, Word third, Word fourth) const {
    ManagedCallbacks::Get().resultBuffer.Call(objectId, first, second, third, fourth);
}

void CPlatformObject::SendResultStructBuffer(Word first, Word second, Word third, Word fourth,
                                             Word fifth) const {
    ManagedCallbacks::Get().resultStructBuffer.Call(objectId, first, second, third, fourth, fifth);
}

void CPlatformObject::SendVoidMethod(Word first) const {
    ManagedCallbacks::Get().voidMethod.Call(objectId, first);
}

void CPlatformObject::SendVoidMethodParam(Word first, Word second) const {
    ManagedCallbacks::Get().voidMethodParam.Call(objectId, first, second);
}

void CPlatformObject::SendVoidMethodBuffer(Word first, Word second, Word third) const {
    ManagedCallbacks::Get().voidMethodBuffer.Call(objectId, first, second, third);
}

void CPlatformObject::ClearEnvironment() {
    ManagedCallbacks& callbacks = ManagedCallbacks::Get();
    callbacks.buffer.Set(nullptr);
    callbacks.message.Set(nullptr);
    callbacks.resultBuffer.Set(nullptr);
    callbacks.result.Set(nullptr);
    callbacks.resultStructBuffer.Set(nullptr);
    callbacks.resultStruct.Set(nullptr);
    callbacks.structure.Set(nullptr);
    callbacks.voidMethod.Set(nullptr);
    callbacks.voidMethodParam.Set(nullptr);
    callbacks.voidMethodBuffer.Set(nullptr);
}

}  // namespace Ubrix
