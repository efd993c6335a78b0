#include "Platform/Mutex.h"

#include "Platform/LockDepth.h"

namespace Ubrix::Platform {

bool RecursiveMutex::CatchUp() VC_NO_THREAD_SAFETY_ANALYSIS {
    if (!LockDepth::IsLastBeforeWork()) {
        return false;
    }
    Unlock();
    Lock();
    return true;
}

}  // namespace Ubrix::Platform
