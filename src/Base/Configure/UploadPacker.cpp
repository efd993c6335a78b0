#include "Base/Configure/UploadPacker.h"

#include <VelmorCore/File.h>

#include <utility>

#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

namespace Platform = Ubrix::Platform;
using Platform::FileReach;
using Platform::ReachedFile;
using Ubrix::CFile;
using Ubrix::CPath;
using Ubrix::ForeignText;

namespace {

bool HoldsKeys(ReachedFile const& file) {
    std::string const store = std::string(CPath::GetCachePath()) + Ubrix::kSecurityStoreFile;
    return file.name.rfind(Ubrix::kSecurityStoreFile, 0) == 0 || file.file.IsOn(store.c_str());
}

bool MayGoOn(void const* stop) {
    return !*static_cast<UploadStop const*>(stop);
}

}  // namespace

UploadPacker::UploadPacker(std::string archivePath, std::string uploadId, UploadStop const& stop)
    : _archivePath(std::move(archivePath)), _uploadId(std::move(uploadId)), _stop(stop) {}

bool UploadPacker::Pack(std::vector<UploadMatch> const& matches) {
    RemoveOlderArchive();
    if (_archivePath.empty() || !_archive.CreateZipFile(_archivePath.c_str())) {
        VC_LOG(Error, kUploadOrderFunction, "Create Zip File Failed!");
        return false;
    }
    VC_LOG(Debug, kUploadOrderFunction, "add files to zip file");
    for (auto match = matches.begin(); match != matches.end() && !_stop; ++match) {
        AddFile(*match);
    }
    _leftOut.TellRest(ALogPriorityWarning, kUploadOrderFunction);
    bool const isClosed = _archive.CloseZipFile();
    if (_stop) {
        CFile::Remove(_archivePath.c_str());
        return false;
    }
    if (!isClosed) {
        VC_LOG(Error, kUploadOrderFunction, "Close Zip File Failed!");
    }
    return isClosed;
}

// A link there goes itself, not what it leads to.
void UploadPacker::RemoveOlderArchive() {
    VC_LOG(Debug, kUploadOrderFunction, "determine whethe the file exists");
    if (Platform::IsNameTaken(_archivePath.c_str())) {
        VC_LOG(Info, kUploadOrderFunction, "%s.zip already exist! need to delete",
               ForeignText(_uploadId).c_str());
        CFile::Remove(_archivePath.c_str());
    }
}

// Why a file must not be packed; null if it may. The archive itself would grow for ever.
char const* UploadPacker::ObjectionTo(ReachedFile const& file) {
    if (file.reach == FileReach::LeadsOut) {
        return "leads out of its directory";
    }
    if (file.reach == FileReach::NotStored) {
        return "is stored nowhere";
    }
    if (file.reach == FileReach::Unreadable) {
        return "can't be read";
    }
    if (HoldsKeys(file)) {
        return "holds keys";
    }
    if (file.file.IsOn(_archivePath.c_str())) {
        return "is the archive itself";
    }
    if (file.size > _bytesLeft) {
        return "is too large for what the archive may still take";
    }
    return _packed.insert(file.path).second ? nullptr : "is packed already";
}

void UploadPacker::AddFile(UploadMatch const& match) {
    ReachedFile const file = Platform::OpenWithin(match.directory.c_str(), match.name.c_str());
    if (char const* const objection = ObjectionTo(file)) {
        if (_leftOut.Allows()) {
            VC_LOG(Warning, kUploadOrderFunction, "%s/%s %s, left out", ForeignText(match.directory).c_str(),
                   ForeignText(match.name).c_str(), objection);
        }
        return;
    }
    _bytesLeft -= file.size;
    _archive.AddStreamToZip(file.file.Stream(), match.name.c_str(),
                            static_cast<unsigned long long>(file.size), MayGoOn, &_stop);
}

}  // namespace Velmor
