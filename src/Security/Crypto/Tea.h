// The TEA block cipher in 16 rounds, and the padded, doubly chained mode that stored files use. Words are
// big-endian, but for the one function of the block log. Keys are 16 bytes, blocks 8. All functions are
// thread-safe; no argument may be null unless said.
//
// The mode hides content from casual reading. It is no authenticated encryption: its only integrity test is a
// tail of seven zero bytes.
#pragma once

#include <cstddef>

namespace Ubrix::Crypto {

// Enciphers one block.
// In:  in:  8 bytes, two big-endian words
//      key: 16 bytes, four big-endian words
// Out: out: 8 bytes; may be the same memory as in
void TeaEncryptBlock(void const* in, void const* key, void* out);

// The inverse of TeaEncryptBlock, with the same arguments.
void TeaDecryptBlock(void const* in, void const* key, void* out);

// Enciphers blocks with the same rounds, but with little-endian words in block and key, each block by itself.
// In:  in:         8 * blockCount bytes
//      blockCount: may be 0
//      key:        16 bytes, four little-endian words
// Out: out:        8 * blockCount bytes; may be the same memory as in
void TeaEncryptLittleEndian(void const* in, std::size_t blockCount, void const* key, void* out);

// Returns: the enciphered size in bytes of plainLength bytes: the least multiple of 8 that is at least
//          plainLength + 10. 0 if plainLength is negative or the size would not fit an int.
int zk_symmetry_encrypt2_length(int plainLength);

// Enciphers. Two runs over the same text differ, since up to ten bytes of padding are random.
// In:  in:        inLength bytes; may be null if inLength is 0
//      key:       16 bytes
// Out: out:       zk_symmetry_encrypt2_length(inLength) bytes; must not overlap in
//      outLength: the number of bytes written; 0, with out untouched, for a length without enciphered size
void zk_symmetry_encrypt2(void const* in, int inLength, void const* key, void* out, int* outLength);

// Deciphers what zk_symmetry_encrypt2 wrote.
// Returns: false if inLength is no multiple of 8 or below 16, if the plain text wouldn't fit, or if the zero
//          tail isn't there, which is how a wrong key or a changed text shows
// In:      in:        inLength bytes
//          key:       16 bytes
// In/Out:  outLength: on entry the room in out; on return the plain length, at most inLength - 10
// Out:     out:       the plain text; must not overlap in
// On failure: with a bad length or too little room, out and outLength are untouched. With a bad tail,
// outLength bytes of out hold bytes without meaning.
bool zk_symmetry_decrypt2(void const* in, int inLength, void const* key, void* out, int* outLength);

}  // namespace Ubrix::Crypto
