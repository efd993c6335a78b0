#include <VelmorCore/Object.h>

#include <memory>
#include <utility>
#include <vector>

#include "Base/Container/AsText.h"
#include "Base/Container/Nesting.h"
#include "Platform/MemoryWant.h"

namespace Ubrix {

using Platform::WithoutThrow;

struct AArray::Body : ContainerContent {
    std::vector<AObject*> list;

    ~Body() override {
        for (AObject* object : list) {
            if (object->IsOwned()) {
                delete object;
            }
        }
    }
};

AArray::AArray() : AObject(TypeArray), _body(nullptr) {}

AArray::AArray(AArray const* other) : AArray() {
    Add(other);
}

AArray::AArray(AArray const& other) : AArray(&other) {}

AArray::~AArray() {
    RemoveAll();
}

AArray::Body& AArray::List() {
    if (_body == nullptr) {
        _body = new Body;
    }
    return *_body;
}

void AArray::Add(AObject const* object, bool owned) {
    if (object == nullptr) {
        return;
    }
    WithoutThrow([&] {
        // Elements are handed out for changing, whichever way they came in.
        List().list.push_back(const_cast<AObject*>(object));
        object->_owned = owned;
    });
}

void AArray::Add(AObject const& object) {
    WithoutThrow([&] {
        std::unique_ptr<AObject> copy(object.Clone());
        Add(copy.get(), true);
        static_cast<void>(copy.release());
    });
}

void AArray::Add(ANumber const& number) {
    Add(static_cast<AObject const&>(number));
}

void AArray::Add(char const* text) {
    WithoutThrow([&] { Add(static_cast<AObject const&>(AString(text))); });
}

void AArray::Add(AArray const* other) {
    if (other == nullptr) {
        return;
    }
    WithoutThrow([&] {
        NestingLevel const level;
        NestingLevel::Check();
        // All copies first: the other array may be this one, and a copy may fail.
        AArray copies;
        for (int i = 0; i < other->Count(); ++i) {
            copies.Add(*other->_body->list[static_cast<size_t>(i)]);
        }
        Take(copies);
    });
}

void AArray::Take(AArray& other) {
    if (other.Count() > 0) {
        std::vector<AObject*>& list = List().list;
        std::vector<AObject*>& taken = other._body->list;
        list.insert(list.end(), taken.begin(), taken.end());
        taken.clear();
    }
}

AArray& AArray::operator=(AArray const& other) {
    if (this != &other) {
        WithoutThrow([&] {
            // The other array may be an element of this one: copy it before anything goes.
            AArray copy(other);
            std::swap(_body, copy._body);
        });
    }
    return *this;
}

AObject* AArray::Clone() const {
    return WithoutThrow([this]() -> AObject* { return new AArray(this); });
}

void AArray::RemoveObjectAtIndex(int index) {
    AObject* object = ObjectAtIndex(index);
    if (object == nullptr) {
        return;
    }
    _body->list.erase(_body->list.begin() + index);
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
    // Nothing is listed any more when the first of them goes.
    Discard(std::exchange(_body, nullptr));
}

int AArray::Count() const {
    return _body != nullptr ? static_cast<int>(_body->list.size()) : 0;
}

AObject* AArray::ObjectAtIndex(int index) const {
    return index >= 0 && index < Count() ? _body->list[static_cast<size_t>(index)] : nullptr;
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
