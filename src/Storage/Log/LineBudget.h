// How many log lines of one kind an input may cost.
#pragma once

#include <VelmorCore/Log.h>

namespace Ubrix {

// Ten lines an input, and one that counts the rest: who writes the input doesn't write the log. Belongs to
// one thread.
class LineBudget {
public:
    // Asked before each line: true for the first ten.
    bool Allows() { return ++_asked <= kLines; }
    // Once the input is done with: a line with the number of those that were kept back, if any were.
    void TellRest(ALogPriority level, char const* function) const;

private:
    static constexpr unsigned long long kLines = 10;

    unsigned long long _asked = 0;
};

}  // namespace Ubrix
