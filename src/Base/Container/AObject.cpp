#include <VelmorCore/Object.h>

namespace Ubrix {

AObject::AObject() : AObject(TypeObject) {}

AObject::AObject(Type type) : _type(type), _owned(false) {}

AObject::AObject(AObject const& other) = default;

AObject& AObject::operator=(AObject const& other) = default;

AObject::~AObject() = default;

bool AObject::IsEqual(AObject const* other) const {
    return other == this;
}

AObject::Type AObject::ObjectType() const {
    return _type;
}

bool AObject::IsOwned() const {
    return _owned;
}

}  // namespace Ubrix
