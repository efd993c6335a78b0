#include "Storage/Log/BufferRules.h"

#include <cstdlib>

#include "Platform/Console.h"

namespace Ubrix {

void RequireOfBuffer(bool holds, char const* condition) {
    if (!holds) {
        Platform::WriteConsoleLine(condition);
        std::abort();
    }
}

std::size_t SeekTarget(std::size_t position, std::size_t length, long long offset, BufferOrigin origin) {
    std::size_t const base = origin == FromStart ? 0 : origin == FromPosition ? position : length;
    if (offset < 0) {
        // Not -offset: the lowest number has no counterpart.
        unsigned long long const back = 0ULL - static_cast<unsigned long long>(offset);
        return back >= base ? 0 : base - static_cast<std::size_t>(back);
    }
    auto const ahead = static_cast<unsigned long long>(offset);
    return base >= length || ahead >= length - base ? length : base + static_cast<std::size_t>(ahead);
}

}  // namespace Ubrix
