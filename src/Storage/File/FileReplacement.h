// New content for a file, put in place in one step.
#pragma once

#include <cstddef>
#include <string>

#include "Platform/FileSystem.h"

namespace Ubrix {

// Collects the content in a new file beside the target, readable by this user only, and renames it over the
// target at the end. A full disk, or a process that dies on the way, leaves the target as it was. The content
// isn't forced onto the medium: a save costs no wait for the disk, and after a power cut the file has the
// content of this save or of an earlier one only where the file system keeps a rename behind the data it
// renames. The new file's name is a fresh one each time, so that two writers of one target don't mix; the
// later one wins. Without randomness for the name nothing is written. One thread at a time.
class FileReplacement {
public:
    explicit FileReplacement(std::string const& target);
    // Removes the new file unless Commit succeeded.
    ~FileReplacement();
    FileReplacement(FileReplacement const&) = delete;
    FileReplacement& operator=(FileReplacement const&) = delete;

    void Write(void const* bytes, std::size_t size);
    // Ends the writing. True if the system took every byte.
    bool Finish();
    // Puts the content in place. False, with the target as it was, if Finish hasn't said true or the rename
    // fails.
    bool Commit();

    // Why Commit says false.
    char const* Obstacle() const;

    // Removes what replacements of `target` left behind when their processes died; those that are still being
    // written, by whichever process, stay.
    static void ClearLeftovers(std::string const& target);

private:
    enum class State { Writing, Failed, Finished, Committed };

    std::string _target;
    std::string _temporary;
    // Open to the end: that marks the file as one in use.
    Platform::File _file;
    State _state;
};

}  // namespace Ubrix
