// The archive that an upload order makes.
#pragma once

#include <VelmorCore/Zip.h>

#include <set>
#include <string>
#include <vector>

#include "Base/Configure/UploadOrder.h"
#include "Base/Configure/UploadSearch.h"
#include "Platform/FileSystem.h"
#include "Storage/Log/LineBudget.h"

namespace Velmor {

// Makes one archive, once. What mustn't or can't be packed is left out, and so is what goes beyond an order's
// limits, each with a line in the log. A file is packed as long as it was when it was opened, even if it
// grows, and once, whatever names lead to it. Belongs to its order's thread; the stop flag may go up on any
// other.
class UploadPacker {
public:
    // `archivePath`: empty without a cache directory.
    UploadPacker(std::string archivePath, std::string uploadId, UploadStop const& stop);

    // False if there is no archive, or if the work was stopped.
    bool Pack(std::vector<UploadMatch> const& matches);

private:
    void RemoveOlderArchive();
    char const* ObjectionTo(Ubrix::Platform::ReachedFile const& file);
    void AddFile(UploadMatch const& match);

    std::string const _archivePath;
    std::string const _uploadId;
    UploadStop const& _stop;
    Ubrix::ZipArchive _archive;
    long long _bytesLeft = kMaxOrderBytes;
    std::set<std::string> _packed;
    Ubrix::LineBudget _leftOut;
};

}  // namespace Velmor
