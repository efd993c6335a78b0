#include "Storage/Log/LineBudget.h"

namespace Ubrix {

void LineBudget::TellRest(ALogPriority level, char const* function) const {
    if (_asked > kLines) {
        XLog(level, __FILE__, __LINE__, function, "%llu more lines like these left out", _asked - kLines);
    }
}

}  // namespace Ubrix
