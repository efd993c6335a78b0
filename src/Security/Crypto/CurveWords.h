// Numbers of up to eight unsigned 32-bit words, least significant word first. Each operation works on the
// word count it is given. None branches or indexes on a word's value, so their time tells nothing about it.
// No state: any thread.
#pragma once

#include <cstdint>

namespace Ubrix::Crypto {

using Word = std::uint32_t;
using DoubleWord = std::uint64_t;

constexpr int kWordBits = 32;
constexpr int kMaxCurveWords = 8;

inline void WordsClear(Word* words, int count) {
    for (int i = 0; i < count; ++i) {
        words[i] = 0;
    }
}

inline void WordsSet(Word* to, Word const* from, int count) {
    for (int i = 0; i < count; ++i) {
        to[i] = from[i];
    }
}

// 1 if all words are zero, else 0.
inline Word WordsAreZero(Word const* words, int count) {
    Word any = 0;
    for (int i = 0; i < count; ++i) {
        any |= words[i];
    }
    return ((any | (0U - any)) >> (kWordBits - 1)) ^ 1U;
}

inline Word WordsBit(Word const* words, int bit) {
    return words[bit / kWordBits] >> (bit % kWordBits) & 1U;
}

// result = left + right; returns the carry. result may be either operand, here and below.
inline Word WordsAdd(Word* result, Word const* left, Word const* right, int count) {
    DoubleWord sum = 0;
    for (int i = 0; i < count; ++i) {
        sum += static_cast<DoubleWord>(left[i]) + right[i];
        result[i] = static_cast<Word>(sum);
        sum >>= kWordBits;
    }
    return static_cast<Word>(sum);
}

// result = left - right; returns the borrow.
inline Word WordsSubtract(Word* result, Word const* left, Word const* right, int count) {
    Word borrow = 0;
    for (int i = 0; i < count; ++i) {
        DoubleWord const difference = static_cast<DoubleWord>(left[i]) - right[i] - borrow;
        result[i] = static_cast<Word>(difference);
        borrow = static_cast<Word>(difference >> (2 * kWordBits - 1));
    }
    return borrow;
}

// Halves in place; topBit comes in at the top.
inline void WordsHalve(Word* words, Word topBit, int count) {
    for (int i = count - 1; i >= 0; --i) {
        Word const lowest = words[i] & 1U;
        words[i] = words[i] >> 1 | topBit << (kWordBits - 1);
        topBit = lowest;
    }
}

// 1 if left < right, else 0.
inline Word WordsAreBelow(Word const* left, Word const* right, int count) {
    Word difference[kMaxCurveWords];
    return WordsSubtract(difference, left, right, count);
}

// to = from where choice is 1; unchanged where it is 0.
inline void WordsChoose(Word* to, Word const* from, Word choice, int count) {
    Word const mask = 0U - choice;
    for (int i = 0; i < count; ++i) {
        to[i] ^= (to[i] ^ from[i]) & mask;
    }
}

// Exchanges left and right where choice is 1.
inline void WordsExchange(Word* left, Word* right, Word choice, int count) {
    Word const mask = 0U - choice;
    for (int i = 0; i < count; ++i) {
        Word const change = (left[i] ^ right[i]) & mask;
        left[i] ^= change;
        right[i] ^= change;
    }
}

// Adds one product to an accumulator of three words.
inline void WordsAccumulate(DoubleWord& low, Word& high, Word left, Word right) {
    DoubleWord const product = static_cast<DoubleWord>(left) * right;
    low += product;
    high += low < product ? 1U : 0U;
}

// product = left * right, 2 * count words, column by column; product must not be an operand.
inline void WordsMultiply(Word* product, Word const* left, Word const* right, int count) {
    DoubleWord low = 0;
    Word high = 0;
    for (int column = 0; column < 2 * count - 1; ++column) {
        int const first = column < count ? 0 : column - count + 1;
        int const last = column < count ? column : count - 1;
        for (int i = first; i <= last; ++i) {
            WordsAccumulate(low, high, left[i], right[column - i]);
        }
        product[column] = static_cast<Word>(low);
        low = low >> kWordBits | static_cast<DoubleWord>(high) << kWordBits;
        high = 0;
    }
    product[2 * count - 1] = static_cast<Word>(low);
}

// Reads numBytes big-endian bytes; words above them become zero.
inline void WordsFromBytes(Word* words, int count, unsigned char const* bytes, int numBytes) {
    WordsClear(words, count);
    for (int i = 0; i < numBytes; ++i) {
        words[i / 4] |= static_cast<Word>(bytes[numBytes - 1 - i]) << (8 * (i % 4));
    }
}

// Writes the low numBytes bytes, big-endian.
inline void WordsToBytes(unsigned char* bytes, int numBytes, Word const* words) {
    for (int i = 0; i < numBytes; ++i) {
        bytes[numBytes - 1 - i] = static_cast<unsigned char>(words[i / 4] >> (8 * (i % 4)));
    }
}

}  // namespace Ubrix::Crypto
