// Listens to the library's log through its callback.
#pragma once

#include <VelmorCore/velmorcore.h>

#include <string>

namespace Host {

class Journal;

// One at a time: the callback is a plain function. From construction to destruction each line is counted, and
// errors are told in the journal.
class LogTap {
public:
    explicit LogTap(Journal& journal);
    ~LogTap();
    LogTap(LogTap const&) = delete;
    LogTap& operator=(LogTap const&) = delete;

    // Lines heard so far.
    int Lines() const;
    // Those of level Debug.
    int DebugLines() const;
    // Whether a line held `text`. The newest thousand lines are kept.
    bool Heard(std::string const& text) const;
};

}  // namespace Host
