// The roof's side of the facade: which logger there is.
#include "Storage/Log/LogFacade.h"
#include "Storage/Log/Logger.h"

namespace Ubrix {

void VelmorLogInit() {
    if (CurrentLogger() != nullptr) {
        return;
    }
    // Lives until the process ends: any thread may log at any time.
    auto* logger = new Logger("VelmorCore");
    InstallLogger(logger);
    logger->SetLevel(DefaultLogLevel());
    logger->Init();
    MarkLoggerReady();
}

}  // namespace Ubrix
