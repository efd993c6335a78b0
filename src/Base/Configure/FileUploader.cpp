#include <VelmorCore/File.h>
#include <VelmorCore/FileUploader.h>
#include <VelmorCore/Http.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Base/Configure/UploadOrder.h"
#include "Base/Configure/UploadPacker.h"
#include "Base/Configure/UploadSearch.h"
#include "Base/Ubrix/ConfigurationKeys.h"
#include "Base/Ubrix/Service.h"
#include "Platform/Boundary.h"
#include "Platform/Immortal.h"
#include "Platform/MemoryWant.h"
#include "Platform/Mutex.h"
#include "Platform/Thread.h"
#include "Storage/Log/ForeignText.h"
#include "Storage/Log/LogMacros.h"

namespace Velmor {

namespace Platform = Ubrix::Platform;
using Ubrix::AtBoundary;
using Ubrix::CFile;
using Ubrix::CPath;
using Ubrix::ForeignText;

namespace {

constexpr int kMaxUploadsOfAnId = 5;

// What the uploader is at: one order, or one upload, at a time. Thread-safe.
class UploadTurn {
public:
    // False if an order or an upload is under way.
    bool BeginOrder();
    // Without an upload.
    void EndOrder() { Leave(Stage::Order); }
    // Whether this id may have another upload.
    bool MayUpload(std::string const& uploadId);
    // From the order under way; counts it.
    void BeginUpload(std::string const& uploadId);
    void EndUpload() { Leave(Stage::Upload); }

private:
    enum class Stage { Idle, Order, Upload };

    void Leave(Stage stage);

    // Guards the fields. Never held while a task is made or started. A leaf.
    Platform::RecursiveMutex _lock;
    Stage _stage VC_GUARDED_BY(_lock) = Stage::Idle;
    std::map<std::string, int> _counts VC_GUARDED_BY(_lock);
};

bool UploadTurn::BeginOrder() {
    Platform::ScopedLock const hold(_lock);
    if (_stage != Stage::Idle) {
        return false;
    }
    _stage = Stage::Order;
    return true;
}

void UploadTurn::Leave(Stage stage) {
    Platform::ScopedLock const hold(_lock);
    _stage = _stage == stage ? Stage::Idle : _stage;
}

bool UploadTurn::MayUpload(std::string const& uploadId) {
    Platform::ScopedLock const hold(_lock);
    auto const count = _counts.find(uploadId);
    return count == _counts.end() || count->second < kMaxUploadsOfAnId;
}

void UploadTurn::BeginUpload(std::string const& uploadId) {
    Platform::ScopedLock const hold(_lock);
    ++_counts[uploadId];
    _stage = Stage::Upload;
}

// One for the orders between two releases of the core.
void StopOrders();

Ubrix::Service<UploadStop>& Stops() {
    static Ubrix::Platform::Immortal<Ubrix::Service<UploadStop>> stops(StopOrders);
    return *stops;
}

void StopOrders() {
    Stops().Release([](UploadStop& stop) { stop = true; });
}

// Empty without a cache directory.
std::string ArchivePath(std::string const& uploadId) {
    char const* const cache = CPath::GetCachePath();
    return cache != nullptr ? std::string(cache) + "/" + uploadId + ".zip" : "";
}

}  // namespace

// An order on its way: owned by the thread that works on it, which touches nothing that a release ends.
struct FileUploader::Job {
    Body& body;
    UploadOrder order;
    std::shared_ptr<UploadStop> stop;
    std::string archivePath;
};

struct FileUploader::Body {
    UploadTurn turn;
    Listener& listener;

    explicit Body(Listener& uploader) : listener(uploader) {}

