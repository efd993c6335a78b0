#include "System/Thread/CSelector.h"

namespace Ubrix {

void CSelector::Run() const {
    if (target == nullptr || !RunMember()) {
        RunFunction();
    }
}

bool CSelector::RunMember() const {
    if (member0 != nullptr) {
        (target->*member0)();
    } else if (member1 != nullptr) {
        (target->*member1)(arg1);
    } else if (member2 != nullptr) {
        (target->*member2)(arg1, arg2);
    } else if (member3 != nullptr) {
        (target->*member3)(arg1, arg2, arg3);
    } else {
        return false;
    }
    return true;
}

void CSelector::RunFunction() const {
    if (function0 != nullptr) {
        function0();
    } else if (function1 != nullptr) {
        function1(arg1);
    } else if (function2 != nullptr) {
        function2(arg1, arg2);
    } else if (function3 != nullptr) {
        function3(arg1, arg2, arg3);
    }
}

}  // namespace Ubrix
