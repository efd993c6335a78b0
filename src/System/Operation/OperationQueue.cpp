#include <VelmorCore/Operation.h>

#include <new>

#include "Base/Ubrix/ConfigurationKeys.h"
#include "Base/Ubrix/CoreConfigReader.h"
#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Storage/Log/LogMacros.h"
#include "System/Operation/OperationQueueImp.h"

namespace Ubrix {

namespace {

// 0 until it has been read. Every mode leads to the same pool.
std::atomic<int> g_operationMode{0};

// What callers have for the present pool.
class PoolFront final : public OperationQueue {
public:
    void AddOperation(Operation::Function function, void* data, bool repeat) override {
        Add([=](OperationQueueImp& pool) { pool.AddOperation(function, data, repeat); });
    }
    void AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data,
                      bool repeat) override {
        Add([=](OperationQueueImp& pool) { pool.AddOperation(target, member, data, repeat); });
    }

private:
    template <class Work>
    void Add(Work const& work) {
        if (!AtBoundary([&work] { work(*OperationQueueImp::GetInstance()); })) {
            VC_LOG(Error, "Ubrix::OperationQueueImp::AddOperation", "no memory for an operation");
        }
    }
};

PoolFront& TheFront() {
    static Platform::Immortal<PoolFront> front;
    return *front;
}

}  // namespace

OperationQueue* OperationQueue::GetInstance() {
    if (g_operationMode == 0) {
        int const mode = CoreConfigReader::GetInt(ConfigurationKey::kOperationMode, 1);
        g_operationMode = mode;
        VC_LOG(Info, "Ubrix::OperationQueue::GetInstance", "Operation mode is %d", mode);
    }
    AtBoundary([] { OperationQueueImp::GetInstance(); });
    return &TheFront();
}

}  // namespace Ubrix
