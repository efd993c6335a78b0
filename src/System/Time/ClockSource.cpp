#include "System/Time/ClockSource.h"

#include <atomic>

namespace Ubrix {

namespace {

std::atomic<ClockSource const*> g_replacement{nullptr};

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

ClockSource const& ClockSource::Current() {
    static ClockSource const system;
    ClockSource const* replacement = g_replacement.load(std::memory_order_acquire);
    return replacement != nullptr ? *replacement : system;
}

void ClockSource::Replace(ClockSource const* source) {
    g_replacement.store(source, std::memory_order_release);
}

}  // namespace Ubrix
