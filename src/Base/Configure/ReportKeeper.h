// Keeps records of how fetches ended, until a sink takes them.
#pragma once

#include <vector>

#include "Platform/Mutex.h"

namespace Velmor {

// One fetch: its error code (0 for an answer), its length, and how many retries were used.
struct FetchReport {
    int errorCode;
    long long costMilliseconds;
    int retriesUsed;
};

// Thread-safe. The sink of this platform drops what it is given.
class ReportKeeper {
public:
    // Makes the process-wide keeper; a second call changes nothing. Runs at load.
    static void Create();
    static ReportKeeper& GetInstance();

    void Add(FetchReport const& report);
    // Hands the pending records to the sink, with no lock held.
    void Flush();

private:
    ReportKeeper() = default;

    Ubrix::Platform::RecursiveMutex _lock;
    std::vector<FetchReport> _pending VC_GUARDED_BY(_lock);
};

}  // namespace Velmor
