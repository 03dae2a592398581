// Texts to whole numbers, and the number at the end of a text.

#include <qorutils/formats/number_text.h>

#include <cerrno>
#include <climits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "support/numeric_locale.h"
#include "support/reference_scan.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

namespace {

using qor_formats::DoIncPtno;
using qor_formats::StringToInt;
using qor_formats::StringToInt64;
using qor_formats::StringToLong;
using qor_formats::StringToShort;
using qor_formats::StringToUint;
using qor_text::CQorStringT;

constexpr long long kHighWord = 0x1234567800000000;

long long WithHighWord(int low) {
    return kHighWord | static_cast<unsigned int>(low);
}

// ---- Texts to whole numbers ----

struct IntegerCase {
    wchar_t const* text;
    int value;
    unsigned int asUnsigned;
    int asShort;
    bool isRangeError;
};

void ExpectRead(IntegerCase const& c) {
    int i = 99;
    long l = 99;
    unsigned int u = 99;
    short h = 99;
    long long ll = kHighWord | 99;
    errno = 0;
    EXPECT_EQ(1, StringToInt(c.text, i)) << c.text;
    EXPECT_EQ(c.isRangeError ? ERANGE : 0, errno) << c.text;
    EXPECT_EQ(1, StringToLong(c.text, l)) << c.text;
    EXPECT_EQ(1, StringToUint(c.text, u)) << c.text;
    EXPECT_EQ(1, StringToShort(c.text, h)) << c.text;
    EXPECT_EQ(1, StringToInt64(c.text, ll)) << c.text;
    EXPECT_EQ(c.value, i) << c.text;
    EXPECT_EQ(c.value, l) << c.text;
    EXPECT_EQ(c.asUnsigned, u) << c.text;
    EXPECT_EQ(c.asShort, h) << c.text;
    EXPECT_EQ(WithHighWord(c.value), ll) << c.text;
}

TEST(IntegerParsers, GiveWhatWholeNumberArithmeticGives) {
    IntegerCase const cases[] = {
#include "formats/data/integer_text.inc"
    };
    for (auto const& c : cases) ExpectRead(c);
}

TEST(IntegerParsers, SkipWhiteSpaceAndIgnoreTheRest) {
    IntegerCase const cases[] = {
        {L" 42x", 42, 42, 42, false},
        {L"\t\n\v\f\r 7", 7, 7, 7, false},
        {L"1 2", 1, 1, 1, false},
        {L"-1", -1, UINT_MAX, -1, false},
        {L"+5", 5, 5, 5, false},
        {L"0x1F", 0, 0, 0, false},     // no hexadecimal numbers
        {L"010", 10, 10, 10, false},   // nor octal ones
        {L"1,000", 1, 1, 1, false},    // nor groups
        {L"5\u0664", 5, 5, 5, false},  // nor other digits
        {L"65537", 65537, 65537, 1, false},
        {L"9999999999", INT_MAX, UINT_MAX, -1, true},
        {L"-9999999999", INT_MIN, UINT_MAX, 0, true},
    };
    for (auto const& c : cases) ExpectRead(c);
}

template <typename T>
void ExpectFailure(int (*parse)(wchar_t const*, T&), wchar_t const* text) {
    T value = 99;
    EXPECT_EQ(0, parse(text, value)) << text;
    EXPECT_EQ(T(0), value) << text;
}

TEST(IntegerParsers, FailWithZeroWhereNoNumberBegins) {
    static wchar_t const* const kTexts[] = {nullptr, L"",    L" ",   L"x42", L"-",  L"+",
                                            L"- 5",  L"+-5", L"--5", L".5",  L",5", L"\u0664"};
    for (wchar_t const* const text : kTexts) {
        ExpectFailure(StringToInt, text);
        ExpectFailure(StringToLong, text);
        ExpectFailure(StringToUint, text);
        ExpectFailure(StringToShort, text);
    }
}

// On purpose: of the 64 bits, success sets only half.
TEST(StringToInt64, KeepsTheHighWordOnSuccessAndClearsItOnFailure) {
    long long value = kHighWord | 99;
    EXPECT_EQ(1, StringToInt64(L"-1", value));
    EXPECT_EQ(kHighWord | 0xFFFFFFFF, value);
    EXPECT_EQ(1, StringToInt64(L"4294967296", value));
    EXPECT_EQ(kHighWord | 0x7FFFFFFF, value);
    EXPECT_EQ(0, StringToInt64(L"x", value));
    EXPECT_EQ(0, value);
    value = -1;
    EXPECT_EQ(1, StringToInt64(L"5", value));
    EXPECT_EQ(static_cast<long long>(0xFFFFFFFF00000005u), value);
    EXPECT_EQ(0, StringToInt64(nullptr, value));
    EXPECT_EQ(0, value);
}

std::wstring Zeros(int count) {
    return std::wstring(static_cast<std::size_t>(count), L'0');
}

TEST(StringToInt64, ReadsNoMoreThan64Characters) {
    struct {
        std::wstring text;
        int value;
    } const cases[] = {
        {Zeros(63) + L"5", 5},           {Zeros(64) + L"5", 0},
        {L" \t" + Zeros(63) + L"56", 5},  // white space does not count
        {L"-" + Zeros(62) + L"56", -5},   // the sign does
        {L"+" + Zeros(63) + L"5", 0},
    };
    for (auto const& c : cases) {
        long long value = kHighWord;
        EXPECT_EQ(1, StringToInt64(c.text.c_str(), value)) << c.text;
        EXPECT_EQ(WithHighWord(c.value), value) << c.text;
        int narrow = 99;
        EXPECT_EQ(1, StringToInt(c.text.c_str(), narrow));
        EXPECT_EQ(c.text.back() - L'0', std::abs(narrow) % 10);  // unlike this one
    }
}

// Returned 1 or 0, stored value, errno.
template <typename T>
struct Outcome {
    int returned;
    T value;
    int error;

