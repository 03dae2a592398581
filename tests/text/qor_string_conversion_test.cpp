#include <qorutils/text/qor_string.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <string>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

// --- Conversion: wide to narrow ----------------------------------------------------------------

TEST(QorStringFromWide, ConvertsAsTheLocaleSays) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<char> const s(L"a\u00e9\u20ac\U0001F600");
    EXPECT_STREQ("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", s);
    EXPECT_EQ(10, s.GetLength());
    EXPECT_EQ(10, s.GetAllocLength());
    EXPECT_EQ(1, Refs(s));
}

TEST(QorStringFromWide, CountIsOnlyTestedForZero) {
    ScopedLocale const locale("C.UTF-8");
    for (int n : {1, 2, 3, 100, -1, -2147483647 - 1}) {
        CQorStringT<char> const s(L"ab\u20ac", n);
        EXPECT_STREQ("ab\xE2\x82\xAC", s) << n;
        EXPECT_EQ(5, s.GetLength());
    }
    EXPECT_STREQ("abc", CQorStringT<char>(L"abc", 1));
    EXPECT_TRUE(IsNil(CQorStringT<char>(L"abc", 0)));
    EXPECT_TRUE(IsNil(CQorStringT<char>(L"", 5)));
    EXPECT_TRUE(IsNil(CQorStringT<char>(static_cast<wchar_t const*>(nullptr), 5)));
}

TEST(QorStringFromWide, TextThatTheLocaleCannotEncodeGivesTheEmptyString) {
    for (auto const& name : {"C", "C.UTF-8"}) {
        ScopedLocale const locale(name);
        wchar_t const unencodable[] = {L'a', static_cast<wchar_t>(0xD800), L'b', 0};
        EXPECT_EQ(Text<char>(""), CQorStringT<char>(unencodable));
        EXPECT_EQ(Text<char>(""), CQorStringT<char>(unencodable, 3));
    }
    ScopedLocale const locale("C");
    EXPECT_STREQ("plain", CQorStringT<char>(L"plain"));
    EXPECT_EQ(Text<char>(""), CQorStringT<char>(L"abc\u20ac"));
    EXPECT_EQ(Text<char>(""), CQorStringT<char>(L"\u20ac", 1));
}

TEST(QorStringFromWide, AssignmentOfTextThatCannotBeEncodedGivesTheEmptyString) {
    ScopedLocale const locale("C");
    CQorStringT<char> fresh;
    fresh = L"abc\u20ac";
    EXPECT_EQ(Text<char>(""), fresh);
    CQorStringT<char> s("before");
    s = L"abc\u20ac";
    EXPECT_EQ(Text<char>(""), s);
    CQorStringT<char> const keeper("keeper");
    CQorStringT<char> sharer(keeper);
    sharer = L"abc\u20ac";
    EXPECT_EQ(Text<char>(""), sharer);
    EXPECT_STREQ("keeper", keeper);
}

