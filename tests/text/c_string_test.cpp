#include <qorutils/text/c_string.h>

#include <locale.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cwctype>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/scoped_locale.h"
#include "support/turkish_locale.h"

namespace {

// ---- Either character type ----

bool WriteInteger(int value, char* buf, int size, int radix) {
    return itoa_s_impl(value, buf, size, radix);
}
bool WriteInteger(int value, wchar_t* buf, int size, int radix) {
    return itow_s_impl(value, buf, size, radix);
}

char* WriteAnyInteger(int value, char* buf, int radix) {
    return _itoa(value, buf, radix);
}
wchar_t* WriteAnyInteger(int value, wchar_t* buf, int radix) {
    return _itow(value, buf, radix);
}

char* Reverse(char* s) {
    return strrev(s);
}
wchar_t* Reverse(wchar_t* s) {
    return _wcsrev(s);
}

template <typename T>
std::basic_string<T> Widened(std::string const& text) {
    std::basic_string<T> widened;
    for (char const c : text) widened += static_cast<T>(c);
    return widened;
}

template <typename T>
std::basic_string<T> Content(GuardedArray<T> const& array) {
    return std::basic_string<T>(array.data(), array.size() - 1);
}

struct Integer {
    int value;
    int radix;
    char const* text;
};

Integer const kIntegers[] = {
    {0, 2, "0"},
    {0, 10, "0"},
    {0, 36, "0"},
    {1, 2, "1"},
    {255, 2, "11111111"},
    {-1, 2, "11111111111111111111111111111111"},
    {INT_MIN, 2, "10000000000000000000000000000000"},
    {INT_MAX, 2, "1111111111111111111111111111111"},
    {5, 3, "12"},
    {8, 8, "10"},
    {-1, 8, "37777777777"},
    {INT_MIN, 8, "20000000000"},
    {-1, 9, "12068657453"},
    {7, 10, "7"},
    {10, 10, "10"},
    {-42, 10, "-42"},
    {-1, 10, "-1"},
    {INT_MAX, 10, "2147483647"},
    {INT_MIN, 10, "-2147483648"},
    {-1, 11, "1904440553"},  // only radix 10 has a sign
    {10, 16, "a"},
    {15, 16, "f"},
    {0x1234ABCD, 16, "1234abcd"},
    {-1, 16, "ffffffff"},
    {INT_MIN, 16, "80000000"},
    {INT_MAX, 16, "7fffffff"},
    {35, 36, "z"},
    {36, 36, "10"},
    {-1, 36, "1z141z3"},
    {36, 37, "{"},  // on purpose: what follows z
    {37, 37, "10"},
    {39, 40, "~"},
    {1599, 40, "~~"},
};

template <typename T>
class IntegerText : public testing::Test {};

template <typename T>
class Reversal : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(IntegerText, CharacterTypes, );
TYPED_TEST_SUITE(Reversal, CharacterTypes, );

}  // namespace

// ---- Integers ----

TYPED_TEST(IntegerText, HasTheDigitsOfTheRadix) {
    using T = TypeParam;
    for (Integer const& c : kIntegers) {
        T buffer[33];
        errno = EDOM;
        EXPECT_EQ(buffer, WriteAnyInteger(c.value, buffer, c.radix));
        EXPECT_EQ(Widened<T>(c.text), buffer) << c.value << " in radix " << c.radix;
        EXPECT_EQ(EDOM, errno);
    }
}

TYPED_TEST(IntegerText, OfExactlySizeCharactersIsWrittenWithItsTerminatorBehind) {
    using T = TypeParam;
    for (Integer const& c : kIntegers) {
        std::basic_string<T> const text = Widened<T>(c.text);
        GuardedArray<T> buffer(text.size() + 1);
        std::fill_n(buffer.data(), buffer.size(), T('?'));
        EXPECT_TRUE(WriteInteger(c.value, buffer.data(), static_cast<int>(text.size()), c.radix));
        EXPECT_EQ(text, buffer.data()) << c.value << " in radix " << c.radix;
    }
}

TYPED_TEST(IntegerText, LeavesWhatStandsBehindItsTerminator) {
    using T = TypeParam;
    for (Integer const& c : kIntegers) {
        std::basic_string<T> buffer(40, T('?'));
        EXPECT_TRUE(WriteInteger(c.value, &buffer[0], 39, c.radix));
        std::basic_string<T> const text = Widened<T>(c.text) + T();
        EXPECT_EQ(text + std::basic_string<T>(40 - text.size(), T('?')), buffer);
    }
}

