#include <qorutils/text/qor_string.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/random_text.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringFind : public testing::Test {};
template <typename T>
class QorStringExtraction : public testing::Test {};
template <typename T>
class QorStringTokenize : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringFind, CharacterTypes, );
TYPED_TEST_SUITE(QorStringExtraction, CharacterTypes, );
TYPED_TEST_SUITE(QorStringTokenize, CharacterTypes, );

template <typename T>
CQorStringT<T> FromText(std::basic_string<T> const& text) {
    return CQorStringT<T>(text.data(), static_cast<int>(text.size()));
}

// The first occurrence of `sub` at or after `start`, or -1.
template <typename T>
int PlainFind(std::basic_string<T> const& text, std::basic_string<T> const& sub, int start) {
    for (int i = start; i + static_cast<int>(sub.size()) <= static_cast<int>(text.size()); ++i)
        if (std::equal(sub.begin(), sub.end(), text.begin() + i)) return i;
    return -1;
}

template <typename T>
std::vector<std::basic_string<T>> PlainTokens(std::basic_string<T> const& text,
                                              std::basic_string<T> const& delims) {
    std::vector<std::basic_string<T>> tokens;
    bool inToken = false;
    for (T const ch : text) {
        bool const isDelimiter = std::find(delims.begin(), delims.end(), ch) != delims.end();
        if (!isDelimiter && !inToken) tokens.emplace_back();
        if (!isDelimiter) tokens.back() += ch;
        inToken = !isDelimiter;
    }
    return tokens;
}

template <typename T>
void ExpectWhole(CQorStringT<T> const& source, CQorStringT<T> const& part) {
    EXPECT_EQ(source.c_str(), part.c_str());
    EXPECT_GE(Refs(source), 2);
}

// A part has a buffer of its own that it fills exactly.
template <typename T>
void ExpectPart(TextLiteral<T> const& text, CQorStringT<T> const& part) {
    EXPECT_EQ(text, part);
    EXPECT_EQ(text.size(), part.GetAllocLength());
    EXPECT_EQ(text.size() == 0 ? -1 : 1, Refs(part));
}

}  // namespace

// --- Find --------------------------------------------------------------------------------------

TYPED_TEST(QorStringFind, CharacterAtOrAfterStart) {
    using T = TypeParam;
    auto const s = String<T>("abcabc");
    EXPECT_EQ(2, s.Find(T('c')));
    EXPECT_EQ(2, s.Find(T('c'), 0));
    EXPECT_EQ(2, s.Find(T('c'), 2));
    EXPECT_EQ(5, s.Find(T('c'), 3));
    EXPECT_EQ(0, s.Find(T('a')));
    EXPECT_EQ(-1, s.Find(T('a'), 4));
    EXPECT_EQ(-1, s.Find(T('x')));
}

TYPED_TEST(QorStringFind, CharacterStartingAtTheEndIsNotFoundButEmptyTextIs) {
    using T = TypeParam;
    auto const s = String<T>("abc");
    EXPECT_EQ(-1, s.Find(T('c'), 3));
    EXPECT_EQ(-1, s.Find(T('c'), 4));
    EXPECT_EQ(-1, s.Find(T(), 3));
    EXPECT_EQ(3, s.Find(Text<T>(""), 3));
    EXPECT_EQ(-1, s.Find(Text<T>(""), 4));
    EXPECT_EQ(-1, s.Find(Text<T>("c"), 3));
    CQorStringT<T> const nil;
    EXPECT_EQ(-1, nil.Find(T()));
    EXPECT_EQ(-1, nil.Find(T('x')));
    EXPECT_EQ(0, nil.Find(Text<T>("")));
    EXPECT_EQ(-1, nil.Find(Text<T>("x")));
}

TYPED_TEST(QorStringFind, ZeroCharacterIsTheTerminator) {
    using T = TypeParam;
    EXPECT_EQ(3, String<T>("abc").Find(T()));
    EXPECT_EQ(3, String<T>("abc").Find(T(), 2));
    EXPECT_EQ(1, String<T>("a\0c").Find(T()));
    EXPECT_EQ(3, String<T>("a\0c").Find(T(), 2));
}

