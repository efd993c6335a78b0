/// @file
/// Value: a variant in the shape of JSON. Null, signed and unsigned integer, real, text, bool, array or
/// object.
///
/// It is no AObject, and neither reads nor prints JSON.
///
/// Nothing here throws. When memory runs out the value is as it was before the call; a value that can't be
/// made, or copied, is null; a text is empty; an iterator stands at the end. Values nest as deep as they are
/// made. One nested more than 1,000 deep isn't copied, as with a want of memory, equals nothing, and is
/// neither less nor greater than another of the same size.
///
/// Threads: no locks. A value, with all that it holds and its iterators, belongs to one thread at a time.
/// Value::Null may be read on any thread.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object.h>

namespace Ubrix {

/// The types of a Value. The numbers order values of different types.
enum ValueType : int {
    /// Nothing.
    NullValue = 0,
    /// Signed, 64 bits.
    IntValue = 1,
    /// Unsigned, 64 bits.
    UIntValue = 2,
    /// Double precision.
    RealValue = 3,
    /// Text: bytes of any encoding up to the first zero; may be none at all, which reads as "".
    StringValue = 4,
    /// True or false.
    BooleanValue = 5,
    /// Entries by index. Sparse: an entry at 5 makes none at 0 to 4.
    ArrayValue = 6,
    /// Entries by text.
    ObjectValue = 7,
};

class ValueConstIterator;
class ValueIterator;
class ValueKey;
struct ValueMap;

/// One value of one of the types, with all that it holds.
class VELMORCORE_API Value {
public:
    /// The one that reads give when there is nothing to give. Stands before any code of the library runs.
    static Value const Null;

    // NOLINTBEGIN(google-explicit-constructor): what can be a value serves wherever one is asked for.
    /// Makes an empty value of the type: 0, false, no text, no entries. A number outside of ValueType is
    /// logged as an error and kept; such a value reads as nothing.
    Value(ValueType type = NullValue);
    /// Makes a signed integer.
    Value(int value);
    /// Makes a signed integer.
    Value(long long value);
    /// Makes an unsigned integer.
    Value(unsigned int value);
    /// Makes an unsigned integer.
    Value(unsigned long long value);
    /// Makes a real.
    Value(double value);
    /// Makes a bool.
    Value(bool value);
    /// Copies a text. One of at most 18 bytes that is a plain decimal number (AString::IsNumberic) becomes
    /// the number instead: a real if it has a '.', else a signed integer. Null is no text.
    Value(char const* text);
    /// Another pointer is no value: without this it would become the value `true`.
    template <class T>
    Value(T const* pointer) = delete;
    // NOLINTEND(google-explicit-constructor)
    /// Copies deeply.
    Value(Value const& other);
    ~Value();
    /// Copies deeply, in place of the content.
    Value& operator=(Value const& other);
    /// Makes a text, also where the constructor would make a number of it; null is no text.
    static Value Text(char const* text);
    /// Exchanges the contents, without allocation.
    void swap(Value& other) noexcept;

    /// The type.
    ValueType type() const;
    /// True for null.
    bool isNull() const;
    /// True for a bool, and for a text that is exactly "true" or "false".
    bool isBool() const;
    /// True for a signed integer.
    bool isInt() const;
    /// True for an unsigned integer.
    bool isUInt() const;
    /// True for a signed or unsigned integer.
    bool isIntegral() const;
    /// True for a real.
    bool isDouble() const;
    /// True for an integer or a real.
    bool isNumeric() const;
    /// True for a text.
    bool isString() const;
    /// True for an array.
    bool isArray() const;
    /// True for an object.
    bool isObject() const;

