#include "Base/Container/AsText.h"

#include <cassert>

#include "Platform/Immortal.h"

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
    AString const* text = StringOrNull(object);
    assert(text != nullptr);
    return text != nullptr ? *text : EmptyString();
}

AString const& EmptyString() {
    static Platform::Immortal<AString> empty;
    return *empty;
}

}  // namespace Ubrix
