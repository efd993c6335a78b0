// The object model: a small family of run-time typed values with one root, so that a container can hold any
// mix of them, copy them without knowing their class, and compare them.
//
//   AObject        the root
//   AData          bytes
//   AString        text
//   AStringBuilder text that grows
//   ANumber        a number that remembers its kind
//   AArray         an ordered list of objects
//   ADictionary    a key/value map of objects
//
// Text is bytes with no known encoding; every length is an `int` counted in bytes. Bytes and texts that an
// operation is given may lie in the object itself.
//
// Nothing here throws. When memory runs out, or a length would pass the range of `int`, the object is as it
// was before the call, and a constructor leaves an empty one. What gives an answer then gives that of a
// missing entry: null, an empty text, 0 or false; no operation gives half of a text or of a copy. Clear,
// RemoveAll, Remove and the destructors never want for memory. What an operation calls of a caller's own
// class (Clone, IsEqual, WriteTo, ReadFrom) is a part of it: a want of memory in there, met by an operation
// of this library or thrown as std::bad_alloc, ends the whole operation. Other exceptions pass through.
//
// Containers nest as deep as they are made. Those nested more than 1,000 deep aren't copied or encoded: the
// operation ends as with a want of memory. When they go, what lies more than 100 deep goes after what is
// above it.
//
// Threads: no class here has a lock or shares state. An instance, with all that a container holds, belongs to
// one thread at a time. Different instances may be used on different threads.
#pragma once

#include <VelmorCore/Export.h>

namespace Ubrix {

class AArray;

// The root: a kind, an ownership mark, and what every object can do.
class VELMORCORE_API AObject {
public:
    // The run-time kind. The numbers are stored nowhere.
    enum Type : int {
        TypeObject = 0,  // AObject itself and each class that sets no kind, AStringBuilder among them
        TypeString = 1,
        TypeNumber = 2,
        TypeArray = 3,
        TypeDictionary = 4,
        TypeData = 5,
    };

    AObject();
    // Both copy the kind and the ownership mark. Of the classes below only AStringBuilder, as it is copied,
    // takes the mark over; all others leave it out.
    AObject(AObject const& other);
    AObject& operator=(AObject const& other);

    // Containers release what they own by `delete` through AObject*.
    virtual ~AObject();
    // Whether the two are equal: here, and in each class that says nothing else, whether `other` is this very
    // object. Null is equal to nothing.
    virtual bool IsEqual(AObject const* other) const;
    // A new, independent copy, not owned by any container. The caller deletes it. Null if there is none to be
    // had; a container that asked for it then takes nothing.
    virtual AObject* Clone() const = 0;

    // The kind, set once by the most derived constructor.
    Type ObjectType() const;
    // True if the container that holds this object deletes it. False on a new object.
    bool IsOwned() const;

protected:
    explicit AObject(Type type);

private:
    friend class AArray;
    friend class ADictionary;

    Type _type;
    // Containers mark objects that they are given as const, too.
    mutable bool _owned;
};

// A growable block of bytes.
//
// All bytes of the block from Size() on are zero, and an Append of at least one byte leaves at least one of
// them: text in the block is always terminated. The block belongs to this object alone.
class VELMORCORE_API AData : public AObject {
public:
    // Empty, with a zeroed block of 64 bytes.
    AData();
    // Empty, with a zeroed block of `capacity` bytes; below 1, with no block.
    explicit AData(int capacity);
    // As Assign on an object without a block.
    AData(unsigned char const* bytes, int size);
    // A copy of the bytes; the copy of an empty object has no block.
    AData(AData const& other);
    ~AData() override;

    // Takes `size` bytes in place of the content. Null or a negative size empties the object. Bytes that
    // begin exactly at this object's own block change nothing, whatever `size` says. A block that is too
    // small, or over 128 bytes and more than twice `size`, is replaced; so emptying a large block leaves
    // none.
    void Assign(unsigned char const* bytes, int size);
    // Adds `size` bytes at the end; null or a negative size does nothing. A block without a byte to spare
    // afterwards is replaced by one of twice the new size. The bytes may be this object's own.
    void Append(unsigned char const* bytes, int size);
    void Append(AData const& other);
    // Adds the text without its terminator; null does nothing.
    void Append(char const* text);

