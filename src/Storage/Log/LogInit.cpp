// Which logger the facade has.
#include <new>

#include "Platform/MemoryWant.h"
#include "Storage/Log/LogFacade.h"
#include "Storage/Log/Logger.h"

namespace Ubrix {

namespace {

// Null if there is no memory: lines then go to the console only. The logger lives until the process ends,
// since any thread may log at any time.
Logger* MakeLogger() {
    try {
        Platform::UnwindScope const scope;
        return new Logger("VelmorCore");
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}

}  // namespace

void VelmorLogInit() {
    if (CurrentLogger() != nullptr) {
        return;
    }
    Logger* const logger = MakeLogger();
    if (logger == nullptr) {
        return;
    }
    InstallLogger(logger);
    logger->SetLevel(DefaultLogLevel());
    logger->Init();
    MarkLoggerReady();
}

}  // namespace Ubrix
