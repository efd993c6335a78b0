// When a client asks the server again.
#pragma once

#include <cstdint>

#include "Base/Ubrix/ConfigurationKeys.h"

namespace Velmor {

// What the server can tune, in seconds where it is a time; values out of bounds count as the nearest bound.
// A plain value.
struct FetchSchedule {
    static constexpr long long kRetrySeconds = 10;
    static constexpr int kDefaultRetries = 3;
    static constexpr int kMostRetries = 10;
    static constexpr long long kDefaultGap = 86400;
    static constexpr long long kShortestGap = 60;
    static constexpr long long kLongestGap = 31536000;
    static constexpr long long kWidestJitter = 86400;

    // Retries behind a failed request.
    int retries = kDefaultRetries;
    // Between the refreshes of a client that runs on.
    long long gap = kDefaultGap;
    // By how much the delay of a retry, or of a refresh, is lengthened at most.
    long long retryJitter = 0;
    long long gapJitter = 0;

    // `read(key, default)` gives the number behind a key of the library's own section.
    template <typename Read>
    static FetchSchedule From(Read read) {
        namespace Key = Ubrix::ConfigurationKey;
        FetchSchedule schedule;
        schedule.retries =
            static_cast<int>(Within(read(Key::kMaxRetryCount, kDefaultRetries), 0, kMostRetries));
        schedule.gap = Within(read(Key::kNextGap, kDefaultGap), kShortestGap, kLongestGap);
        schedule.retryJitter = Within(read(Key::kRetryJitter, 0), 0, kWidestJitter);
        schedule.gapJitter = Within(read(Key::kGapJitter, 0), 0, kWidestJitter);
        return schedule;
    }

    // The next delay. `share`: a random number, each of its values as likely as the next.
    unsigned long long RetryMilliseconds(std::uint32_t share) const {
        return Lengthened(kRetrySeconds, retryJitter, share);
    }
    unsigned long long GapMilliseconds(std::uint32_t share) const {
        return Lengthened(gap, gapJitter, share);
    }

private:
    static constexpr long long Within(long long number, long long least, long long most) {
        return number < least ? least : number > most ? most : number;
    }
    static constexpr unsigned long long Lengthened(long long seconds, long long jitter, std::uint32_t share) {
        auto const jitterMs = static_cast<unsigned long long>(jitter) * 1000;
        return static_cast<unsigned long long>(seconds) * 1000 + (jitterMs * share >> 32);
    }
};

}  // namespace Velmor