TYPED_TEST(IntegerText, OfMoreThanSizeCharactersIsRefusedAndNothingWritten) {
    using T = TypeParam;
    for (Integer const& c : kIntegers) {
        int const length = static_cast<int>(Widened<T>(c.text).size());
        for (int const size : {length - 1, 0, -1, INT_MIN}) {
            std::basic_string<T> buffer(40, T('?'));
            errno = EDOM;
            EXPECT_FALSE(WriteInteger(c.value, &buffer[0], size, c.radix)) << c.text << size;
            EXPECT_EQ(std::basic_string<T>(40, T('?')), buffer);
            EXPECT_FALSE(WriteInteger(c.value, static_cast<T*>(nullptr), size, c.radix));
            EXPECT_EQ(EDOM, errno);
        }
    }
}

TYPED_TEST(IntegerText, WithoutBufferOnlySaysWhetherItWouldSucceed) {
    using T = TypeParam;
    T* const none = nullptr;
    EXPECT_TRUE(WriteInteger(1234, none, 4, 10));
    EXPECT_TRUE(WriteInteger(1234, none, INT_MAX, 10));
    EXPECT_FALSE(WriteInteger(1234, none, 3, 10));
    EXPECT_FALSE(WriteInteger(-123, none, 3, 10));
    EXPECT_FALSE(WriteInteger(1234, none, 40, 1));
    EXPECT_EQ(nullptr, WriteAnyInteger(1234, none, 10));
}

TYPED_TEST(IntegerText, RefusesARadixBelowTwoAndWritesNothing) {
    using T = TypeParam;
    for (int const radix : {1, 0, -1, -10, -16, INT_MIN}) {
        for (int const value : {0, 1, -1, 12345, INT_MIN, INT_MAX}) {
            std::basic_string<T> buffer(40, T('?'));
            EXPECT_FALSE(WriteInteger(value, &buffer[0], 39, radix)) << value << ' ' << radix;
            EXPECT_EQ(nullptr, WriteAnyInteger(value, &buffer[0], radix)) << value << ' ' << radix;
            EXPECT_EQ(std::basic_string<T>(40, T('?')), buffer);
        }
    }
}

TYPED_TEST(IntegerText, CutsDigitsOfALargeRadixDownToTheCharacterType) {
    using T = TypeParam;
    struct {
        int value;
        int radix;
        std::uint32_t digits[2];
    } const cases[] = {
        {99, 100, {99 + 87, 0}},
        {200, 256, {200 + 87, 0}},
        {256 * 11 + 168, 256, {'b', 168 + 87}},
        {INT_MAX - 1, INT_MAX, {0x7FFFFFFEu + 87, 0}},
        {INT_MAX, INT_MAX, {'1', '0'}},
        {-1, INT_MAX, {'2', '1'}},
        {INT_MIN, INT_MAX, {'1', '1'}},
    };
    for (auto const& c : cases) {
        T buffer[33];
        ASSERT_EQ(buffer, WriteAnyInteger(c.value, buffer, c.radix));
        EXPECT_EQ(static_cast<T>(c.digits[0]), buffer[0]) << c.value << ' ' << c.radix;
        EXPECT_EQ(static_cast<T>(c.digits[1]), buffer[1]) << c.value << ' ' << c.radix;
    }
}

TEST(ItowS, ReturnsZeroOrMinusOne) {
    std::wstring buffer(8, L'?');
    EXPECT_EQ(-1, _itow_s(12345, &buffer[0], 4, 10));
    EXPECT_EQ(L"????????", buffer);
    EXPECT_EQ(0, _itow_s(1234, &buffer[0], 4, 10));
    EXPECT_EQ(std::wstring(L"1234\0???", 8), buffer);
    EXPECT_EQ(-1, _itow_s(-1, &buffer[0], 1, 10));
    EXPECT_EQ(-1, _itow_s(7, &buffer[0], 0, 10));
    EXPECT_EQ(-1, _itow_s(7, &buffer[0], -1, 10));
    EXPECT_EQ(-1, _itow_s(7, &buffer[0], 4, 1));
    EXPECT_EQ(-1, _itow_s(7, &buffer[0], 4, 0));
    EXPECT_EQ(-1, _itow_s(7, &buffer[0], 4, -10));
    EXPECT_EQ(std::wstring(L"1234\0???", 8), buffer);
    EXPECT_EQ(0, _itow_s(1234, nullptr, 4, 10));
    EXPECT_EQ(-1, _itow_s(1234, nullptr, 3, 10));
}

