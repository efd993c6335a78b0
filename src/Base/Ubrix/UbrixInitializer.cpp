#include <VelmorCore/Core.h>
#include <VelmorCore/Log.h>

#include "Base/Ubrix/CoreParameters.h"
#include "Storage/Log/AFileLogger.h"
#include "Storage/Log/LogThread.h"

namespace Ubrix {

namespace {

constexpr int kHoursKept = 240;
constexpr int kNoCountLimit = -1;

void RemoveOldLogFiles() {
    AFileLogger::RemoveOldLogFiles("VelmorCore", kHoursKept, kNoCountLimit);
}

}  // namespace

UbrixInitializer::UbrixInitializer() : UbrixInitializer("Velmor") {}

UbrixInitializer::UbrixInitializer(char const* name) {
    CoreParameters::Set(CoreParameters::Field::KitName, AString(name));
    VelmorLogInit();
    LogCreateThread(RemoveOldLogFiles, "RemoveOldLogFilesThread");
}

}  // namespace Ubrix
