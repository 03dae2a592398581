#include <qorutils/text/qor_string.h>

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/random_text.h"
#include "support/replace_oracle.h"
#include "support/string_edits.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringReplace : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringReplace, CharacterTypes, );

}  // namespace

TYPED_TEST(QorStringReplace, CharacterEverywhereBeyondZerosToo) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("ban\0na"), 10);
    T const* const buffer = s.c_str();
    EXPECT_EQ(2, s.Replace(T('a'), T('o')));
    EXPECT_EQ(Text<T>("bon\0no"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(0, s.Replace(T('x'), T('y')));
    EXPECT_EQ(1, s.Replace(T(), T('-')));
    EXPECT_EQ(Text<T>("bon-no"), s);
    EXPECT_EQ(2, s.Replace(T('o'), T()));
    EXPECT_EQ(Text<T>("b\0n-n\0"), s);
}

TYPED_TEST(QorStringReplace, CharacterByItselfCopiesNothing) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectStillShared(Text<T>("axa"), [](S& s) { EXPECT_EQ(0, s.Replace(T('x'), T('x'))); });
    ExpectPrivateCopy(Text<T>("axa"), [](S& s) { EXPECT_EQ(1, s.Replace(T('x'), T('y'))); });
    ExpectPrivateCopy(Text<T>("axa"), [](S& s) { EXPECT_EQ(0, s.Replace(T('y'), T('z'))); });
}

TYPED_TEST(QorStringReplace, TextByTextFromLeftToRightWithoutOverlap) {
    using T = TypeParam;
    struct {
        TextLiteral<T> text, from, to, expected;
        int count;
    } const cases[] = {
        {Text<T>("aaaa"), Text<T>("aa"), Text<T>("b"), Text<T>("bb"), 2},
        {Text<T>("aaaaa"), Text<T>("aa"), Text<T>("b"), Text<T>("bba"), 2},
        {Text<T>("ababab"), Text<T>("abab"), Text<T>("x"), Text<T>("xab"), 1},
        {Text<T>("banana"), Text<T>("a"), Text<T>("xyz"), Text<T>("bxyznxyznxyz"), 3},
        {Text<T>("banana"), Text<T>("an"), Text<T>("an"), Text<T>("banana"), 2},
        {Text<T>("banana"), Text<T>("an"), Text<T>("NA"), Text<T>("bNANAa"), 2},
        {Text<T>("banana"), Text<T>("an"), Text<T>(""), Text<T>("ba"), 2},
        {Text<T>("aaa"), Text<T>("a"), Text<T>(""), Text<T>(""), 3},
        {Text<T>("a"), Text<T>("a"), Text<T>("aa"), Text<T>("aa"), 1},  // not replaced again
        {Text<T>("xab"), Text<T>("ab"), Text<T>("abab"), Text<T>("xabab"), 1},
        {Text<T>("aab"), Text<T>("ab"), Text<T>("b"), Text<T>("ab"), 1},  // nor matched anew
        {Text<T>("a\0a\0a"), Text<T>("a"), Text<T>("xy"), Text<T>("xy\0xy\0xy"), 3},
        {Text<T>("\0a\0"), Text<T>("a"), Text<T>("xy"), Text<T>("\0xy\0"), 1},
        {Text<T>("b\0\0a"), Text<T>("a"), Text<T>(""), Text<T>("b\0\0"), 1},
        {Text<T>("a\0b"), Text<T>("ab"), Text<T>("x"), Text<T>("a\0b"), 0},
        {Text<T>("abc"), Text<T>("abcd"), Text<T>("x"), Text<T>("abc"), 0},
        {Text<T>("\xE9\xFF"), Text<T>("\xFF"), Text<T>("\xE9\xE9"), Text<T>("\xE9\xE9\xE9"), 1},
        {Text<T>(""), Text<T>("a"), Text<T>("x"), Text<T>(""), 0},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.text));
        CQorStringT<T> s(c.text.c_str(), c.text.size());
        EXPECT_EQ(c.count, s.Replace(c.from, c.to));
        EXPECT_EQ(c.expected, s);
        EXPECT_EQ(std::max(c.text.size(), c.expected.size()), s.GetAllocLength());
    }
}

