#include "System/WWW/Task/DataTaskExchange.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace Ubrix {

bool DataTaskExchange::AppendBody(void const* bytes, std::size_t length) {
    std::size_t const taken = std::min(length, kBodyLimit - _body.size());
    try {
        _body.append(static_cast<char const*>(bytes), taken);
    } catch (std::bad_alloc const&) {
        // Called out of a C library, which no exception may cross: ends like a read that fails.
        return false;
    }
    return taken == length;
}

void DataTaskExchange::Explain(char const* advice) {
    try {
        _advice.assign(advice, strnlen(advice, kAdviceLimit));
    } catch (std::bad_alloc const&) {
        _advice.clear();
    }
}

}  // namespace Ubrix