    // As Assign.
    AData& operator=(AData const& other);
    // As Assign of the text without its terminator. Null or an empty text: Clear.
    AData& operator=(char const* text);
    AData& operator+=(AData const& other);

    // The block, valid until the next change; null if there is none.
    unsigned char const* Data() const;
    // Bytes in use.
    int Size() const;
    // Bytes in the block, 0 without one.
    int Capacity() const;
    // Bytes of the block not in use.
    int LeftSize() const;
    // Makes the block exactly `capacity` bytes. Growing keeps the content, shrinking drops it all. The
    // present capacity, or one below 1, changes nothing.
    void SetCapacity(int capacity);
    // Empties the object and leaves a zeroed block of 64 bytes; if there is no memory for one, the present
    // block, zeroed.
    void Clear();
    // True without a block or without bytes in use.
    bool Empty() const;
    // Offset of the first byte in use that equals `byte` as an unsigned char; -1 if there is none.
    int Find(int byte) const;

    // True for an AData with the same bytes. One without a block equals only another without a block.
    bool IsEqual(AObject const* other) const override;
    AObject* Clone() const override;

private:
    // Installs `block` in place of the present one, which is deleted.
    void Install(unsigned char* block, int capacity, int size);
    // Replaces the content by `size` bytes in a block of its own.
    void Renew(unsigned char const* bytes, int size);
    // Keeps the first `size` bytes only, in the present block.
    void Cut(int size);
    friend class CSarnetBufferWriter;

    unsigned char* _data;
    int _capacity;
    int _size;
};

// A counted byte string. Zero bytes inside are kept by the counted operations; the comparisons, conversions
// and tests read the text up to its first zero byte. The text is always terminated.
class VELMORCORE_API AString : public AObject {
public:
    // Empty.
    AString();
    // The text; null gives an empty string.
    // NOLINTNEXTLINE(google-explicit-constructor): a text literal serves wherever a string is asked for.
    AString(char const* text);
    // `length` bytes as they stand; null or a negative length gives an empty string.
    AString(char const* text, int length);
    AString(AString const& other);
    ~AString() override;

    AString& operator=(AString const& other);
    // Null empties the string.
    AString& operator=(char const* text);
    // Takes `length` bytes as they stand, zeros included. They may lie in this string's own text; bytes that
    // begin exactly at its first change nothing.
    void assign(char const* text, int length);
    // Both empty the string.
    void Clear();
    void clear();

    // Bytes held; three names of one operation.
    int GetLength() const;
    int length() const;
    int size() const;
    bool Empty() const;
    bool empty() const;
    // The text, terminated, valid until the next change. Never null.
    char const* CString() const;
    char const* c_str() const;
    // The block itself: null if there is none.
    char const* data() const;
    // Byte `index`. No range check: the caller keeps it from 0 to the length.
    char at(int index) const;
    // Offset of the first byte equal to `byte` as an unsigned char; -1 if there is none.
    int Find(int byte) const;

    // These append, and give this string. The two by text, and `append` of a string, stop at the first zero
    // byte; null adds nothing.
    AString& append(char const* text);
    AString& append(AString const& text);
    // `length` bytes as they stand; fewer than 1 adds nothing.
    AString& append(char const* text, int length);
    // All bytes, zeros included.
    AString& operator+=(AString const& text);
    AString& operator+=(char const* text);
    // A zero byte adds nothing.
    AString& operator+=(char character);

    // True for an AString with the same text, up to the first zero byte of each.
    bool IsEqual(AObject const* other) const override;
    AObject* Clone() const override;
    // Both ask IsEqual.
    bool operator==(AString const& other) const;
    bool operator==(AString const& other);
    bool operator!=(AString const& other) const;
    bool operator!=(AString const& other);

    // True for null and for a text whose first byte is zero.
    static bool IsNullOrEmpty(char const* text);
    static bool IsNullOrEmpty(AString const& text);
    static bool IsNullOrEmpty(AString const* text);

    // Whether the text is a plain decimal number: digits with at most one '.', and at most a '-' before them.
    // "12", "-1.5", ".5", "5." and also "-." are; "", "-", ".", "+5", " 5" and "1e3" are not.
    static bool IsNumberic(char const* text);
    bool IsNumberic() const;
    // Whether the text holds a number with a decimal point: digits, exactly one '.', and '-' anywhere.
    // "1.5", "-1.5" and "5." do; "12", "1.2.3", "." and "" don't.
    static bool IsReal(char const* text);
    bool IsReal() const;