    /// The value in 32 bits: null is 0, a bool 0 or 1, an integer gives its low bits, a real is cut at the
    /// point, and one beyond the range, or not a number, gives -2147483648, as the desktop's processor does.
    /// Text, arrays and objects don't convert, here and below: a line in the log, and 0.
    int asInt32() const;
    /// The low 32 bits of asUInt64.
    unsigned int asUInt32() const;
    /// The value in 64 bits, as asInt32; a real goes through 32 bits.
    long long asInt64() const;
    /// The value in 64 bits without a sign, as asInt32; a real outside of -2^63 to 2^64, or not a number,
    /// gives 2^63.
    unsigned long long asUInt64() const;
    /// The value in single precision, whatever the name says.
    float asDouble() const;
    /// The value in single precision.
    float asFloat() const;
    /// A number is true unless it is 0, a text if it is exactly "true", an array or object if it has
    /// entries.
    bool asBool() const;
    /// The text; decimal digits, signed even for an unsigned integer; six decimals for a real, whole however
    /// large; "true" or "false"; "" for null. Arrays and objects don't convert: a line in the log, and "".
    AString asString() const;
    /// As asString, without a copy and not for numbers. Valid until the value changes.
    char const* asCString() const;

    /// The entry at an index, made as a null value if there is none; a null value becomes an array by it.
    /// The reference holds as long as the entry. An index asks for an array, and a key for an object:
    /// asserted in debug builds; otherwise a line in the log and a value that belongs to no container, good
    /// until this thread's next such mistake. The same value, without a line, if memory runs out.
    Value& operator[](int index);
    /// The entry under a key, made as a null value if there is none; a null value becomes an object by it.
    /// The key is copied; null stands for "". Lifetime and failures as with an index.
    Value& operator[](char const* key);
    /// The entry at an index, or Value::Null; nothing is made.
    Value const& operator[](int index) const;
    /// The entry under a key, or Value::Null; nothing is made.
    Value const& operator[](char const* key) const;
    /// Entries of an array or object; 0 for any other value.
    int Size() const;

    /// The first entry: of an array by ascending index, of an object by the bytes of their keys. Any other
    /// value has none: begin equals end. Entries may be added while an iterator stands; the one it stands at
    /// must stay.
    ValueConstIterator begin() const;
    /// Behind the last entry.
    ValueConstIterator end() const;
    /// The first entry, to be changed; the order is that of the constant form.
    ValueIterator begin();
    /// Behind the last entry.
    ValueIterator end();

    /// Whether this value comes before the other. Values of different types are ordered by type. Signed
    /// integers are ordered by their low 32 bits; arrays and objects by their number of entries, then entry
    /// by entry.
    bool operator<(Value const& other) const;
    /// Whether this value comes before the other or with it, in the same order.
    bool operator<=(Value const& other) const;
    /// Whether this value comes after the other, in the same order.
    bool operator>(Value const& other) const;
    /// Whether this value comes after the other or with it, in the same order.
    bool operator>=(Value const& other) const;
    /// True for the same type and content: 1, 1u and 1.0 are three values, and no text is not "".
    bool operator==(Value const& other) const;
    /// True unless ==.
    bool operator!=(Value const& other) const;

private:
    struct Nothing {};
    // For Null: initialised before any code runs.
    constexpr explicit Value(Nothing /*content*/) noexcept : _value{0}, _type(NullValue) {}

    // Whether there are entries to look through: an array or object has none until the first comes.
    bool HasMap() const;
    // The entry in a value that is null or a `container`.
    Value& Entry(ValueType container, ValueKey const& key);
    // Of a null value. Without memory it stays null.
    void SetText(char const* text);
    // Below, equal to or above 0, as this value comes before, with or after the other.
    int OrderTo(Value const& other) const;
    // Of two arrays, or two objects.
    int OrderOfEntries(Value const& other) const;
    bool HasEqualEntries(Value const& other) const;
    // The content as 64 bits, of all that is no real and converts.
    bool ToBits(long long* bits) const;
    // Logs that `function` can't convert this value.
    void LogRefusal(int level, char const* function, char const* message) const;

