#include "Base/Configure/ReportKeeper.h"

namespace Velmor {

namespace {

ReportKeeper* g_keeper = nullptr;

// Nothing consumes the records on this platform.
void DropReport(FetchReport const& /*report*/) {}

}  // namespace

void ReportKeeper::Create() {
    if (g_keeper == nullptr) {
        g_keeper = new ReportKeeper;
    }
}

ReportKeeper& ReportKeeper::GetInstance() {
    return *g_keeper;
}

void ReportKeeper::Add(FetchReport const& report) {
    Ubrix::Platform::ScopedLock lock(_lock);
    _pending.push_back(report);
}

void ReportKeeper::Flush() {
    std::vector<FetchReport> taken;
    {
        Ubrix::Platform::ScopedLock lock(_lock);
        taken.swap(_pending);
    }
    for (FetchReport const& report : taken) {
        DropReport(report);
    }
}

}  // namespace Velmor
