// Plays the managed engine: pairs an object of its own with a native one by a number, asks it, hears its
// answer through a callback, and lets go of it. Exit status 0 only if all that went as it should.
#include <VelmorCore/velmorcore.h>

#include <chrono>
#include <cstdio>
#include <future>
#include <iterator>
#include <thread>

#include "ScoreSum.h"

namespace {

constexpr std::int64_t kId = 4711;
constexpr std::intptr_t kRequest = 1;
constexpr std::int32_t kScores[] = {120, 75, 300};
constexpr std::intptr_t kSum = 495;
constexpr std::chrono::seconds kPatience{20};

struct Answer {
    std::int64_t id;
    std::intptr_t request;
    std::intptr_t sum;
    std::thread::id thread;
};

std::promise<Answer>& Heard() {
    static std::promise<Answer> answer;
    return answer;
}

void OnResult(std::int64_t id, std::intptr_t request, std::intptr_t sum) {
    Heard().set_value({id, request, sum, std::this_thread::get_id()});
}

bool Check(bool holds, char const* what) {
    std::printf("  %s  %s\n", holds ? "ok    " : "FAILED", what);
    return holds;
}

bool Ask() {
    return score_sum_ask(kId, kRequest, kScores, static_cast<int>(std::size(kScores)));
}

bool AskAndHear() {
    std::future<Answer> heard = Heard().get_future();
    if (!Check(Ask(), "the native object was asked for a sum") ||
        !Check(heard.wait_for(kPatience) == std::future_status::ready,
               "its answer came through the callback")) {
        return false;
    }
    Answer const answer = heard.get();
    return Check(answer.id == kId && answer.request == kRequest && answer.sum == kSum,
                 "with the id, the request and the right sum") &&
           Check(answer.thread != std::this_thread::get_id(), "on a thread of the pool");
}

bool Play() {
    RegisterScoreSum();
    setSarnetSendResultCallback(OnResult);
    bool const well = Check(!addPlatformObject(kId, "Unknown"), "a class that no module brings is refused") &&
                      Check(addPlatformObject(kId, "ScoreSum"), "an object of the module's class was made") &&
                      AskAndHear();
    removePlatformObject(kId);
    return Check(!Ask(), "once removed, it can't be asked any more") && well;
}

}  // namespace

int main() {
    bool const well = Play();
    velmorcore_releaseInstance();
    return well ? 0 : 1;
}