TYPED_TEST(QorStringFind, TextAtOrAfterStart) {
    using T = TypeParam;
    auto const s = String<T>("abcabcabd");
    EXPECT_EQ(0, s.Find(Text<T>("abc")));
    EXPECT_EQ(3, s.Find(Text<T>("abc"), 1));
    EXPECT_EQ(3, s.Find(Text<T>("abc"), 3));
    EXPECT_EQ(-1, s.Find(Text<T>("abc"), 4));
    EXPECT_EQ(6, s.Find(Text<T>("abd")));
    EXPECT_EQ(8, s.Find(Text<T>("d")));
    EXPECT_EQ(0, s.Find(Text<T>("abcabcabd")));
    EXPECT_EQ(-1, s.Find(Text<T>("abcabcabdx")));
    EXPECT_EQ(-1, s.Find(Text<T>("x")));
    EXPECT_EQ(0, s.Find(Text<T>("")));
    EXPECT_EQ(4, s.Find(Text<T>(""), 4));
}

TYPED_TEST(QorStringFind, SearchesEndAtAnEmbeddedZero) {
    using T = TypeParam;
    auto const s = String<T>("ab\0cb");
    EXPECT_EQ(-1, s.Find(T('c')));
    EXPECT_EQ(3, s.Find(T('c'), 3));
    EXPECT_EQ(-1, s.Find(Text<T>("cb")));
    EXPECT_EQ(3, s.Find(Text<T>("cb"), 3));
    EXPECT_EQ(0, s.Find(Text<T>("ab\0x")));  // the pattern ends there, too
    EXPECT_EQ(1, s.ReverseFind(T('b')));
    EXPECT_EQ(-1, s.ReverseFind(T('c')));
    EXPECT_EQ(-1, s.FindOneOf(Text<T>("c")));
    EXPECT_EQ(2, s.ReverseFind(T()));
}

TYPED_TEST(QorStringFind, ReverseFindYieldsTheLast) {
    using T = TypeParam;
    auto const s = String<T>("abcabc");
    EXPECT_EQ(5, s.ReverseFind(T('c')));
    EXPECT_EQ(3, s.ReverseFind(T('a')));
    EXPECT_EQ(-1, s.ReverseFind(T('x')));
    EXPECT_EQ(6, s.ReverseFind(T()));
    EXPECT_EQ(-1, CQorStringT<T>().ReverseFind(T('x')));
    EXPECT_EQ(0, CQorStringT<T>().ReverseFind(T()));
}

TYPED_TEST(QorStringFind, FindOneOfYieldsTheFirstInTheSet) {
    using T = TypeParam;
    auto const s = String<T>("abcabc");
    EXPECT_EQ(1, s.FindOneOf(Text<T>("cb")));
    EXPECT_EQ(0, s.FindOneOf(Text<T>("xyza")));
    EXPECT_EQ(-1, s.FindOneOf(Text<T>("xyz")));
    EXPECT_EQ(-1, s.FindOneOf(Text<T>("")));
    EXPECT_EQ(-1, CQorStringT<T>().FindOneOf(Text<T>("a")));
}

TYPED_TEST(QorStringFind, NegativeStartAndNullFindNothing) {
    using T = TypeParam;
    auto const s = String<T>("abc");
    EXPECT_EQ(-1, s.Find(T('a'), -1));
    EXPECT_EQ(-1, s.Find(Text<T>("a"), -1));
    EXPECT_EQ(-1, s.Find(static_cast<T const*>(nullptr)));
    EXPECT_EQ(-1, s.FindOneOf(nullptr));
}

TYPED_TEST(QorStringFind, CharactersOutsideAsciiAreFound) {
    using T = TypeParam;
    auto const s = String<T>(
        "a\xE9"
        "b\xFF");
    EXPECT_EQ(1, s.Find(static_cast<T>(0xE9)));
    EXPECT_EQ(3, s.ReverseFind(static_cast<T>(0xFF)));
    EXPECT_EQ(3, s.Find(Text<T>("\xFF")));
    EXPECT_EQ(1, s.FindOneOf(Text<T>("\xFF\xE9")));
    EXPECT_EQ(-1, s.FindOneOf(Text<T>("\xFE\x80")));
}

