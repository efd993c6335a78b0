#include <VelmorCore/Zip.h>
#include <minizip/zip.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "Platform/FileSystem.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

namespace {

constexpr std::size_t kMaxNameLength = 65535;
constexpr std::size_t kCopyPiece = 1024;
// Its deflated form, which may be a little larger, stays below 4 GiB as well.
constexpr std::uint64_t kMaxEntrySize = std::uint64_t{4080} << 20U;

// An archive that is being written. A write that failed makes it a broken one, and nothing is written then.
struct OpenArchive {
    Platform::File file;
    zipFile zip = nullptr;
    bool isBroken = false;
};

voidpf ZCALLBACK GiveStream(voidpf archive, void const* /*path*/, int /*mode*/) {
    return static_cast<OpenArchive*>(archive)->file.Stream();
}

uLong ZCALLBACK WriteToStream(voidpf archive, voidpf /*stream*/, void const* bytes, uLong size) {
    auto& open = *static_cast<OpenArchive*>(archive);
    if (open.isBroken || !open.file.Write(bytes, size)) {
        open.isBroken = true;
        return 0;
    }
    return size;
}

int ZCALLBACK LeaveStreamOpen(voidpf /*archive*/, voidpf /*stream*/) {
    return 0;
}

std::unique_ptr<OpenArchive> Open(char const* path) {
    auto archive = std::make_unique<OpenArchive>();
    archive->file = Platform::OpenPrivateForWriting(path);
    if (!archive->file.IsOpen()) {
        return nullptr;
    }
    zlib_filefunc64_def functions = {};
    fill_fopen64_filefunc(&functions);
    functions.opaque = archive.get();
    functions.zopen64_file = GiveStream;
    functions.zwrite_file = WriteToStream;
    functions.zclose_file = LeaveStreamOpen;
    archive->zip = zipOpen2_64(path, APPEND_STATUS_CREATE, nullptr, &functions);
    return archive->zip != nullptr ? std::move(archive) : nullptr;
}

bool Close(std::unique_ptr<OpenArchive> const& archive) {
    bool const closed = zipClose(archive->zip, nullptr) == ZIP_OK;
    return closed && !archive->isBroken && archive->file.Finish();
}

bool IsEntryName(char const* name) {
    return name != nullptr && std::strlen(name) <= kMaxNameLength;
}

// What an entry is made of.
struct Source {
    // Null for nothing.
    std::FILE* stream;
    // Bytes to take, if there are so many.
    std::uint64_t most;
    bool (*mayGoOn)(void const* userData);
    void const* userData;
};

// Whether the whole source was read and what came of it was taken.
bool CopyIntoEntry(Source const& source, zipFile zip) {
    char piece[kCopyPiece];
    std::uint64_t room = kMaxEntrySize;
    std::uint64_t wanted = source.most;
    while (wanted > 0) {
        if (source.mayGoOn != nullptr && !source.mayGoOn(source.userData)) {
            return false;
        }
        auto const limit = static_cast<std::size_t>(std::min<std::uint64_t>(sizeof piece, wanted));
        std::size_t const length = std::fread(piece, 1, limit, source.stream);
        if (length == 0) {
            break;
        }
        if (length > room || zipWriteInFileInZip(zip, piece, static_cast<unsigned int>(length)) != ZIP_OK) {
            return false;
        }
        room -= length;
        wanted -= length;
    }
    return std::ferror(source.stream) == 0;
}

// A source without a stream makes an empty entry, and false.
bool AddEntry(OpenArchive& archive, Source const& source, char const* name) {
    if (archive.isBroken || zipOpenNewFileInZip(archive.zip, name, nullptr, nullptr, 0, nullptr, 0, nullptr,
                                                Z_DEFLATED, Z_DEFAULT_COMPRESSION) != ZIP_OK) {
        return false;
    }
    bool const copied = source.stream != nullptr && CopyIntoEntry(source, archive.zip);
    bool const closed = zipCloseFileInZip(archive.zip) == ZIP_OK;
    // What is still on its way would fail unseen otherwise.
    archive.isBroken |= !closed || !archive.file.Flush();
    return copied && !archive.isBroken;
}

OpenArchive* Of(void* handle) {
    return static_cast<OpenArchive*>(handle);
}

}  // namespace

ZipArchive::ZipArchive() : _handle(nullptr) {}

ZipArchive::~ZipArchive() {
    CloseZipFile();
}

bool ZipArchive::CreateZipFile(char const* path) {
    if (_handle != nullptr) {
        Of(_handle)->isBroken = true;
        CloseZipFile();
    }
    _handle = path != nullptr ? Platform::WithoutThrow([path] { return Open(path); }).release() : nullptr;
    return _handle != nullptr;
}

bool ZipArchive::AddFileToZip(char const* sourcePath, char const* nameInZip) {
    if (_handle == nullptr || sourcePath == nullptr || !IsEntryName(nameInZip)) {
        return false;
    }
    Platform::File source;
    bool const isNoFile =
        Platform::OpenForReading(sourcePath, LLONG_MAX, source) == Platform::FileAnswer::Refused;
    return !isNoFile && AddEntry(*Of(_handle), {source.Stream(), UINT64_MAX, nullptr, nullptr}, nameInZip);
}

bool ZipArchive::AddStreamToZip(std::FILE* source, char const* nameInZip, unsigned long long most,
                                bool (*mayGoOn)(void const* userData), void const* userData) {
    return _handle != nullptr && source != nullptr && IsEntryName(nameInZip) &&
           AddEntry(*Of(_handle), {source, most, mayGoOn, userData}, nameInZip);
}

bool ZipArchive::CloseZipFile() {
    std::unique_ptr<OpenArchive> const archive(Of(_handle));
    _handle = nullptr;
    return archive != nullptr && Close(archive);
}

}  // namespace Ubrix