    // These convert a text that IsNumberic; any other gives 0. Integers take the digits before the '.', at
    // the bound of 64 bits if there are too many; AsInt gives the low 32 bits of AsInt64, AsBoolean whether
    // those are not 0 ("true" is not a number, so false).
    long long AsInt64() const;
    int AsInt() const;
    bool AsBoolean() const;
    double AsDouble() const;
    float AsFloat() const;

    // Whether `text` begins, or ends, with the other text. False if either is null or empty.
    static bool StartWith(char const* text, char const* prefix);
    bool StartWith(char const* prefix) const;
    static bool EndWith(char const* text, char const* suffix);
    bool EndWith(char const* suffix) const;

    // Cuts `source` at each byte that stands in `delimiters` and appends the pieces to `out`, which owns
    // them. Neighbouring delimiters give empty pieces, and n delimiters always n + 1 pieces. False, with
    // `out` as it was, if any argument is null or memory runs out.
    static bool Split(AArray* out, char const* source, char const* delimiters);

    // All bytes in lower-case hexadecimal for logs: `prefix` before each, a comma between ("0x01,0xab"). Null
    // stands for "0x".
    AString Dump(char const* prefix) const;

private:
    friend class CSarnetBufferWriter;

    AData _data;
};

// The two texts in a row.
VELMORCORE_API AString const operator+(AString const& left, AString const& right);

// The number in decimal digits.
VELMORCORE_API AString int2str(int value);
VELMORCORE_API AString ll2str(long long value);
VELMORCORE_API AString ull2str(unsigned long long value);
// "true" if `value` is exactly 1, else "false".
VELMORCORE_API AString bool2str(bool value);
// Reads a decimal number after any white space, a sign allowed; what follows it is ignored, and a number
// beyond 32 bits takes the bound. Without one the first form leaves `*out` as it was and the second gives 0.
// `text` and `out` must not be null.
VELMORCORE_API void str2int(char const* text, int* out);
VELMORCORE_API int str2int(char const* text);

// Text that is put together from pieces.
class VELMORCORE_API AStringBuilder : public AObject {
public:
    AStringBuilder();
    // Each begins with the given text; null gives an empty one.
    explicit AStringBuilder(char const* text);
    explicit AStringBuilder(AString const& text);
    explicit AStringBuilder(AString const* text);
    explicit AStringBuilder(AStringBuilder const* other);
    // Copies the ownership mark too, as the root does.
    AStringBuilder(AStringBuilder const& other);
    ~AStringBuilder() override;

    // Null adds nothing.
    void Append(char const* text);
    void Append(AString const& text);
    void Append(AString const* text);
    AStringBuilder& operator+=(char const* text);
    AStringBuilder& operator+=(AString const& text);
    // Each replaces the content.
    AStringBuilder& operator=(char const* text);
    AStringBuilder& operator=(AString const& text);
    AStringBuilder& operator=(AStringBuilder const& other);
    void Clear();

    // The text itself, terminated, valid until the next change. Null if the builder has no block, as one that
    // took over an empty builder.
    char const* ToString() const;

    // True for a builder with the same text, up to the first zero byte.
    bool IsEqual(AObject const* other) const override;
    AObject* Clone() const override;

private:
    AData _data;
};

// A number of one of six kinds. It remembers its kind and converts when it is read: real to integer by
// cutting the fraction off, integer to a narrower one by its low bits. A real beyond the range of the
// integer, or not a number, reads as the lowest integer, as the desktop's processor converts it.
class VELMORCORE_API ANumber : public AObject {
public:
    enum Type : int { Null = 0, Bool = 1, Byte = 2, Int32 = 3, Int64 = 4, Float = 5, Double = 6 };

    // Null, which reads as 0.
    ANumber();
    // NOLINTBEGIN(google-explicit-constructor): a plain number serves wherever an ANumber is asked for.
    ANumber(bool value);
    ANumber(unsigned char value);
    ANumber(int value);
    ANumber(long long value);
    ANumber(float value);
    ANumber(double value);
    // A pointer is not a number: without this it would become the number `true`.
    template <class T>
    ANumber(T const* pointer) = delete;
    // NOLINTEND(google-explicit-constructor)
    ANumber(ANumber const& other);
    ~ANumber() override;

