/// @file
/// Packs files into a new zip archive.
///
/// The format is that of PKWARE's APPNOTE: each entry is deflated (RFC 1951) at zlib's default level, and
/// carries no date, no attributes, no comment and no extra field; any zip tool reads it.
#pragma once

#include <VelmorCore/Export.h>

#include <cstdio>

namespace Ubrix {

/// One archive while it is written. An instance belongs to one thread at a time. Paths are zero-terminated
/// byte strings, handed to the system's narrow functions unchanged. Nothing here logs or throws.
class VELMORCORE_API ZipArchive {
public:
    /// No archive is open.
    ZipArchive();
    /// Closes the archive.
    ~ZipArchive();
    ZipArchive(ZipArchive const&) = delete;
    ZipArchive& operator=(ZipArchive const&) = delete;

    /// Makes a new file at `path`, in place of one of the user's own that stands there, for the user's eyes
    /// only. False if it can't be made, if a link or anything but a plain file stands there, and for null.
    /// An archive that is still open is given up, not closed, and its file stays unreadable: close first.
    bool CreateZipFile(char const* path);
    /// Adds the content of the file at `sourcePath` under `nameInZip`, bytes as they stand, at most 65535 of
    /// them; two entries may have one name. False if no archive is open, if either is null, if the name is
    /// too long, or if the source is no plain file or isn't the user's to read: nothing is added then. False
    /// also if there is no such source, which leaves an empty entry; if the source can't be read to its end,
    /// which leaves what came; and if the archive can't be written, which breaks it: nothing can be added any
    /// more, and CloseZipFile answers false. A source that vanishes or is cut while it is copied ends there,
    /// as a shorter file would. One of more than 4080 MiB is cut there, and the answer is false: larger
    /// entries need a format that not every tool reads. The archive itself is no source for it.
    bool AddFileToZip(char const* sourcePath, char const* nameInZip);
    /// As AddFileToZip, from a stream that is open for binary reading, from where it stands to its end, or
    /// for `most` bytes if that comes first. The stream stays the caller's; null adds nothing. `mayGoOn`,
    /// unless null, is asked with `userData` before each KiB; once it answers false the entry ends there, and
    /// so does the call, with false.
    bool AddStreamToZip(std::FILE* source, char const* nameInZip, unsigned long long most = ~0ULL,
                        bool (*mayGoOn)(void const* userData) = nullptr, void const* userData = nullptr);
    /// Writes the archive's directory and closes the file. False if no archive is open or if writing failed;
    /// no archive is open afterwards.
    bool CloseZipFile();

private:
    void* _handle;
};

}  // namespace Ubrix