// ---- Bytes ----

namespace {

using NarrowFold = char* (*)(char*);
using ByteMapping = int (*)(int);
using WideFold = wchar_t* (*)(wchar_t*);
using WideMapping = std::wint_t (*)(std::wint_t);

std::string const kAllBytes = [] {
    std::string bytes;
    for (int b = 1; b < 256; ++b) bytes += static_cast<char>(b);
    return bytes;
}();

std::string MappedBytes(ByteMapping mapping) {
    std::string mapped;
    for (char const c : kAllBytes)
        mapped += static_cast<char>(mapping(static_cast<unsigned char>(c)));
    return mapped;
}

std::string FoldedBytes(NarrowFold fold) {
    std::string folded = kAllBytes;
    fold(&folded[0]);
    return folded;
}

void ExpectEveryByteFoldedAsInThisLocale() {
    SCOPED_TRACE(std::setlocale(LC_ALL, nullptr));
    EXPECT_EQ(MappedBytes(std::tolower), FoldedBytes(strlwr));
    EXPECT_EQ(MappedBytes(std::toupper), FoldedBytes(strupr));
}

}  // namespace

// On purpose: the end, not the start as on Windows.
TEST(NarrowFolding, ReturnsTheTerminator) {
    char text[] = "abC1";
    EXPECT_EQ(text + 4, strupr(text));
    EXPECT_STREQ("ABC1", text);
    EXPECT_EQ(text + 4, strlwr(text));
    EXPECT_STREQ("abc1", text);
    char empty[] = "";
    EXPECT_EQ(empty, strupr(empty));
    EXPECT_EQ(empty, strlwr(empty));
}

TEST(NarrowFolding, StopsAtTheTerminator) {
    char text[] = "ab\0cD";
    strupr(text);
    EXPECT_EQ(std::string("AB\0cD", 6), std::string(text, 6));
    strlwr(text);
    EXPECT_EQ(std::string("ab\0cD", 6), std::string(text, 6));
}

TEST(NarrowFolding, ChangesEveryByteAsTheLocaleDoes) {
    TurkishLocale const turkish;
    for (int round = 0; round < 2; ++round) {
        for (char const* const name : {"C", "C.UTF-8"}) {
            ScopedLocale const locale(name);
            ExpectEveryByteFoldedAsInThisLocale();
        }
        ScopedLocale const locale("C");
        ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, turkish.name()));
        ExpectEveryByteFoldedAsInThisLocale();
        char text[] = "iI\xC4\xE4\xFD\xDD";
        strupr(text);
        EXPECT_STREQ("\xDDI\xC4\xC4I\xDD", text);
        strlwr(text);
        EXPECT_STREQ("i\xFD\xE4\xE4\xFDi", text);
    }
}

TEST(NarrowFolding, LeavesMultibyteCharactersInUtf8) {
    ScopedLocale const locale("C.UTF-8");
    char text[] = "\xC3\x84\xD0\x90x";
    strlwr(text);
    EXPECT_STREQ("\xC3\x84\xD0\x90x", text);
    strupr(text);
    EXPECT_STREQ("\xC3\x84\xD0\x90X", text);
}

TEST(NarrowFolding, StaysInsideTheString) {
    for (std::size_t length = 0; length <= 40; ++length) {
        GuardedArray<char> text(std::string(length, 'q').c_str(), length + 1);
        EXPECT_EQ(text.data() + length, strupr(text.data()));
        EXPECT_EQ(std::string(length, 'Q'), Content(text));
        EXPECT_EQ(text.data() + length, strlwr(text.data()));
        EXPECT_EQ(std::string(length, 'q'), Content(text));
    }
}

// ---- Wide characters ----

namespace {

// ASCII, Latin, Greek, Cyrillic, Armenian, Georgian, Deseret, what has no case, and no characters.
std::wstring const kMixed = [] {
    std::wstring text = L"The quick brown FOX, 0123456789 [\\]^_`{|}~@";
    for (std::uint32_t code = 1; code < 0x600; ++code) text += static_cast<wchar_t>(code);
    for (std::uint32_t code = 0x10A0; code < 0x1100; ++code) text += static_cast<wchar_t>(code);
    for (std::uint32_t code = 0x1E00; code < 0x2200; ++code) text += static_cast<wchar_t>(code);
    for (std::uint32_t code = 0x10400; code < 0x10450; ++code) text += static_cast<wchar_t>(code);
    for (std::uint32_t const code : {0x4E2Du, 0xD800u, 0xFF21u, 0xFF41u, 0x1F600u, 0x10FFFFu,
                                     0x110000u, 0x7FFFFFFFu, 0x80000041u, 0xFFFFFFFFu})
        text += static_cast<wchar_t>(code);
    return text + L"and the LAZY dog";
}();

std::wstring Mapped(std::wstring text, WideMapping mapping) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(mapping(static_cast<std::wint_t>(c)));
    return text;
}

