#include "GameLoop.h"

#include <VelmorCore/velmorcore.h>

#include <thread>

namespace Host {

bool GameLoop::RunUntil(std::function<bool()> const& done, std::chrono::milliseconds limit) {
    using Clock = std::chrono::steady_clock;
    constexpr auto kFrame = std::chrono::microseconds(16667);
    Clock::time_point const end = Clock::now() + limit;
    for (Clock::time_point frame = Clock::now(); frame < end; frame += kFrame) {
        std::this_thread::sleep_until(frame);
        ubrix_target_unity_update();
        ++_frames;
        if (done()) {
            return true;
        }
    }
    return false;
}

}  // namespace Host