    // Each takes the kind with the value.
    ANumber& operator=(ANumber const& other);
    ANumber& operator=(bool value);
    ANumber& operator=(unsigned char value);
    ANumber& operator=(int value);
    ANumber& operator=(long long value);
    ANumber& operator=(float value);
    ANumber& operator=(double value);

    Type GetType() const;
    // "Bool", "Byte", "Int32", "Int64", "Float", "Double"; "Unknown" for Null. Static text.
    char const* GetTypeString() const;
    bool IsNull() const;

    // True for anything but 0; a NaN is true.
    bool BoolValue() const;
    unsigned char ByteValue() const;
    int IntValue() const;
    long long LongLongValue() const;
    float FloatValue() const;
    double DoubleValue() const;

    // "true" or "false", decimal digits, or a real with six decimals ("1.500000"), whole however large it is.
    // Null gives an empty text.
    AString ToString() const;
    // Reads a number and takes the kind that it needs: with a '.', Double; otherwise a 32-bit integer, "0x"
    // being hexadecimal and a leading 0 octal, out of range at the bound: Byte from 0 to 255, Int64 for the
    // lowest 32-bit number, else Int32. Text that is no number gives 0. False, with nothing changed, only for
    // null.
    bool FromString(char const* text);

    // Loose equality, whatever the kinds. With a Bool on either side both are compared as truth values; with
    // a real on either side they are equal if less than 1e-6 apart and not of opposite signs; else as 64-bit
    // integers.
    bool operator==(ANumber const& other) const;
    bool operator==(ANumber const& other);
    bool operator!=(ANumber const& other) const;
    bool operator!=(ANumber const& other);
    // As ==; false for null and for what is not a number.
    bool IsEqual(AObject const* other) const override;
    AObject* Clone() const override;

private:
    void clear();
    void reset(Type type);

    union Storage {
        bool boolean;
        unsigned char byte;
        int int32;
        long long int64;
        float real32;
        double real64;
    };
    Storage _value;
    Type _kind;
};

// An ordered list of objects.
//
// Whether the array deletes an element is marked on the element (AObject::IsOwned) by the way it came in:
// what is added by reference is copied, and the copy is owned; what is added by pointer is stored itself, and
// the caller decides. An object has one mark: don't add it with ownership to two containers. Elements are
// never null. Two arrays are equal only if they are the same object.
class VELMORCORE_API AArray : public AObject {
public:
    AArray();
    // Deep copies: each element is a clone, and owned. Null gives an empty array.
    explicit AArray(AArray const* other);
    AArray(AArray const& other);
    // Deletes the elements that it owns.
    ~AArray() override;

    // Adds the object itself at the end. Owned: the array deletes it when it goes out of the array. Not
    // owned: the caller keeps it alive as long as the array holds it. Null does nothing. If memory runs out
    // the object isn't taken, which Count tells, and its mark stays: it is still the caller's to delete.
    void Add(AObject const* object, bool owned);
    // Add a copy, owned.
    void Add(AObject const& object);
    void Add(ANumber const& number);
    // Adds a string, owned; null adds an empty one.
    void Add(char const* text);
    // Adds a copy of each element, owned; the array may be this one. Null does nothing.
    void Add(AArray const* other);
    // Replaces the content by copies; assigning an array to itself changes nothing.
    AArray& operator=(AArray const& other);
    // A deep copy.
    AObject* Clone() const override;

    // These take elements out, deleting those that are owned; later ones move down. An index that isn't in
    // the array does nothing, nor does any of them on an empty array. An element that is being deleted is
    // listed no more; with RemoveAll none is.
    void RemoveObjectAtIndex(int index);
    void RemoveFirstObject();
    void RemoveLastObject();
    void RemoveAll();

    int Count() const;
    // The element, which stays the array's; null if there is none.
    AObject* ObjectAtIndex(int index) const;
    AObject* operator[](int index) const;
    AObject* FirstObject() const;
    AObject* LastObject() const;
    // The text of an element that is an AString; null if there is none or it is of another kind.
    char const* CStringAtIndex(int index) const;
    char const* FirstCString() const;
    char const* LastCString() const;
    // The element, which has to be there and to be an AString: asserted in debug builds; otherwise the answer
    // is an empty string that is not the array's.
    AString const& AStringAtIndex(int index) const;
    AString const& FirstAString() const;
    AString const& LastAString() const;

private:
    friend class AString;
    struct VELMORCORE_HIDDEN Items;