std::wstring Folded(std::wstring text, WideFold fold) {
    EXPECT_EQ(&text[0], fold(&text[0]));
    return text;
}

// The runtime's newlocale loses memory when a path to locales is set; a copy does not.
locale_t LocaleOfCharacterClasses(char const* name) {
    ScopedLocale const restorer("C");
    EXPECT_NE(nullptr, std::setlocale(LC_CTYPE, name)) << name;
    return duplocale(LC_GLOBAL_LOCALE);
}

void ExpectFoldedAsInThisLocale() {
    EXPECT_TRUE(Mapped(kMixed, std::towlower) == Folded(kMixed, _wcslwr));
    EXPECT_TRUE(Mapped(kMixed, std::towupper) == Folded(kMixed, _wcsupr));
}

}  // namespace

TEST(WideFolding, ReturnsItsArgumentEvenNull) {
    EXPECT_EQ(nullptr, _wcslwr(nullptr));
    EXPECT_EQ(nullptr, _wcsupr(nullptr));
    wchar_t empty[] = L"";
    EXPECT_EQ(empty, _wcslwr(empty));
    EXPECT_EQ(empty, _wcsupr(empty));
    wchar_t text[] = L"aB1";
    EXPECT_EQ(text, _wcsupr(text));
    EXPECT_STREQ(L"AB1", text);
    EXPECT_EQ(text, _wcslwr(text));
    EXPECT_STREQ(L"ab1", text);
}

TEST(WideFolding, StopsAtTheTerminator) {
    wchar_t text[] = L"ab\0cD";
    _wcsupr(text);
    EXPECT_EQ(std::wstring(L"AB\0cD", 6), std::wstring(text, 6));
    _wcslwr(text);
    EXPECT_EQ(std::wstring(L"ab\0cD", 6), std::wstring(text, 6));
}

TEST(WideFolding, FoldsAsciiOnlyInTheCLocale) {
    ScopedLocale const locale("C");
    EXPECT_EQ(L"ABC\xE4\x3B1\x431", Folded(L"aBc\xE4\x3B1\x431", _wcsupr));
    EXPECT_EQ(L"abc\xC4\x391\x411", Folded(L"aBc\xC4\x391\x411", _wcslwr));
}

TEST(WideFolding, FoldsGreekAndCyrillicInUtf8) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_EQ(L"ABC\xC4\x391\x411", Folded(L"aBc\xE4\x3B1\x431", _wcsupr));
    EXPECT_EQ(L"abc\xE4\x3B1\x431", Folded(L"aBc\xC4\x391\x411", _wcslwr));
}

TEST(WideFolding, FollowsTheLocaleThroughChangesWithinAProcess) {
    TurkishLocale const turkish;
    for (int round = 0; round < 2; ++round) {
        for (char const* const name : {"C", "C.UTF-8"}) {
            SCOPED_TRACE(name);
            ScopedLocale const locale(name);
            ExpectFoldedAsInThisLocale();
            EXPECT_EQ(L"TITLE", Folded(L"title", _wcsupr));
            EXPECT_EQ(L"title", Folded(L"TITLE", _wcslwr));
        }
        SCOPED_TRACE(turkish.name());
        ScopedLocale const locale("C");
        ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, turkish.name()));
        ExpectFoldedAsInThisLocale();
        EXPECT_EQ(L"T\x130TLE", Folded(L"title", _wcsupr));
        EXPECT_EQ(L"t\x131tle", Folded(L"TITLE", _wcslwr));
        EXPECT_EQ(L"\x130", Folded(L"i", _wcsupr));
    }
}