TEST(QorStringFindWide, CharactersThatShareTheirLowBitsAreToldApart) {
    // Sets kept as bit maps and searches by bytes mistake these for one another.
    CQorStringT<wchar_t> const s(L"\u0161\u2061\u0261\U00010061\u6100");
    EXPECT_EQ(-1, s.Find(L'a'));
    EXPECT_EQ(-1, s.ReverseFind(L'a'));
    EXPECT_EQ(-1, s.Find(L"a"));
    EXPECT_EQ(-1, s.FindOneOf(L"a\u0061\u0361"));
    EXPECT_EQ(3, s.FindOneOf(L"a\U00010061"));
    EXPECT_EQ(4, s.Find(L'\u6100'));
    EXPECT_EQ(0, s.SpanIncluding(L"abc").GetLength());
    EXPECT_EQ(5, s.SpanExcluding(L"abc").GetLength());
}

TYPED_TEST(QorStringFind, HostilePatterns) {
    using T = TypeParam;
    std::basic_string<T> const pattern = std::basic_string<T>(200, T('a')) + T('b');
    std::basic_string<T> const almost = std::basic_string<T>(199, T('a')) + T('b');
    std::basic_string<T> text;
    for (int i = 0; i < 20; ++i) text += almost;
    EXPECT_EQ(-1, FromText(text).Find(pattern.c_str()));
    text += pattern;
    EXPECT_EQ(PlainFind(text, pattern, 0), FromText(text).Find(pattern.c_str()));

    std::basic_string<T> const many(20000, T('a'));
    EXPECT_EQ(-1, FromText(many).Find(pattern.c_str()));
    EXPECT_EQ(0, FromText(many).Find(std::basic_string<T>(10000, T('a')).c_str()));
    std::basic_string<T> const late = many + T('b') + std::basic_string<T>(10000, T('a'));
    EXPECT_EQ(10000, FromText(late).Find((std::basic_string<T>(10000, T('a')) + T('b')).c_str()));
    EXPECT_EQ(20000, FromText(late).Find((T('b') + std::basic_string<T>(10000, T('a'))).c_str()));
}

TYPED_TEST(QorStringFind, PeriodicPatternsInRandomTexts) {
    using T = TypeParam;
    RandomText random(1);
    auto const alphabet = Text<T>("ab").characters;
    for (int round = 0; round < 600; ++round) {
        auto const period = random.Of(alphabet, 1 + random.Below(9));
        std::basic_string<T> pattern;
        for (int repeat = 1 + random.Below(12); repeat > 0; --repeat) pattern += period;
        pattern += period.substr(0, static_cast<std::size_t>(random.Below(9)) % period.size());
        // A text of near misses: the pattern with one character changed, again and again.
        std::basic_string<T> text;
        for (int repeat = random.Below(8); repeat > 0; --repeat) {
            auto miss = pattern;
            auto& ch = miss[static_cast<std::size_t>(random.Below(int(miss.size())))];
            ch = ch == T('a') ? T('b') : T('a');
            text += miss;
        }
        if (random.Below(2) == 0) text += pattern;
        text += random.Of(alphabet, random.Below(20));
        int const start = random.Below(int(text.size()) + 1);
        ASSERT_EQ(PlainFind(text, pattern, start), FromText(text).Find(pattern.c_str(), start))
            << testing::PrintToString(text) << testing::PrintToString(pattern);
    }
}

TYPED_TEST(QorStringFind, RandomTextsOverSmallAlphabets) {
    using T = TypeParam;
    RandomText random(2);
    std::basic_string<T> const alphabets[] = {Text<T>("ab").characters, Text<T>("abc").characters,
                                              Text<T>("aab\xE9").characters};
    for (int round = 0; round < 6000; ++round) {
        auto const& alphabet = alphabets[round % 3];
        auto const text = random.Of(alphabet, random.Below(round % 10 == 0 ? 2000 : 60));
        auto const pattern = random.Of(alphabet, 1 + random.Below(round % 4 == 0 ? 14 : 5));
        int const start = random.Below(int(text.size()) + 1);
        ASSERT_EQ(PlainFind(text, pattern, start), FromText(text).Find(pattern.c_str(), start))
            << testing::PrintToString(text) << testing::PrintToString(pattern);
    }
}

