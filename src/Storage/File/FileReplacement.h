// New content for a file, put in place in one step.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace Ubrix {

// Collects the content in a temporary file beside the target, readable by this user only, and renames it over
// the target at the end. A full disk, or a process that dies on the way, leaves the target as it was. The
// content isn't forced onto the medium: a save costs no wait for the disk, and after a power cut the file has
// the content of this save or of an earlier one only where the file system keeps a rename behind the data it
// renames. The temporary name is a fresh one each time, so that two writers of one target don't mix; the
// later one wins. One thread at a time.
class FileReplacement {
public:
    explicit FileReplacement(std::string const& target);
    // Removes the temporary file unless Commit succeeded.
    ~FileReplacement();
    FileReplacement(FileReplacement const&) = delete;
    FileReplacement& operator=(FileReplacement const&) = delete;

    void Write(void const* bytes, std::size_t size);
    // Ends the writing. True if the system took every byte.
    bool Finish();
    // Puts the content in place. False, with the target as it was, if Finish hasn't said true or the rename
    // fails.
    bool Commit();

private:
    enum class State { Writing, Failed, Finished, Committed };

    std::string _target;
    std::string _temporary;
    std::FILE* _stream;
    State _state;
};

}  // namespace Ubrix
