#include <qorutils/formats/number_text.h>

#include <cfenv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "support/numeric_locale.h"
#include "support/scoped_locale.h"
#include "support/scoped_rounding.h"
#include "support/text_literal.h"

namespace {

using qor_formats::DoubleToString;
using qor_formats::Int64ToString;
using qor_formats::IntToString;
using qor_formats::ReplaceCommasWithDecPt;
using qor_formats::StringToDouble;
using qor_formats::UIntToString;
using qor_text::CQorStringT;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::wstring Blanks(int count) {
    return std::wstring(static_cast<std::size_t>(count), L' ');
}

double FromBits(std::uint64_t bits) {
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

std::wstring Printed(double value, int decimals) {
    wchar_t text[400];
    int const length = std::swprintf(text, 400, L"%.*lf", decimals, value);
    EXPECT_GT(length, 0);
    return text;
}

std::wstring WithoutZeros(std::wstring text) {
    while (text.back() == L'0') text.pop_back();
    if (text.back() == L'.') text.pop_back();
    return text;
}

// ---- Whole numbers to text ----

TEST(IntToString, WritesEveryKindOfNumber) {
    struct {
        int value;
        wchar_t const* text;
    } const cases[] = {
        {0, L"0"},
        {7, L"7"},
        {-7, L"-7"},
        {10, L"10"},
        {-100, L"-100"},
        {1234567890, L"1234567890"},
        {INT_MAX, L"2147483647"},
        {INT_MIN, L"-2147483648"},
    };
    for (auto const& c : cases) EXPECT_EQ(c.text, Content(IntToString(c.value)));
}

TEST(IntToString, GivesATerminatedStringOfExactlyItsLength) {
    CQorStringT<wchar_t> const text = IntToString(-42);
    EXPECT_EQ(3, text.GetLength());
    EXPECT_EQ(3, text.GetAllocLength());
    EXPECT_TRUE(IsTerminated(text));
}

TEST(IntToString, AgreesWithTheCLibrary) {
    std::minstd_rand random(1);
    for (int i = 0; i < 2000; ++i) {
        int const value = static_cast<int>(random() * 3u) >> (i % 31);
        wchar_t expected[16];
        std::swprintf(expected, 16, L"%d", value);
        ASSERT_EQ(expected, Content(IntToString(value)));
    }
}

TEST(UIntToString, WritesEveryKindOfNumber) {
    EXPECT_EQ(L"0", Content(UIntToString(0)));
    EXPECT_EQ(L"9", Content(UIntToString(9)));
    EXPECT_EQ(L"2147483648", Content(UIntToString(2147483648u)));
    EXPECT_EQ(L"4294967295", Content(UIntToString(UINT_MAX)));
}

TEST(Int64ToString, RightAlignsTheLow32BitsAmong64Characters) {
    struct {
        long long value;
        wchar_t const* digits;
    } const cases[] = {
        {0, L"0"},
        {-1, L"-1"},
        {2147483647, L"2147483647"},
        {2147483648, L"-2147483648"},  // on purpose: read as a signed number
        {4294967296, L"0"},            // on purpose: the high 32 bits are lost
        {4294967297, L"1"},
        {LLONG_MAX, L"-1"},
        {LLONG_MIN, L"0"},
        {1234567890123456789, L"2112454933"},
    };
    for (auto const& c : cases) {
        std::wstring const digits(c.digits);
        int const blanks = 64 - static_cast<int>(digits.size());
        EXPECT_EQ(Blanks(blanks) + digits, Content(Int64ToString(c.value))) << c.value;
    }
}

// ---- Doubles to text ----

TEST(DoubleToString, GivesWhatDecimalArithmeticGives) {
    ScopedLocale const plain("C");
    struct {
        std::uint64_t bits;
        int precision;
        bool isTrimmed;
        wchar_t const* text;
    } const cases[] = {
#include "formats/data/double_text.inc"
    };
    for (auto const& c : cases) {
        double const value = FromBits(c.bits);
        auto const text = c.isTrimmed ? DoubleToString(value) : DoubleToString(value, c.precision);
        EXPECT_EQ(c.text, Content(text)) << std::hexfloat << value << ' ' << c.precision;
    }
}

TEST(DoubleToString, TrimsZerosOfTwelveDecimals) {
    ScopedLocale const plain("C");
    struct {
        double value;
        wchar_t const* text;
    } const cases[] = {
        {1.5, L"1.5"},
        {2.0, L"2"},
        {0.1 + 0.2, L"0.3"},
        {1e-13, L"0"},
        {-1e-13, L"-0"},  // the sign of what was rounded away stays
        {100.0, L"100"},  // zeros in front of the point stay
        {0.0, L"0"},
        {-0.0, L"-0"},
        {1e-12, L"0.000000000001"},
        {0.9999999999999, L"1"},  // carried over the point
        {kInfinity, L"inf"},
        {-kInfinity, L"-inf"},
        {kNan, L"nan"},
    };
    for (auto const& c : cases) EXPECT_EQ(c.text, Content(DoubleToString(c.value)));
}

TEST(DoubleToString, WritesTheLargestDoubleWhole) {
    std::wstring const text = Content(DoubleToString(-std::numeric_limits<double>::max()));
    EXPECT_EQ(310u, text.substr(0, text.find_first_of(L".,")).size());
    EXPECT_EQ(L"-17976931348623157", text.substr(0, 18));
}

TEST(DoubleToString, RoundsHalfAwayFromZero) {
    ScopedLocale const plain("C");
    struct {
        double value;
        int precision;
        wchar_t const* text;
    } const cases[] = {
        {0.125, 2, L"0.13"},
        {-0.125, 2, L"-0.13"},
        {2.675, 2, L"2.67"},  // stored a little below
        {-2.5, 0, L"-3"},
        {2.5, 0, L"3"},
        {0.5, 0, L"1"},
        {-0.5, 0, L"-1"},
        {1.0, 0, L"1"},
        {0.49999999999999994, 0, L"0"},  // adding a half would round it up
        {-0.3, 0, L"-0"},
        {5.0, 1, L"5.0"},
        {0.25, 1, L"0.3"},
        {9.96, 1, L"10.0"},
        {0.0, 3, L"0.000"},
        {-0.0, 3, L"0.000"},               // zero has no sign
        {-0.001, 2, L"-0.00"},             // but what is rounded to it has
        {0.5, 16, L"0.5000000000000001"},  // the step away from zero shows
        {1.0, 12, L"1.000000000000"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.text, Content(DoubleToString(c.value, c.precision))) << c.value;
}

TEST(DoubleToString, RoundsNoNumberForOtherPrecisions) {
    ScopedLocale const plain("C");
    EXPECT_EQ(L"1.22999999999999998224", Content(DoubleToString(1.23, 20)));
    EXPECT_EQ(L"0.12500000000000000", Content(DoubleToString(0.125, 17)));
}

// On purpose: as if none had been asked for.
TEST(DoubleToString, GivesSixDecimalsForANegativePrecision) {
    ScopedLocale const plain("C");
    EXPECT_EQ(L"1.500000", Content(DoubleToString(1.5, -1)));
    EXPECT_EQ(L"0.333333", Content(DoubleToString(1.0 / 3, INT_MIN)));
    EXPECT_EQ(L"nan", Content(DoubleToString(kNan, -1)));
}

// On purpose: infinities become NaN, and NaN becomes zero, where numbers are rounded first.
TEST(DoubleToString, RoundsInfinitiesToNanAndNanToZero) {
    ScopedLocale const plain("C");
    for (int const precision : {1, 2, 12, 16}) {
        EXPECT_EQ(L"nan", Content(DoubleToString(kInfinity, precision)));
        EXPECT_EQ(L"nan", Content(DoubleToString(-kInfinity, precision)));
        EXPECT_EQ(Printed(0.0, precision), Content(DoubleToString(kNan, precision)));
    }
    for (int const precision : {0, 17, 5000}) {
        EXPECT_EQ(L"inf", Content(DoubleToString(kInfinity, precision)));
        EXPECT_EQ(L"-inf", Content(DoubleToString(-kInfinity, precision)));
        EXPECT_EQ(L"nan", Content(DoubleToString(kNan, precision)));
    }
}

TEST(DoubleToString, IsEmptyFor2048CharactersAndMore) {
    EXPECT_EQ(2047, DoubleToString(1.5, 2045).GetLength());
    EXPECT_TRUE(DoubleToString(1.5, 2046).IsEmpty());
    EXPECT_TRUE(DoubleToString(10.5, 2045).IsEmpty());
    EXPECT_TRUE(DoubleToString(1.5, INT_MAX).IsEmpty());
}

TEST(DoubleToString, AgreesWithTheCLibraryForEveryMagnitude) {
    ScopedLocale const plain("C");
    std::mt19937_64 random(2);
    for (int i = 0; i < 4000; ++i) {
        // Exponents around those where digits are computed here, and now and then any.
        std::uint64_t const exponent = i % 8 == 0 ? random() % 2047 : 1005 + random() % 90;
        std::uint64_t const mantissa = random() >> 12 & ~std::uint64_t{0} << random() % 52;
        double const value = FromBits((random() & 1) << 63 | exponent << 52 | mantissa);
        ASSERT_EQ(WithoutZeros(Printed(value, 12)), Content(DoubleToString(value)));
    }
}

TEST(DoubleToString, RoundsTiesOfTheThirteenthDecimalToEven) {
    ScopedLocale const plain("C");
    for (int numerator = 1; numerator < 40000; numerator += 2) {
        double const value = numerator / 8192.0;  // thirteen decimals, the last one 5
        ASSERT_EQ(WithoutZeros(Printed(value, 12)), Content(DoubleToString(value)));
    }
}

TEST(DoubleToString, RoundsAsTheProgramSays) {
    ScopedLocale const plain("C");
    ScopedRounding const upward(FE_UPWARD);
    EXPECT_EQ(L"0.333333333334", Content(DoubleToString(FromBits(0x3FD5555555555555u))));
}

// ---- Text to doubles ----

TEST(StringToDouble, ReadsWhatBeginsTheText) {
    ScopedLocale const plain("C");
    struct {
        wchar_t const* text;
        double value;
    } const cases[] = {
        {L"3.14", 3.14},
        {L"3,14", 3.14},
        {L"1,234,5", 1.234},  // only the first comma is a point
        {L"12.5abc", 12.5},
        {L" \t\n-7", -7},
        {L"+.5", 0.5},
        {L"5.", 5},
        {L"1e3", 1000},
        {L"0x10", 16},
        {L"0.3000000000004", 0.3},  // rounded to twelve decimals
        {L"0.0000000000005", 1e-12},
        {L"-0.0000000000005", -1e-12},
        {L"0.0000000000004", 0},
        {L"1e295", 1e295},
        {L"inf", kInfinity},
        {L"-inf", -kInfinity},
        {L"1e309", kInfinity},
        {L"1e300", kInfinity},  // on purpose: rounding overflows
    };
    for (auto const& c : cases) {
        double value = 99;
        EXPECT_EQ(1, StringToDouble(c.text, value)) << c.text;
        EXPECT_EQ(c.value, value) << c.text;
    }
}

TEST(StringToDouble, KeepsTheSignOfZero) {
    double value = 99;
    EXPECT_EQ(1, StringToDouble(L"-0", value));
    EXPECT_TRUE(std::signbit(value));
    EXPECT_EQ(1, StringToDouble(L"-1e-13", value));
    EXPECT_TRUE(std::signbit(value));
    EXPECT_EQ(1, StringToDouble(L"0", value));
    EXPECT_FALSE(std::signbit(value));
}

TEST(StringToDouble, ReadsNan) {
    double value = 99;
    EXPECT_EQ(1, StringToDouble(L"nan", value));
    EXPECT_TRUE(std::isnan(value));
}

TEST(StringToDouble, FailsWithZeroWhereNoNumberBegins) {
    for (wchar_t const* const text : {L"", L" ", L"x", L".", L",", L"-", L"e5", L"- 5", L",,5"}) {
        double value = 99;
        EXPECT_EQ(0, StringToDouble(text, value)) << text;
        EXPECT_EQ(0.0, value) << text;
        EXPECT_FALSE(std::signbit(value)) << text;
    }
}

TEST(StringToDouble, EndsAtAZeroAmongTheCharacters) {
    double value = 99;
    EXPECT_EQ(1, StringToDouble(CQorStringT<wchar_t>(L"1\0,5", 4), value));
    EXPECT_EQ(1.0, value);
    EXPECT_EQ(0, StringToDouble(CQorStringT<wchar_t>(L"\0001", 2), value));
}

TEST(StringToDouble, LeavesTheTextAlone) {
    CQorStringT<wchar_t> const text(L"3,14");
    double value = 99;
    EXPECT_EQ(1, StringToDouble(text, value));
    EXPECT_EQ(L"3,14", Content(text));
}

// ---- Another locale ----

TEST(NumberText, FollowsTheLocaleOfTheProcess) {
    NumericLocale const locale;
    EXPECT_EQ(L"1,5", Content(DoubleToString(1.5)));
    EXPECT_EQ(L"2,", Content(DoubleToString(2.0)));  // on purpose: only '.' is removed
    EXPECT_EQ(L"100,", Content(DoubleToString(100.0)));
    EXPECT_EQ(L"0,13", Content(DoubleToString(0.125, 2)));
    EXPECT_EQ(L"-3", Content(DoubleToString(-2.5, 0)));
    EXPECT_EQ(L"0,12500000000000000", Content(DoubleToString(0.125, 17)));
    EXPECT_EQ(L"-42", Content(IntToString(-42)));
    EXPECT_EQ(Blanks(62) + L"\u0664\u0662", Content(Int64ToString(42)));

    double value = 99;
    EXPECT_EQ(1, StringToDouble(L"3.14", value));
    EXPECT_EQ(3.0, value);
    EXPECT_EQ(1, StringToDouble(L"3,14", value));  // on purpose: its comma is made a point
    EXPECT_EQ(3.0, value);
    EXPECT_EQ(1, StringToDouble(L"1,5,5", value));
    EXPECT_EQ(1.0, value);
}

TEST(NumberText, FollowsTheLocaleOfTheThread) {
    NumericLocale const process;
    locale_t const plain = newlocale(LC_ALL_MASK, "C", nullptr);
    locale_t const before = uselocale(plain);
    std::wstring const fixed = Content(DoubleToString(1.5));
    std::wstring const field = Content(Int64ToString(42));
    double value = 99;
    int const returned = StringToDouble(L"3,14", value);
    uselocale(before);
    freelocale(plain);
    EXPECT_EQ(L"1.5", fixed);
    EXPECT_EQ(Blanks(62) + L"42", field);
    EXPECT_EQ(1, returned);
    EXPECT_EQ(3.14, value);
    EXPECT_EQ(L"1,5", Content(DoubleToString(1.5)));
}

// ---- Commas ----

TEST(ReplaceCommasWithDecPt, ReplacesEveryComma) {
    EXPECT_EQ(L".1.2..", Content(ReplaceCommasWithDecPt(L",1,2,,")));
    EXPECT_EQ(L"", Content(ReplaceCommasWithDecPt(L"")));
    EXPECT_EQ(L"1.5", Content(ReplaceCommasWithDecPt(L"1.5")));
}

TEST(ReplaceCommasWithDecPt, ReplacesCommasBehindZeros) {
    EXPECT_EQ(std::wstring(L"1\0.", 3),
              Content(ReplaceCommasWithDecPt(CQorStringT<wchar_t>(L"1\0,", 3))));
}

TEST(ReplaceCommasWithDecPt, SharesATextWithoutCommasAndCopiesOthers) {
    CQorStringT<wchar_t> const plain(L"12.5");
    EXPECT_EQ(plain.c_str(), ReplaceCommasWithDecPt(plain).c_str());
    CQorStringT<wchar_t> const text(L"12,5");
    EXPECT_EQ(L"12.5", Content(ReplaceCommasWithDecPt(text)));
    EXPECT_EQ(L"12,5", Content(text));
}

}  // namespace
