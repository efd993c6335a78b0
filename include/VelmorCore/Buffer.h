/// @file
/// The buffer codec: structures that cross to managed code, or go from module to module as one block.
///
/// The format has no tags, kinds or version: both sides know the layout. What is written, nothing standing
/// between two values:
///
///     bool                1 byte, 1 or 0; any byte but 0 reads as true
///     char, short,        1, 2, 4 and 8 bytes, big-endian, two's complement
///     int, long long
///     AString             the length in 4 bytes, then so many bytes, without a terminator
///     char const*         the length with the terminator, then the text and the terminator; of an empty
///                         text the length 0 alone. Read as an AString it ends in a zero byte
///     bytes               the length, then so many bytes
///     AArray              the number of elements in 4 bytes, then each as an object
///     ADictionary         the number of entries in 4 bytes, then for each, by position, key and value
///                         as objects
///     a nested structure  its own bytes, with no length
///     an object           AString, AArray, ADictionary and structures as above; an ANumber as bool, 1,
///                         4 or 8 bytes by its kind; nothing for null, AData, and a number that is real
///                         or Null
///
/// There is no error state. A reader never reads past its bytes: what is missing leaves its target as it was,
/// or an empty text. Nothing here throws. When memory runs out a Write leaves the writer as it was, whole
/// structures included, a text is read as empty, and Encode and Decode give false. Structures and containers
/// nested more than 1,000 deep aren't written, as with a want of memory; a reader stands at its end there.
///
/// Threads: no locks, no shared state. An instance belongs to one thread at a time.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object.h>

namespace Ubrix {

class _tagSarnetBufferBase;

/// Puts values one after another into a block of bytes.
class VELMORCORE_API CSarnetBufferWriter {
public:
    /// Begins without bytes.
    CSarnetBufferWriter();
    /// Copies the bytes so far.
    CSarnetBufferWriter(CSarnetBufferWriter const& other);
    ~CSarnetBufferWriter();
    /// Takes the bytes of `other` in place of its own.
    CSarnetBufferWriter& operator=(CSarnetBufferWriter const& other);

    /// Writes 1 byte: 1 or 0.
    void Write(bool value);
    /// Writes 1 byte.
    void Write(signed char value);
    /// Writes 1 byte.
    void Write(unsigned char value);
    /// Writes 2 bytes.
    void Write(short value);
    /// Writes 2 bytes.
    void Write(unsigned short value);
    /// Writes 4 bytes.
    void Write(int value);
    /// Writes 4 bytes.
    void Write(unsigned int value);
    /// Writes 8 bytes.
    void Write(long long value);
    /// Writes 8 bytes.
    void Write(unsigned long long value);
    /// Writes the length in 4 bytes and the text without a terminator.
    void Write(AString const& text);
    /// Writes the length with the terminator in 4 bytes, then the text and the terminator; of an empty text
    /// the length 0 alone. `text` must not be null.
    void Write(char const* text);
    /// Writes `size` in 4 bytes and then so many bytes. Null or a `size` below 1 writes `size` as the length
    /// and nothing more.
    void Write(unsigned char const* bytes, int size);
    /// Writes the number of elements in 4 bytes, then each as an object.
    void Write(AArray const& array);
    /// Writes the number of entries in 4 bytes, then key and value of each as objects, by position.
    void Write(ADictionary const& dictionary);
    /// Writes an object as its class asks, without a mark of the class. Null, and an object of none of the
    /// classes in the table above, such as an AStringBuilder, writes nothing.
    void Write(AObject const* object);
    /// Writes the bytes of a nested structure, without a length.
    void Write(_tagSarnetBufferBase const& structure);
    /// Writes a nested structure, as the constant form.
    void Write(_tagSarnetBufferBase& structure);
    /// Writes a nested structure; null writes nothing.
    void Write(_tagSarnetBufferBase const* structure);
    /// Writes a nested structure; null writes nothing.
    void Write(_tagSarnetBufferBase* structure);
    /// Another pointer can't be written: without this it would be written as the bool `true`.
    void Write(void const* pointer) = delete;

    /// All bytes so far, valid until the next Write.
    AString const& GetBufferData() const;

private:
    class Whole;

    void WriteNumber(ANumber const& number);
    // `count` as the length, and `size` bytes, which may lie in the buffer.
    void WriteCounted(int count, char const* bytes, int size);

    AString _buffer;
};

/// Reads values one after another from a copy of the bytes.
class VELMORCORE_API CSarnetBufferReader {
public:
    /// Reads from a copy of the text's bytes.
    explicit CSarnetBufferReader(AString const& data);
    /// Reads from a copy of `size` bytes. Null, or a size below 0, gives a reader of no bytes.
    CSarnetBufferReader(char const* data, int size);
    /// Copies the bytes and the place.
    CSarnetBufferReader(CSarnetBufferReader const& other);
    ~CSarnetBufferReader();
    /// Takes the bytes and the place of `other`.
    CSarnetBufferReader& operator=(CSarnetBufferReader const& other);

    /// Reads 1 byte; any but 0 is true. With fewer bytes left than the value takes, here and for the numbers
    /// below, the target keeps its value and the reader stands at the end.
    void Read(bool& value);
    /// Reads 1 byte.
    void Read(signed char& value);
    /// Reads 1 byte.
    void Read(unsigned char& value);
    /// Reads 2 bytes.
    void Read(short& value);
    /// Reads 2 bytes.
    void Read(unsigned short& value);
    /// Reads 4 bytes.
    void Read(int& value);
    /// Reads 4 bytes.
    void Read(unsigned int& value);
    /// Reads 8 bytes.
    void Read(long long& value);
    /// Reads 8 bytes.
    void Read(unsigned long long& value);
    /// Reads a length in 4 bytes and a text of that length. A length below 1, or greater than what is left,
    /// gives an empty text, and the reader stands after the length.
    void Read(AString& out);
    /// Reads a length and a text into a buffer of `size` bytes, all others set to 0; a length that leaves no
    /// room for a terminator gives an empty text with the reader after the length, and so does each with a
    /// `size` below 1, which writes nothing. At the end of the data, or with null, nothing happens.
    void Read(char* buffer, int size);
    /// Reads the fields of a nested structure.
    void Read(_tagSarnetBufferBase& structure);
    /// Reads the fields of a nested structure; null reads nothing.
    void Read(_tagSarnetBufferBase* structure);

