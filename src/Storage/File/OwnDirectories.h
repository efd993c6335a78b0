// Whether the directories in which the library stores its state are its own.
#pragma once

namespace Ubrix {

// Asked before keys or values are read from the file at `path`, or written to it. False if it is in the
// cache or the documents directory and that belongs to somebody else, or everybody may write there: whoever
// can change it could give the game keys and values, and take the game's away. The file's content then lives
// in memory until the directory is trusted again, and what is there is left alone. One Error line tells.
// A directory that isn't there is made. Thread-safe.
bool IsSafeForValues(char const* path);

}  // namespace Ubrix
