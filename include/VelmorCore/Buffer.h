// The buffer codec: structures that cross to managed code, or go from module to module as one block.
//
// The format has no tags, kinds or version: both sides know the layout. What is written, nothing standing
// between two values:
//
//   bool                1 byte, 1 or 0; any byte but 0 reads as true
//   char, short,        1, 2, 4 and 8 bytes, big-endian, two's complement
//   int, long long
//   AString             the length in 4 bytes, then so many bytes, without a terminator
//   char const*         the length with the terminator, then the text and the terminator; of an empty
//                       text the length 0 alone. Read as an AString it ends in a zero byte
//   bytes               the length, then so many bytes
//   AArray              the number of elements in 4 bytes, then each as an object
//   ADictionary         the number of entries in 4 bytes, then for each, by position, key and value
//                       as objects
//   a nested structure  its own bytes, with no length
//   an object           AString, AArray, ADictionary and structures as above; an ANumber as bool, 1,
//                       4 or 8 bytes by its kind; nothing for null, AData, and a number that is real
//                       or Null
//
// There is no error state. A reader never reads past its bytes: what is missing leaves its target as it was,
// or an empty text. Nothing here throws. When memory runs out a Write leaves the writer as it was, whole
// structures included, a text is read as empty, and Encode and Decode give false. Structures and containers
// nested more than 1,000 deep aren't written, as with a want of memory; a reader stands at its end there.
//
// Threads: no locks, no shared state. An instance belongs to one thread at a time.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object.h>

namespace Ubrix {

class _tagSarnetBufferBase;

// Puts values one after another into a block of bytes.
class VELMORCORE_API CSarnetBufferWriter {
public:
    CSarnetBufferWriter();
    CSarnetBufferWriter(CSarnetBufferWriter const& other);
    ~CSarnetBufferWriter();
    CSarnetBufferWriter& operator=(CSarnetBufferWriter const& other);

    void Write(bool value);
    void Write(signed char value);
    void Write(unsigned char value);
    void Write(short value);
    void Write(unsigned short value);
    void Write(int value);
    void Write(unsigned int value);
    void Write(long long value);
    void Write(unsigned long long value);
    void Write(AString const& text);
    // `text` must not be null.
    void Write(char const* text);
    // Null or a `size` below 1 writes `size` as the length and nothing more.
    void Write(unsigned char const* bytes, int size);
    void Write(AArray const& array);
    void Write(ADictionary const& dictionary);
    // An object of none of the classes above, such as an AStringBuilder, writes nothing.
    void Write(AObject const* object);
    // A nested structure; null writes nothing.
    void Write(_tagSarnetBufferBase const& structure);
    void Write(_tagSarnetBufferBase& structure);
    void Write(_tagSarnetBufferBase const* structure);
    void Write(_tagSarnetBufferBase* structure);
    // Another pointer can't be written: without this it would be written as the bool `true`.
    void Write(void const* pointer) = delete;

    // All bytes so far, valid until the next Write.
    AString const& GetBufferData() const;

private:
    class Whole;

    void WriteNumber(ANumber const& number);
    // `count` as the length, and `size` bytes, which may lie in the buffer.
    void WriteCounted(int count, char const* bytes, int size);

    AString _buffer;
};

// Reads values one after another from a copy of the bytes.
class VELMORCORE_API CSarnetBufferReader {
public:
    explicit CSarnetBufferReader(AString const& data);
    // Null, or a size below 0, gives a reader of no bytes.
    CSarnetBufferReader(char const* data, int size);
    CSarnetBufferReader(CSarnetBufferReader const& other);
    ~CSarnetBufferReader();
    CSarnetBufferReader& operator=(CSarnetBufferReader const& other);

    // With fewer bytes left than the value takes, the target keeps its value and the reader stands at the
    // end.
    void Read(bool& value);
    void Read(signed char& value);
    void Read(unsigned char& value);
    void Read(short& value);
    void Read(unsigned short& value);
    void Read(int& value);
    void Read(unsigned int& value);
    void Read(long long& value);
    void Read(unsigned long long& value);
    // A length below 1, or greater than what is left, gives an empty text, and the reader stands after the
    // length.
    void Read(AString& out);
    // The same into a buffer of `size` bytes, all others set to 0; a length that leaves no room for a
    // terminator is refused in the same way, and so is each with a `size` below 1. At the end of the data, or
    // with null, nothing happens.
    void Read(char* buffer, int size);
    // A nested structure; null reads nothing.
    void Read(_tagSarnetBufferBase& structure);
    void Read(_tagSarnetBufferBase* structure);

