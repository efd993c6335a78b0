#include "System/WWW/Task/OzkUploadTaskImpl.h"

namespace {

char const* TextOf(char const* text) {
    return text != nullptr ? text : "";
}

}  // namespace

void OzkUploadTaskImpl::Upload(char const* uploadId, char const* filePath, std::int64_t /*partSize*/,
                               char const* /*url*/) {
    _uploadId = TextOf(uploadId);
    _filePath = TextOf(filePath);
}

char const* OzkUploadTaskImpl::GetUploadId() {
    return _uploadId.c_str();
}

char const* OzkUploadTaskImpl::GetFilePath() {
    return _filePath.c_str();
}

void OzkUploadTaskImpl::SetComParams(char const* params) {
    _comParams = TextOf(params);
}

void OzkUploadTaskImpl::SetListener(Listener* listener) {
    _listener = listener;
}
