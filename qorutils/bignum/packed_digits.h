// Private: eight decimal digits in one 64-bit word, a digit a byte, the least significant digit in
// the least significant byte. Sums, differences and texts are made eight digits at a time; products
// and quotients of limbs, which are the numbers that words stand for.
//
// No function here depends on digits being at most 9, except for its result to mean something.

#ifndef QORUTILS_BIGNUM_PACKED_DIGITS_H_
#define QORUTILS_BIGNUM_PACKED_DIGITS_H_

#include <cstdint>
#include <cstring>

namespace bignum_detail {

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "digits in memory are read as words");

using DigitWord = std::uint64_t;

constexpr int kDigitsPerWord = 8;

constexpr DigitWord EachByte(unsigned int byte) {
    return 0x0101010101010101u * byte;
}

inline DigitWord LoadDigits(void const* digits) {
    DigitWord word;
    std::memcpy(&word, digits, sizeof word);
    return word;
}

inline void StoreDigits(void* digits, DigitWord word) {
    std::memcpy(digits, &word, sizeof word);
}

// Text has the most significant digit first.
inline DigitWord ReverseDigits(DigitWord word) {
    return __builtin_bswap64(word);
}

// 0 if every byte is at most 9. 9 is the largest byte that 0x76 does not take to 0x80; from 0x8A on
// a byte carries into its neighbour, but such a byte has its top bit set itself.
inline DigitWord NonDigits(DigitWord word) {
    return ((word + EachByte(0x76)) | word) & EachByte(0x80);
}

// A binary difference leaves 0xF6 to 0xFF, ten too few, where a digit borrowed from the next byte;
// a sum that began with 0xF6 a byte leaves the same where a digit did not carry.
inline DigitWord DropExcess(DigitWord word) {
    DigitWord const excess = (word >> 7) & EachByte(1);
    return (word & EachByte(0x0F)) - 6 * excess;
}

// a + b + *carry, which is 0 or 1 and becomes the carry into the next word. 0xF6 a byte makes a
// byte carry when its digit does.
inline DigitWord AddDigits(DigitWord a, DigitWord b, DigitWord* carry) {
    DigitWord const first = a + EachByte(0xF6);
    DigitWord const second = first + b;
    DigitWord const sum = second + *carry;
    *carry = static_cast<DigitWord>(second < first) | static_cast<DigitWord>(sum < second);
    return DropExcess(sum);
}

// a - b - *borrow, which is 0 or 1 and becomes the borrow from the next word. To be completed by
// DropExcess.
inline DigitWord SubtractDigits(DigitWord a, DigitWord b, DigitWord* borrow) {
    DigitWord const first = a - b;
    DigitWord const difference = first - *borrow;
    *borrow = static_cast<DigitWord>(a < b) | static_cast<DigitWord>(first < *borrow);
    return difference;
}

// Joins digits to pairs, pairs to fours and these to the whole, each step in all lanes at once.
// Exact for all bytes: what eight digits stand for is below 100000000.
inline std::uint32_t ToLimb(DigitWord word) {
    word = (word & 0x00FF00FF00FF00FFu) + (word >> 8 & 0x00FF00FF00FF00FFu) * 10;
    word = (word & 0x0000FFFF0000FFFFu) + (word >> 16 & 0x0000FFFF0000FFFFu) * 100;
    return static_cast<std::uint32_t>(word) + static_cast<std::uint32_t>(word >> 32) * 10000;
}

// The way back. Lanes are divided by multiplying: 10486 / 2^20 is just above 1/100 and 103 / 2^10
// just above 1/10, near enough for all that the lanes can hold.
inline DigitWord FromLimb(std::uint32_t limb) {
    DigitWord const fours = limb % 10000 | static_cast<DigitWord>(limb / 10000) << 32;
    DigitWord const hundreds = fours * 10486 >> 20 & 0x0000007F0000007Fu;
    DigitWord const pairs = (fours - hundreds * 100) | hundreds << 16;
    DigitWord const tens = pairs * 103 >> 10 & 0x000F000F000F000Fu;
    return (pairs - tens * 10) | tens << 8;
}

// ---- Text ----

// Eight characters; every one that is no digit gives some byte above 9.
inline DigitWord LoadText(char const* text) {
    return ReverseDigits(LoadDigits(text) ^ EachByte('0'));
}

inline DigitWord LoadText(wchar_t const* text) {
    static_assert(sizeof(wchar_t) == 4, "a word holds two characters");
    DigitWord packed = 0;
    DigitWord all = 0;
    for (int i = 0; i < kDigitsPerWord; i += 2) {
        DigitWord const pair = LoadDigits(text + i) ^ 0x0000003000000030u;
        all |= pair;
        packed |= ((pair | pair >> 24) & 0xFFFF) << 8 * i;
    }
    return (all & 0xFFFFFF00FFFFFF00u) == 0 ? ReverseDigits(packed) : ~DigitWord{0};
}

// The first n characters, 0 to 7, of a text of that length at least.
template <typename T>
DigitWord LoadText(T const* text, int n) {
    DigitWord word = 0;
    for (int i = 0; i < n; ++i) {
        std::uint32_t const digit = static_cast<std::uint32_t>(text[i]) - '0';
        word = word << 8 | (digit <= 9 ? digit : 0xFF);
    }
    return word;
}

inline void StoreText(DigitWord word, char* text) {
    StoreDigits(text, ReverseDigits(word) + EachByte('0'));
}

inline void StoreText(DigitWord word, wchar_t* text) {
    for (int i = kDigitsPerWord; i-- > 0; word >>= 8)
        text[i] = L'0' + static_cast<wchar_t>(word & 0xFF);
}

// The lowest n digits, 0 to 7.
template <typename T>
void StoreText(DigitWord word, T* text, int n) {
    for (; n-- > 0; word >>= 8) text[n] = static_cast<T>('0' + (word & 0xFF));
}

}  // namespace bignum_detail

#endif  // QORUTILS_BIGNUM_PACKED_DIGITS_H_
