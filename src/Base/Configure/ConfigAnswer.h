// The server's answer.
#pragma once

#include <VelmorCore/Value.h>

#include <cstddef>
#include <cstdint>

#include "Storage/Log/LineBudget.h"

namespace Velmor {

// An answer beyond these is a bad one: each value and each byte is held up to five times over on its way
// into the cache's file.
constexpr std::size_t kLongestAnswer = std::size_t{32} * 1024 * 1024;
constexpr std::size_t kMostAnswerValues = 200000;
constexpr std::size_t kDeepestAnswer = 1000;
// A longer name of a module or a key is left out: the cache compares names often.
constexpr std::size_t kLongestAnswerName = 1024;

// What ParseConfigAnswer gives for one that can't be used.
constexpr int kBadAnswer = -1;
constexpr int kAnswerIsNoObject = -2;

// Belongs to the thread that reads it.
struct ConfigAnswer {
    // One object a module, or null for a module without a usable key; null if there is no module at all.
    // Names and texts are such as the cache's file can hold.
    Ubrix::Value modules;
    int ruleId = 0;
    // For the lines about single modules and keys, here and later.
    Ubrix::LineBudget complaints;
};

// Reads an answer of `length` bytes at `json`. Gives 0 and fills `answer`; otherwise logs why and
// gives kBadAnswer, or kAnswerIsNoObject. An answer whose members have wrong kinds, or an integer that 32
// bits don't hold, is a bad one, and so is one that there is no memory for. A key or a module whose name the
// cache's file can't hold is left out; a text there ends at its first line end. `json` may be null. Any
// thread.
int ParseConfigAnswer(char const* json, std::uint64_t length, ConfigAnswer& answer);

}  // namespace Velmor
