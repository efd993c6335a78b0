// Reaching an IPv4 address from a network that has only IPv6.
#pragma once

#include <VelmorCore/Object.h>

namespace Ubrix {

// Rewrites `url`, "[scheme://]host[:port]", if its host is an IPv4 address in figures: the host gets the
// prefix "64::ff9b:", and is put into brackets before a port ("tcp://1.2.3.4:80" gives
// "tcp://[64::ff9b:1.2.3.4]:80"). Any other url comes back as it is. A port is read as a decimal number of 16
// bits, modulo 65536; 0 and no port are the same. False, with `result` as it was, for null and for a
// bracketed host without "]:" behind it. Any thread.
bool ToNat64Address(char const* url, AString& result);

}  // namespace Ubrix
