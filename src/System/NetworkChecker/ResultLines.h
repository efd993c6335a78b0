// The lines in which a platform's tool tells the outcome of a diagnostic, cut at each "#". No state: any
// thread.
#pragma once

#include "System/NetworkChecker/DiagnosticResults.h"

namespace Ubrix {

// Each fills a new result from the fields of a line, which are strings. False if there are too few of them. A
// field that should be a number and isn't is 0.

// code#host#stat1#...#stat7; further fields are ignored.
bool FillFromLine(AArray const& fields, PingResult& result);
// code#host#hopCount#first#second#first#second...#last, with at most `hopCount` pairs. At least three fields.
bool FillFromLine(AArray const& fields, TraceRouteResult& result);
// code#host#address#address...#last. At least three fields.
bool FillFromLine(AArray const& fields, NSLookupResult& result);

}  // namespace Ubrix
