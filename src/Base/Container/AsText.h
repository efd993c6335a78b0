// Elements of containers read as text. Any thread that may read the element.
#pragma once

#include <VelmorCore/Object.h>

namespace Ubrix {

// The text of an object that is an AString, else null.
char const* AsCString(AObject const* object);

// The object, which has to be an AString: asserted in debug builds; otherwise an empty string for what isn't.
AString const& AsAString(AObject const* object);

// An empty string that stays, and for which no memory is taken.
AString const& EmptyString();

}  // namespace Ubrix
