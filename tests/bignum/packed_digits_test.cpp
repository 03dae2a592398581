#include "qorutils/bignum/packed_digits.h"

#include <cstdint>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/text_literal.h"

namespace {

using namespace bignum_detail;

// The number that the bytes stand for.
std::uint64_t Value(DigitWord word) {
    std::uint64_t value = 0;
    for (int shift = 56; shift >= 0; shift -= 8) value = value * 10 + (word >> shift & 0xFF);
    return value;
}

DigitWord Digits(std::uint64_t value) {
    DigitWord word = 0;
    for (int shift = 0; shift < 64; shift += 8, value /= 10) word |= value % 10 << shift;
    return word;
}

constexpr std::uint64_t kValues[] = {0,        1,        9,        10,       99,       100,
                                     9999,     10000,    10001,    12345678, 50000000, 87654321,
                                     99990000, 90909090, 99999998, 99999999};
constexpr std::uint64_t kBase = 100000000;

TEST(PackedDigits, AddWithCarryInAndOut) {
    for (std::uint64_t const a : kValues) {
        for (std::uint64_t const b : kValues) {
            for (DigitWord const in : {0, 1}) {
                DigitWord carry = in;
                DigitWord const sum = AddDigits(Digits(a), Digits(b), &carry);
                EXPECT_EQ(Digits((a + b + in) % kBase), sum) << a << " + " << b << " + " << in;
                EXPECT_EQ((a + b + in) / kBase, carry) << a << " + " << b << " + " << in;
            }
        }
    }
}

TEST(PackedDigits, SubtractWithBorrowInAndOut) {
    for (std::uint64_t const a : kValues) {
        for (std::uint64_t const b : kValues) {
            for (DigitWord const in : {0, 1}) {
                DigitWord borrow = in;
                DigitWord const difference =
                    DropExcess(SubtractDigits(Digits(a), Digits(b), &borrow));
                EXPECT_EQ(Digits((a + kBase - b - in) % kBase), difference) << a << " - " << b;
                EXPECT_EQ(a < b + in ? 1u : 0u, borrow) << a << " - " << b << " - " << in;
            }
        }
    }
}

TEST(PackedDigits, AreTheLimbOfTheirValueAndBack) {
    std::mt19937 random(1);
    for (int i = 0; i < 100000; ++i) {
        std::uint32_t const limb = i < 20000 ? static_cast<std::uint32_t>(i) : random() % kBase;
        ASSERT_EQ(Digits(limb), FromLimb(limb));
        ASSERT_EQ(limb, ToLimb(Digits(limb)));
    }
}

TEST(PackedDigits, GiveALimbForEveryFourDigitPart) {
    for (std::uint32_t part = 0; part < 10000; ++part) {
        ASSERT_EQ(Digits(part), FromLimb(part));
        ASSERT_EQ(Digits(part * 10000u), FromLimb(part * 10000u));
    }
}

TEST(PackedDigits, AreWeighedAsTheyStandWhenAboveNine) {
    EXPECT_EQ(Value(~DigitWord{0}), ToLimb(~DigitWord{0}));
    EXPECT_EQ(Value(0xFF00000000000000u), ToLimb(0xFF00000000000000u));
    EXPECT_EQ(Value(0x0A0B0C0D0E0FFF80u), ToLimb(0x0A0B0C0D0E0FFF80u));
}

TEST(PackedDigits, TellDigitsFromOtherBytesInEveryPlace) {
    for (int shift = 0; shift < 64; shift += 8) {
        for (DigitWord byte = 0; byte < 256; ++byte) {
            DigitWord const others = EachByte(9) & ~(DigitWord{0xFF} << shift);
            EXPECT_EQ(byte > 9, NonDigits(others | byte << shift) != 0) << byte << " at " << shift;
            EXPECT_EQ(byte > 9, NonDigits(byte << shift) != 0) << byte << " at " << shift;
        }
    }
}

template <typename T>
class PackedText : public testing::Test {};
using CharTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(PackedText, CharTypes);

TYPED_TEST(PackedText, IsReadMostSignificantFirst) {
    auto const text = Text<TypeParam>("12345678");
    GuardedArray<TypeParam> const guarded(text.c_str(), 8);
    EXPECT_EQ(0x0102030405060708u, LoadText(guarded.data()));
    EXPECT_EQ(0x01020304050607u, LoadText(guarded.data(), 7));
    EXPECT_EQ(0x01u, LoadText(guarded.data(), 1));
    EXPECT_EQ(0x08u, LoadText(guarded.data() + 7, 1));
    EXPECT_EQ(0u, LoadText(guarded.data() + 8, 0));
}

TYPED_TEST(PackedText, GivesNoDigitsForAnyOtherCharacter) {
    for (int place = 0; place < 8; ++place) {
        for (long code = 0; code < 0x200; ++code) {
            auto text = Text<TypeParam>("09090909").characters;
            TypeParam const ch = static_cast<TypeParam>(code);
            text[static_cast<std::size_t>(place)] = ch;
            bool const isDigit = ch >= TypeParam('0') && ch <= TypeParam('9');
            EXPECT_EQ(isDigit, NonDigits(LoadText(text.c_str())) == 0) << place << ' ' << code;
            EXPECT_EQ(isDigit || place == 7, NonDigits(LoadText(text.c_str(), 7)) == 0)
                << place << ' ' << code;
        }
    }
}

TEST(PackedWideText, GivesNoDigitsForCharactersWithADigitInTheirLowByte) {
    for (unsigned int const high :
         {0x100u, 0x10000u, 0x1000000u, 0x80000000u, 0xFFFFFF00u, 0x06000000u}) {
        for (int place = 0; place < 8; ++place) {
            std::wstring text = L"12345678";
            wchar_t& ch = text[static_cast<std::size_t>(place)];
            ch = static_cast<wchar_t>(static_cast<unsigned int>(ch) + high);
            EXPECT_NE(0u, NonDigits(LoadText(text.c_str()))) << place << ' ' << high;
            EXPECT_NE(0u, NonDigits(LoadText(text.c_str() + place, 1))) << place << ' ' << high;
        }
    }
}

TYPED_TEST(PackedText, IsWrittenMostSignificantFirst) {
    GuardedArray<TypeParam> text(8);
    StoreText(0x0102030405060708u, text.data());
    EXPECT_EQ(Text<TypeParam>("12345678").characters, std::basic_string<TypeParam>(text.data(), 8));
    StoreText(0x0900090909090909u, text.data() + 5, 3);
    StoreText(0x0102030405060708u, text.data() + 8, 0);
    EXPECT_EQ(Text<TypeParam>("12345999").characters, std::basic_string<TypeParam>(text.data(), 8));
}

}  // namespace
