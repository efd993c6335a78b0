#include <VelmorCore/Core.h>
#include <VelmorCore/Log.h>

#include "Base/Ubrix/CoreParameters.h"
#include "Platform/Boundary.h"
#include "Storage/Log/AFileLogger.h"

namespace Ubrix {

namespace {

constexpr int kHoursKept = 240;
constexpr int kNoCountLimit = -1;

void RemoveOldLogFiles() {
    AtBoundary([] { AFileLogger::RemoveOldLogFiles("VelmorCore", kHoursKept, kNoCountLimit); });
}

}  // namespace

UbrixInitializer::UbrixInitializer() : UbrixInitializer("Velmor") {}

UbrixInitializer::UbrixInitializer(char const* name) {
    // What memory doesn't last for is left out, and the rest is started all the same.
    AtBoundary([name] { CoreParameters::Set(CoreParameters::Field::KitName, AString(name)); });
    AtBoundary(VelmorLogInit);
    AtBoundary([] { LogCreateThread(RemoveOldLogFiles, "RemoveOldLogFilesThread"); });
}

}  // namespace Ubrix
