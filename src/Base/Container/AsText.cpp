#include "Base/Container/AsText.h"

#include <cassert>

namespace Ubrix {

namespace {

AString const* StringOrNull(AObject const* object) {
    bool const isString = object != nullptr && object->ObjectType() == AObject::TypeString;
    return isString ? static_cast<AString const*>(object) : nullptr;
}

}  // namespace

char const* AsCString(AObject const* object) {
    AString const* text = StringOrNull(object);
    return text != nullptr ? text->c_str() : nullptr;
}

AString const& AsAString(AObject const* object) {
    // Never deleted: callers keep references for as long as they like.
    static AString const* const empty = new AString;
    AString const* text = StringOrNull(object);
    assert(text != nullptr);
    return text != nullptr ? *text : *empty;
}

}  // namespace Ubrix
