#include "Platform/LockDepth.h"

#include <utility>

namespace Ubrix::Platform {

namespace {

struct ThreadRecord {
    unsigned int held = 0;
    LockDepth::Work first = nullptr;
    LockDepth::Work then = nullptr;
};

thread_local ThreadRecord t_record;

void Run(LockDepth::Work& work) {
    if (LockDepth::Work const taken = std::exchange(work, nullptr)) {
        taken();
    }
}

}  // namespace

bool LockDepth::HoldsLock() {
    return t_record.held > 0;
}

void LockDepth::RunWhenReleased(Work work) {
    t_record.then = work;
}

void LockDepth::RunFirstWhenReleased(Work work) {
    t_record.first = work;
}

bool LockDepth::IsLastBeforeWork() {
    return t_record.held == 1 && t_record.then != nullptr;
}

void LockDepth::Taken() {
    ++t_record.held;
}

void LockDepth::Released() {
    ThreadRecord& record = t_record;
    if (--record.held == 0 && (record.first != nullptr || record.then != nullptr)) {
        Run(record.first);
        Run(record.then);
    }
}

}  // namespace Ubrix::Platform
