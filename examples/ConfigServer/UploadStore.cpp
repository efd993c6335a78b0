#include "UploadStore.h"

#include <fstream>

namespace Example {

namespace {

constexpr std::size_t kMaxUploads = 16;
constexpr std::size_t kMaxLength = 64U << 20U;
constexpr char const* kIdCharacters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_";

bool IsNumber(std::string const& text) {
    return !text.empty() && text.size() < 8 && text.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

std::string UploadStore::Take(SeenRequest const& request) {
    std::string const& id = request.uploadId;
    if (id.empty() || id.size() > 128 || id.find_first_not_of(kIdCharacters) != std::string::npos) {
        return "not an id of letters, digits, hyphens and underscores";
    }
    if (!IsNumber(request.part) || !IsNumber(request.parts)) {
        return "part and parts must be numbers";
    }
    unsigned long const part = std::stoul(request.part);
    unsigned long const parts = std::stoul(request.parts);
    if (part == 0) {
        _uploads.erase(id);
    }
    if (part >= parts || (_uploads.count(id) == 0 && (part != 0 || _uploads.size() == kMaxUploads))) {
        return "no such part is expected";
    }
    Upload& upload = _uploads[id];
    if (part != upload.next || upload.content.size() + request.body.size() > kMaxLength) {
        _uploads.erase(id);
        return "a part out of order, or too much";
    }
    ++upload.next;
    upload.content += request.body;
    if (upload.next < parts) {
        return "";
    }
    std::string const complaint = Save(id, upload.content);
    _uploads.erase(id);
    return complaint;
}

std::string UploadStore::Save(std::string const& id, std::string const& content) const {
    std::ofstream file(_directory + "/" + id + ".zip", std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    return file ? "" : "the file can't be written";
}

}  // namespace Example
