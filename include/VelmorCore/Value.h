// Value: a variant in the shape of JSON. Null, signed and unsigned integer, real, text, bool, array or
// object.
//
// It is no AObject, and neither reads nor prints JSON.
//
// Nothing here throws. When memory runs out the value is as it was before the call; a value that can't be
// made, or copied, is null; a text is empty; an iterator stands at the end. Values nest as deep as they are
// made. One nested more than 1,000 deep isn't copied, as with a want of memory, equals nothing, and is
// neither less nor greater than another of the same size.
//
// Threads: no locks. A value, with all that it holds and its iterators, belongs to one thread at a time.
// Value::Null may be read on any thread.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object.h>

namespace Ubrix {

enum ValueType : int {
    NullValue = 0,
    IntValue = 1,   // signed 64 bits
    UIntValue = 2,  // unsigned 64 bits
    RealValue = 3,  // double
    StringValue =
        4,  // text, bytes of any encoding up to the first zero; may be none at all, which reads as ""
    BooleanValue = 5,
    ArrayValue = 6,   // entries by index. Sparse: an entry at 5 makes none at 0 to 4
    ObjectValue = 7,  // entries by text
};

class ValueConstIterator;
class ValueIterator;
class ValueKey;
struct ValueMap;

class VELMORCORE_API Value {
public:
    // The one that reads give when there is nothing to give. Stands before any code of the library runs.
    static Value const Null;

    // NOLINTBEGIN(google-explicit-constructor): what can be a value serves wherever one is asked for.
    // An empty value of the type: 0, false, no text, no entries. A number outside of ValueType is logged as
    // an error and kept; such a value reads as nothing.
    Value(ValueType type = NullValue);
    Value(int value);
    Value(long long value);
    Value(unsigned int value);
    Value(unsigned long long value);
    Value(double value);
    Value(bool value);
    // Text of at most 18 bytes that is a plain decimal number (AString::IsNumberic) becomes the number: a
    // real if it has a '.', else a signed integer. Any other is copied as text; null is no text.
    Value(char const* text);
    // Another pointer is no value: without this it would become the value `true`.
    template <class T>
    Value(T const* pointer) = delete;
    // NOLINTEND(google-explicit-constructor)
    // A deep copy.
    Value(Value const& other);
    ~Value();
    Value& operator=(Value const& other);
    // A text, also where the constructor would make a number of it; null is no text.
    static Value Text(char const* text);
    // Exchanges the contents, without allocation.
    void swap(Value& other) noexcept;

    ValueType type() const;
    bool isNull() const;
    // Also for a text that is exactly "true" or "false".
    bool isBool() const;
    bool isInt() const;
    bool isUInt() const;
    // A signed or unsigned integer.
    bool isIntegral() const;
    bool isDouble() const;
    // An integer or a real.
    bool isNumeric() const;
    bool isString() const;
    bool isArray() const;
    bool isObject() const;

    // Numbers out of the value: null is 0, a bool 0 or 1, an integer gives its low bits, a real is cut at the
    // point. Text, arrays and objects don't convert: a line in the log, and 0.
    //
    // A real beyond the range, or not a number, gives what the desktop's processor gives: -2147483648 for
    // asInt32 and asInt64, which goes through 32 bits; for asUInt64 2^63, unless the real is from -2^63 up to
    // 2^64; for asUInt32 the low 32 bits of that.
    int asInt32() const;
    unsigned int asUInt32() const;
    long long asInt64() const;
    unsigned long long asUInt64() const;
    // Single precision, both.
    float asDouble() const;
    float asFloat() const;
    // A number is true unless it is 0, a text if it is exactly "true", an array or object if it has entries.
    bool asBool() const;
    // The text; decimal digits, signed even for an unsigned integer; six decimals for a real, whole however
    // large; "true" or "false"; "" for null. Arrays and objects don't convert: a line in the log, and "".
    AString asString() const;
    // As asString, without a copy and not for numbers. Valid until the value changes.
    char const* asCString() const;