    union Content {
        long long integer;
        unsigned long long natural;
        double real;
        bool boolean;
        char* text;
        ValueMap* map;
    };
    Content _value;
    ValueType _type;
};

/// What all iterators can do. A handle owns a body that does the work, or none for a value without entries;
/// one without a body stands at the end. Two handles are compared, and measured, only within one value. A
/// step past either end is ignored.
class VELMORCORE_API ValueIteratorBase {
public:
    virtual ~ValueIteratorBase();
    /// Whether both stand at the same place.
    virtual bool operator==(ValueIteratorBase const& other) const;
    /// Whether they stand at different places.
    virtual bool operator!=(ValueIteratorBase const& other) const;
    /// Steps from this one to the other, negative if it lies before; 0 without bodies.
    virtual int operator-(ValueIteratorBase const& other) const;
    /// Steps back.
    virtual ValueIteratorBase& operator--();
    /// Steps on.
    virtual ValueIteratorBase& operator++();
    /// The entry; Value::Null without a body and at the end.
    virtual Value const& operator*() const;
    /// The key as a value: Value(char const*) of a text, so that "12" gives a number, or the index. Null
    /// where there is no entry.
    virtual Value key() const;
    /// The index, -1 for a text key; 0 where there is no entry.
    virtual int index() const;
    /// The text of the key, "" for an index; valid as long as the entry. Null where there is no entry.
    virtual char const* memberName() const;
    /// A new iterator at the same place; the caller deletes it.
    virtual ValueIteratorBase* clone() const = 0;

protected:
    /// Takes over `body`.
    explicit ValueIteratorBase(ValueIteratorBase* body = nullptr);
    /// Copies the place.
    ValueIteratorBase(ValueIteratorBase const& other);
    /// Takes the place of `other`.
    ValueIteratorBase& operator=(ValueIteratorBase const& other);

    /// The body, owned; null for none.
    ValueIteratorBase* _impl;
};

/// Reads the entries of a value.
class VELMORCORE_API ValueConstIterator : public ValueIteratorBase {
public:
    /// Makes a handle without a body.
    ValueConstIterator();
    /// Copies the place.
    ValueConstIterator(ValueConstIterator const& other);
    ~ValueConstIterator() override;
    /// Takes the place of `other`.
    ValueConstIterator& operator=(ValueConstIterator const& other);

    using ValueIteratorBase::operator++;
    using ValueIteratorBase::operator--;
    /// Steps on, and gives a copy of the handle as it stood.
    virtual ValueConstIterator operator++(int);
    /// Steps back, and gives a copy of the handle as it stood.
    virtual ValueConstIterator operator--(int);
    /// Gives a new iterator at the same place; the caller deletes it.
    ValueIteratorBase* clone() const override;

private:
    friend class Value;
    explicit ValueConstIterator(ValueIteratorBase* body);
};

/// Reads and changes the entries of a value.
class VELMORCORE_API ValueIterator : public virtual ValueIteratorBase {
public:
    /// Makes a handle without a body.
    ValueIterator();
    /// Copies the place.
    ValueIterator(ValueIterator const& other);
    ~ValueIterator() override;
    /// Takes the place of `other`.
    virtual ValueIterator& operator=(ValueIterator const& other);

    using ValueIteratorBase::operator++;
    using ValueIteratorBase::operator--;
    /// Steps on, and gives a copy of the handle as it stood.
    virtual ValueIterator operator++(int);
    /// Steps back, and gives a copy of the handle as it stood.
    virtual ValueIterator operator--(int);
    /// The entry, to be changed. Where there is none, a null value that belongs to nothing.
    Value& operator*() const override;
    /// Gives a new iterator at the same place; the caller deletes it.
    ValueIteratorBase* clone() const override;

private:
    friend class Value;
    explicit ValueIterator(ValueIteratorBase* body);
};

}  // namespace Ubrix