    // Back to the first byte.
    void Reset();
    // True if no byte is left.
    bool AtEnd() const;

private:
    // The next `width` bytes, and past them; null, and to the end, if there are fewer.
    unsigned char const* Take(int width);
    // Reads the length field of a text: 0 if no text of that length, up to `limit`, follows.
    int ReadLength(int limit);

    int _position;
    AString _buffer;
};

// What has a layout of its own. A derived class writes its fields in WriteTo and reads them in the same order
// in ReadFrom.
class VELMORCORE_API _tagSarnetBufferBase : public AObject {
public:
    _tagSarnetBufferBase(_tagSarnetBufferBase const& other);
    _tagSarnetBufferBase& operator=(_tagSarnetBufferBase const& other);

    // The encoded bytes, in place of the content of `out`. True; false, with `out` as it was, if memory runs
    // out.
    bool Encode(AString& out) const;
    // The encoded bytes into a buffer of `size` bytes, of which one must stay free; `size` becomes their
    // number, and the result is 1. With too little room, or null: 0, with both as they were.
    int Encode(char* buffer, int& size) const;
    // Takes the fields out of the bytes. What is missing leaves its fields as they were: the result is still
    // true, but for null. False, too, if memory runs out; the fields so far are then taken.
    bool Decode(AString const& data);
    bool Decode(char const* data, int size);

protected:
    _tagSarnetBufferBase();
    ~_tagSarnetBufferBase() override;

    // What the operations above call.
    virtual bool encode(char* buffer, int& size) const;
    virtual bool encode(AString& out) const;
    virtual bool decode(AString const& data);
    virtual bool decode(char const* data, int size);

public:
    // The fields, in order. Called by the codec.
    virtual void WriteTo(CSarnetBufferWriter& writer) const = 0;
    virtual void ReadFrom(CSarnetBufferReader& reader) = 0;
    // What stands ahead of the fields: nothing.
    virtual void BeforeEncode(CSarnetBufferWriter& writer) const;
    virtual void BeforeDecode(CSarnetBufferReader& reader);
};

// A structure that begins with the number of an action, in 4 bytes. What numbers there are is a matter of the
// parties.
class VELMORCORE_API _tagSarnetActionBufferBase : public _tagSarnetBufferBase {
public:
    explicit _tagSarnetActionBufferBase(int action);

    int GetAction() const;
    void BeforeEncode(CSarnetBufferWriter& writer) const override;
    void BeforeDecode(CSarnetBufferReader& reader) override;

protected:
    ~_tagSarnetActionBufferBase() override;

    int _action;
};

// The number of an action, and nothing else; 0 at first.
class VELMORCORE_API _tagSarnetAction : public _tagSarnetActionBufferBase {
public:
    _tagSarnetAction();
    ~_tagSarnetAction() override;

    void WriteTo(CSarnetBufferWriter& writer) const override;
    void ReadFrom(CSarnetBufferReader& reader) override;
    AObject* Clone() const override;
};

// A block that is encoded already: encoding gives its bytes, decoding takes them, with no length. Nested in
// another structure it writes and reads nothing.
class VELMORCORE_API _tagSarnetBufferBuffer : public _tagSarnetBufferBase {
public:
    // No block.
    _tagSarnetBufferBuffer();
    // Copies of the block.
    _tagSarnetBufferBuffer(_tagSarnetBufferBuffer const& other);
    _tagSarnetBufferBuffer& operator=(_tagSarnetBufferBuffer const& other);
    ~_tagSarnetBufferBuffer() override;

    void WriteTo(CSarnetBufferWriter& writer) const override;
    void ReadFrom(CSarnetBufferReader& reader) override;
    // Null if there is no block.
    AObject* Clone() const override;

protected:
    // Into a text: false without a block. Into a buffer: the length is 0 without one.
    bool encode(char* buffer, int& size) const override;
    bool encode(AString& out) const override;
    // False, with the block as it was, for no bytes.
    bool decode(AString const& data) override;
    bool decode(char const* data, int size) override;

private:
    unsigned char* _bytes;
    int _length;
};

}  // namespace Ubrix
