#include <qorutils/bignum/bignum.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/reference_bignum.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

namespace {

using Big = bignum_t<255>;
using reference_bignum::FromNumber;

static_assert(std::is_trivially_copyable<Big>::value && std::is_standard_layout<Big>::value,
              "a plain record");
static_assert(offsetof(Big, digits) == 0 && offsetof(Big, sign) == 255 && offsetof(Big, top) == 256,
              "in this order");

std::string TextOf(Big const& v) {
    qor_text::CQorStringT<char> const text = v;
    return text.c_str();
}

bool HasOnlyZerosAboveTop(Big const& v) {
    return std::all_of(v.digits + v.top + 1, v.digits + 255, [](int d) { return d == 0; });
}

// ---- The record ----

TEST(Bignum, IsNaNWhenItIsNew) {
    Big const v;
    EXPECT_EQ(-1, v.top);
    EXPECT_EQ(1, v.sign);
    EXPECT_TRUE(HasOnlyZerosAboveTop(v));
    EXPECT_TRUE(v.isNaN());
    EXPECT_FALSE(v.isZero());
}

TEST(Bignum, IsNaNForEveryTopBelowZero) {
    Big v("1");
    for (int const top : {-1, -2, -32768}) {
        v.top = static_cast<std::int16_t>(top);
        EXPECT_TRUE(v.isNaN());
    }
}

TEST(Bignum, KeepsDigitsAndSignWhenItIsSetToNaN) {
    Big v("-123");
    v.setNaN();
    EXPECT_EQ(-1, v.top);
    EXPECT_EQ(255, v.sign);
    EXPECT_EQ(3, v.digits[0]);
}

TEST(Bignum, LosesDigitsAndSignWhenItIsInitialised) {
    Big v("-123");
    v.init();
    EXPECT_TRUE(v.isNaN());
    EXPECT_EQ(1, v.sign);
    EXPECT_TRUE(HasOnlyZerosAboveTop(v));
}

TEST(Bignum, IsCopiedWithDigitsSignAndTop) {
    Big const v("-1234567890123456789");
    Big const copy(v);
    EXPECT_EQ(FromNumber(v), FromNumber(copy));
    Big assigned("5");
    assigned = v;
    EXPECT_EQ(FromNumber(v), FromNumber(assigned));
}

TEST(Bignum, IsZeroWhenAllDigitsUpToTopAre) {
    EXPECT_TRUE(Big("0").isZero());
    EXPECT_FALSE(Big("10").isZero());
    EXPECT_FALSE(Big("100000000000000000").isZero());
    Big v("100");
    v.top = 1;
    EXPECT_TRUE(v.isZero());
}

TEST(Bignum, OnPurposeIsNeverNegative) {
    EXPECT_EQ(255, Big("-1").sign);
    EXPECT_FALSE(Big("-1").isNegative());
    EXPECT_FALSE(Big("1").isNegative());
    EXPECT_FALSE(Big().isNegative());
}

TEST(DigitTables, HoldTheTenCharacters) {
    EXPECT_EQ("0123456789", std::string(digits_t<char>::digs, sizeof digits_t<char>::digs));
    EXPECT_EQ(L"0123456789", std::wstring(digits_t<wchar_t>::digs, 10));
    EXPECT_TRUE(std::binary_search(digits_t<char>::digs, digits_t<char>::digs + 10, '7'));
}

TEST(LengthFunctions, MeasureText) {
    EXPECT_EQ(5u, StrType<char const*>::lenFunc("12345"));
    EXPECT_EQ(5u, StrType<wchar_t const*>::lenFunc(L"12345"));
    EXPECT_EQ(5u, StrType<wchar_t*>::lenFunc(L"12345"));
}

// ---- From text ----

template <typename T>
class BignumText : public testing::Test {};
using CharTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(BignumText, CharTypes);

template <typename T>
std::basic_string<T> Widened(std::string const& text) {
    return std::basic_string<T>(text.begin(), text.end());
}

// The text ends where the memory does.
template <typename T>
Big Parsed(std::string const& text) {
    auto const characters = Widened<T>(text);
    GuardedArray<T> const guarded(characters.c_str(), characters.size() + 1);
    Big v("-77");
    v = guarded.data();
    Big const constructed(guarded.data());
    EXPECT_TRUE(FromNumber(v) == FromNumber(constructed)) << text;
    EXPECT_TRUE(v.isNaN() || HasOnlyZerosAboveTop(v)) << text;
    return v;
}

TYPED_TEST(BignumText, GivesDigitsLeastSignificantFirst) {
    Big const v = Parsed<TypeParam>("12345678901234567890123");
    EXPECT_EQ(22, v.top);
    EXPECT_EQ(1, v.sign);
    EXPECT_EQ(3, v.digits[0]);
    EXPECT_EQ(2, v.digits[1]);
    EXPECT_EQ(1, v.digits[22]);
}

TYPED_TEST(BignumText, GivesTheNumberThatItSays) {
    struct {
        char const *text, *number;
        int sign;
    } const kCases[] = {
        {"12345678901234567890123", "12345678901234567890123", 1},
        {"-0042", "42", 255},  // zeros in front go
        {"0042", "42", 1},
        {"00000000000000000042", "42", 1},
        {"+7", "7", 1},
        {"-7", "7", 255},
        {"+-5", "5", 255},  // the last sign holds
        {"-+5", "5", 1},
        {"-+-+-5", "5", 255},
        {"0", "0", 1},
        {"-0", "0", 1},  // zero is positive
        {"-000000000", "0", 1},
        {"12345678", "12345678", 1},
        {"123456789", "123456789", 1},
    };
    for (auto const& c : kCases) {
        Big const v = Parsed<TypeParam>(c.text);
        EXPECT_EQ(c.number, TextOf(v)) << c.text;
        EXPECT_EQ(c.sign, v.sign) << c.text;
    }
}

TYPED_TEST(BignumText, IsNaNWhenItIsNoNumber) {
    for (char const* text :
         {"12a", "", " 1", "1 ", "+-", "-", "1-", "1+2", "1.5", "1e3", "a12345678",
          "1234567x90123456", "12345678:", "/12345678", "0x10", "1,000", "\x80", "1\xB2", "\n1"})
        EXPECT_TRUE(Parsed<TypeParam>(text).isNaN()) << text;
}

TYPED_TEST(BignumText, IsNaNWhenItIsNull) {
    Big v("5");
    v = static_cast<TypeParam const*>(nullptr);
    EXPECT_TRUE(v.isNaN());
    EXPECT_TRUE(Big(static_cast<TypeParam const*>(nullptr)).isNaN());
}

TYPED_TEST(BignumText, KeepsDigitsAndSignWhereItFails) {
    Big v("-123");
    v = Text<TypeParam>("12a").c_str();
    EXPECT_TRUE(v.isNaN());
    EXPECT_EQ(3, v.digits[0]);
    EXPECT_EQ(255, v.sign);
}

TYPED_TEST(BignumText, HasAtMost255Characters) {
    std::string const nines(255, '9');
    Big const largest = Parsed<TypeParam>(nines);
    EXPECT_EQ(254, largest.top);
    EXPECT_EQ(1, largest.sign);
    EXPECT_EQ(nines, TextOf(largest));
    EXPECT_EQ(255, Parsed<TypeParam>("-" + nines.substr(1)).sign);
    EXPECT_TRUE(Parsed<TypeParam>(nines + "9").isNaN());
    EXPECT_TRUE(Parsed<TypeParam>("-" + nines).isNaN());
    EXPECT_EQ("1", TextOf(Parsed<TypeParam>(std::string(254, '0') + "1")));
    EXPECT_TRUE(Parsed<TypeParam>(std::string(255, '0') + "1").isNaN());
    EXPECT_TRUE(Parsed<TypeParam>(std::string(5000, '0')).isNaN());
}

TYPED_TEST(BignumText, OfEveryLengthComesBack) {
    for (std::size_t n = 1; n <= 255; ++n) {
        std::string text;
        for (std::size_t i = 0; i < n; ++i) text += static_cast<char>('1' + (i * 7 + n) % 9);
        EXPECT_EQ(text, TextOf(Parsed<TypeParam>(text)));
        text[n / 2] = ':';
        EXPECT_TRUE(Parsed<TypeParam>(text).isNaN());
    }
}

TEST(BignumWideText, IsNaNForDigitsOfOtherScripts) {
    EXPECT_TRUE(Big(L"\u0661\u0662").isNaN());
    EXPECT_TRUE(Big(L"12345\uFF17").isNaN());
    EXPECT_TRUE(Big(L"\U00010031").isNaN());
}

// ---- To text ----

TYPED_TEST(BignumText, IsWrittenIntoRoomThatIsLargeEnough) {
    auto const written = [](char const* number, unsigned int size) {
        GuardedArray<TypeParam> room(size);
        std::fill_n(room.data(), size, TypeParam('#'));
        unsigned int const sizeBefore = size;
        bool const isWritten = Big(number).cast2s(room.data(), size);
        EXPECT_EQ(sizeBefore, size);
        std::basic_string<TypeParam> const text(room.data());
        return (isWritten ? "true " : "false ") + std::string(text.begin(), text.end());
    };
    EXPECT_EQ("true 12345", written("12345", 6));
    EXPECT_EQ("true 12345", written("-12345", 6));
    EXPECT_EQ("true 12345", written("12345", 60));
    EXPECT_EQ("false ", written("12345", 5));
    EXPECT_EQ("false ", written("12345", 2));
    EXPECT_EQ("true 0", written("0", 2));
    EXPECT_EQ("true 123456789012345678", written("123456789012345678", 19));
    EXPECT_EQ("false ", written("123456789012345678", 18));
    EXPECT_EQ("true ", written("x", 9));      // NaN
    EXPECT_EQ("true ", written("12345", 1));  // on purpose
    EXPECT_EQ("true ", written("5", 1));
}

TYPED_TEST(BignumText, IsNotWrittenWithoutRoom) {
    unsigned int size = 10;
    EXPECT_FALSE(Big("1").cast2s(static_cast<TypeParam*>(nullptr), size));
    EXPECT_FALSE(Big().cast2s(static_cast<TypeParam*>(nullptr), size));
    TypeParam ch = 'x';
    size = 0;
    EXPECT_FALSE(Big("1").cast2s(&ch, size));
    EXPECT_FALSE(Big().cast2s(&ch, size));
    EXPECT_EQ(TypeParam('x'), ch);
}

TYPED_TEST(BignumText, OfADamagedNumberIsEmpty) {
    for (int const place : {0, 1, 7, 8, 11}) {
        Big v("123456789012");
        v.digits[place] = 10;
        TypeParam room[20] = {'x'};
        unsigned int size = 20;
        EXPECT_FALSE(v.cast2s(room, size));
        EXPECT_EQ(TypeParam(), room[0]);
        qor_text::CQorStringT<TypeParam> const text = v;
        EXPECT_TRUE(text.IsEmpty());
    }
}

TYPED_TEST(BignumText, ComesAsAStringWithoutSign) {
    qor_text::CQorStringT<TypeParam> text = Big("12345678901234567890123");
    EXPECT_EQ(Text<TypeParam>("12345678901234567890123"), text);
    text = Big("-5").operator qor_text::CQorStringT<TypeParam>();
    EXPECT_EQ(Text<TypeParam>("5"), text);
    qor_text::CQorStringT<TypeParam> const none = Big();
    EXPECT_TRUE(none.IsEmpty());
}

TEST(BignumString, IsTheSameInEveryLocale) {
    for (char const* name : {"C", "C.UTF-8"}) {
        ScopedLocale const locale(name);
        EXPECT_EQ("1234567890123", TextOf(Big(L"1234567890123")));
    }
}

// ---- Comparison ----

TEST(BignumCompare, OnPurposeSeesMagnitudesOnly) {
    struct {
        char const *a, *b;
        int result;
    } const kCases[] = {
        {"5", "5", 0},
        {"-5", "3", 1},
        {"-5", "5", 0},
        {"5", "-5", 0},
        {"3", "-5", -1},
        {"0", "0", 0},
        {"99999999", "100000000", -1},
        {"100000000", "99999999", 1},
        {"12345678901234567890", "12345678901234567891", -1},
        {"22345678901234567890", "12345678901234567891", 1},
        {"x", "x", 0},  // NaN
        {"x", "0", -1},
        {"-5", "x", 1},
    };
    for (auto const& c : kCases) {
        Big const a(c.a);
        Big const b(c.b);
        EXPECT_EQ(c.result, a.compare(b)) << c.a << ' ' << c.b;
        EXPECT_EQ(c.result < 0, a < b) << c.a << ' ' << c.b;
        EXPECT_EQ(c.result == 0, a == b) << c.a << ' ' << c.b;
    }
}

TEST(BignumCompare, FindsANumberEqualToItself) {
    Big const v("7");
    Big const nan;
    EXPECT_EQ(0, v.compare(v));
    EXPECT_EQ(0, nan.compare(nan));
}

TEST(BignumCompare, OnPurposeSeesDoublesWithOtherOperators) {
    EXPECT_TRUE(Big("-5") > Big("3"));
    EXPECT_TRUE(Big("3") <= Big("-5"));
    EXPECT_FALSE(Big("5") > Big("-5"));
    EXPECT_FALSE(Big("5") > Big());
    EXPECT_FALSE(Big("5") <= Big());
    Big const large("10000000000000000000000");
    EXPECT_FALSE(large + Big("1") > large);  // they are one double
    EXPECT_TRUE(large < large + Big("1"));
}

TEST(BignumCompare, TakesDigitsAboveTopForZeros) {
    Big v("12345678901234567890");
    v.top = 4;
    EXPECT_EQ(0, v.compare(Big("67890")));
    EXPECT_EQ(-1, v.compare(Big("12345678901234567890")));
}

}  // namespace
