// Everything that must exist when the library is loaded, in order. Nothing else in the library runs before
// its first export is served: other namespace-scope objects are constants, or pointers that this file fills.
//
// It runs on the loading thread under the loader's lock, so it waits for no thread, and nothing here touches
// the network.
#include <VelmorCore/Core.h>

#include "Base/Configure/ReportKeeper.h"
#include "Storage/Bundle/BundleFactoryLoad.h"
#include "Storage/Log/autobuffer.h"
#include "Storage/Log/ptrbuffer.h"
#include "System/Application/Application.h"
#include "System/Network/NetworkObservers.h"
#include "System/Operation/OperationQueueImp.h"
#include "System/PlatformObject/CPlatformClassRegistry.h"
#include "System/WWW/Task/WWWTaskBase.h"

namespace Ubrix {

namespace {

class LoadSteps {
public:
    LoadSteps() {
        Velmor::ReportKeeper::Create();
        // The logger asks the configuration for its level, which opens its cache.
        _initializer = new UbrixInitializer("Velmor");
        CreateBundleFactory();
        _blockBuffer = new AutoBuffer(AutoBuffer::kUnit);
        _blockMemory = new PtrBuffer;
        OperationQueueImp::CreateLock();
        WWWTaskBase::MakeLiveTasks();
        // An observer's destructor reaches these, which may not find memory short.
        NetworkObservers::GetInstance();
        CApplication::GetInstance();
        CPlatformClassRegistry::GetInstance();
    }

private:
    // Never deleted: what it started lasts as long as the process.
    UbrixInitializer* _initializer;
    // The block log's empty buffers. Nothing writes to them.
    AutoBuffer* _blockBuffer;
    PtrBuffer* _blockMemory;
};

LoadSteps const g_loadSteps;

}  // namespace

}  // namespace Ubrix
