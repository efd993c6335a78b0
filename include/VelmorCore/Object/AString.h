/// @file
/// Text in the object model, and the conversions between numbers and text. What holds for all classes of the
/// model is told in Object.h.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object/AData.h>
#include <VelmorCore/Object/AObject.h>

namespace Ubrix {

class AArray;

/// A counted byte string. Zero bytes inside are kept by the counted operations; the comparisons, conversions
/// and tests read the text up to its first zero byte. The text is always terminated.
class VELMORCORE_API AString : public AObject {
public:
    /// Makes an empty string.
    AString();
    /// Copies the text up to its terminator; null gives an empty string.
    // NOLINTNEXTLINE(google-explicit-constructor): a text literal serves wherever a string is asked for.
    AString(char const* text);
    /// Copies `length` bytes as they stand; null or a negative length gives an empty string.
    AString(char const* text, int length);
    /// Copies all bytes, zeros included.
    AString(AString const& other);
    ~AString() override;

    /// Takes all bytes of `other`, zeros included.
    AString& operator=(AString const& other);
    /// Takes the text up to its terminator; null empties the string.
    AString& operator=(char const* text);
    /// Takes `length` bytes as they stand, zeros included. They may lie in this string's own text; bytes that
    /// begin exactly at its first change nothing.
    void assign(char const* text, int length);
    /// Empties the string.
    void Clear();
    /// Empties the string.
    void clear();

    /// Bytes held, the terminator not counted.
    int GetLength() const;
    /// Bytes held, as GetLength.
    int length() const;
    /// Bytes held, as GetLength.
    int size() const;
    /// True if no byte is held.
    bool Empty() const;
    /// True if no byte is held, as Empty.
    bool empty() const;
    /// The text, terminated, valid until the next change. Never null.
    char const* CString() const;
    /// The text, as CString.
    char const* c_str() const;
    /// The block itself: null if there is none.
    char const* data() const;
    /// Byte `index`. No range check: the caller keeps it from 0 to the length.
    char at(int index) const;
    /// Offset of the first byte equal to `byte` as an unsigned char; -1 if there is none.
    int Find(int byte) const;

    /// Adds the text up to its terminator, and gives this string; null adds nothing.
    AString& append(char const* text);
    /// Adds the text up to its first zero byte, and gives this string.
    AString& append(AString const& text);
    /// Adds `length` bytes as they stand, and gives this string; null, or fewer than 1, adds nothing.
    AString& append(char const* text, int length);
    /// Adds all bytes, zeros included, and gives this string.
    AString& operator+=(AString const& text);
    /// Adds the text up to its terminator, and gives this string; null adds nothing.
    AString& operator+=(char const* text);
    /// Adds one byte, and gives this string; a zero byte adds nothing.
    AString& operator+=(char character);

    /// True for an AString with the same text, up to the first zero byte of each.
    bool IsEqual(AObject const* other) const override;
    /// Copies the string into a new one.
    AObject* Clone() const override;
    /// Asks IsEqual.
    bool operator==(AString const& other) const;
    /// Asks IsEqual.
    bool operator==(AString const& other);
    /// True unless IsEqual.
    bool operator!=(AString const& other) const;
    /// True unless IsEqual.
    bool operator!=(AString const& other);

    /// True for null and for a text whose first byte is zero.
    static bool IsNullOrEmpty(char const* text);
    /// True for a text whose first byte is zero.
    static bool IsNullOrEmpty(AString const& text);
    /// True for null and for a text whose first byte is zero.
    static bool IsNullOrEmpty(AString const* text);

    /// Whether the text is a plain decimal number: digits with at most one '.', and at most a '-' before
    /// them. "12", "-1.5", ".5", "5." and also "-." are; "", "-", ".", "+5", " 5" and "1e3" are not.
    static bool IsNumberic(char const* text);
    /// Whether this text is a plain decimal number, by the rules of the static form.
    bool IsNumberic() const;
    /// Whether the text holds a number with a decimal point: digits, exactly one '.', and '-' anywhere.
    /// "1.5", "-1.5" and "5." do; "12", "1.2.3", "." and "" don't.
    static bool IsReal(char const* text);
    /// Whether this text holds a number with a decimal point, by the rules of the static form.
    bool IsReal() const;

    /// The digits before the '.' of a text that IsNumberic, at the bound of 64 bits if there are too many; 0
    /// for any other text.
    long long AsInt64() const;
    /// The low 32 bits of AsInt64.
    int AsInt() const;
    /// Whether the low 32 bits of AsInt64 are not 0. "true" is not a number, so false.
    bool AsBoolean() const;
    /// The number of a text that IsNumberic, whatever the locale; 0 for any other text.
    double AsDouble() const;
    /// The number of a text that IsNumberic in single precision; 0 for any other text.
    float AsFloat() const;

    /// Whether `text` begins with `prefix`. False if either is null or empty.
    static bool StartWith(char const* text, char const* prefix);
    /// Whether this text begins with `prefix`. False if either is empty or `prefix` is null.
    bool StartWith(char const* prefix) const;
    /// Whether `text` ends with `suffix`. False if either is null or empty.
    static bool EndWith(char const* text, char const* suffix);
    /// Whether this text ends with `suffix`. False if either is empty or `suffix` is null.
    bool EndWith(char const* suffix) const;

    /// Cuts `source` at each byte that stands in `delimiters` and appends the pieces to `out`, which owns
    /// them. Neighbouring delimiters give empty pieces, and n delimiters always n + 1 pieces. False, with
    /// `out` as it was, if any argument is null or memory runs out.
    static bool Split(AArray* out, char const* source, char const* delimiters);

    /// All bytes in lower-case hexadecimal for logs: `prefix` before each, a comma between ("0x01,0xab").
    /// Null stands for "0x".
    AString Dump(char const* prefix) const;

private:
    friend class CSarnetBufferWriter;

    AData _data;
};

/// The two texts in a row.
VELMORCORE_API AString const operator+(AString const& left, AString const& right);

/// The number in decimal digits.
VELMORCORE_API AString int2str(int value);
/// The 64-bit number in decimal digits.
VELMORCORE_API AString ll2str(long long value);
/// The unsigned 64-bit number in decimal digits.
VELMORCORE_API AString ull2str(unsigned long long value);
/// "true" if `value` is exactly 1, else "false".
VELMORCORE_API AString bool2str(bool value);
/// Reads a decimal number after any white space, a sign allowed, into `*out`; what follows it is ignored, and
/// a number beyond 32 bits takes the bound. Without a number `*out` stays as it was. Neither may be null.
VELMORCORE_API void str2int(char const* text, int* out);
/// Reads a decimal number as the other form does; without one it gives 0. `text` must not be null.
VELMORCORE_API int str2int(char const* text);

}  // namespace Ubrix
