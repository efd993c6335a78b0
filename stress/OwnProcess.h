// What this process has of the system.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace Stress {

// How many entries a directory of this process's has: its threads ("task") or open files ("fd").
inline int CountOwn(std::string const& directory) {
    std::filesystem::directory_iterator const entries("/proc/self/" + directory);
    return static_cast<int>(std::distance(begin(entries), end(entries)));
}

// Resident memory in KiB.
inline long ResidentKiB() {
    std::ifstream status("/proc/self/statm");
    long total = 0;
    long resident = 0;
    status >> total >> resident;
    return resident * 4;
}

}  // namespace Stress
