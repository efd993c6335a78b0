// A call to be made later, on another thread.
#pragma once

#include <VelmorCore/Target.h>

namespace Ubrix {

// A plain record, copied by value, that owns nothing: what its arguments point at belongs to the poster and
// to the function called. A poster sets `target`, one of the eight functions, and the arguments that it
// takes. One thread at a time.
struct CSelector {
    using Member0 = void (CTargetBase::*)();
    using Member1 = void (CTargetBase::*)(void*);
    using Member2 = void (CTargetBase::*)(void*, void*);
    using Member3 = void (CTargetBase::*)(void*, void*, void*);
    using Function0 = void (*)();
    using Function1 = void (*)(void*);
    using Function2 = void (*)(void*, void*);
    using Function3 = void (*)(void*, void*, void*);

    CTargetBase* target = nullptr;
    Member0 member0 = nullptr;
    Member1 member1 = nullptr;
    Member2 member2 = nullptr;
    Member3 member3 = nullptr;
    Function0 function0 = nullptr;
    Function1 function1 = nullptr;
    Function2 function2 = nullptr;
    Function3 function3 = nullptr;
    void* arg1 = nullptr;
    void* arg2 = nullptr;
    void* arg3 = nullptr;

    // Calls the first function that is set: the members of a target before the plain functions, fewer
    // arguments before more. A record with nothing set does nothing.
    void Run() const;

private:
    bool RunMember() const;
    void RunFunction() const;
};

}  // namespace Ubrix