TEST(QorStringFromWide, AssignmentKeepsABufferThatIsLargeEnough) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<char> s("1234567");
    char const* const buffer = s.c_str();
    EXPECT_EQ(&s, &(s = L"a\u20ac"));
    EXPECT_EQ(Text<char>("a\xE2\x82\xAC"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(7, s.GetAllocLength());
    s = L"\u20ac\u20ac\u20ac";
    EXPECT_STREQ("\xE2\x82\xAC\xE2\x82\xAC\xE2\x82\xAC", s);
    EXPECT_EQ(9, s.GetAllocLength());
    s = L"";
    EXPECT_EQ(Text<char>(""), s);
    EXPECT_EQ(9, s.GetAllocLength());
    s = L"x";
    s = static_cast<wchar_t const*>(nullptr);
    EXPECT_EQ(Text<char>(""), s);
    EXPECT_EQ(9, s.GetAllocLength());
}

TEST(QorStringFromWide, AssignmentToASharedStringLeavesTheOtherAlone) {
    CQorStringT<char> const keeper("keeper");
    CQorStringT<char> s(keeper);
    s = L"abc";
    EXPECT_EQ(Text<char>("abc"), s);
    EXPECT_EQ(3, s.GetAllocLength());
    EXPECT_STREQ("keeper", keeper);
    s = keeper;
    s = static_cast<wchar_t const*>(nullptr);
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(1, Refs(keeper));
}

TEST(QorStringFromWide, AssignedCharacterIsNarrowedByValue) {
    CQorStringT<char> s;
    s = static_cast<wchar_t>(0x20AC);
    EXPECT_EQ(Text<char>("\xAC"), s);
}

TEST(QorStringFromWide, EveryLengthComesOutWholeAndExact) {
    ScopedLocale const locale("C.UTF-8");
    std::wstring text;
    std::string bytes;
    for (int n = 1; n <= 1100; ++n) {
        text += n % 3 == 0 ? L'\U0001F600' : n % 3 == 1 ? L'x' : L'\u00e9';
        bytes += n % 3 == 0 ? "\xF0\x9F\x98\x80" : n % 3 == 1 ? "x" : "\xC3\xA9";
        CQorStringT<char> const s(text.c_str());
        ASSERT_EQ(bytes, Content(s));
        ASSERT_TRUE(IsTerminated(s));
        ASSERT_EQ(s.GetLength(), s.GetAllocLength());
        auto reused = WithRoom(Text<char>("before"), 2000);
        reused = text.c_str();
        ASSERT_EQ(bytes, Content(reused));
    }
}

TEST(QorStringFromWide, FailureAnywhereGivesTheEmptyString) {
    ScopedLocale const locale("C");
    for (std::size_t n : {0u, 1u, 239u, 240u, 241u, 255u, 256u, 257u, 1000u}) {
        std::wstring const text = std::wstring(n, L'x') + L'\u20ac' + L"more";
        EXPECT_EQ(Text<char>(""), CQorStringT<char>(text.c_str())) << n;
        CQorStringT<char> s("before");
        s = text.c_str();
        EXPECT_EQ(Text<char>(""), s) << n;
    }
}

TEST(QorStringFromWide, ReadsNothingBeyondTheTerminator) {
    ScopedLocale const locale("C.UTF-8");
    for (std::size_t n = 1; n <= 40; ++n) {
        GuardedArray<wchar_t> text(n + 1);
        std::fill_n(text.data(), n, L'\u00e9');
        CQorStringT<char> const constructed(text.data());
        CQorStringT<char> const counted(text.data(), 1);
        CQorStringT<char> assigned;
        assigned = text.data();
        EXPECT_EQ(static_cast<int>(2 * n), constructed.GetLength());
        EXPECT_EQ(constructed, counted);
        EXPECT_EQ(constructed, assigned);
    }
}

// --- Conversion: narrow to wide ----------------------------------------------------------------

TEST(QorStringFromNarrow, ConvertsAsTheLocaleSays) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<wchar_t> const s("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_STREQ(L"a\u00e9\u20ac\U0001F600", s);
    EXPECT_EQ(4, s.GetLength());
    EXPECT_EQ(4, s.GetAllocLength());
}

TEST(QorStringFromNarrow, UnsignedCharactersAreConvertedToo) {
    ScopedLocale const locale("C.UTF-8");
    auto const* const text = reinterpret_cast<unsigned char const*>("\xE2\x82\xAC");
    EXPECT_STREQ(L"\u20ac", CQorStringT<wchar_t>(text));
    CQorStringT<wchar_t> s;
    s = text;
    EXPECT_STREQ(L"\u20ac", s);
}

TEST(QorStringFromNarrow, InvalidSequenceKeepsWhatStandsBeforeIt) {
    ScopedLocale const locale("C.UTF-8");
    struct {
        char const* bytes;
        wchar_t const* text;
    } const cases[] = {
        {"ab\xFF\xFF", L"ab"},            // no lead byte
        {"ab\x80zz", L"ab"},              // a continuation without lead
        {"\xC3\xA9\xE2\x82", L"\u00e9"},  // cut off by the terminator
        {"\xC3\xA9\xE2zz", L"\u00e9"},    // cut off by a letter
        {"ok\xC0\x80", L"ok"},            // overlong
        {"ok\xED\xA0\x80", L"ok"},        // surrogate
        {"\xFF"
         "abc",
         L""},  // nothing stands before it
    };
    for (auto const& c : cases) {
        EXPECT_STREQ(c.text, CQorStringT<wchar_t>(c.bytes)) << c.bytes;
        EXPECT_STREQ(c.text, CQorStringT<wchar_t>(c.bytes, -1)) << c.bytes;
        EXPECT_STREQ(c.text, CQorStringT<wchar_t>(c.bytes, 100)) << c.bytes;
        CQorStringT<wchar_t> fresh;
        fresh = c.bytes;
        EXPECT_STREQ(c.text, fresh) << c.bytes;
        CQorStringT<wchar_t> s(L"a longer text from before");
        s = c.bytes;
        EXPECT_STREQ(c.text, s) << c.bytes;
        EXPECT_EQ(static_cast<int>(std::wcslen(c.text)), s.GetLength()) << c.bytes;
    }
}

TEST(QorStringFromNarrow, CountLimitsTheWideCharacters) {
    ScopedLocale const locale("C.UTF-8");
    char const text[] =
        "a\xC3\xA9\xE2\x82\xAC"
        "b";
    struct {
        int n;
        wchar_t const* text;
    } const cases[] = {
        {1, L"a"},
        {2, L"a\u00e9"},
        {3, L"a\u00e9\u20ac"},
        {4, L"a\u00e9\u20acb"},
        {5, L"a\u00e9\u20acb"},  // stops at the terminator
        {2147483647, L"a\u00e9\u20acb"},
        {-1, L"a\u00e9\u20acb"},
    };
    for (auto const& c : cases) {
        CQorStringT<wchar_t> const s(text, c.n);
        EXPECT_STREQ(c.text, s) << c.n;
        EXPECT_EQ(static_cast<int>(std::wcslen(c.text)), s.GetLength()) << c.n;
        EXPECT_EQ(s.GetLength(), s.GetAllocLength()) << c.n;
    }
    EXPECT_TRUE(IsNil(CQorStringT<wchar_t>(static_cast<char const*>(nullptr), -1)));
    EXPECT_TRUE(IsNil(CQorStringT<wchar_t>("", -1)));
    EXPECT_TRUE(IsNil(CQorStringT<wchar_t>("", 7)));
}

TEST(QorStringFromNarrow, CountedTextNeedsNoTerminator) {
    ScopedLocale const locale("C.UTF-8");
    char const pattern[] = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";
    wchar_t const wide[] = L"a\u00e9\u20ac\U0001F600";
    std::string bytes;
    std::wstring expected;
    for (int n = 1; n <= 60; ++n) {
        int const kind = (n - 1) % 4;
        bytes.append(pattern + kind * (kind + 1) / 2, static_cast<std::size_t>(kind) + 1);
        expected += wide[kind];
        GuardedArray<char> const guarded(bytes.data(), bytes.size());
        CQorStringT<wchar_t> const s(guarded.data(), n);
        EXPECT_EQ(expected, Content(s));
        EXPECT_TRUE(IsTerminated(s));
    }
}

TEST(QorStringFromNarrow, CountedAsciiNeedsNoTerminatorInAnyLocale) {
    for (auto const& name : {"C", "C.UTF-8"}) {
        ScopedLocale const locale(name);
        for (int n = 1; n <= 80; ++n) {
            std::string const text(static_cast<std::size_t>(n), 'x');
            GuardedArray<char> const guarded(text.data(), text.size());
            EXPECT_EQ(CQorStringT<wchar_t>(L'x', n), CQorStringT<wchar_t>(guarded.data(), n));
        }
    }
}

TEST(QorStringFromNarrow, CountedTextIsNotReadBeyondAnInvalidSequence) {
    ScopedLocale const locale("C.UTF-8");
    std::string const text = "ab\xFF";
    GuardedArray<char> const guarded(text.data(), text.size());
    EXPECT_STREQ(L"ab", CQorStringT<wchar_t>(guarded.data(), 100));
    std::string const cutOff("ab\xF0\x9F\x98", 6);
    GuardedArray<char> const terminated(cutOff.data(), cutOff.size());
    EXPECT_STREQ(L"ab", CQorStringT<wchar_t>(terminated.data(), 100));
}

TEST(QorStringFromNarrow, EveryLengthComesOutWholeAndExact) {
    ScopedLocale const locale("C.UTF-8");
    std::wstring text;
    std::string bytes;
    for (int n = 1; n <= 1100; ++n) {
        text += n % 3 == 0 ? L'\U0001F600' : n % 3 == 1 ? L'x' : L'\u00e9';
        bytes += n % 3 == 0 ? "\xF0\x9F\x98\x80" : n % 3 == 1 ? "x" : "\xC3\xA9";
        CQorStringT<wchar_t> const s(bytes.c_str());
        ASSERT_EQ(text, Content(s));
        ASSERT_TRUE(IsTerminated(s));
        ASSERT_EQ(n, s.GetAllocLength());
        CQorStringT<wchar_t> const counted(bytes.c_str(), n - 1);
        ASSERT_EQ(text.substr(0, text.size() - 1), Content(counted));
        auto reused = WithRoom(Text<wchar_t>("before"), 2000);
        reused = bytes.c_str();
        ASSERT_EQ(text, Content(reused));
        ASSERT_EQ(2000, reused.GetAllocLength());
    }
}

TEST(QorStringFromNarrow, InvalidSequenceAnywhereKeepsWhatStandsBeforeIt) {
    ScopedLocale const locale("C.UTF-8");
    for (std::size_t n : {0u, 1u, 239u, 240u, 241u, 255u, 256u, 257u, 1000u}) {
        std::string const bytes = std::string(n, 'x') + "\xFF more";
        CQorStringT<wchar_t> const expected(L'x', static_cast<int>(n));
        EXPECT_EQ(expected, CQorStringT<wchar_t>(bytes.c_str())) << n;
        EXPECT_EQ(expected, CQorStringT<wchar_t>(bytes.c_str(), 2000)) << n;
        CQorStringT<wchar_t> s(L"before");
        s = bytes.c_str();
        EXPECT_EQ(expected, s) << n;
    }
}

TEST(QorStringFromNarrow, ReadsNothingBeyondTheTerminator) {
    ScopedLocale const locale("C.UTF-8");
    for (std::size_t n = 1; n <= 40; ++n) {
        std::string const text(n, 'x');
        GuardedArray<char> const guarded(text.c_str(), n + 1);
        CQorStringT<wchar_t> const expected(L'x', static_cast<int>(n));
        EXPECT_EQ(expected, CQorStringT<wchar_t>(guarded.data()));
        EXPECT_EQ(expected, CQorStringT<wchar_t>(guarded.data(), -1));
        EXPECT_EQ(expected, CQorStringT<wchar_t>(guarded.data(), 1000));
        CQorStringT<wchar_t> assigned;
        assigned = guarded.data();
        EXPECT_EQ(expected, assigned);
    }
}

TEST(QorStringFromNarrow, AssignmentKeepsABufferThatIsLargeEnough) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<wchar_t> s(L"12345");
    wchar_t const* const buffer = s.c_str();
    EXPECT_EQ(&s, &(s = "a\xE2\x82\xAC"));
    EXPECT_STREQ(L"a\u20ac", s);
    EXPECT_EQ(2, s.GetLength());
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(5, s.GetAllocLength());
    s = "abcdef";
    EXPECT_EQ(Text<wchar_t>("abcdef"), s);
    EXPECT_EQ(6, s.GetAllocLength());
    s = "";
    EXPECT_EQ(Text<wchar_t>(""), s);
    EXPECT_EQ(6, s.GetAllocLength());
    s = L"x";
    s = static_cast<char const*>(nullptr);
    EXPECT_EQ(Text<wchar_t>(""), s);
    EXPECT_EQ(6, s.GetAllocLength());
}

TEST(QorStringFromNarrow, AssignmentToASharedStringLeavesTheOtherAlone) {
    CQorStringT<wchar_t> const keeper(L"keeper");
    CQorStringT<wchar_t> s(keeper);
    s = "abc";
    EXPECT_EQ(Text<wchar_t>("abc"), s);
    EXPECT_EQ(3, s.GetAllocLength());
    EXPECT_STREQ(L"keeper", keeper);
    s = keeper;
    s = static_cast<char const*>(nullptr);
    EXPECT_TRUE(IsNil(s));
    EXPECT_EQ(1, Refs(keeper));
}

TEST(QorStringFromNarrow, AssignedCharacterIsWidenedByValue) {
    // Plain char is unsigned on the target: the byte's code on every machine.
    CQorStringT<wchar_t> s;
    s = '\xE9';
    EXPECT_EQ(Text<wchar_t>("\xE9"), s);
    s += '\xFF';
    EXPECT_EQ(Text<wchar_t>("\xE9\xFF"), s);
}
