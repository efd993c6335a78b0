// The upload task of a process without a transport.
#pragma once

#include <VelmorCore/UploadTask.h>

#include <string>

// Keeps what it is given. Nothing leaves the machine, and the listener is never called. Belongs to one thread
// at a time.
class OzkUploadTaskImpl final : public OzkCUploadTask {
public:
    void Upload(char const* uploadId, char const* filePath, std::int64_t partSize, char const* url) override;
    char const* GetUploadId() override;
    char const* GetFilePath() override;
    void SetComParams(char const* params) override;
    void SetListener(Listener* listener) override;

private:
    Listener* _listener = nullptr;
    std::string _comParams;
    std::string _uploadId;
    std::string _filePath;
};
