#include "System/Time/ClockSource.h"

#include <algorithm>
#include <atomic>

#include "Platform/Immortal.h"

namespace Ubrix {

namespace {

std::atomic<ClockSource const*> g_replacement{nullptr};

// What one wait of the platform takes; a later moment needs several.
constexpr long long kLongestWaitMs = 0x7FFFFFFF;

}  // namespace

Platform::CalendarTime ClockSource::Local() const {
    return Platform::LocalCalendarTime();
}

long long ClockSource::EpochSeconds() const {
    return Platform::EpochSeconds();
}

long long ClockSource::MonotonicMilliseconds() const {
    return Platform::MonotonicMilliseconds();
}

void ClockSource::WaitUntil(Platform::Event& event, long long moment) const {
    if (moment == kNever) {
        event.Wait();
        return;
    }
    long long const left = moment - MonotonicMilliseconds();
    if (left > 0) {
        event.WaitFor(static_cast<unsigned int>(std::min(left, kLongestWaitMs)));
    }
}

ClockSource const& ClockSource::Current() {
    // Never destroyed: timer threads read it while the process exits.
    static Platform::Immortal<ClockSource> system;
    ClockSource const* replacement = g_replacement.load(std::memory_order_acquire);
    return replacement != nullptr ? *replacement : *system;
}

void ClockSource::Replace(ClockSource const* source) {
    g_replacement.store(source, std::memory_order_release);
}

}  // namespace Ubrix
