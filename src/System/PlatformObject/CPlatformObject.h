// The base of a class that managed code can make by name.
#pragma once

#include <cstdint>

#include "System/PlatformObject/IPlatformObject.h"

namespace Ubrix {

// A class for the bridge derives from this one and enters CPlatformClassRegistry under its name.
//
// Each sending operation hands this object's id and its arguments, which are of the pair's own meaning and
// aren't read here, to the callback that the managed side set for it; without one it does nothing. The
// callback runs on the sender's thread with no lock held. It may remove the object, which is not touched
// after it. Any thread.
class CPlatformObject : public IPlatformObject {
public:
    // Holds an integer or an address.
    using Word = std::intptr_t;

    CPlatformObject() = default;

    void SendMessage(Word first, Word second) const;
    void SendStruct(Word first, Word second) const;
    void SendResult(Word first, Word second) const;
    void SendResultStruct(Word first, Word second, Word third) const;
    void SendBuffer(Word first, Word second, Word third) const;
    void SendResultBuffer(Word first, Word second, Word third, Word fourth) const;
    void SendResultStructBuffer(Word first, Word second, Word third, Word fourth, Word fifth) const;
    void SendVoidMethod(Word first) const;
    void SendVoidMethodParam(Word first, Word second) const;
    void SendVoidMethodBuffer(Word first, Word second, Word third) const;

    // Sets all ten callbacks to null, one after another, each as its setter does: a call that runs on another
    // thread is waited for.
    static void ClearEnvironment();
};

}  // namespace Ubrix
