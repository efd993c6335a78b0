// The server's answer.
#pragma once

#include <VelmorCore/Value.h>

#include <cstdint>

namespace Velmor {

// Reads an answer of `length` bytes at `json`. Gives 0 and fills `modules` with one object a module (null if
// the answer has none) and `ruleId`; otherwise logs why and gives -1, or -2 for JSON that is no object. An
// answer whose members have wrong kinds, or an integer that 32 bits don't hold, is a bad one. `json` may be
// null.
int ParseConfigAnswer(char const* json, std::uint64_t length, Ubrix::Value& modules, int& ruleId);

}  // namespace Velmor
