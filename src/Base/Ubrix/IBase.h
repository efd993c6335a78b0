// The owner of the ordered teardown.
// Sources: Teardown.cpp
#pragma once

#include "Base/Ubrix/ReleaseList.h"

namespace Ubrix {

// One instance exists while a core does. Made and deleted by the core, which lets one thread do so at a time;
// callbacks are added on any thread.
class IBase {
public:
    using ReleaseCallback = ReleaseList::Callback;

    // The instance, made at first use.
    static IBase& GetInstance();

    // As ReleaseList's.
    static void AddReleaseCallback(ReleaseCallback release) { ReleaseList::Add(release); }
    static void RunReleaseCallbacks() { ReleaseList::Run(); }

    // The whole teardown, in its order: callbacks first, the instance last.
    static void Release();

    virtual ~IBase();
    IBase(IBase const&) = delete;
    IBase& operator=(IBase const&) = delete;

private:
    IBase() = default;
    static IBase* _instance;
};

}  // namespace Ubrix
