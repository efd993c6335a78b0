// How this game sends files to its server: in parts, one HTTPS request each.
#pragma once

#include <VelmorCore/Http.h>
#include <VelmorCore/UploadTask.h>

#include <atomic>
#include <string>

namespace Host {

class Journal;

// What became of the uploads so far. Thread-safe. Must live until the last upload has ended.
struct UploadOutcome {
    Journal& journal;
    std::atomic<int> arrived{0};
    std::atomic<int> failed{0};
};

// One upload. The next part goes out when the server has taken the one before, on the thread that heard of
// that.
class UploadTask final : public OzkCUploadTask, private Ubrix::DataTask::Listener {
public:
    // For Ubrix::SetOzkUploadTaskFactory; `outcome` is an UploadOutcome.
    static OzkCUploadTask* Make(void* outcome);

    void Upload(char const* uploadId, char const* filePath, std::int64_t partSize, char const* url) override;
    char const* GetUploadId() override { return _id.c_str(); }
    char const* GetFilePath() override { return _path.c_str(); }
    void SetComParams(char const* params) override { _comParams = params; }
    void SetListener(OzkCUploadTask::Listener* listener) override { _listener = listener; }

private:
    explicit UploadTask(UploadOutcome& outcome) : _outcome(outcome) {}

    void OnDataTaskFinished(Ubrix::DataTask* request, int errorCode, int httpStatus, char const* data,
                            std::uint64_t length) override;
    void SendPart();
    void End(bool arrived);

    UploadOutcome& _outcome;
    OzkCUploadTask::Listener* _listener = nullptr;
    std::string _comParams;
    std::string _id;
    std::string _path;
    std::string _url;
    std::string _content;
    std::size_t _partSize = 0;
    std::size_t _part = 0;
    std::size_t _parts = 0;
};

}  // namespace Host