TYPED_TEST(QorStringFind, PatternsAndSetsAreNotReadBeyondTheirTerminator) {
    using T = TypeParam;
    CQorStringT<T> const s(T('x'), 100);
    for (std::size_t n = 0; n <= 70; ++n) {
        GuardedArray<T> pattern(n + 1);
        std::fill_n(pattern.data(), n, T('x'));
        EXPECT_EQ(0, s.Find(pattern.data()));
        EXPECT_EQ(n == 0 ? -1 : 0, s.FindOneOf(pattern.data()));
        EXPECT_EQ(n == 0 ? 0 : 100, s.SpanIncluding(pattern.data()).GetLength());
        EXPECT_EQ(n == 0 ? 100 : 0, s.SpanExcluding(pattern.data()).GetLength());
        int start = 0;
        EXPECT_EQ(n == 0 ? 100 : 0, s.Tokenize(pattern.data(), start).GetLength());
    }
}

// --- Extraction --------------------------------------------------------------------------------

TYPED_TEST(QorStringExtraction, MidClampsBothArguments) {
    using T = TypeParam;
    auto const s = String<T>("abcdef");
    ExpectPart(Text<T>("ab"), s.Mid(-2, 2));
    ExpectPart(Text<T>("ef"), s.Mid(4, 10));
    ExpectPart(Text<T>(""), s.Mid(7, 1));
    ExpectPart(Text<T>(""), s.Mid(6, 1));
    ExpectPart(Text<T>(""), s.Mid(2, 0));
    ExpectPart(Text<T>(""), s.Mid(2, -1));
    ExpectPart(Text<T>("cd"), s.Mid(2, 2));
    ExpectPart(Text<T>("abcde"), s.Mid(0, 5));
    ExpectPart(Text<T>("ef"), s.Mid(4, 2147483647));
    ExpectPart(Text<T>(""), s.Mid(2147483647, 2147483647));
    ExpectPart(Text<T>(""), s.Mid(-2147483647 - 1, -2147483647 - 1));
}

TYPED_TEST(QorStringExtraction, MidToTheEnd) {
    using T = TypeParam;
    auto const s = String<T>("abcdef");
    ExpectPart(Text<T>("cdef"), s.Mid(2));
    ExpectPart(Text<T>("f"), s.Mid(5));
    ExpectPart(Text<T>(""), s.Mid(6));
    ExpectPart(Text<T>(""), s.Mid(7));
    ExpectWhole(s, s.Mid(0));
    ExpectWhole(s, s.Mid(-3));
}

TYPED_TEST(QorStringExtraction, LeftAndRightClampTheCount) {
    using T = TypeParam;
    auto const s = String<T>("abcdef");
    ExpectPart(Text<T>("ab"), s.Left(2));
    ExpectPart(Text<T>("ef"), s.Right(2));
    ExpectPart(Text<T>(""), s.Left(0));
    ExpectPart(Text<T>(""), s.Right(0));
    ExpectPart(Text<T>(""), s.Left(-1));
    ExpectPart(Text<T>(""), s.Right(-1));
    ExpectPart(Text<T>("abcde"), s.Left(5));
    ExpectPart(Text<T>("bcdef"), s.Right(5));
    EXPECT_EQ(Text<T>("abc"), String<T>("abc").Right(10));
}

TYPED_TEST(QorStringExtraction, WholeStringIsShared) {
    using T = TypeParam;
    auto const s = WithRoom(Text<T>("abcdef"), 10);
    ExpectWhole(s, s.Mid(0, 6));
    ExpectWhole(s, s.Mid(-1, 100));
    ExpectWhole(s, s.Left(6));
    ExpectWhole(s, s.Left(7));
    ExpectWhole(s, s.Right(6));
    ExpectWhole(s, s.Right(2147483647));
    ExpectWhole(s, s.SpanIncluding(Text<T>("abcdef")));
    ExpectWhole(s, s.SpanExcluding(Text<T>("x")));
    EXPECT_EQ(1, Refs(s));
}

TYPED_TEST(QorStringExtraction, WholeOfALockedStringIsACopy) {
    using T = TypeParam;
    auto s = String<T>("abc");
    s.LockBuffer();
    auto const whole = s.Left(3);
    EXPECT_EQ(Text<T>("abc"), whole);
    EXPECT_NE(s.c_str(), whole.c_str());
    EXPECT_EQ(-1, Refs(s));

    auto zeros = String<T>("a\0c");
    zeros.LockBuffer();
    EXPECT_EQ(Text<T>("a"), zeros.Right(3));  // as any copy of a locked string
    EXPECT_EQ(Text<T>("\0c"), zeros.Right(2));
}

