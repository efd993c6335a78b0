#include "UploadTask.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "Journal.h"

namespace Host {

namespace {

constexpr std::size_t kUsualPartSize = 256U * 1024;

// Everything but letters and digits as %XX.
std::string Escaped(std::string const& text) {
    std::string escaped;
    for (char const c : text) {
        char piece[4];
        std::snprintf(piece, sizeof piece, "%%%02X", static_cast<unsigned char>(c));
        bool const isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        escaped += isPlain ? std::string(1, c) : piece;
    }
    return escaped;
}

}  // namespace

OzkCUploadTask* UploadTask::Make(void* outcome) {
    return new UploadTask(*static_cast<UploadOutcome*>(outcome));
}

void UploadTask::Upload(char const* uploadId, char const* filePath, std::int64_t partSize, char const* url) {
    _id = uploadId;
    _path = filePath;
    _url = url;
    _partSize = partSize > 0 ? static_cast<std::size_t>(partSize) : kUsualPartSize;
    std::ifstream file(_path, std::ios::binary);
    _content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    _parts = (_content.size() + _partSize - 1) / _partSize;
    _outcome.journal.Say("upload of " + _id + ": " + std::to_string(_content.size()) + " bytes in " +
                         std::to_string(_parts) + " parts");
    if (_content.empty()) {
        End(false);
        return;
    }
    SendPart();
}

void UploadTask::SendPart() {
    std::string const url = _url + "/upload?id=" + Escaped(_id) + "&part=" + std::to_string(_part) +
                            "&parts=" + std::to_string(_parts) + "&com_params=" + Escaped(_comParams);
    std::size_t const begin = _part * _partSize;
    Ubrix::DataTask* const request = Ubrix::WWW::Request(url.c_str());
    request->SetHeader("Content-Type", "application/octet-stream");
    request->SetListener(this);
    request->Post(_content.data() + begin, std::min(_partSize, _content.size() - begin));
}

void UploadTask::OnDataTaskFinished(Ubrix::DataTask* request, int errorCode, int httpStatus,
                                    char const* /*data*/, std::uint64_t /*length*/) {
    // A task takes no new request while it tells of its last one, so each part has a task of its own.
    Ubrix::WWW::Destroy(request);
    bool const taken = errorCode == 0 && httpStatus == 200;
    if (!taken || ++_part == _parts) {
        End(taken);
        return;
    }
    SendPart();
}

// Hands this task back: it is gone afterwards.
void UploadTask::End(bool arrived) {
    UploadOutcome& outcome = _outcome;
    outcome.journal.Say("upload of " + _id + (arrived ? ": arrived" : ": failed"));
    _listener->OnUploadFinished(this, arrived ? 0 : 2);
    ++(arrived ? outcome.arrived : outcome.failed);
}

}  // namespace Host
