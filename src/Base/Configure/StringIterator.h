// The library's own iterator over texts.
#pragma once

#include <VelmorCore/Configure.h>

#include <string>
#include <vector>

namespace Velmor {

// Not thread-safe: it belongs to one call.
class StringIterator : public IStringIterator {
public:
    // Appends a copy of `text`.
    void Add(char const* text);
    char const* Next() override;
    bool IsEnd() override;

private:
    std::vector<std::string> _texts;
    std::size_t _next = 0;
};

}  // namespace Velmor