    // Takes the order over. False if it isn't to be worked on.
    bool Begin(std::unique_ptr<Job> job);
    static void Run(void* job);
    // Whether there is an archive to upload.
    static bool Pack(Job const& job);
    // False if no upload was started.
    bool Upload(Job const& job);
};

bool FileUploader::Body::Begin(std::unique_ptr<Job> job) {
    UploadOrder const& order = job->order;
    if (order.isHeldBack) {
        VC_LOG(Info, kUploadOrderFunction, "manual upload");
        return false;
    }
    VC_LOG(Info, kUploadOrderFunction, "searchPaths: %s, filePatterns: %s, uploadid: %s, partSize: %d",
           ForeignText(order.searchPaths).c_str(), ForeignText(order.filePatterns).c_str(),
           ForeignText(order.uploadId).c_str(), order.partSize);
    if (char const* const objection = ObjectionTo(order)) {
        VC_LOG(Error, kUploadOrderFunction, "%s", objection);
        return false;
    }
    if (!Platform::StartThread(Run, job.get())) {
        VC_LOG(Error, kUploadOrderFunction, "no thread to be had for the order");
        return false;
    }
    static_cast<void>(job.release());
    return true;
}

void FileUploader::Body::Run(void* given) {
    Platform::NameCurrentThread("UploadOrder");
    std::unique_ptr<Job> const job(static_cast<Job*>(given));
    bool isPacked = false;
    if (!AtBoundary([&] { isPacked = Pack(*job); })) {
        VC_LOG(Error, kUploadOrderFunction, "no memory for the order");
    }
    bool const isUploading = isPacked && job->body.Upload(*job);
    if (isPacked) {
        VC_LOG(Info, kUploadOrderFunction, "_Upload zip file.");
    }
    if (!isUploading) {
        job->body.turn.EndOrder();
    }
    VC_LOG(Debug, kUploadOrderFunction, *job->stop ? "the order was stopped" : "the order is done");
}

bool FileUploader::Body::Pack(Job const& job) {
    VC_LOG(Debug, kUploadOrderFunction, "1. search the match file");
    std::vector<UploadMatch> const matches = UploadSearch(job.order, *job.stop).Run();
    VC_LOG(Info, kUploadOrderFunction, "total match %d files.", static_cast<int>(matches.size()));
    if (matches.empty() || *job.stop) {
        return false;
    }
    VC_LOG(Debug, kUploadOrderFunction, "2. zip the files");
    return UploadPacker(job.archivePath, job.order.uploadId, *job.stop).Pack(matches);
}

bool FileUploader::Body::Upload(Job const& job) {
    constexpr char kUpload[] = "Velmor::FileUploader::_Upload";
    UploadOrder const& order = job.order;
    if (!turn.MayUpload(order.uploadId)) {
        return false;
    }
    OzkCUploadTask* const task = Ubrix::WWW::GetOzkUploadTask();
    if (task == nullptr) {
        VC_LOG(Error, kUpload, "no upload task to be had");
        return false;
    }
    if (!AtBoundary([&] { turn.BeginUpload(order.uploadId); })) {
        VC_LOG(Error, kUpload, "no memory for the upload");
        delete task;
        return false;
    }
    task->SetComParams(order.comParams.c_str());
    task->SetListener(&listener);
    task->Upload(order.uploadId.c_str(), job.archivePath.c_str(), order.partSize, order.url.c_str());
    return true;
}

FileUploader::FileUploader() : _body(new Body(*this)) {}

FileUploader* FileUploader::GetInstance() {
    // Null without memory.
    return Ubrix::Platform::WithoutThrow([] {
        static Ubrix::Platform::Immortal<FileUploader> instance(
            [](void* room) { return new (room) FileUploader; });
        return &*instance;
    });
}

void FileUploader::Join() {
    if (FileUploader* const uploader = GetInstance()) {
        Configure::GetInstance()->AddObserver(Ubrix::ConfigurationKey::kUploadSection, uploader);
    }
}

void FileUploader::OnConfigureRefreshed(IStringIterator* /*keys*/) {
    if (!_body->turn.BeginOrder()) {
        VC_LOG(Warning, kUploadOrderFunction, "_isUploading...");
        return;
    }
    bool const isBegun = AtBoundary(false, [this] {
        auto job = std::make_unique<Job>(Job{*_body, ReadUploadOrder(), Stops().Share(), ""});
        job->archivePath = ArchivePath(job->order.uploadId);
        return _body->Begin(std::move(job));
    });
    if (!isBegun) {
        _body->turn.EndOrder();
        VC_LOG(Debug, kUploadOrderFunction, "the order is done");
    }
}

void FileUploader::OnUploadFinished(OzkCUploadTask* task, int result) {
    if (task != nullptr) {
        if (result == 0 || result == 1) {
            CFile::Remove(task->GetFilePath());
        }
        delete task;
    }
    _body->turn.EndUpload();
}

}  // namespace Velmor
