// Uploads that the server orders through the remote configuration: it names files, the device packs them into
// a zip archive in the cache directory and hands that to an upload task.
#pragma once

#include <VelmorCore/Configure.h>
#include <VelmorCore/Export.h>
#include <VelmorCore/UploadTask.h>

namespace Velmor {

// Carries out the orders in section "Upload": "file_path", "file_pattern", "upload_id", "part_size",
// "manual_upload". One upload at a time, and at most five of one upload id in a process; an order that comes
// during an upload is dropped. Nothing outside the directories that the order names is packed, and no file of
// the key store. Thread-safe, but for two orders carried out at once under one upload id, which would write
// the same archive; the configuration never does that.
class VELMORCORE_API FileUploader final : public ConfigureObserver, public OzkCUploadTask::Listener {
public:
    // The one instance, made at first use and never deleted.
    static FileUploader* GetInstance();
    // Makes the instance hear of section "Upload" from now on. A host that wants uploads calls it once for
    // each core it makes, and Configure::RemoveObserver("Upload") to stop. Any thread.
    static void Join();

    // Carries out the order that the configuration holds now, whatever `keys` is: searches and packs on the
    // calling thread, the transfer's, and returns when the upload task has been started. A release of the
    // core waits for it.
    void OnConfigureRefreshed(IStringIterator* keys) override;
    // Deletes the archive if `result` is 0 or 1, deletes `task` in any case, and is ready for the next order.
    // A null task only does the last.
    void OnUploadFinished(OzkCUploadTask* task, int result) override;

    FileUploader(FileUploader const&) = delete;
    FileUploader& operator=(FileUploader const&) = delete;

private:
    struct Body;

    FileUploader();
    ~FileUploader() = default;

    void Upload(char const* uploadId, char const* zipPath, int partSize);

    Body* const _body;
};

}  // namespace Velmor
