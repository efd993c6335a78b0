/// @file
/// Uploads that the server orders through the remote configuration: it names files, the device packs them
/// into a zip archive in the cache directory and hands that to an upload task.
#pragma once

#include <VelmorCore/Configure.h>
#include <VelmorCore/Export.h>
#include <VelmorCore/UploadTask.h>

namespace Velmor {

/// Carries out the orders in section "Upload": "file_path", "file_pattern", "upload_id", "part_size",
/// "manual_upload". One order or upload at a time, and at most five uploads of one id in a process; an order
/// that comes meanwhile is dropped. Nothing outside the directories that the order names is packed, and no
/// file of the key store; at most 1,000 files of 256 MiB in sum, found in 5 s. Thread-safe.
class VELMORCORE_API FileUploader final : public ConfigureObserver, public OzkCUploadTask::Listener {
public:
    /// The one instance, made at first use and never deleted. Null without memory.
    static FileUploader* GetInstance();
    /// Makes the instance hear of section "Upload" from now on. A host that wants uploads calls it once for
    /// each core it makes, and Configure::RemoveObserver("Upload") to stop. Any thread.
    static void Join();

    /// Takes the order that the configuration holds now, whatever `keys` is. Reads and judges it on the
    /// calling thread; a thread of the order's own searches, packs and starts the upload task. A release of
    /// the core makes that thread end soon, without an upload, and neither it nor the process's exit waits
    /// for it.
    void OnConfigureRefreshed(IStringIterator* keys) override;
    /// Deletes the archive if `result` is 0 or 1, deletes `task` in any case, and is ready for the next
    /// order. A null task only does the last.
    void OnUploadFinished(OzkCUploadTask* task, int result) override;

    FileUploader(FileUploader const&) = delete;
    FileUploader& operator=(FileUploader const&) = delete;

private:
    struct VELMORCORE_HIDDEN Body;
    struct Job;

    FileUploader();
    ~FileUploader() = default;

    Body* const _body;
};

}  // namespace Velmor
