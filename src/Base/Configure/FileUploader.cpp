#include <VelmorCore/File.h>
#include <VelmorCore/FileUploader.h>
#include <VelmorCore/Http.h>
#include <VelmorCore/Zip.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Base/Configure/FilePattern.h"
#include "Base/Configure/KitParameters.h"
#include "BuildConstants.h"
#include "Platform/FileSystem.h"
#include "Platform/Mutex.h"
#include "Security/SecurityStore/SecurityStore.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

namespace Platform = Ubrix::Platform;
using Ubrix::CFile;
using Ubrix::CPath;

namespace {

constexpr char kSection[] = "Upload";
constexpr char kRefreshed[] = "Velmor::FileUploader::OnConfigureRefreshed";
constexpr int kMaxUploadsOfAnId = 5;
constexpr std::size_t kMaxIdLength = 128;

// What the server orders.
struct Order {
    std::string searchPaths;
    std::string filePatterns;
    std::string uploadId;
    int partSize;
    bool isHeldBack;
};

// A file to be packed.
struct Match {
    std::string directory;
    std::string name;
};

// Up to a NUL, if the text holds one: everything that is done with it sees the same.
std::string TextOf(char const* key) {
    return Configure::GetInstance()->GetString(kSection, key, "").c_str();
}

Order ReadOrder() {
    Configure& configure = *Configure::GetInstance();
    Order order;
    order.searchPaths = TextOf("file_path");
    order.filePatterns = TextOf("file_pattern");
    order.uploadId = TextOf("upload_id");
    order.partSize = configure.GetInt(kSection, "part_size", 0);
    order.isHeldBack = configure.GetInt(kSection, "manual_upload", 0) == 1;
    return order;
}

// The id becomes a file name in the cache directory: it must not lead anywhere else.
bool IsFileName(std::string const& id) {
    return id.size() <= kMaxIdLength && id.find_first_of("/\\") == std::string::npos &&
           id.find("..") == std::string::npos;
}

std::vector<std::string> SplitAtBars(std::string const& text) {
    std::vector<std::string> pieces;
    std::size_t begin = 0;
    for (std::size_t bar = text.find('|'); bar != std::string::npos; bar = text.find('|', begin)) {
        pieces.push_back(text.substr(begin, bar - begin));
        begin = bar + 1;
    }
    pieces.push_back(text.substr(begin));
    return pieces;
}

// What a search path means: a marker stands for a directory of log files, whatever follows it.
std::string ResolvePath(std::string const& path) {
    static constexpr struct {
        char const* marker;
        char const* module;
    } kMarkers[] = {{"VELMOR_LOG_DIR", "Velmor"}, {"VELMOR_CORE_LOG_DIR", "VelmorCore"}};
    for (auto const& one : kMarkers) {
        if (path.rfind(one.marker, 0) == 0) {
            AString directory(CPath::GetCachePath());
            CPath::AppendSubPath(directory, "VelmorSDKLog");
            return CPath::AppendSubPath(directory, one.module).c_str();
        }
    }
    return path;
}

bool IsSearchable(char const* path) {
    if (!CFile::Exist(path)) {
        VC_LOG(Error, kRefreshed, "search path %s is not exit", Ubrix::ForeignText(path).c_str());
        return false;
    }
    if (!CFile::IsDir(path)) {
        VC_LOG(Error, kRefreshed, "search path %s is not a dir", Ubrix::ForeignText(path).c_str());
        return false;
    }
    return true;
}

std::vector<std::string> SortedNames(char const* directory) {
    std::vector<std::string> names;
    if (!Platform::ListDirectory(directory, names)) {
        std::printf("%s not found!!!\n", Ubrix::ForeignText(directory).c_str());
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Adds what each pattern matches: a name that two of them match stands twice.
void SearchDirectory(std::string const& directory, std::vector<std::string> const& patterns,
                     std::vector<Match>& matches) {
    if (!IsSearchable(directory.c_str())) {
        return;
    }
    for (std::string const& name : SortedNames(directory.c_str())) {
        for (std::string const& pattern : patterns) {
            if (MatchPattern(pattern, name) >= 0) {
                VC_LOG(Info, kRefreshed, "fileName %s match ", Ubrix::ForeignText(name).c_str());
                matches.push_back({directory, name});
            } else {
                VC_LOG(Warning, kRefreshed, "fileName %s dismatch filePattern %s",
                       Ubrix::ForeignText(name).c_str(), Ubrix::ForeignText(pattern).c_str());
            }
        }
    }
}

std::vector<Match> Search(Order const& order) {
    std::vector<Match> matches;
    std::vector<std::string> const patterns = SplitAtBars(order.filePatterns);
    for (std::string const& path : SplitAtBars(order.searchPaths)) {
        SearchDirectory(ResolvePath(path), patterns, matches);
    }
    return matches;
}

bool HoldsKeys(Platform::ReachedFile const& file) {
    std::string const store = std::string(CPath::GetCachePath()) + Ubrix::kSecurityStoreFile;
    return file.name.rfind(Ubrix::kSecurityStoreFile, 0) == 0 ||
           Platform::IsOpenOn(file.stream, store.c_str());
}

// Why a file must not be packed; null if it may. The archive itself would grow for ever.
char const* ObjectionTo(Platform::ReachedFile const& file, std::string const& archivePath) {
    if (file.reach == Platform::FileReach::LeadsOut) {
        return "leads out of its directory";
    }
    if (file.reach == Platform::FileReach::Unreadable) {
        return "can't be read";
    }
    if (HoldsKeys(file)) {
        return "holds keys";
    }
    return Platform::IsOpenOn(file.stream, archivePath.c_str()) ? "is the archive itself" : nullptr;
}

void AddFile(Match const& match, std::string const& archivePath, Ubrix::ZipArchive& archive) {
    Platform::ReachedFile const file = Platform::OpenWithin(match.directory.c_str(), match.name.c_str());
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const closer(file.stream, std::fclose);
    if (char const* const objection = ObjectionTo(file, archivePath)) {
        VC_LOG(Warning, kRefreshed, "%s/%s %s, left out", Ubrix::ForeignText(match.directory).c_str(),
               Ubrix::ForeignText(match.name).c_str(), objection);
        return;
    }
    archive.AddStreamToZip(file.stream, match.name.c_str());
}

void RemoveOlderArchive(std::string const& archivePath, std::string const& uploadId) {
    VC_LOG(Debug, kRefreshed, "determine whethe the file exists");
    if (CFile::Exist(archivePath.c_str())) {
        VC_LOG(Info, kRefreshed, "%s.zip already exist! need to delete",
               Ubrix::ForeignText(uploadId).c_str());
        CFile::Remove(archivePath.c_str());
    }
}

// Empty without a cache directory.
std::string ArchivePath(std::string const& uploadId) {
    char const* const cache = CPath::GetCachePath();
    return cache != nullptr ? std::string(cache) + "/" + uploadId + ".zip" : "";
}

bool Pack(std::vector<Match> const& matches, std::string const& archivePath, std::string const& uploadId) {
    RemoveOlderArchive(archivePath, uploadId);
    Ubrix::ZipArchive archive;
    if (archivePath.empty() || !archive.CreateZipFile(archivePath.c_str())) {
        VC_LOG(Error, kRefreshed, "Create Zip File Failed!");
        return false;
    }
    VC_LOG(Debug, kRefreshed, "add files to zip file");
    for (Match const& match : matches) {
        AddFile(match, archivePath, archive);
    }
    if (!archive.CloseZipFile()) {
        VC_LOG(Error, kRefreshed, "Close Zip File Failed!");
        return false;
    }
    return true;
}

// Which upload may start. Thread-safe.
class UploadClaims {
public:
    bool IsUploading() const { return _isUploading; }
    // Claims the one upload for this id. False if one is under way, or if the id has had its share.
    bool Claim(std::string const& uploadId);
    // Counts the claimed upload as started.
    void Count(std::string const& uploadId);
    void Release() { _isUploading = false; }

private:
    std::atomic<bool> _isUploading{false};
    // Guards the counts, and the start of an upload. Never held while a task is made or started. A leaf, but
    // for the log.
    Platform::RecursiveMutex _lock;
    std::map<std::string, int> _counts VC_GUARDED_BY(_lock);
};

bool UploadClaims::Claim(std::string const& uploadId) {
    Platform::ScopedLock const hold(_lock);
    if (_isUploading) {
        VC_LOG(Error, "Velmor::FileUploader::_Upload", "Upload failed! FileUploader is uploading");
        return false;
    }
    auto const count = _counts.find(uploadId);
    if (count != _counts.end() && count->second >= kMaxUploadsOfAnId) {
        return false;
    }
    _isUploading = true;
    return true;
}

void UploadClaims::Count(std::string const& uploadId) {
    Platform::ScopedLock const hold(_lock);
    ++_counts[uploadId];
}

}  // namespace

struct FileUploader::Body {
    UploadClaims claims;
};

FileUploader::FileUploader() : _body(new Body) {}

FileUploader* FileUploader::GetInstance() {
    static auto* const instance = new FileUploader;
    return instance;
}

void FileUploader::Join() {
    Configure::GetInstance()->AddObserver(kSection, GetInstance());
}

void FileUploader::OnConfigureRefreshed(IStringIterator* /*keys*/) {
    if (_body->claims.IsUploading()) {
        VC_LOG(Warning, kRefreshed, "_isUploading...");
        return;
    }
    Order const order = ReadOrder();
    if (order.isHeldBack) {
        VC_LOG(Info, kRefreshed, "manual upload");
        return;
    }
    VC_LOG(Info, kRefreshed, "searchPaths: %s, filePatterns: %s, uploadid: %s, partSize: %d",
           Ubrix::ForeignText(order.searchPaths.c_str()).c_str(),
           Ubrix::ForeignText(order.filePatterns.c_str()).c_str(),
           Ubrix::ForeignText(order.uploadId.c_str()).c_str(), order.partSize);
    if (!IsFileName(order.uploadId)) {
        VC_LOG(Error, kRefreshed, "the upload id is no file name, order refused");
        return;
    }
    VC_LOG(Debug, kRefreshed, "1. search the match file");
    std::vector<Match> const matches = Search(order);
    VC_LOG(Info, kRefreshed, "total match %d files.", static_cast<int>(matches.size()));
    if (matches.empty()) {
        return;
    }
    VC_LOG(Debug, kRefreshed, "2. zip the files");
    std::string const archivePath = ArchivePath(order.uploadId);
    if (!Pack(matches, archivePath, order.uploadId)) {
        return;
    }
    Upload(order.uploadId.c_str(), archivePath.c_str(), order.partSize);
    VC_LOG(Info, kRefreshed, "_Upload zip file.");
}

void FileUploader::Upload(char const* uploadId, char const* zipPath, int partSize) {
    if (!_body->claims.Claim(uploadId)) {
        return;
    }
    OzkCUploadTask* const task = Ubrix::WWW::GetOzkUploadTask();
    if (task == nullptr) {
        VC_LOG(Error, "Velmor::FileUploader::_Upload", "no upload task to be had");
        _body->claims.Release();
        return;
    }
    _body->claims.Count(uploadId);
    task->SetComParams(RequestText().c_str());
    task->SetListener(this);
    AString const url =
        Configure::GetInstance()->GetString("VelmorCore", "RemoteConfigUrl", VELMORCORE_DEFAULT_SERVER_URL);
    task->Upload(uploadId, zipPath, partSize, url.c_str());
}

void FileUploader::OnUploadFinished(OzkCUploadTask* task, int result) {
    if (task != nullptr) {
        if (result == 0 || result == 1) {
            CFile::Remove(task->GetFilePath());
        }
        delete task;
    }
    _body->claims.Release();
}

}  // namespace Velmor
