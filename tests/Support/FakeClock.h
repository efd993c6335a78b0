// A wall clock that stands still until a test sets it; in force for the length of a scope. Durations stay
// real.
#pragma once

#include "Support/Watched.h"
#include "System/Time/ClockSource.h"

namespace Test {

class FakeClock {
public:
    explicit FakeClock(Ubrix::Platform::CalendarTime const& local = {2036, 3, 5, 7, 59, 1, 42}) {
        SetLocal(local);
        Ubrix::ClockSource::Replace(&TheSource());
    }
    ~FakeClock() { Ubrix::ClockSource::Replace(nullptr); }
    FakeClock(FakeClock const&) = delete;
    FakeClock& operator=(FakeClock const&) = delete;

    void SetLocal(Ubrix::Platform::CalendarTime const& local) {
        TheSource().local.With([&](Ubrix::Platform::CalendarTime& now) { now = local; });
    }

private:
    struct Source : Ubrix::ClockSource {
        Ubrix::Platform::CalendarTime Local() const override {
            return local.With([](Ubrix::Platform::CalendarTime const& now) { return now; });
        }
        long long EpochSeconds() const override {
            return Ubrix::Platform::CalendarToEpoch(Local(), Ubrix::Platform::DaylightSaving::Unknown);
        }
        mutable Watched<Ubrix::Platform::CalendarTime> local;
    };

    // Never destroyed: threads may be on their way out of it, such as the sweep that load begins.
    static Source& TheSource() {
        static Source& source = *new Source;
        return source;
    }
};

}  // namespace Test
