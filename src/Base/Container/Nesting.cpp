#include "Base/Container/Nesting.h"

#include <utility>

namespace Ubrix {

namespace {

// Enough for what anybody nests, so that things go in their order, and little of a stack.
constexpr int kMaxNestedDiscards = 100;

thread_local int t_discards = 0;
thread_local ContainerContent* t_waiting = nullptr;

}  // namespace

void Discard(ContainerContent* content) {
    if (content == nullptr) {
        return;
    }
    if (t_discards == kMaxNestedDiscards) {
        content->_next = std::exchange(t_waiting, content);
        return;
    }
    ++t_discards;
    delete content;
    while (t_discards == 1 && t_waiting != nullptr) {
        content = std::exchange(t_waiting, t_waiting->_next);
        delete content;
    }
    --t_discards;
}

}  // namespace Ubrix
