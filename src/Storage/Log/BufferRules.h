// What the two byte buffers of the block log have in common.
#pragma once

#include <cstddef>

namespace Ubrix {

// Where an offset is counted from.
enum BufferOrigin : int { FromStart = 0, FromPosition = 1, FromEnd = 2 };

// Ends the process, with `condition` on the console, unless it holds. In every build: what follows a broken
// condition would write outside a buffer.
void RequireOfBuffer(bool holds, char const* condition);

// The position that a seek leads to: never below 0 nor above `length`.
std::size_t SeekTarget(std::size_t position, std::size_t length, long long offset, BufferOrigin origin);

}  // namespace Ubrix
