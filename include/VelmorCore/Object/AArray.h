/// @file
/// Lists in the object model. What holds for all of its classes is told in Object.h.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object/ANumber.h>
#include <VelmorCore/Object/AObject.h>

namespace Ubrix {

/// An ordered list of objects.
///
/// Whether the array deletes an element is marked on the element (AObject::IsOwned) by the way it came in:
/// what is added by reference is copied, and the copy is owned; what is added by pointer is stored itself,
/// and the caller decides. An object has one mark: don't add it with ownership to two containers. Elements
/// are never null. Two arrays are equal only if they are the same object.
///
/// What takes elements out deletes those that are owned, and later ones move down. An element that is being
/// deleted is listed no more.
class VELMORCORE_API AArray : public AObject {
public:
    /// Makes an empty array.
    AArray();
    /// Copies deeply: each element is a clone, and owned. Null gives an empty array.
    explicit AArray(AArray const* other);
    /// Copies deeply: each element is a clone, and owned.
    AArray(AArray const& other);
    /// Deletes the elements that it owns.
    ~AArray() override;

    /// Adds the object itself at the end. Owned: the array deletes it when it goes out of the array. Not
    /// owned: the caller keeps it alive as long as the array holds it. Null does nothing. If memory runs out
    /// the object isn't taken, which Count tells, and its mark stays: it is still the caller's to delete.
    void Add(AObject const* object, bool owned);
    /// Adds a copy of the object, owned.
    void Add(AObject const& object);
    /// Adds a copy of the number, owned.
    void Add(ANumber const& number);
    /// Adds the text as a string, owned; null adds an empty one.
    void Add(char const* text);
    /// Adds a copy of each element, owned; the array may be this one. Null does nothing.
    void Add(AArray const* other);
    /// Replaces the content by copies; assigning an array to itself changes nothing.
    AArray& operator=(AArray const& other);
    /// Copies deeply into a new array.
    AObject* Clone() const override;

    /// Takes one element out; an index that isn't in the array does nothing.
    void RemoveObjectAtIndex(int index);
    /// Takes the first element out; does nothing on an empty array.
    void RemoveFirstObject();
    /// Takes the last element out; does nothing on an empty array.
    void RemoveLastObject();
    /// Takes all elements out. None is listed any more while they are deleted.
    void RemoveAll();

    /// Number of elements.
    int Count() const;
    /// The element, which stays the array's; null if there is none.
    AObject* ObjectAtIndex(int index) const;
    /// The element, as ObjectAtIndex.
    AObject* operator[](int index) const;
    /// The first element, which stays the array's; null if there is none.
    AObject* FirstObject() const;
    /// The last element, which stays the array's; null if there is none.
    AObject* LastObject() const;
    /// The text of an element that is an AString; null if there is none or it is of another kind.
    char const* CStringAtIndex(int index) const;
    /// The text of the first element, as CStringAtIndex.
    char const* FirstCString() const;
    /// The text of the last element, as CStringAtIndex.
    char const* LastCString() const;
    /// The element, which has to be there and to be an AString: asserted in debug builds; otherwise the
    /// answer is an empty string that is not the array's.
    AString const& AStringAtIndex(int index) const;
    /// The first element, as AStringAtIndex.
    AString const& FirstAString() const;
    /// The last element, as AStringAtIndex.
    AString const& LastAString() const;

private:
    friend class AString;
    struct VELMORCORE_HIDDEN Body;

    // The list, made when the first element comes.
    Body& List();
    // Takes over the elements of `other`, all or none.
    void Take(AArray& other);

    Body* _body;
};

}  // namespace Ubrix
