// What this module brings to the bridge: a class that managed code can name, and the road into its objects.
#pragma once

#include <cstdint>

// Makes the class "ScoreSum" known. Once, before managed code asks for it.
void RegisterScoreSum();

extern "C" {

// Has the object of this id add up `count` scores, which it copies. The sum comes to the callback of
// setSarnetSendResultCallback, with `request` in front, on a thread of the pool. False if there is no such
// object. The managed side removes an object when all its answers have come.
bool score_sum_ask(std::int64_t objectId, std::intptr_t request, std::int32_t const* scores, int count);
}