TYPED_TEST(QorStringExtraction, EmbeddedZerosAreOrdinaryCharacters) {
    using T = TypeParam;
    auto const s = String<T>("a\0b\0c");
    ExpectPart(Text<T>("\0b\0"), s.Mid(1, 3));
    ExpectPart(Text<T>("a\0"), s.Left(2));
    ExpectPart(Text<T>("\0c"), s.Right(2));
    ExpectPart(Text<T>("\0c"), s.Mid(3));
}

TYPED_TEST(QorStringExtraction, OfTheNilStringIsTheNilString) {
    using T = TypeParam;
    CQorStringT<T> const nil;
    EXPECT_TRUE(IsNil(nil.Mid(0, 1)));
    EXPECT_TRUE(IsNil(nil.Mid(0)));
    EXPECT_TRUE(IsNil(nil.Mid(3)));
    EXPECT_TRUE(IsNil(nil.Left(1)));
    EXPECT_TRUE(IsNil(nil.Right(1)));
    EXPECT_TRUE(IsNil(nil.SpanIncluding(Text<T>("a"))));
    EXPECT_TRUE(IsNil(nil.SpanExcluding(Text<T>("a"))));
}

TYPED_TEST(QorStringExtraction, SpansAreLeadingRuns) {
    using T = TypeParam;
    auto const s = String<T>("aabbcc");
    ExpectPart(Text<T>("aabb"), s.SpanIncluding(Text<T>("ba")));
    ExpectPart(Text<T>(""), s.SpanIncluding(Text<T>("bc")));
    ExpectPart(Text<T>(""), s.SpanIncluding(Text<T>("")));
    ExpectPart(Text<T>("aabb"), s.SpanExcluding(Text<T>("c")));
    ExpectPart(Text<T>(""), s.SpanExcluding(Text<T>("xa")));
    ExpectWhole(s, s.SpanExcluding(Text<T>("")));
}

TYPED_TEST(QorStringExtraction, SpansEndAtAnEmbeddedZero) {
    using T = TypeParam;
    auto const s = String<T>("aa\0aa");
    ExpectPart(Text<T>("aa"), s.SpanIncluding(Text<T>("a")));
    ExpectPart(Text<T>("aa"), s.SpanExcluding(Text<T>("x")));
}

TYPED_TEST(QorStringExtraction, SpansAgreeWithAPlainScan) {
    using T = TypeParam;
    RandomText random(3);
    auto const alphabet = Text<T>("abcd\xE9\xFF").characters;
    for (int round = 0; round < 3000; ++round) {
        auto const set = random.Of(alphabet, random.Below(6));
        auto const text = random.Of(alphabet, random.Below(30));
        auto const inSet = [&set](T ch) {
            return std::find(set.begin(), set.end(), ch) != set.end();
        };
        auto const s = FromText(text);
        auto const firstOutside = std::find_if_not(text.begin(), text.end(), inSet);
        auto const firstInside = std::find_if(text.begin(), text.end(), inSet);
        ASSERT_EQ(firstOutside - text.begin(), s.SpanIncluding(set.c_str()).GetLength());
        ASSERT_EQ(firstInside - text.begin(), s.SpanExcluding(set.c_str()).GetLength());
        ASSERT_EQ(firstInside == text.end() ? -1 : int(firstInside - text.begin()),
                  s.FindOneOf(set.c_str()));
    }
}

// --- Tokenize ----------------------------------------------------------------------------------

TYPED_TEST(QorStringTokenize, YieldsTokensAndMovesPastTheirDelimiter) {
    using T = TypeParam;
    auto const s = String<T>("  a,,b ");
    int start = 0;
    EXPECT_EQ(Text<T>("a"), s.Tokenize(Text<T>(" ,"), start));
    EXPECT_EQ(4, start);
    EXPECT_EQ(Text<T>("b"), s.Tokenize(Text<T>(" ,"), start));
    EXPECT_EQ(7, start);
    EXPECT_EQ(Text<T>(""), s.Tokenize(Text<T>(" ,"), start));
    EXPECT_EQ(-1, start);
    EXPECT_EQ(Text<T>(""), s.Tokenize(Text<T>(" ,"), start));
    EXPECT_EQ(-1, start);
}

