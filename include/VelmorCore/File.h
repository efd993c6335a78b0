/// @file
/// Files and paths.
///
/// Nothing here throws: every result is a bool, a count or a text. A path is a zero-terminated byte string
/// that goes to the system's narrow file functions unchanged, in whatever encoding these take.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object.h>

namespace Ubrix {

namespace Platform {
class File;
}

/// How a file is opened. The content of a truncated file is gone at once. Any other number reads.
enum FileMode : int {
    FileModeCreate = 0,     ///< read and write, truncated: "wb+"
    FileModeAppend = 1,     ///< read, write at the end only: "ab+"
    FileModeRead = 2,       ///< read: "rb"
    FileModeReadWrite = 3,  ///< the same as FileModeCreate: existing content is not kept
    FileModeWrite = 4,      ///< write, truncated: "wb"
};

/// What an offset counts from. Any other number counts from the beginning.
enum FilePosition : int {
    /// The file's first byte.
    FilePositionBegin = 0,
    /// The present position.
    FilePositionCurrent = 1,
    /// Behind the file's last byte.
    FilePositionEnd = 2,
};

/// One buffered file stream with its path. An instance belongs to one thread at a time. Writes are buffered:
/// what a full disk refuses may show only in the result of a later operation, or not at all.
class VELMORCORE_API CFile {
public:
    /// Closed, with an empty path.
    CFile();
    /// Closes the stream.
    virtual ~CFile();
    CFile(CFile const&) = delete;
    CFile& operator=(CFile const&) = delete;

    /// Closes what is open, keeps `path` even if it can't be opened, and opens it. False, with nothing
    /// changed, for null; false if the file can't be opened.
    bool Open(char const* path, FileMode mode);
    /// Closes the stream, if one is open; what it still holds goes to the system.
    void Close();

    /// True if the stream is open and its path still stands on the disk.
    bool Exist();
    /// True if a file or a directory of that name stands on the disk. False for null.
    static bool Exist(char const* path);
    /// Always true: this answer can't tell a directory from anything else.
    static bool IsDir(char const* path);
    /// Deletes a file. False on failure and for null.
    static bool Remove(char const* path);
    /// Deletes the file at this object's path. Close first. False on failure.
    bool Remove();
    /// Renames a file; one that bears the name `to` is replaced. False on failure, which leaves both as they
    /// were, and for null.
    static bool Rename(char const* from, char const* to);

    /// Reads up to `size` bytes from the beginning and returns how many came: fewer at the end of the file,
    /// 0 if `size` is 0. At most 2147483647 bytes in one call. -1 if the file isn't open, `buffer` is null,
    /// or reading fails; the bytes are then not to be used.
    int Read(void* buffer, unsigned int size);
    /// Reads from byte `position`, as the other form; 0 also if the position can't be reached.
    int Read(void* buffer, int position, unsigned int size);
    /// Writes `size` bytes at the beginning of the file, over what is there (with FileModeAppend, at the
    /// end), and hands them to the system. True if all went out, and for a `size` of 0. False if the file
    /// isn't open or `data` is null.
    bool Write(void const* data, unsigned int size);
    /// Writes `size` bytes at the end. They may stay in the stream's buffer until the file is closed. Results
    /// as above.
    bool Append(void const* data, unsigned int size);
    /// Hands what the stream holds to the system: it then outlives the process. False if that fails, or if
    /// the file isn't open.
    bool Flush();
    /// Bytes in the file, those still buffered included. 0 if it is closed, on failure, and for a length
    /// beyond 32 bits. The position stays.
    unsigned int GetLength();
    /// Moves the position and returns it, in bytes from the beginning; 0 if the file is closed or the place
    /// can't be reached. Only the low 32 bits of `offset` count, as a signed number.
    unsigned long long Seek(unsigned long long offset, FilePosition from);
    /// Moves the position to the first byte.
    void SeekToBegin();
    /// Moves the position behind the last byte.
    void SeekToEnd();

private:
    Platform::File* _file;
    AString _path;
    FileMode _mode;
    bool _hasRead;
};

/// Paths, and the two directories in which the library keeps its files. Static operations only; all may be
/// called on any thread. The texts that are returned live until the process ends.
class VELMORCORE_API CPath {
public:
    CPath() = delete;

    /// The working directory at the first call, kept from then on. If it can't be read, prints "getcwd error"
    /// with the system's message on standard error and returns null; the next call tries again.
    static char const* GetAppPath();
    /// The directory "Doc" below GetAppPath, with a separator at the end. The first call makes the
    /// directory, readable by this user only; if that fails, the next call tries again. The library keeps no
    /// keys or values in one that belongs to another user (but root), or that everybody may write: an Error
    /// line tells. Null without an application path.
    static char const* GetDocPath();
    /// The directory "Cache", as GetDocPath.
    static char const* GetCachePath();
    /// The file in the cache directory that bears the kit's name at the first call and ".ini". Null without
    /// an application path.
    static char const* GetDefaultConfigFile();

    /// Makes one directory, readable by this user only. False if it can't be made or stands already, and for
    /// null.
    static bool CreatePath(char const* path);
    /// Removes nothing and returns true.
    static bool RemovePath(char const* path);

    /// Joins `dir` and `sub`, with a "/" between unless `dir` is empty or ends in "/" or a backslash. Nothing
    /// happens if either is null. Both may be the text of `out`.
    static void GetSubPath(AString& out, char const* dir, char const* sub);
    /// Adds `sub` to `path` in place, with a separator as GetSubPath; returns `path`.
    static AString& AppendSubPath(AString& path, char const* sub);
    /// What follows the last backslash; without one, what follows the last "/"; without either, all of
    /// `path`. Null gives an empty text. `path` may be the text of `out`.
    static void GetFileName(char const* path, AString& out);
    /// Adds the bare name of each entry of a directory to `files`, as a string, without "." and "..", in the
    /// system's order; directories are listed like files. False after an Error line if an argument is null or
    /// the directory can't be read.
    static bool GetFiles(char const* path, AArray* files);
};

}  // namespace Ubrix
