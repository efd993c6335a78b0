#include <VelmorCore/Object.h>

#include <memory>
#include <utility>
#include <vector>

#include "Base/Container/AsText.h"

namespace Ubrix {

struct AArray::Items {
    std::vector<AObject*> list;
};

AArray::AArray() : AObject(TypeArray), _items(new Items) {}

AArray::AArray(AArray const* other) : AArray() {
    Add(other);
}

AArray::AArray(AArray const& other) : AArray(&other) {}

AArray::~AArray() {
    RemoveAll();
    delete _items;
}

void AArray::Add(AObject const* object, bool owned) {
    if (object == nullptr) {
        return;
    }
    // Elements are handed out for changing, whichever way they came in.
    _items->list.push_back(const_cast<AObject*>(object));
    object->_owned = owned;
}

void AArray::Add(AObject const& object) {
    std::unique_ptr<AObject> copy(object.Clone());
    Add(copy.get(), true);
    static_cast<void>(copy.release());
}

void AArray::Add(ANumber const& number) {
    Add(static_cast<AObject const&>(number));
}

void AArray::Add(char const* text) {
    Add(static_cast<AObject const&>(AString(text)));
}

void AArray::Add(AArray const* other) {
    if (other == nullptr) {
        return;
    }
    // All copies first: the other array may be this one, and a copy may fail.
    AArray copies;
    for (AObject const* object : other->_items->list) {
        copies.Add(*object);
    }
    std::vector<AObject*>& added = copies._items->list;
    _items->list.insert(_items->list.end(), added.begin(), added.end());
    added.clear();
}

AArray& AArray::operator=(AArray const& other) {
    if (this != &other) {
        // The other array may be an element of this one: copy it before anything goes.
        AArray copy(other);
        std::swap(_items, copy._items);
    }
    return *this;
}

AObject* AArray::Clone() const {
    return new AArray(this);
}

void AArray::RemoveObjectAtIndex(int index) {
    AObject* object = ObjectAtIndex(index);
    if (object == nullptr) {
        return;
    }
    _items->list.erase(_items->list.begin() + index);
    if (object->_owned) {
        delete object;
    }
}

void AArray::RemoveFirstObject() {
    RemoveObjectAtIndex(0);
}

void AArray::RemoveLastObject() {
    RemoveObjectAtIndex(Count() - 1);
}

void AArray::RemoveAll() {
    for (AObject* object : _items->list) {
        if (object->_owned) {
            delete object;
        }
    }
    _items->list.clear();
}

int AArray::Count() const {
    return static_cast<int>(_items->list.size());
}

AObject* AArray::ObjectAtIndex(int index) const {
    return index >= 0 && index < Count() ? _items->list[static_cast<size_t>(index)] : nullptr;
}

AObject* AArray::operator[](int index) const {
    return ObjectAtIndex(index);
}

AObject* AArray::FirstObject() const {
    return ObjectAtIndex(0);
}

AObject* AArray::LastObject() const {
    return ObjectAtIndex(Count() - 1);
}

char const* AArray::CStringAtIndex(int index) const {
    return AsCString(ObjectAtIndex(index));
}

char const* AArray::FirstCString() const {
    return AsCString(FirstObject());
}

char const* AArray::LastCString() const {
    return AsCString(LastObject());
}

AString const& AArray::AStringAtIndex(int index) const {
    return AsAString(ObjectAtIndex(index));
}

AString const& AArray::FirstAString() const {
    return AsAString(FirstObject());
}

AString const& AArray::LastAString() const {
    return AsAString(LastObject());
}

}  // namespace Ubrix