    bool operator==(Outcome const& o) const {
        return returned == o.returned && value == o.value && error == o.error;
    }
};

template <typename T>
std::ostream& operator<<(std::ostream& out, Outcome<T> const& o) {
    return out << o.returned << ", " << o.value << ", errno " << o.error;
}

// The C library leaves the value alone where it fails. Where long is wider than 32 bits it reports
// other errors than here.
template <typename T>
Outcome<T> Reference(int (*scan)(wchar_t const*, T&), wchar_t const* text) {
    T value = 0;
    errno = 0;
    bool const isRead = scan(text, value) == 1;
    return {isRead, isRead ? value : T(0), reference_scan::kIsNative ? errno : 0};
}

template <typename T>
Outcome<T> Read(int (*parse)(wchar_t const*, T&), wchar_t const* text) {
    T value = 99;
    errno = 0;
    int const returned = parse(text, value);
    return {returned, value, reference_scan::kIsNative ? errno : 0};
}

int StringToInt64Low(wchar_t const* text, int& low) {
    long long value = kHighWord;
    int const returned = StringToInt64(text, value);
    EXPECT_EQ(returned == 1 ? kHighWord >> 32 : 0, value >> 32) << text;
    low = static_cast<int>(value);
    return returned;
}

void ExpectAsTheCLibrary(std::wstring const& text) {
    wchar_t const* const s = text.c_str();
    ASSERT_EQ(Reference(reference_scan::Int, s), Read(StringToInt, s)) << text;
    ASSERT_EQ(Reference(reference_scan::Long, s), Read(StringToLong, s)) << text;
    ASSERT_EQ(Reference(reference_scan::Uint, s), Read(StringToUint, s)) << text;
    ASSERT_EQ(Reference(reference_scan::Short, s), Read(StringToShort, s)) << text;
    ASSERT_EQ(Reference(reference_scan::Int64Low, s), Read(StringToInt64Low, s)) << text;
}

void ExpectAsTheCLibraryForManyTexts() {
    static wchar_t const kCharacters[] = L"00112345678999 \t-+,.x\u2003\u00A0\u0660\u0664\uFF15";
    constexpr std::size_t kCount = sizeof kCharacters / sizeof kCharacters[0] - 1;
    std::minstd_rand random(3);
    for (int i = 0; i < 6000; ++i) {
        std::wstring text;
        std::size_t const length = random() % (i % 50 == 0 ? 90 : 14);
        // Often digits only, as what is drawn at large ends soon.
        std::size_t const choice = i % 3 == 0 ? kCount : 14;
        if (i % 5 == 1) text += L" \t-+\u2003\u0663"[random() % 6];
        while (text.size() < length) text += kCharacters[random() % choice];
        ASSERT_NO_FATAL_FAILURE(ExpectAsTheCLibrary(text));
    }
}

TEST(IntegerParsers, AgreeWithTheCLibrary) {
    for (char const* const name : {"C", "C.UTF-8"}) {
        ScopedLocale const locale(name);
        ExpectAsTheCLibraryForManyTexts();
    }
}

TEST(IntegerParsers, AgreeWithTheCLibraryInALocaleWithItsOwnDigits) {
    NumericLocale const locale;
    ExpectAsTheCLibraryForManyTexts();
}

TEST(IntegerParsers, AgreeWithTheCLibraryForVeryLongTexts) {
    for (int const length : {63, 64, 65, 1000, 100000}) {
        ExpectAsTheCLibrary(std::wstring(static_cast<std::size_t>(length), L' ') + L"7");
        ExpectAsTheCLibrary(Zeros(length) + L"7");
        ExpectAsTheCLibrary(L"-" + std::wstring(static_cast<std::size_t>(length), L'9'));
    }
}

TEST(IntegerParsers, AgreeWithTheCLibraryForElementsThatAreNoCharacters) {
    for (wchar_t const odd :
         {wchar_t(-1), wchar_t(0x80000000u), wchar_t(0x110000), wchar_t(0xD800)})
        for (wchar_t const* const rest : {L"", L"7"}) {
            ExpectAsTheCLibrary(odd + std::wstring(rest));
            ExpectAsTheCLibrary(L" -5" + std::wstring(1, odd) + rest);
        }
}

TEST(StringToInt64, ReadsTheDigitsOfTheLocale) {
    NumericLocale const locale;
    long long value = kHighWord;
    EXPECT_EQ(1, StringToInt64(L" -\u0664\u0662x", value));
    EXPECT_EQ(WithHighWord(-42), value);
    errno = 0;
    EXPECT_EQ(
        1, StringToInt64(L"\u0669\u0669\u0669\u0669\u0669\u0669\u0669\u0669\u0669\u0669", value));
    EXPECT_EQ(WithHighWord(INT_MAX), value);
    EXPECT_EQ(ERANGE, errno);
    int narrow = 99;
    EXPECT_EQ(0, StringToInt(L"\u0664", narrow));
}

TEST(IntegerParsers, SkipWhiteSpaceOfTheLocale) {
    int value = 99;
    {
        ScopedLocale const locale("C.UTF-8");
        EXPECT_EQ(1, StringToInt(L"\u2003\u300042", value));
        EXPECT_EQ(42, value);
    }
    ScopedLocale const locale("C");
    EXPECT_EQ(0, StringToInt(L"\u200342", value));
    EXPECT_EQ(0, value);
}

// ---- The number at the end of a text ----

struct IncrementCase {
    wchar_t const* text;
    int increment;
    wchar_t const* expected;  // null: fails
};

void ExpectIncrement(IncrementCase const& c) {
    CQorStringT<wchar_t> text(c.text);
    int const returned = DoIncPtno(text, c.increment);
    EXPECT_EQ(c.expected != nullptr, returned != 0) << c.text << ' ' << c.increment;
    EXPECT_EQ(c.expected != nullptr ? c.expected : c.text, Content(text)) << c.increment;
    EXPECT_TRUE(IsTerminated(text));
}

TEST(DoIncPtno, GivesWhatWholeNumberArithmeticGives) {
    IncrementCase const cases[] = {
#include "formats/data/increments.inc"
    };
    for (auto const& c : cases) ExpectIncrement(c);
}

TEST(DoIncPtno, KeepsLeadingZeros) {
    IncrementCase const cases[] = {
        {L"P0099", 1, L"P0100"},
        {L"P99", 1, L"P100"},
        {L"P", 5, L"P5"},
        {L"", 5, L"5"},
        {L"P3", -3, L"P0"},
        {L"P03", -3, L"P00"},
        {L"P10", -1, L"P9"},  // nothing replaces a digit that goes
        {L"P010", -1, L"P09"},
        {L"P0", 5, L"P5"},  // zeros alone are leading ones
        {L"P000", 5, L"P005"},
        {L"P000", 100, L"P00100"},  // on purpose: one zero at most gives way
        {L"12P7x", 1, L"12P7x1"},
        {L"1P2", 1, L"1P3"},
        {L"P-3", 1, L"P-4"},  // a sign is part of the text
        {L"P\u0663", 1, L"P\u06631"},
        {L"7", INT_MAX, L"2147483654"},
        {L"2147483648", INT_MIN, L"0"},
    };
    for (auto const& c : cases) ExpectIncrement(c);
}

TEST(DoIncPtno, FailsAndLeavesTheTextAlone) {
    IncrementCase const cases[] = {
        {L"P3", 0, nullptr},
        {L"P3", -5, nullptr},
        {L"P", -1, nullptr},
        {L"P000", -1, nullptr},
        {L"2147483647", INT_MIN, nullptr},
    };
    for (auto const& c : cases) ExpectIncrement(c);
}

TEST(DoIncPtno, TakesUpTo255DigitsBehindLeadingZeros) {
    std::wstring const nines(255, L'9');
    ExpectIncrement({(L"P" + nines).c_str(), 1, (L"P1" + Zeros(255)).c_str()});
    ExpectIncrement({(L"P00" + nines).c_str(), 1, (L"P01" + Zeros(255)).c_str()});
    ExpectIncrement({(L"P" + nines).c_str(), -1, (L"P" + nines.substr(1) + L"8").c_str()});
    ExpectIncrement({(L"P" + Zeros(300) + L"1").c_str(), 1, (L"P" + Zeros(300) + L"2").c_str()});
    ExpectIncrement({(L"P1" + Zeros(255)).c_str(), 1, nullptr});
    ExpectIncrement({(L"P1" + Zeros(255)).c_str(), -1, nullptr});
    ExpectIncrement({(L"P01" + Zeros(255)).c_str(), 1, nullptr});
}

TEST(DoIncPtno, CarriesAndBorrowsThroughLongNumbers) {
    std::wstring const nines(254, L'9');
    struct {
        std::wstring text;
        int increment;
        std::wstring expected;
    } const cases[] = {
        {L"P" + nines, 1, L"P1" + Zeros(254)},
        {L"P0" + nines, 1, L"P1" + Zeros(254)},
        {L"P1" + Zeros(254), -1, L"P" + nines},
        {L"P01" + Zeros(254), -1, L"P0" + nines},  // nothing replaces the digit that goes
        {L"P9" + nines, INT_MAX, L"P1" + Zeros(245) + L"2147483646"},
        {L"P09" + nines, INT_MAX, L"P1" + Zeros(245) + L"2147483646"},
        {L"P1" + Zeros(254), INT_MIN, L"P" + nines.substr(10) + L"7852516352"},
        {L"P1" + Zeros(254), INT_MAX, L"P1" + Zeros(244) + L"2147483647"},  // the sign's place: 0
        {L"P" + Zeros(300) + L"1", -1, L"P" + Zeros(301)},
        {L"P" + Zeros(256), 10, L"P" + Zeros(255) + L"10"},
    };
    for (auto const& c : cases) ExpectIncrement({c.text.c_str(), c.increment, c.expected.c_str()});
    ExpectIncrement({(L"P" + Zeros(256)).c_str(), -1, nullptr});
}

TEST(DoIncPtno, LeavesCopiesOfTheTextAlone) {
    CQorStringT<wchar_t> text(L"P9");
    CQorStringT<wchar_t> const copy(text);
    EXPECT_NE(0, DoIncPtno(text, 1));
    EXPECT_EQ(L"P10", Content(text));
    EXPECT_EQ(L"P9", Content(copy));
}

TEST(DoIncPtno, SeesCharactersBehindZeros) {
    CQorStringT<wchar_t> text(L"1\0002", 3);
    EXPECT_NE(0, DoIncPtno(text, 1));
    EXPECT_EQ(std::wstring(L"1\0003", 3), Content(text));
    EXPECT_EQ(0, DoIncPtno(text, -4));
    EXPECT_EQ(std::wstring(L"1\0003", 3), Content(text));
}

TEST(DoIncPtno, TakesAZeroAtTheEndForNoDigit) {
    CQorStringT<wchar_t> text(L"12\0", 3);
    EXPECT_EQ(0, DoIncPtno(text, -1));
    EXPECT_NE(0, DoIncPtno(text, 5));
    EXPECT_EQ(std::wstring(L"12\0"
                           L"5",
                           4),
              Content(text));
}

}  // namespace
