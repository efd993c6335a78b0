#include "System/WWW/Task/TransportError.h"

#include <VelmorCore/HttpTransport.h>

namespace Ubrix {

int DataTaskErrorCode(int transportError) {
    switch (transportError) {
        case HttpErrorTimeout:
            return 2;
        case HttpErrorNameNotResolved:
            return 3;
        case HttpErrorInvalidUrl:
            return 4;
        case HttpErrorCannotConnect:
            return 5;
        default:
            return 1;
    }
}

}  // namespace Ubrix