TEST(WideFolding, FollowsTheLocaleOfTheThread) {
    ScopedLocale const process("C");
    locale_t const utf8 = LocaleOfCharacterClasses("C.UTF-8");
    locale_t const before = uselocale(utf8);
    EXPECT_EQ(L"A\x411", Folded(L"a\x431", _wcsupr));
    EXPECT_EQ(L"a\x431", Folded(L"A\x411", _wcslwr));
    ExpectFoldedAsInThisLocale();
    uselocale(before);
    EXPECT_EQ(L"A\x431", Folded(L"a\x431", _wcsupr));
    ExpectFoldedAsInThisLocale();
    freelocale(utf8);
}

TEST(WideFolding, FoldsAtOnceInThreadsWithLocalesOfTheirOwn) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 20;
    TurkishLocale const turkish;
    std::vector<char const*> const names = {"C", "C.UTF-8", turkish.name()};
    std::vector<locale_t> locales;
    for (std::size_t i = 0; i < kThreads; ++i)
        locales.push_back(LocaleOfCharacterClasses(names[i % names.size()]));

    std::atomic<int> waiting(kThreads);
    std::atomic<int> wrong(0);
    auto const foldInLocale = [&](locale_t locale) {
        locale_t const before = uselocale(locale);
        std::wstring const lower = Mapped(kMixed, std::towlower);
        std::wstring const upper = Mapped(kMixed, std::towupper);
        for (--waiting; waiting > 0;) std::this_thread::yield();
        for (int round = 0; round < kRounds; ++round) {
            if (Folded(kMixed, _wcslwr) != lower) ++wrong;
            if (Folded(kMixed, _wcsupr) != upper) ++wrong;
        }
        uselocale(before);
    };
    std::vector<std::thread> threads;
    for (locale_t const locale : locales) threads.emplace_back(foldInLocale, locale);
    for (std::thread& thread : threads) thread.join();
    for (locale_t const locale : locales) freelocale(locale);
    EXPECT_EQ(0, wrong);
}

TEST(WideFolding, StaysInsideTheString) {
    ScopedLocale const locale("C.UTF-8");
    for (std::size_t length = 0; length <= 40; ++length) {
        GuardedArray<wchar_t> text(std::wstring(length, L'\x431').c_str(), length + 1);
        EXPECT_EQ(text.data(), _wcsupr(text.data()));
        EXPECT_EQ(std::wstring(length, L'\x411'), Content(text));
        EXPECT_EQ(text.data(), _wcslwr(text.data()));
        EXPECT_EQ(std::wstring(length, L'\x431'), Content(text));
    }
}

// ---- Reversal ----

TYPED_TEST(Reversal, SwapsFromBothEndsAndReturnsItsArgument) {
    using T = TypeParam;
    struct {
        char const* text;
        char const* reversed;
    } const cases[] = {
        {"", ""},           {"a", "a"},           {"ab", "ba"},
        {"abc", "cba"},     {"abcd", "dcba"},     {"abcde", "edcba"},
        {"level", "level"}, {"a b\nc", "c\nb a"}, {"0123456789", "9876543210"},
    };
    for (auto const& c : cases) {
        std::basic_string<T> const text = Widened<T>(c.text);
        GuardedArray<T> array(text.c_str(), text.size() + 1);
        EXPECT_EQ(array.data(), Reverse(array.data()));
        EXPECT_EQ(Widened<T>(c.reversed), array.data());
    }
}

TYPED_TEST(Reversal, HandlesEveryLengthAndEveryCode) {
    using T = TypeParam;
    for (std::size_t length = 0; length <= 300; ++length) {
        std::basic_string<T> text;
        for (std::size_t i = 0; i < length; ++i) text += static_cast<T>(1 + i % 255);
        GuardedArray<T> array(text.c_str(), text.size() + 1);
        Reverse(array.data());
        EXPECT_EQ(std::basic_string<T>(text.rbegin(), text.rend()), Content(array));
        EXPECT_EQ(T(), array.data()[length]);
    }
}

TYPED_TEST(Reversal, StopsAtTheTerminator) {
    using T = TypeParam;
    T text[] = {'a', 'b', 'c', 0, 'd', 'e', 0};
    Reverse(text);
    EXPECT_EQ((std::basic_string<T>{'c', 'b', 'a', 0, 'd', 'e', 0}), std::basic_string<T>(text, 7));
}

TEST(Strrev, ReturnsNullForNull) {
    EXPECT_EQ(nullptr, strrev(nullptr));
}

TEST(Strrev, ReversesBytesNotCharacters) {
    char text[] = "a\xC3\xA9";
    EXPECT_EQ(text, strrev(text));
    EXPECT_STREQ(
        "\xA9\xC3"
        "a",
        text);
}
