#include "System/NetworkChecker/ResultLines.h"

namespace Ubrix {

namespace {

int NumberAt(AArray const& fields, int index) {
    return fields.AStringAtIndex(index).AsInt();
}

}  // namespace

bool FillFromLine(AArray const& fields, PingResult& result) {
    if (fields.Count() < 9) {
        return false;
    }
    result.code = NumberAt(fields, 0);
    result.host = fields.AStringAtIndex(1);
    result.stat1 = NumberAt(fields, 2);
    result.stat2 = NumberAt(fields, 3);
    result.stat3 = NumberAt(fields, 4);
    result.stat4 = NumberAt(fields, 5);
    result.stat5 = NumberAt(fields, 6);
    result.stat6 = NumberAt(fields, 7);
    result.stat7 = NumberAt(fields, 8);
    return true;
}

bool FillFromLine(AArray const& fields, TraceRouteResult& result) {
    int const lastIndex = fields.Count() - 1;
    if (lastIndex < 2) {
        return false;
    }
    result.code = NumberAt(fields, 0);
    result.host = fields.AStringAtIndex(1);
    result.hopCount = NumberAt(fields, 2);
    for (int i = 0; i < result.hopCount && 3 + 2 * i < lastIndex; ++i) {
        TraceRouteMessage message;
        message.first = fields.AStringAtIndex(3 + 2 * i);
        message.second = fields.AStringAtIndex(4 + 2 * i);
        result.hops.Add(message);
    }
    result.last = NumberAt(fields, lastIndex);
    return true;
}

bool FillFromLine(AArray const& fields, NSLookupResult& result) {
    int const lastIndex = fields.Count() - 1;
    if (lastIndex < 2) {
        return false;
    }
    result.code = NumberAt(fields, 0);
    result.host = fields.AStringAtIndex(1);
    for (int i = 2; i < lastIndex; ++i) {
        result.addresses.Add(fields.AStringAtIndex(i));
    }
    result.last = NumberAt(fields, lastIndex);
    return true;
}

}  // namespace Ubrix