TYPED_TEST(QorStringReplace, TextOnASharedStringLeavesTheOtherAlone) {
    using T = TypeParam;
    auto const keeper = WithRoom(Text<T>("banana"), 20);
    auto s = keeper;
    EXPECT_EQ(3, s.Replace(Text<T>("a"), Text<T>("xyz")));
    EXPECT_EQ(Text<T>("bxyznxyznxyz"), s);
    EXPECT_EQ(12, s.GetAllocLength());
    EXPECT_EQ(Text<T>("banana"), keeper);
    EXPECT_EQ(1, Refs(keeper));

    s = keeper;
    EXPECT_EQ(3, s.Replace(Text<T>("a"), Text<T>("")));
    EXPECT_EQ(Text<T>("bnn"), s);
    EXPECT_EQ(6, s.GetAllocLength());
    EXPECT_EQ(Text<T>("banana"), keeper);
}

TYPED_TEST(QorStringReplace, TextThatDoesNotOccurCopiesNothing) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    T const* const null = nullptr;
    auto const text = Text<T>("ban\0ana");
    ExpectStillShared(text, [](S& s) { EXPECT_EQ(0, s.Replace(Text<T>("x"), Text<T>("y"))); });
    ExpectStillShared(text, [](S& s) { EXPECT_EQ(0, s.Replace(Text<T>(""), Text<T>("y"))); });
    ExpectStillShared(text, [=](S& s) { EXPECT_EQ(0, s.Replace(null, Text<T>("y"))); });
    ExpectStillShared(text, [=](S& s) { EXPECT_EQ(0, s.Replace(null, null)); });
    ExpectPrivateCopy(text, [](S& s) { EXPECT_EQ(3, s.Replace(Text<T>("a"), Text<T>("a"))); });
}

TYPED_TEST(QorStringReplace, TextByNullRemovesIt) {
    using T = TypeParam;
    auto s = String<T>("banana");
    EXPECT_EQ(2, s.Replace(Text<T>("an"), static_cast<T const*>(nullptr)));
    EXPECT_EQ(Text<T>("ba"), s);
}

TYPED_TEST(QorStringReplace, TextInsideTheBufferKeepsTheBuffer) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectInPlace(Text<T>("xnx"), Text<T>("anana"),
                  [](S& s) { EXPECT_EQ(1, s.Replace(Text<T>("anana"), Text<T>("xnx"))); });
    ExpectInPlace(Text<T>("bxxnxxn"), Text<T>("banan"),
                  [](S& s) { EXPECT_EQ(2, s.Replace(Text<T>("a"), Text<T>("xx"))); });
}

TYPED_TEST(QorStringReplace, GrowingInsideTheBufferChangesOnlyRunsThatBeginBeforeTheOldLength) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("a\0a"), 7);
    T* const buffer = s.GetBuffer(7);
    std::fill(buffer + 4, buffer + 7, T('#'));
    EXPECT_EQ(2, s.Replace(Text<T>("a"), Text<T>("xyz")));
    // The second run has moved to index 4, beyond the old length 3, and stays; its room is counted.
    EXPECT_EQ(7, s.GetLength());
    EXPECT_EQ(Text<T>("xyz\0a\0#").characters, Content(s));
    EXPECT_EQ(buffer, s.c_str());
}

TYPED_TEST(QorStringReplace, TextsMayLieInsideTheString) {
    using T = TypeParam;
    auto s = String<T>("abcab");
    EXPECT_EQ(1, s.Replace(s, s));
    EXPECT_EQ(Text<T>("abcab"), s);
    EXPECT_EQ(1, s.Replace(s, Text<T>("x")));
    EXPECT_EQ(Text<T>("x"), s);

    s = Text<T>("abcab");
    EXPECT_EQ(2, s.Replace(s.c_str() + 3, s));  // "ab" by "abcab"
    EXPECT_EQ(Text<T>("abcabcabcab"), s);

    s = Text<T>("abcab");
    EXPECT_EQ(2, s.Replace(Text<T>("a"), s));
    EXPECT_EQ(Text<T>("abcabbcabcabb"), s);

    auto roomy = WithRoom(Text<T>("abcab"), 40);
    EXPECT_EQ(2, roomy.Replace(roomy.c_str() + 3, roomy));
    EXPECT_EQ(Text<T>("abcabcabcab"), roomy);

    auto shrinking = String<T>("abcabcb");
    EXPECT_EQ(3, shrinking.Replace(shrinking.c_str() + 6, Text<T>("")));
    EXPECT_EQ(Text<T>("acac"), shrinking);

    auto const keeper = String<T>("abcab");
    auto sharer = keeper;
    EXPECT_EQ(2, sharer.Replace(sharer.c_str() + 3, sharer.c_str() + 2));
    EXPECT_EQ(Text<T>("cabccab"), sharer);
    EXPECT_EQ(Text<T>("abcab"), keeper);
}