    // The list, made when the first element comes.
    Items& List();
    // Takes over the elements of `other`, all or none.
    void Take(AArray& other);

    Items* _items;
};

// A key/value map of objects.
//
// The dictionary keeps a copy of each key. A value given by reference or as text is copied, and the copy is
// owned; a value given by pointer is stored itself, and the caller keeps it alive as long as the dictionary
// holds it. Keys are compared by the stored key's IsEqual: strings by text, numbers loosely (1, 1.0 and true
// are one key), data by content; a number never equals a string, and an array or a dictionary can't serve as
// a key. Keys are counted in the order in which they first came in. Finding a string costs the same however
// many keys there are; finding another kind of key grows with their number. Once a key of a caller's own
// class came in, finding any key does, until all are removed.
class VELMORCORE_API ADictionary : public AObject {
public:
    ADictionary();
    // Deep copy: values and keys are clones, values owned. The order of its keys is not that of `other`.
    ADictionary(ADictionary const& other);
    // Deletes the keys, and the values that it owns.
    ~ADictionary() override;
    // As Set of a dictionary.
    ADictionary& operator=(ADictionary const& other);
    AObject* Clone() const override;

    // Replaces all content by copies; the order of the keys may come out differently. A dictionary set to
    // itself stays as it is.
    void Set(ADictionary const& other);
    // Set a copy of the value in place of any that the key has; the key's position stays. A null text does
    // nothing.
    void Set(AObject const& key, AObject const& value);
    void Set(ANumber const& key, AObject const& value);
    void Set(ANumber const& key, ANumber const& value);
    void Set(char const* key, AObject const& value);
    void Set(char const* key, ANumber const& value);
    void Set(char const* key, char const* value);
    void Set(ANumber const& key, char const* value);
    // Set the value itself, not owned. A null does nothing.
    void Set(AObject const& key, AObject* value);
    void Set(ANumber const& key, AObject* value);
    void Set(char const* key, AObject* value);
    void Set(AObject* key, AObject* value);

    // The value, which stays where it is owned; null if the key is null or absent.
    AObject* ObjectForKey(AObject const* key) const;
    AObject* ObjectForKey(AObject const& key) const;
    AObject* ObjectForKey(ANumber const& key) const;
    AObject* ObjectForKey(char const* key) const;
    // The text of a value that is an AString; null if there is none or it is of another kind.
    char const* CStringForKey(AObject const* key) const;
    char const* CStringForKey(AObject const& key) const;
    char const* CStringForKey(ANumber const& key) const;
    char const* CStringForKey(char const* key) const;
    // The value, which has to be there and to be an AString: asserted in debug builds; otherwise the answer
    // is an empty string that is not the dictionary's.
    AString const& AStringForKey(AObject const* key) const;
    AString const& AStringForKey(AObject const& key) const;
    AString const& AStringForKey(ANumber const& key) const;
    AString const& AStringForKey(char const* key) const;

    // Entries.
    int Count() const;
    // The key at a position from 0 to Count() - 1, valid until it is removed; null outside.
    AObject const* KeyAt(int index) const;
    // Its text if it is an AString, else null.
    char const* CStringKeyAt(int index) const;
    // The key, which has to be there and to be an AString: asserted in debug builds; otherwise the answer is
    // an empty string that is not the dictionary's.
    AString const& AStringKeyAt(int index) const;

    // Take out the entry, deleting the value if it is owned; later keys move down. An absent key does
    // nothing. What is being deleted is listed no more.
    void Remove(AObject const* key);
    void Remove(ANumber const& key);
    void RemoveAll();

private:
    struct VELMORCORE_HIDDEN Entries;

    // Dictionaries can't be compared: always false.
    bool IsEqual(AObject const* other) const override;
    void PutCopy(AObject const& key, AObject const& value);
    // Puts `value` itself under a copy of `key`.
    void Put(AObject const& key, AObject* value, bool owned);
    // The entries, made when the first comes.
    Entries& Content();

    Entries* _entries;
};

}  // namespace Ubrix
