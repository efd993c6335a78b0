#include "Storage/Log/LogThread.h"

#include <new>

#include "Platform/MemoryWant.h"
#include "Platform/Thread.h"
#include "Storage/Log/LogMacros.h"

namespace Ubrix {

namespace {

struct Plan {
    void (*start)();
    char const* name;
};

void RunPlan(void* argument) {
    Plan const plan = *static_cast<Plan*>(argument);
    delete static_cast<Plan*>(argument);
    Platform::NameCurrentThread(plan.name);
    try {
        Platform::UnwindScope const scope;
        plan.start();
    } catch (std::bad_alloc const&) {
        VC_LOG_CONSOLE(Error, "Ubrix::LogCreateThread", "no memory for the work of %s", plan.name);
    }
}

}  // namespace

void LogCreateThread(void (*start)(), char const* name) {
    auto* const plan = new (std::nothrow) Plan{start, name};
    void* handle = nullptr;
    if (plan != nullptr && !Platform::StartThread(RunPlan, plan, &handle)) {
        delete plan;
    }
    VC_LOG_CONSOLE(Info, "Ubrix::LogCreateThread", "CreateThread %s:%p", name, handle);
}

}  // namespace Ubrix