    /// Goes back to the first byte.
    void Reset();
    /// True if no byte is left.
    bool AtEnd() const;

private:
    // The next `width` bytes, and past them; null, and to the end, if there are fewer.
    unsigned char const* Take(int width);
    // Reads the length field of a text: 0 if no text of that length, up to `limit`, follows.
    int ReadLength(int limit);

    int _position;
    AString _buffer;
};

/// What has a layout of its own. A derived class writes its fields in WriteTo and reads them in the same
/// order in ReadFrom.
class VELMORCORE_API _tagSarnetBufferBase : public AObject {
public:
    /// Copies what AObject does; fields belong to the derived class.
    _tagSarnetBufferBase(_tagSarnetBufferBase const& other);
    /// Copies what AObject does; fields belong to the derived class.
    _tagSarnetBufferBase& operator=(_tagSarnetBufferBase const& other);

    /// Puts the encoded bytes in place of the content of `out`. True; false, with `out` as it was, if memory
    /// runs out.
    bool Encode(AString& out) const;
    /// Puts the encoded bytes into a buffer of `size` bytes, of which one must stay free; `size` becomes
    /// their number, and the result is 1. With too little room, or null: 0, with both as they were.
    int Encode(char* buffer, int& size) const;
    /// Takes the fields out of the bytes. What is missing leaves its fields as they were, and the result is
    /// still true. False if memory runs out; the fields so far are then taken.
    bool Decode(AString const& data);
    /// Takes the fields out of `size` bytes, as the other form; false for null.
    bool Decode(char const* data, int size);

protected:
    /// For derived classes.
    _tagSarnetBufferBase();
    ~_tagSarnetBufferBase() override;

    /// What Encode into a buffer calls.
    virtual bool encode(char* buffer, int& size) const;
    /// What Encode into a text calls.
    virtual bool encode(AString& out) const;
    /// What Decode of a text calls.
    virtual bool decode(AString const& data);
    /// What Decode of a buffer calls.
    virtual bool decode(char const* data, int size);

public:
    /// Writes the fields, in order. Called by the codec.
    virtual void WriteTo(CSarnetBufferWriter& writer) const = 0;
    /// Reads the fields, in the order of WriteTo. Called by the codec.
    virtual void ReadFrom(CSarnetBufferReader& reader) = 0;
    /// Writes what stands ahead of the fields: nothing.
    virtual void BeforeEncode(CSarnetBufferWriter& writer) const;
    /// Reads what stands ahead of the fields: nothing.
    virtual void BeforeDecode(CSarnetBufferReader& reader);
};

/// A structure that begins with the number of an action, in 4 bytes. What numbers there are is a matter of
/// the parties.
class VELMORCORE_API _tagSarnetActionBufferBase : public _tagSarnetBufferBase {
public:
    /// Makes a structure of that action.
    explicit _tagSarnetActionBufferBase(int action);

    /// The action's number.
    int GetAction() const;
    /// Writes the number.
    void BeforeEncode(CSarnetBufferWriter& writer) const override;
    /// Reads the number.
    void BeforeDecode(CSarnetBufferReader& reader) override;

protected:
    ~_tagSarnetActionBufferBase() override;

    /// The number of the action.
    int _action;
};

/// The number of an action, and nothing else; 0 at first.
class VELMORCORE_API _tagSarnetAction : public _tagSarnetActionBufferBase {
public:
    /// Makes the action 0.
    _tagSarnetAction();
    ~_tagSarnetAction() override;

    /// Writes nothing: there are no fields.
    void WriteTo(CSarnetBufferWriter& writer) const override;
    /// Reads nothing: there are no fields.
    void ReadFrom(CSarnetBufferReader& reader) override;
    /// Gives a new action of the same number.
    AObject* Clone() const override;
};

/// A block that is encoded already: encoding gives its bytes, decoding takes them, with no length. Nested in
/// another structure it writes and reads nothing.
class VELMORCORE_API _tagSarnetBufferBuffer : public _tagSarnetBufferBase {
public:
    /// Makes an object without a block.
    _tagSarnetBufferBuffer();
    /// Copies the block.
    _tagSarnetBufferBuffer(_tagSarnetBufferBuffer const& other);
    /// Copies the block.
    _tagSarnetBufferBuffer& operator=(_tagSarnetBufferBuffer const& other);
    ~_tagSarnetBufferBuffer() override;

    /// Writes nothing.
    void WriteTo(CSarnetBufferWriter& writer) const override;
    /// Reads nothing.
    void ReadFrom(CSarnetBufferReader& reader) override;
    /// Copies the block into a new object; null if there is no block.
    AObject* Clone() const override;

protected:
    /// Copies the block into the buffer; the length is 0 without one.
    bool encode(char* buffer, int& size) const override;
    /// Copies the block into `out`; false without a block.
    bool encode(AString& out) const override;
    /// Takes the bytes; false, with the block as it was, for none.
    bool decode(AString const& data) override;
    /// Takes `size` bytes; false, with the block as it was, for none.
    bool decode(char const* data, int size) override;

private:
    unsigned char* _bytes;
    int _length;
};

}  // namespace Ubrix
