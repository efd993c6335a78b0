/// @file
/// Bytes in the object model. What holds for all of its classes is told in Object.h.
#pragma once

#include <VelmorCore/Export.h>
#include <VelmorCore/Object/AObject.h>

namespace Ubrix {

/// A growable block of bytes.
///
/// All bytes of the block from Size() on are zero, and an Append of at least one byte leaves at least one of
/// them: text in the block is always terminated. The block belongs to this object alone.
class VELMORCORE_API AData : public AObject {
public:
    /// Makes an empty object with a zeroed block of 64 bytes.
    AData();
    /// Makes an empty object with a zeroed block of `capacity` bytes; below 1, with no block.
    explicit AData(int capacity);
    /// Makes an object without a block and assigns `size` bytes to it.
    AData(unsigned char const* bytes, int size);
    /// Copies the bytes; the copy of an empty object has no block.
    AData(AData const& other);
    ~AData() override;

    /// Takes `size` bytes in place of the content. Null or a negative size empties the object. Bytes that
    /// begin exactly at this object's own block change nothing, whatever `size` says. A block that is too
    /// small, or over 128 bytes and more than twice `size`, is replaced; so emptying a large block leaves
    /// none.
    void Assign(unsigned char const* bytes, int size);
    /// Adds `size` bytes at the end; null or a negative size does nothing. A block without a byte to spare
    /// afterwards is replaced by one of twice the new size. The bytes may be this object's own.
    void Append(unsigned char const* bytes, int size);
    /// Adds the bytes of `other`, which may be this object.
    void Append(AData const& other);
    /// Adds the text without its terminator; null does nothing.
    void Append(char const* text);

    /// Takes the bytes of `other`, as Assign does.
    AData& operator=(AData const& other);
    /// Takes the text without its terminator, as Assign does. Null or an empty text: Clear.
    AData& operator=(char const* text);
    /// Adds the bytes of `other`, as Append does.
    AData& operator+=(AData const& other);

    /// The block, valid until the next change; null if there is none.
    unsigned char const* Data() const;
    /// Bytes in use.
    int Size() const;
    /// Bytes in the block, 0 without one.
    int Capacity() const;
    /// Bytes of the block not in use.
    int LeftSize() const;
    /// Makes the block exactly `capacity` bytes. Growing keeps the content, shrinking drops it all. The
    /// present capacity, or one below 1, changes nothing.
    void SetCapacity(int capacity);
    /// Empties the object and leaves a zeroed block of 64 bytes; if there is no memory for one, the present
    /// block, zeroed.
    void Clear();
    /// True without a block or without bytes in use.
    bool Empty() const;
    /// Offset of the first byte in use that equals `byte` as an unsigned char; -1 if there is none.
    int Find(int byte) const;

    /// True for an AData with the same bytes. One without a block equals only another without a block.
    bool IsEqual(AObject const* other) const override;
    /// Copies the bytes into a new object.
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

}  // namespace Ubrix
