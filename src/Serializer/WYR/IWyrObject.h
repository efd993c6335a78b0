// The interface of records: values that pack themselves into bytes and print themselves as text and as XML.
#pragma once

#include <cstddef>
#include <cstdio>

#include "Serializer/WYR/WyrBuf.h"
#include "Serializer/WYR/WyrXmlReader.h"
#include "Serializer/WYR/WyrXmlWriter.h"

namespace Ubrix {

// Results are WyrError codes; the record stops at the first failure and passes its code on. An operation that
// a record doesn't override answers -31. The order of the operations is fixed, since record classes of other
// modules are laid out by it; nobody deletes a record by this interface. One thread at a time.
//
// A cut version says for which version of a record to write or read: fields that came later are left out. 0
// means the current version. A record lets WyrPack choose it: -9 below the base version. What is
// unpacked with a version of its own in the message is checked by the same class: -20 outside of [base,
// current].
//
// A selector names the member of a union that is to be written or was read. A record without a union has 0
// only; a selector that names no member is -33.
//
// The forms with `memory` write to or read from `size` bytes of the caller's; `usedSize`, which may be null,
// receives how many of them it took.
class IWyrObject {
public:
    IWyrObject(IWyrObject const&) = delete;
    IWyrObject& operator=(IWyrObject const&) = delete;

    // The oldest version of the record that can still be written and read. 1 by default.
    virtual int baseVersion() const;
    // Its newest version. -1 for a record without versions, whose cut version can only be 0.
    virtual int currentVersion() const;
    // The record's class, "sarnet.IWyrObject" by default.
    virtual char const* identity() const;

    // The plain form: fields in their order, without tags.
    virtual int pack(WyrBuf& buf, int cutVersion) const;
    virtual int packMemory(char* memory, size_t size, size_t* usedSize, int cutVersion) const;
    virtual int unpack(WyrBuf& buf, int cutVersion);
    virtual int unpackMemory(char const* memory, size_t size, size_t* usedSize, int cutVersion);

    // The tagged form: a tag, a length and a value a field, so that a reader can pass over what it doesn't
    // know. The forms on a buffer carry the fields alone, the forms on memory begin with the mark of a tagged
    // message. Wyr has no layout and no helpers for it: the mark, and how a tag and a length are put into
    // bytes, are a choice of the record classes, which must be one for all that nest in each other. Whatever
    // they choose,
    // - packing writes the fields that the cut version covers, and of a union the member that `selector`
    //   names; -37 for an array that is null but has a count;
    // - unpacking takes the `length` bytes from the position, and not one more. It passes over tags that it
    //   doesn't know, and tells in `*selector` which member of a union it found. -32 without the mark, -34
    //   for a length that fits neither its field nor what is left, -35 for a kind of value that doesn't
    //   exist, -36 if a required field is missing at the end.
    virtual int packTlv(WyrBuf& buf, long long selector, int cutVersion) const;
    virtual int packTlvMemory(char* memory, size_t size, size_t* usedSize, long long selector,
                              int cutVersion) const;
    virtual int unpackTlv(WyrBuf& buf, size_t length, long long* selector);
    virtual int unpackTlvMemory(char const* memory, size_t size, size_t* usedSize, long long* selector);

    // One line a field, by WyrBufUtil.
    virtual int visualize(WyrBuf& buf, int indent, char separator) const;
    virtual int visualizeFile(std::FILE* file, int indent, char separator) const;

    // XML in the style of the writer or reader, as the element `name`. Where that element is missing: -28.
    virtual int toXml(WyrXmlWriter& writer, char const* name, int cutVersion) const;
    virtual int toXmlMemory(char* memory, size_t size, size_t* usedSize, int style, int cutVersion) const;
    virtual int fromXmlMemory(char const* text, size_t size, int style, int cutVersion);
    virtual int fromXml(WyrXmlReader& reader, char const* name, int cutVersion);

    // Looks at the values themselves before they are packed. 0 by default: a record without rules of its own
    // has nothing to refuse. `field`, which may be null, receives the name of the field that is at fault.
    virtual int validate(char const** field, int cutVersion) const;

protected:
    IWyrObject();
    ~IWyrObject() = default;
};

}  // namespace Ubrix
