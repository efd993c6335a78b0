// From the transport's numbers to what a listener is told.
#pragma once

namespace Ubrix {

// The error code of a request that failed with `transportError`: 2 time-out, 3 name not resolved, 4 invalid
// URL, 5 no connection, 1 everything else.
int DataTaskErrorCode(int transportError);

}  // namespace Ubrix
