// The kit-wide parameters: a plain record of six texts.
#pragma once

#include <VelmorCore/Object.h>

namespace Ubrix {

// The record is made at first use with the kit name "Velmor" and everything else empty. Thread-safe: values
// go in and out by copy under a lock of the record's own, which is never held while calling out.
class CoreParameters {
public:
    enum class Field { KitName, ChannelId, OpenId, TransceiverUrl, RequestText, GameId };

    CoreParameters() = delete;

    static AString Get(Field field);
    static void Set(Field field, AString const& value);
    // Sets a field that is still empty. Gives what it holds then.
    static AString Fill(Field field, AString const& value);
    // Deletes the record; the next use makes a new one.
    static void Release();
};

}  // namespace Ubrix
