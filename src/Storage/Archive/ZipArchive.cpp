#include <VelmorCore/Zip.h>
#include <minizip/zip.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "Platform/FileSystem.h"

namespace Ubrix {

namespace {

constexpr std::size_t kMaxNameLength = 65535;
constexpr std::size_t kCopyPiece = 1024;
// Its deflated form, which may be a little larger, stays below 4 GiB as well.
constexpr std::uint64_t kMaxEntrySize = std::uint64_t{4080} << 20U;

// Opening it for the archive keeps its mode.
bool MakePrivateFile(char const* path) {
    return Platform::OpenPrivateForWriting(path) != nullptr;
}

bool OpenEntry(zipFile archive, char const* name) {
    return archive != nullptr && name != nullptr && std::strlen(name) <= kMaxNameLength &&
           zipOpenNewFileInZip(archive, name, nullptr, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                               Z_DEFAULT_COMPRESSION) == ZIP_OK;
}

bool CopyIntoEntry(std::FILE* source, zipFile archive) {
    char piece[kCopyPiece];
    std::uint64_t room = kMaxEntrySize;
    while (std::size_t const length = std::fread(piece, 1, sizeof piece, source)) {
        if (length > room ||
            zipWriteInFileInZip(archive, piece, static_cast<unsigned int>(length)) != ZIP_OK) {
            return false;
        }
        room -= length;
    }
    return true;
}

}  // namespace

ZipArchive::ZipArchive() : _handle(nullptr) {}

ZipArchive::~ZipArchive() {
    CloseZipFile();
}

bool ZipArchive::CreateZipFile(char const* path) {
    _handle = path != nullptr && MakePrivateFile(path) ? zipOpen(path, APPEND_STATUS_CREATE) : nullptr;
    return _handle != nullptr;
}

bool ZipArchive::AddFileToZip(char const* sourcePath, char const* nameInZip) {
    if (sourcePath == nullptr || !OpenEntry(_handle, nameInZip)) {
        return false;
    }
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> const source(std::fopen(sourcePath, "rb"), std::fclose);
    bool const added = source != nullptr && CopyIntoEntry(source.get(), _handle);
    zipCloseFileInZip(_handle);
    return added;
}

bool ZipArchive::AddStreamToZip(std::FILE* source, char const* nameInZip) {
    if (source == nullptr || !OpenEntry(_handle, nameInZip)) {
        return false;
    }
    bool const added = CopyIntoEntry(source, _handle);
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