    // The entry, made as a null value if there is none; a null value becomes a container by it. The reference
    // holds as long as the entry. `key` is copied; null stands for "".
    // An index asks for an array and a key for an object: asserted in debug builds; otherwise a line in the
    // log and a value that belongs to no container, good until this thread's next such mistake. The same
    // value, without a line, if memory runs out.
    Value& operator[](int index);
    Value& operator[](char const* key);
    // The entry, or Value::Null; nothing is made.
    Value const& operator[](int index) const;
    Value const& operator[](char const* key) const;
    // Entries of an array or object; 0 for any other value.
    int Size() const;

    // The entries of an array by ascending index, of an object by the bytes of their keys. Any other value
    // has none: begin equals end. Entries may be added while an iterator stands; the one it stands at must
    // stay.
    ValueConstIterator begin() const;
    ValueConstIterator end() const;
    ValueIterator begin();
    ValueIterator end();

    // Values of different types are ordered by type. Signed integers are ordered by their low 32 bits; arrays
    // and objects by their number of entries, then entry by entry.
    bool operator<(Value const& other) const;
    bool operator<=(Value const& other) const;
    bool operator>(Value const& other) const;
    bool operator>=(Value const& other) const;
    // The same type and content: 1, 1u and 1.0 are three values, and no text is not "".
    bool operator==(Value const& other) const;
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

// What all iterators can do. A handle owns a body that does the work, or none for a value without entries;
// one without a body stands at the end. Two handles are compared, and measured, only within one value. A step
// past either end is ignored.
class VELMORCORE_API ValueIteratorBase {
public:
    virtual ~ValueIteratorBase();
    virtual bool operator==(ValueIteratorBase const& other) const;
    virtual bool operator!=(ValueIteratorBase const& other) const;
    // Steps from this one to the other, negative if it lies before; 0 without bodies.
    virtual int operator-(ValueIteratorBase const& other) const;
    virtual ValueIteratorBase& operator--();
    virtual ValueIteratorBase& operator++();
    // The entry; Value::Null without a body and at the end.
    virtual Value const& operator*() const;
    // The key as a value: Value(char const*) of a text, so that "12" gives a number, or the index. Null where
    // there is no entry.
    virtual Value key() const;
    // The index, -1 for a text key; 0 where there is no entry.
    virtual int index() const;
    // The text of the key, "" for an index; valid as long as the entry. Null where there is no entry.
    virtual char const* memberName() const;
    // A new iterator at the same place; the caller deletes it.
    virtual ValueIteratorBase* clone() const = 0;

protected:
    // Takes over `body`.
    explicit ValueIteratorBase(ValueIteratorBase* body = nullptr);
    ValueIteratorBase(ValueIteratorBase const& other);
    ValueIteratorBase& operator=(ValueIteratorBase const& other);

    ValueIteratorBase* _impl;
};

// Reads the entries of a value.
class VELMORCORE_API ValueConstIterator : public ValueIteratorBase {
public:
    ValueConstIterator();
    ValueConstIterator(ValueConstIterator const& other);
    ~ValueConstIterator() override;
    ValueConstIterator& operator=(ValueConstIterator const& other);

    using ValueIteratorBase::operator++;
    using ValueIteratorBase::operator--;
    // Each steps, and gives a copy of the handle as it stood.
    virtual ValueConstIterator operator++(int);
    virtual ValueConstIterator operator--(int);
    ValueIteratorBase* clone() const override;

private:
    friend class Value;
    explicit ValueConstIterator(ValueIteratorBase* body);
};

// Reads and changes the entries of a value.
class VELMORCORE_API ValueIterator : public virtual ValueIteratorBase {
public:
    ValueIterator();
    ValueIterator(ValueIterator const& other);
    ~ValueIterator() override;
    virtual ValueIterator& operator=(ValueIterator const& other);

    using ValueIteratorBase::operator++;
    using ValueIteratorBase::operator--;
    // Each steps, and gives a copy of the handle as it stood.
    virtual ValueIterator operator++(int);
    virtual ValueIterator operator--(int);
    // The entry, to be changed. Where there is none, a null value that belongs to nothing.
    Value& operator*() const override;
    ValueIteratorBase* clone() const override;

private:
    friend class Value;
    explicit ValueIterator(ValueIteratorBase* body);
};

}  // namespace Ubrix
