#include <VelmorCore/Operation.h>

#include "Base/Ubrix/CoreConfigReader.h"
#include "Storage/Log/LogMacros.h"
#include "System/Operation/OperationQueueImp.h"

namespace Ubrix {

namespace {

// 0 until it has been read. Every mode leads to the same pool.
std::atomic<int> g_operationMode{0};

}  // namespace

OperationQueue* OperationQueue::GetInstance() {
    if (g_operationMode == 0) {
        int const mode = CoreConfigReader::GetInt("OperationMode", 1);
        g_operationMode = mode;
        VC_LOG(Info, "Ubrix::OperationQueue::GetInstance", "Operation mode is %d", mode);
    }
    return OperationQueueImp::GetInstance();
}

}  // namespace Ubrix
