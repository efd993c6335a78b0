// What the standard library's streams don't offer of files and directories.
//
// Paths are zero-terminated byte strings, handed to the system's narrow functions unchanged. No argument may
// be null unless a comment says so. All functions are thread-safe.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Platform/File.h"

namespace Ubrix::Platform {

// True if a file or a directory of that name can be seen.
bool PathExists(char const* path);
// True if anything bears that name, a link that leads nowhere included.
bool IsNameTaken(char const* path);
// True if `path` names a directory.
bool IsDirectory(char const* path);
// True if both paths name one directory, whatever they are spelt like.
bool IsSameDirectory(char const* left, char const* right);
// Makes one directory, private to the user. False if it exists or can't be made.
bool MakeDirectory(char const* path);
// Who can change what is in a directory.
enum class DirectoryTrust {
    Own,      // this user and the system's administrators, and those whom one of them let in by name or group
    Absent,   // nobody: no directory of that name can be seen
    Foreign,  // somebody else: its owner, or the owner of a link at the end of `path`, or everybody
};
DirectoryTrust TrustInDirectory(char const* path);
// Deletes a file. False on failure, and for a directory.
bool DeleteFileAt(char const* path);
// Renames a file; an existing target is replaced in one step. False on failure, which leaves both as they
// were.
bool RenamePath(char const* from, char const* to);
// Puts the bare names of a directory's entries into `names`, without "." and "..", in the system's order, the
// first `most` of them. False if the directory can't be read; `names` is then unchanged.
bool ListDirectory(char const* path, std::vector<std::string>& names, std::size_t most = SIZE_MAX);
// The current working directory. False on failure, which leaves `path` unchanged and sets the last error.
bool WorkingDirectory(std::string& path);

// What a name in a directory leads to once every link is followed.
enum class FileReach {
    Readable,    // a regular file in that directory, or below it, that this process may read
    LeadsOut,    // something outside of that directory
    NotStored,   // a file whose content the system makes up when it is read
    Unreadable,  // anything else: nothing, a directory, a device, a file that may not be read
};
// A file that was reached by its name in a directory.
struct ReachedFile {
    FileReach reach = FileReach::Unreadable;
    // If Readable: open for reading, and not waited for when the process exits; otherwise not open.
    File file;
    // If Readable, where the file is, every link followed: its whole path, and its bare name.
    std::string path;
    std::string name;
    // If Readable: bytes, when it was opened.
    long long size = 0;
};
// Opens what `name` in `directory` leads to. The answer is the open file's own: it was below the directory
// while it was opened, and no link put in the way meanwhile was followed. Neither devices nor pipes are
// opened.
ReachedFile OpenWithin(char const* directory, char const* name);

// How an attempt to read a file went, as far as the caller's next step hangs on it.
enum class FileAnswer {
    Given,
    Absent,   // nothing of that name
    Failing,  // something may be there and can't be read now, for want of descriptors or memory, or
              // through a fault of the medium: a later attempt may succeed
    Refused,  // what is there isn't to be read, now or later: no regular file, larger than asked for, or
              // not this user's to read
};
// Opens a regular file of at most `maxSize` bytes for reading, links followed. Never waits, and opens neither
// pipes nor devices. `file` is open if the answer is Given, and not otherwise.
FileAnswer OpenForReading(char const* path, long long maxSize, File& file);
// Reads such a file whole. `content` is unchanged unless the answer is Given; a read that breaks off is
// Failing. Want of memory is Failing too.
FileAnswer ReadWholeFile(char const* path, long long maxSize, std::string& content);

// The following three never wait, follow no link at the end of `path`, and give none for anything but a
// regular file that belongs to this user. Only the user may read or write the file afterwards; one that was
// more widely readable is narrowed.
//
// Makes a file for writing in a place where nothing was. While it is open, DeleteAbandonedFile leaves
// it alone.
File CreatePrivateFile(char const* path);
// For writing, truncating what is there.
File OpenPrivateForWriting(char const* path);
// For writing at the end, whatever was written meanwhile, and for reading.
File OpenPrivateForAppending(char const* path);

// Renames a file that CreatePrivateFile made and that is still open; an existing target is replaced
// in one step. False on failure, which leaves both as they were.
bool RenameOpenFile(File& file, char const* from, char const* to);
// Deletes a file that CreatePrivateFile made, here or in another process, and that isn't open any more, in
// most cases because its process died. False if it stays.
bool DeleteAbandonedFile(char const* path);

// What separates a directory and a name where the library builds its own directories: one character.
extern char const kPathSeparator;
// What ends a line in a text file of this system.
extern char const* const kLineEnd;

}  // namespace Ubrix::Platform
