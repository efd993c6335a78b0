// A wall clock that stands still until a test sets it; in force for the length of a scope. Durations stay
// real.
#pragma once

#include "System/Time/ClockSource.h"

namespace Test {

class FakeClock : public Ubrix::ClockSource {
public:
    explicit FakeClock(Ubrix::Platform::CalendarTime const& local = {2036, 3, 5, 7, 59, 1, 42})
        : _local(local) {
        Ubrix::ClockSource::Replace(this);
    }
    ~FakeClock() override { Ubrix::ClockSource::Replace(nullptr); }
    FakeClock(FakeClock const&) = delete;
    FakeClock& operator=(FakeClock const&) = delete;

    Ubrix::Platform::CalendarTime Local() const override { return _local; }
    long long EpochSeconds() const override {
        return Ubrix::Platform::CalendarToEpoch(_local, Ubrix::Platform::DaylightSaving::Unknown);
    }

    // Not while another thread reads the clock.
    void SetLocal(Ubrix::Platform::CalendarTime const& local) { _local = local; }

private:
    Ubrix::Platform::CalendarTime _local;
};

}  // namespace Test
