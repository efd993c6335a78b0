/// @file
/// Maps in the object model. What holds for all of its classes is told in Object.h.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object/ANumber.h>
#include <VelmorCore/Object/AObject.h>

namespace Ubrix {

/// A key/value map of objects.
///
/// The dictionary keeps a copy of each key. A value given by reference or as text is copied, and the copy is
/// owned; a value given by pointer is stored itself, and the caller keeps it alive as long as the dictionary
/// holds it. Keys are compared by the stored key's IsEqual: strings by text, numbers loosely (1, 1.0 and true
/// are one key), data by content; a number never equals a string, and an array or a dictionary can't serve as
/// a key. Keys are counted in the order in which they first came in; a value set anew leaves its key's
/// position. Finding a string costs the same however many keys there are; finding another kind of key grows
/// with their number. Once a key of a caller's own class came in, finding any key does, until all are
/// removed.
class VELMORCORE_API ADictionary : public AObject {
public:
    /// Makes an empty dictionary.
    ADictionary();
    /// Copies deeply: values and keys are clones, values owned. The order of its keys is not that of `other`.
    ADictionary(ADictionary const& other);
    /// Deletes the keys, and the values that it owns.
    ~ADictionary() override;
    /// Replaces all content by copies, as Set of a dictionary.
    ADictionary& operator=(ADictionary const& other);
    /// Copies deeply into a new dictionary.
    AObject* Clone() const override;

    /// Replaces all content by copies; the order of the keys may come out differently. A dictionary set to
    /// itself stays as it is.
    void Set(ADictionary const& other);
    /// Sets a copy of the value in place of any that the key has.
    void Set(AObject const& key, AObject const& value);
    /// Sets a copy of the value under a number.
    void Set(ANumber const& key, AObject const& value);
    /// Sets a copy of the number under a number.
    void Set(ANumber const& key, ANumber const& value);
    /// Sets a copy of the value under a text; a null key does nothing.
    void Set(char const* key, AObject const& value);
    /// Sets a copy of the number under a text; a null key does nothing.
    void Set(char const* key, ANumber const& value);
    /// Sets a text under a text; null for either does nothing.
    void Set(char const* key, char const* value);
    /// Sets a text under a number; a null text does nothing.
    void Set(ANumber const& key, char const* value);
    /// Sets the value itself, not owned; null does nothing.
    void Set(AObject const& key, AObject* value);
    /// Sets the value itself, not owned, under a number; null does nothing.
    void Set(ANumber const& key, AObject* value);
    /// Sets the value itself, not owned, under a text; null for either does nothing.
    void Set(char const* key, AObject* value);
    /// Sets the value itself, not owned, under a copy of the key; null for either does nothing.
    void Set(AObject* key, AObject* value);

    /// The value, which stays where it is owned; null if the key is null or absent.
    AObject* ObjectForKey(AObject const* key) const;
    /// The value, which stays where it is owned; null if the key is absent.
    AObject* ObjectForKey(AObject const& key) const;
    /// The value under a number, which stays where it is owned; null if the key is absent.
    AObject* ObjectForKey(ANumber const& key) const;
    /// The value under a text, which stays where it is owned; null if the key is null or absent.
    AObject* ObjectForKey(char const* key) const;
    /// The text of a value that is an AString; null if there is none or it is of another kind.
    char const* CStringForKey(AObject const* key) const;
    /// The text of a value that is an AString; null if there is none or it is of another kind.
    char const* CStringForKey(AObject const& key) const;
    /// The text of the AString under a number; null if there is none or it is of another kind.
    char const* CStringForKey(ANumber const& key) const;
    /// The text of the AString under a text; null if there is none or it is of another kind.
    char const* CStringForKey(char const* key) const;
    /// The value, which has to be there and to be an AString: asserted in debug builds; otherwise the answer
    /// is an empty string that is not the dictionary's.
    AString const& AStringForKey(AObject const* key) const;
    /// The value, by the rules of the form that takes a pointer.
    AString const& AStringForKey(AObject const& key) const;
    /// The value under a number, by the rules of the form that takes a pointer.
    AString const& AStringForKey(ANumber const& key) const;
    /// The value under a text, by the rules of the form that takes a pointer.
    AString const& AStringForKey(char const* key) const;

    /// Number of entries.
    int Count() const;
    /// The key at a position from 0 to Count() - 1, valid until it is removed; null outside.
    AObject const* KeyAt(int index) const;
    /// The text of the key at a position if it is an AString, else null.
    char const* CStringKeyAt(int index) const;
    /// The key, which has to be there and to be an AString: asserted in debug builds; otherwise the answer is
    /// an empty string that is not the dictionary's.
    AString const& AStringKeyAt(int index) const;

    /// Takes out the entry, deleting the value if it is owned; later keys move down. A null or absent key
    /// does nothing. What is being deleted is listed no more.
    void Remove(AObject const* key);
    /// Takes out the entry under a number, as the other form does.
    void Remove(ANumber const& key);
    /// Takes out all entries, deleting the values that are owned.
    void RemoveAll();

private:
    struct VELMORCORE_HIDDEN Body;

    // Dictionaries can't be compared: always false.
    bool IsEqual(AObject const* other) const override;
    void PutCopy(AObject const& key, AObject const& value);
    // Puts `value` itself under a copy of `key`.
    void Put(AObject const& key, AObject* value, bool owned);
    // The entries, made when the first comes.
    Body& Content();

    Body* _body;
};

}  // namespace Ubrix
