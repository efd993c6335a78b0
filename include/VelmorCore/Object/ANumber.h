/// @file
/// Numbers in the object model. What holds for all of its classes is told in Object.h.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object/AObject.h>
#include <VelmorCore/Object/AString.h>

namespace Ubrix {

/// A number of one of six kinds. It remembers its kind and converts when it is read: real to integer by
/// cutting the fraction off, integer to a narrower one by its low bits. A real beyond the range of the
/// integer, or not a number, reads as the lowest integer, as the desktop's processor converts it.
class VELMORCORE_API ANumber : public AObject {
public:
    /// The kinds; the numbers are stored nowhere.
    enum Type : int {
        Null = 0,    ///< no number, which reads as 0
        Bool = 1,    ///< true or false
        Byte = 2,    ///< 8 bits, unsigned
        Int32 = 3,   ///< 32 bits, signed
        Int64 = 4,   ///< 64 bits, signed
        Float = 5,   ///< single precision
        Double = 6,  ///< double precision
    };

    /// Makes a number of kind Null.
    ANumber();
    // NOLINTBEGIN(google-explicit-constructor): a plain number serves wherever an ANumber is asked for.
    /// Makes a Bool.
    ANumber(bool value);
    /// Makes a Byte.
    ANumber(unsigned char value);
    /// Makes an Int32.
    ANumber(int value);
    /// Makes an Int64.
    ANumber(long long value);
    /// Makes a Float.
    ANumber(float value);
    /// Makes a Double.
    ANumber(double value);
    /// A pointer is not a number: without this it would become the number `true`.
    template <class T>
    ANumber(T const* pointer) = delete;
    // NOLINTEND(google-explicit-constructor)
    /// Copies kind and value.
    ANumber(ANumber const& other);
    ~ANumber() override;

    /// Takes kind and value of `other`.
    ANumber& operator=(ANumber const& other);
    /// Becomes a Bool.
    ANumber& operator=(bool value);
    /// Becomes a Byte.
    ANumber& operator=(unsigned char value);
    /// Becomes an Int32.
    ANumber& operator=(int value);
    /// Becomes an Int64.
    ANumber& operator=(long long value);
    /// Becomes a Float.
    ANumber& operator=(float value);
    /// Becomes a Double.
    ANumber& operator=(double value);

    /// The kind.
    Type GetType() const;
    /// "Bool", "Byte", "Int32", "Int64", "Float", "Double"; "Unknown" for Null. Static text.
    char const* GetTypeString() const;
    /// True for the kind Null.
    bool IsNull() const;

    /// True for anything but 0; a NaN is true.
    bool BoolValue() const;
    /// The number in 8 bits.
    unsigned char ByteValue() const;
    /// The number in 32 bits.
    int IntValue() const;
    /// The number in 64 bits.
    long long LongLongValue() const;
    /// The number in single precision.
    float FloatValue() const;
    /// The number in double precision.
    double DoubleValue() const;

    /// "true" or "false", decimal digits, or a real with six decimals ("1.500000"), whole however large it
    /// is. Null gives an empty text.
    AString ToString() const;
    /// Reads a number and takes the kind that it needs: with a '.', Double; otherwise a 32-bit integer, "0x"
    /// being hexadecimal and a leading 0 octal, out of range at the bound: Byte from 0 to 255, Int64 for the
    /// lowest 32-bit number, else Int32. Text that is no number gives 0. False, with nothing changed, only
    /// for null.
    bool FromString(char const* text);

    /// Loose equality, whatever the kinds. With a Bool on either side both are compared as truth values; with
    /// a real on either side they are equal if less than 1e-6 apart and not of opposite signs; else as 64-bit
    /// integers.
    bool operator==(ANumber const& other) const;
    /// Loose equality, as the constant form.
    bool operator==(ANumber const& other);
    /// True unless ==.
    bool operator!=(ANumber const& other) const;
    /// True unless ==.
    bool operator!=(ANumber const& other);
    /// As ==; false for null and for what is not a number.
    bool IsEqual(AObject const* other) const override;
    /// Copies kind and value into a new number.
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

}  // namespace Ubrix
