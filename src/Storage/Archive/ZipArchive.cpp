#include <VelmorCore/Zip.h>
#include <minizip/zip.h>

#include <cstdio>
#include <cstring>
#include <memory>

namespace Ubrix {

namespace {

constexpr std::size_t kMaxNameLength = 65535;
constexpr std::size_t kCopyPiece = 1024;

bool OpenEntry(zipFile archive, char const* name) {
    return zipOpenNewFileInZip(archive, name, nullptr, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                               Z_DEFAULT_COMPRESSION) == ZIP_OK;
}

bool CopyIntoEntry(std::FILE* source, zipFile archive) {
    char piece[kCopyPiece];
    while (std::size_t const length = std::fread(piece, 1, sizeof piece, source)) {
        if (zipWriteInFileInZip(archive, piece, static_cast<unsigned int>(length)) != ZIP_OK) {
            return false;
        }
    }
    return true;
}

}  // namespace

ZipArchive::ZipArchive() : _handle(nullptr) {}

ZipArchive::~ZipArchive() {
    CloseZipFile();
}

bool ZipArchive::CreateZipFile(char const* path) {
    _handle = path != nullptr ? zipOpen(path, APPEND_STATUS_CREATE) : nullptr;
    return _handle != nullptr;
}

bool ZipArchive::AddFileToZip(char const* sourcePath, char const* nameInZip) {
    if (_handle == nullptr || sourcePath == nullptr || nameInZip == nullptr ||
        std::strlen(nameInZip) > kMaxNameLength || !OpenEntry(_handle, nameInZip)) {
        return false;
    }
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const source(std::fopen(sourcePath, "rb"), std::fclose);
    bool const added = source != nullptr && CopyIntoEntry(source.get(), _handle);
    zipCloseFileInZip(_handle);
    return added;
}

bool ZipArchive::CloseZipFile() {
    if (_handle == nullptr) {
        return false;
    }
    bool const closed = zipClose(_handle, nullptr) == ZIP_OK;
    _handle = nullptr;
    return closed;
}

}  // namespace Ubrix