TYPED_TEST(QorStringTokenize, LastTokenMovesPastTheTerminator) {
    using T = TypeParam;
    auto const s = String<T>("ab,cd");
    int start = 3;
    EXPECT_EQ(Text<T>("cd"), s.Tokenize(Text<T>(","), start));
    EXPECT_EQ(6, start);
    EXPECT_EQ(Text<T>(""), s.Tokenize(Text<T>(","), start));
    EXPECT_EQ(-1, start);
}

TYPED_TEST(QorStringTokenize, OnlyDelimitersLeftEndsIt) {
    using T = TypeParam;
    int start = 1;
    EXPECT_EQ(Text<T>(""), String<T>("a,,,").Tokenize(Text<T>(","), start));
    EXPECT_EQ(-1, start);
    start = 0;
    EXPECT_EQ(Text<T>(""), CQorStringT<T>().Tokenize(Text<T>(","), start));
    EXPECT_EQ(-1, start);
    start = 100;
    EXPECT_EQ(Text<T>(""), String<T>("abc").Tokenize(Text<T>(","), start));
    EXPECT_EQ(-1, start);
}

TYPED_TEST(QorStringTokenize, NegativeStartStays) {
    using T = TypeParam;
    int start = -5;
    EXPECT_EQ(Text<T>(""), String<T>("abc").Tokenize(Text<T>(","), start));
    EXPECT_EQ(-5, start);
    EXPECT_EQ(Text<T>(""), String<T>("abc").Tokenize(nullptr, start));
    EXPECT_EQ(-5, start);
}

TYPED_TEST(QorStringTokenize, WithoutDelimitersYieldsTheRestAndStays) {
    using T = TypeParam;
    auto const s = String<T>("abc");
    int start = 1;
    EXPECT_EQ(Text<T>("bc"), s.Tokenize(Text<T>(""), start));
    EXPECT_EQ(1, start);
    EXPECT_EQ(Text<T>("bc"), s.Tokenize(nullptr, start));
    EXPECT_EQ(1, start);
    start = 0;
    ExpectWhole(s, s.Tokenize(Text<T>(""), start));
    start = 3;
    EXPECT_EQ(Text<T>(""), s.Tokenize(nullptr, start));
    EXPECT_EQ(-1, start);
}

TYPED_TEST(QorStringTokenize, TextWithoutDelimiterIsSharedWhole) {
    using T = TypeParam;
    auto const s = String<T>("abc");
    int start = 0;
    ExpectWhole(s, s.Tokenize(Text<T>(","), start));
    EXPECT_EQ(4, start);
}

TYPED_TEST(QorStringTokenize, TokensEndAtAnEmbeddedZero) {
    using T = TypeParam;
    auto const s = String<T>("ab\0cd,ef");
    int start = 0;
    EXPECT_EQ(Text<T>("ab"), s.Tokenize(Text<T>(","), start));
    EXPECT_EQ(3, start);
    EXPECT_EQ(Text<T>("cd"), s.Tokenize(Text<T>(","), start));
    EXPECT_EQ(6, start);
}

TYPED_TEST(QorStringTokenize, AZeroWhereATokenShouldBeginGivesAnEmptyToken) {
    using T = TypeParam;
    auto const s = String<T>(",\0ab");
    int start = 0;
    EXPECT_EQ(Text<T>(""), s.Tokenize(Text<T>(","), start));
    EXPECT_EQ(2, start);
    EXPECT_EQ(Text<T>("ab"), s.Tokenize(Text<T>(","), start));
    EXPECT_EQ(5, start);
}

TYPED_TEST(QorStringTokenize, LoopsAgreeWithAPlainScan) {
    using T = TypeParam;
    RandomText random(4);
    auto const alphabet = Text<T>("ab,; \xE9").characters;
    std::basic_string<T> const delimiters[] = {Text<T>(",").characters, Text<T>(",; ").characters,
                                               Text<T>("b\xE9,;").characters};
    for (int round = 0; round < 3000; ++round) {
        auto const text = random.Of(alphabet, random.Below(40));
        auto const& delims = delimiters[round % 3];
        auto const s = FromText(text);
        std::vector<std::basic_string<T>> tokens;
        int start = 0;
        for (auto token = s.Tokenize(delims.c_str(), start); start != -1;
             token = s.Tokenize(delims.c_str(), start))
            tokens.push_back(Content(token));
        ASSERT_EQ(PlainTokens(text, delims), tokens) << testing::PrintToString(text);
    }
}
