// The frame loop of a game that draws nothing.
#pragma once

#include <chrono>
#include <functional>

namespace Host {

// Belongs to the game's thread: calls that the library delivers to the game run inside RunUntil.
class GameLoop {
public:
    // Runs frames, 60 a second, until `done` answers true, and answers true then; false after `limit`.
    bool RunUntil(std::function<bool()> const& done, std::chrono::milliseconds limit);

    long long Frames() const { return _frames; }

private:
    long long _frames = 0;
};

}  // namespace Host
