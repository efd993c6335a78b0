#include "Storage/Log/LogThread.h"

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
    plan.start();
}

}  // namespace

void LogCreateThread(void (*start)(), char const* name) {
    auto* plan = new Plan{start, name};
    void* handle = nullptr;
    if (!Platform::StartThread(RunPlan, plan, &handle)) {
        delete plan;
    }
    VC_LOG_CONSOLE(Info, "Ubrix::LogCreateThread", "CreateThread %s:%p", name, handle);
}

}  // namespace Ubrix
