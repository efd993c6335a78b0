// Elements of containers read as text.
#pragma once

#include <VelmorCore/Object.h>

namespace Ubrix {

// The text of an object that is an AString, else null.
char const* AsCString(AObject const* object);

// The object, which has to be an AString: asserted in debug builds; otherwise an empty string for what isn't.
AString const& AsAString(AObject const* object);

}  // namespace Ubrix
