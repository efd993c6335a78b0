// The getters of kit-wide parameters that ask the default bundle, and the text that tells a server who asks.
// Any thread that holds no lock of a bundle's, or of what stands below one.
#pragma once

#include <VelmorCore/Object.h>

namespace Velmor {

using Ubrix::AString;

// Who the user is, as last set here or by an earlier run; empty if never set.
AString ChannelId();
AString OpenId();

// Stores both for this run and for later ones. False after an Error line, with both as they were, if either
// can't be stored: it begins with "#", or holds a byte below 0x20. A null text is the empty one.
bool SetUserInfo(char const* channelId, char const* openId);

// The device, the application and the user as compact JSON with a line feed at its end. Also kept in the
// kit's parameters.
AString RequestText();

}  // namespace Velmor