TYPED_TEST(QorStringReplace, TextsInsideTheStringMayBeOverwrittenOnTheWay) {
    using T = TypeParam;
    auto pattern = WithRoom(Text<T>("abcab"), 40);
    EXPECT_EQ(2, pattern.Replace(pattern.c_str() + 3, Text<T>("xyzw")));
    EXPECT_EQ(Text<T>("xyzwcxyzw"), pattern);

    auto replacement = WithRoom(Text<T>("abcab"), 40);
    EXPECT_EQ(2, replacement.Replace(Text<T>("a"), replacement.c_str() + 1));
    EXPECT_EQ(Text<T>("bcabbcbcabb"), replacement);

    auto firstRun = String<T>("ab\0abab");
    EXPECT_EQ(3, firstRun.Replace(firstRun, Text<T>("x")));
    EXPECT_EQ(Text<T>("x\0xx"), firstRun);
}

TYPED_TEST(QorStringReplace, RandomTextsInsideTheStringAgreeWithCopiesOfThem) {
    using T = TypeParam;
    RandomText random(8);
    auto const alphabet = Text<T>("aab\0").characters;
    for (int round = 0; round < 8000; ++round) {
        auto const text = random.Of(alphabet, 1 + random.Below(12));
        int const length = static_cast<int>(text.size());
        auto s = WithRoom(TextLiteral<T>{text}, length + random.Below(2) * 200);
        std::basic_string<T> const spare(static_cast<std::size_t>(s.GetAllocLength() - length),
                                         T('#'));
        std::copy(spare.begin(), spare.end(), s.GetBuffer(0) + length);
        s.ReleaseBuffer(length);
        bool const shared = random.Below(3) == 0;
        CQorStringT<T> const keeper = shared ? s : CQorStringT<T>();
        ReplaceOracle<T> oracle(std::vector<T>(s.begin(), s.begin() + s.GetAllocLength() + 1),
                                length, shared);

        T const* from = s.c_str() + random.Below(length);
        T const* to = s.c_str() + random.Below(length + 1);
        std::basic_string<T> const copyOfFrom(from);
        std::basic_string<T> const copyOfTo(to);
        int const kind = random.Below(3);
        if (kind == 1) from = copyOfFrom.c_str();
        if (kind == 2) to = copyOfTo.c_str();
        ASSERT_EQ(oracle.Replace(copyOfFrom.c_str(), copyOfTo.c_str()), s.Replace(from, to));
        ASSERT_EQ(oracle.Text(), Content(s)) << testing::PrintToString(text);
    }
}

TYPED_TEST(QorStringReplace, RandomTextsAgreeWithMovingTheRemainderAtEveryMatch) {
    using T = TypeParam;
    RandomText random(5);
    std::basic_string<T> const alphabets[] = {Text<T>("ab\0").characters, Text<T>("aab").characters,
                                              Text<T>("abc\0#").characters};
    auto const patternAlphabet = Text<T>("aab").characters;
    for (int round = 0; round < 12000; ++round) {
        auto const text = random.Of(alphabets[round % 3], random.Below(40));
        auto const from = random.Of(patternAlphabet, 1 + random.Below(3));
        auto const to = random.Of(patternAlphabet, random.Below(6));
        int const length = static_cast<int>(text.size());
        int const spare = random.Below(3) == 0 ? 0 : random.Below(80);
        bool const shared = random.Below(4) == 0;

        CQorStringT<T> s;
        T* const buffer = s.GetBuffer(length + spare + 1);
        std::fill(buffer, buffer + length + spare + 1, T('#'));
        buffer[length + spare] = T();
        std::copy(text.begin(), text.end(), buffer);
        s.ReleaseBuffer(length);
        ReplaceOracle<T> oracle(std::vector<T>(buffer, buffer + length + spare + 2), length,
                                shared);
        CQorStringT<T> const keeper = shared ? s : CQorStringT<T>();

        ASSERT_EQ(oracle.Replace(from.c_str(), to.c_str()), s.Replace(from.c_str(), to.c_str()));
        ASSERT_EQ(oracle.Text(), Content(s))
            << testing::PrintToString(text) << " from " << testing::PrintToString(from) << " to "
            << testing::PrintToString(to) << " spare " << spare << " shared " << shared;
        if (s.c_str() != keeper.c_str()) {
            ASSERT_EQ(oracle.Capacity(), s.GetAllocLength());
        }
        if (shared) {
            ASSERT_EQ(text, Content(keeper));
        }
    }
}
