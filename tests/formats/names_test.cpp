#include <qorutils/formats/names.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/random_text.h"
#include "support/reference_values.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

namespace {

using namespace qor_formats;
using Wide = qor_text::CQorStringT<wchar_t>;

// ---- Names ----

TEST(IsAdmisibleCharacter, TakesAsciiLettersDigitsAndUnderscores) {
    std::wstring const admissible =
        L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";
    ScopedLocale const locale("C.UTF-8");
    std::wstring found;
    for (wchar_t c = 0; c < 0x3000; ++c)
        if (IsAdmisibleCharacter(c)) found += c;
    EXPECT_EQ(admissible, found);
    for (std::uint32_t const code : {0x80000041u, 0xFFFFFFFFu, 0x10041u, 0x7FFFFFFFu})
        EXPECT_FALSE(IsAdmisibleCharacter(static_cast<wchar_t>(code))) << code;
}

TEST(IsValidName, TakesOneToFortyAdmissibleCharacters) {
    struct {
        std::wstring name;
        bool isValid;
    } const cases[] = {
        {L"", false},
        {L"a", true},
        {L"_", true},
        {L"9lives", true},
        {std::wstring(40, L'x'), true},
        {std::wstring(41, L'x'), false},
        {std::wstring(39, L'x') + L"-", false},
        {L"a.b", false},
        {L"a b", false},
        {L"a-b", false},
        {L"\u00E9", false},
        {std::wstring(L"a\0b", 3), false},  // a zero is a character of the name
        {std::wstring(1, L'\0'), false},
    };
    for (auto const& c : cases) {
        Wide name = Whole(c.name);
        EXPECT_EQ(c.isValid, IsValidName(name)) << c.name;
        EXPECT_EQ(c.isValid, IsValidFilename(name)) << c.name;
        EXPECT_EQ(c.name, Content(name));
    }
}

TEST(MakeNameCorrect, CutsAndReplacesWhatIsForbidden) {
    struct {
        std::wstring name;
        int maxLength;
        std::wstring corrected;
    } const cases[] = {
        {L"a/b?c", 3, L"a_b"},
        {L"abc", 10, L"abc"},
        {L"abc", 3, L"abc"},
        {L"abc", 2, L"ab"},
        {L"abc", 0, L""},
        {L"abc", -1, L""},
        {L"abc", INT_MIN, L""},
        {L"", 5, L""},
        {L"", -5, L""},
        {L"ab/", 2, L"ab"},
        {L"!,?%*@#$%^&'\"\\/|~;[]{}()<>`\t\r\n+=", 100, std::wstring(32, L'_')},
        {L"a b.c-d_\u00E9:\v\f", 100, L"a b.c-d_\u00E9:\v\f"},  // on purpose: these stay
        {L"\u0121\u012F", 100, L"\u0121\u012F"},  // as '!' and '/' in the low byte only
        {std::wstring(L"a\0?", 3), 100, std::wstring(L"a\0_", 3)},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.corrected, Content(MakeNameCorrect(Whole(c.name), c.maxLength)))
            << c.name << ", " << c.maxLength;
}

TEST(MakeNameCorrect, ReplacesNoOtherCharacter) {
    for (wchar_t c = 0; c < 0x250; ++c) {
        std::wstring const name = {L'a', c, L'z'};
        EXPECT_EQ(reference_values::CorrectName(name, 3), Content(MakeNameCorrect(Whole(name), 3)))
            << static_cast<int>(c);
    }
}

TEST(MakeNameCorrect, SharesANameThatIsCorrect) {
    Wide const name(L"name");
    EXPECT_EQ(name.c_str(), MakeNameCorrect(name, 10).c_str());
}

TEST(MakeNameCorrect, LeavesTheNameItselfAlone) {
    Wide const name(L"na?me");
    EXPECT_TRUE(MakeNameCorrect(name, 10) == L"na_me");
    EXPECT_TRUE(name == L"na?me");
}

// ---- Masks ----

TEST(CheckChars, TakesDigitsAndLettersForNine) {
    for (wchar_t const c : std::wstring(L"0123456789azAZ")) EXPECT_TRUE(CheckChars(c, L'9')) << c;
    for (wchar_t const c : std::wstring(L" -_.:/\x7F", 7)) EXPECT_FALSE(CheckChars(c, L'9')) << c;
    EXPECT_FALSE(CheckChars(L'\0', L'9'));
}

TEST(CheckChars, TakesTheLettersOfTheLocaleForNine) {
    wchar_t const huge = static_cast<wchar_t>(0xFFFFFFE9u);
    {
        ScopedLocale const plain("C");
        EXPECT_FALSE(CheckChars(0xE9, L'9'));
        EXPECT_FALSE(CheckChars(huge, L'9'));
    }
    ScopedLocale const locale("C.UTF-8");
    EXPECT_TRUE(CheckChars(0xE9, L'9'));
    EXPECT_FALSE(CheckChars(huge, L'9'));
}

TEST(CheckChars, TakesAnyOtherMaskCharacterAsItself) {
    EXPECT_TRUE(CheckChars(L'-', L'-'));
    EXPECT_TRUE(CheckChars(L'8', L'8'));
    EXPECT_TRUE(CheckChars(L'\0', L'\0'));
    EXPECT_FALSE(CheckChars(L'7', L'8'));
    EXPECT_FALSE(CheckChars(L'9', L'8'));
    EXPECT_FALSE(CheckChars(L'a', L'A'));
}

TEST(CheckFormat, ComparesLengthAndEveryPosition) {
    struct {
        wchar_t const* text;
        wchar_t const* mask;
        bool fits;
    } const cases[] = {
        {L"2015-06-01", L"9999-99-99", true},
        {L"2O15-O6-O1", L"9999-99-99", true},  // on purpose: letters for digits
        {L"2015/06/01", L"9999-99-99", false},
        {L"2015-06-1", L"9999-99-99", false},
        {L"2015-06-011", L"9999-99-99", false},
        {L"2015-06-0 ", L"9999-99-99", false},
        {L"", L"", true},
        {nullptr, nullptr, true},
        {nullptr, L"", true},
        {L"", nullptr, true},
        {nullptr, L"9", false},
        {L"9", nullptr, false},
        {L"", L"9", false},
        {L"a", L"", false},
        {L"ab", L"ab", true},
        {L"aB", L"ab", false},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.fits, CheckFormat(c.text, c.mask)) << c.text << " in " << c.mask;
}

// ---- Display and 8-bit text ----

TEST(DoubleAmpersandForDisplay, DoublesLoneOnes) {
    struct {
        wchar_t const* text;
        wchar_t const* shown;
    } const cases[] = {
        {L"", L""},
        {L"abc", L"abc"},
        {L"a&b", L"a&&b"},
        {L"&", L"&&"},
        {L"&a", L"&&a"},
        {L"a&", L"a&&"},
        {L"a&&b", L"a&&b"},    // a pair stays
        {L"a&&&b", L"a&&&b"},  // none of three is lone
        {L"&&", L"&&"},
        {L"a&b&c", L"a&&&b&c"},  // on purpose: the second one comes too early
        {L"a&b&c&d", L"a&&&b&&c&d"},
        {L"&a&b", L"&&&a&b"},
        {L"a&b&&c", L"a&&b&&c"},
        {L"a&&b&c", L"a&&b&&c"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.shown, Content(DoubleAmpersandForDisplay(c.text))) << c.text;
}

TEST(DoubleAmpersandForDisplay, PutsTheFurtherOnesWhereInsertingPutsThem) {
    RandomText random(3);
    for (int round = 0; round < 5000; ++round) {
        std::wstring const text =
            random.Of(std::wstring(L"ab&&\0", 5), random.Below(round % 20 + 1));
        EXPECT_EQ(reference_values::ForDisplay(text),
                  Content(DoubleAmpersandForDisplay(Whole(text))))
            << text;
    }
}

TEST(DoubleAmpersandForDisplay, SharesATextWithoutLoneOnes) {
    Wide const text(L"a&&b");
    EXPECT_EQ(text.c_str(), DoubleAmpersandForDisplay(text).c_str());
}

TEST(String2ASCII, CopiesTheLowBitsAndAZero) {
    char const fill = 'Z';
    struct {
        int srcLength;
        int dstLength;
        std::string dst;  // of 8 bytes
    } const cases[] = {
        {5, 3, std::string("hel\0ZZZZ", 8)},
        {5, 5, std::string("hello\0ZZ", 8)},
        {5, 7, std::string("hello\0ZZ", 8)},
        {2, 5, std::string("he\0ZZZZZ", 8)},
        {0, 5, std::string("\0ZZZZZZZ", 8)},
        {5, 0, std::string("\0ZZZZZZZ", 8)},
        {-1, 5, std::string("\0ZZZZZZZ", 8)},
        {INT_MIN, 5, std::string("\0ZZZZZZZ", 8)},
        {5, -1, "ZZZZZZZZ"},
        {-1, INT_MIN, "ZZZZZZZZ"},
    };
    for (auto const& c : cases) {
        std::string dst(8, fill);
        String2ASCII(L"hello", c.srcLength, &dst[0], c.dstLength);
        EXPECT_EQ(c.dst, dst) << c.srcLength << ", " << c.dstLength;
    }
}

TEST(String2ASCII, CutsCharactersToTheirLowByte) {
    wchar_t const src[] = {0xE9, 0x100, 0x4E2D, 0x1F641, static_cast<wchar_t>(0xFFFFFFFFu), L'\0'};
    char dst[8];
    std::memset(dst, 'Z', sizeof dst);
    String2ASCII(src, 6, dst, 6);
    EXPECT_EQ(std::string("\xE9\0\x2D\x41\xFF\0\0Z", 8), std::string(dst, 8));
}

TEST(String2ASCII, TakesNullForNoText) {
    char dst[] = "ZZ";
    String2ASCII(nullptr, 2, dst, 2);
    EXPECT_EQ(std::string("\0Z", 2), std::string(dst, 2));
    String2ASCII(L"abc", 3, nullptr, 3);
    String2ASCII(nullptr, 0, nullptr, 0);
}

TEST(String2ASCII, StaysWithinBothArrays) {
    for (int srcLength = 0; srcLength < 40; ++srcLength) {
        for (int dstLength = 0; dstLength < 40; ++dstLength) {
            std::size_t const n = static_cast<std::size_t>(std::min(srcLength, dstLength));
            std::wstring const text(n, L'x');
            GuardedArray<wchar_t> const src(text.data(), n);
            GuardedArray<char> dst(n + 1);
            String2ASCII(src.data(), srcLength, dst.data(), dstLength);
            EXPECT_EQ(std::string(n, 'x'), dst.data());
        }
    }
}

TEST(String2ASCII, NarrowsInPlace) {
    std::wstring const text = L"a text that is long enough for several copies at once";
    std::vector<wchar_t> both(text.begin(), text.end());
    both.push_back(L'\0');
    char* const narrow = reinterpret_cast<char*>(both.data());
    String2ASCII(both.data(), static_cast<int>(text.size()), narrow, INT_MAX);
    EXPECT_STREQ("a text that is long enough for several copies at once", narrow);
}

}  // namespace
