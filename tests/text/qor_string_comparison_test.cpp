#include <qorutils/text/qor_string.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/random_text.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringCompare : public testing::Test {};
template <typename T>
class QorStringOperators : public testing::Test {};
template <typename T>
class QorStringInContainers : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringCompare, CharacterTypes, );
TYPED_TEST_SUITE(QorStringOperators, CharacterTypes, );
TYPED_TEST_SUITE(QorStringInContainers, CharacterTypes, );

int Sign(int value) {
    return (value > 0) - (value < 0);
}

int PlainFold(wchar_t ch) {
    return ch >= L'A' && ch <= L'Z' ? ch + 32 : static_cast<int>(ch);
}

// Of zero-terminated ASCII texts.
int PlainCompareNoCase(wchar_t const* a, wchar_t const* b) {
    for (; *a != 0; ++a, ++b)
        if (PlainFold(*a) != PlainFold(*b)) return PlainFold(*a) - PlainFold(*b);
    return -static_cast<int>(*b);
}

template <typename T>
struct Pair {
    TextLiteral<T> a, b;
    int order;
};

template <typename T>
std::vector<Pair<T>> Pairs() {
    return {
        {Text<T>(""), Text<T>(""), 0},           {Text<T>(""), Text<T>("a"), -1},
        {Text<T>("abc"), Text<T>("abc"), 0},     {Text<T>("abc"), Text<T>("abd"), -1},
        {Text<T>("abc"), Text<T>("ab"), 1},      {Text<T>("abc"), Text<T>("abcd"), -1},
        {Text<T>("B"), Text<T>("a"), -1},        {Text<T>("Abc"), Text<T>("abc"), -1},
        {Text<T>("z"), Text<T>("\xE9"), -1},     {Text<T>("\xFF"), Text<T>("\x7F"), 1},
        {Text<T>("ab\0c"), Text<T>("ab\0d"), 0},  // only what stands before the zero counts
    };
}

}  // namespace

// --- Compare -----------------------------------------------------------------------------------

TYPED_TEST(QorStringCompare, OrdersByCode) {
    using T = TypeParam;
    for (auto const& pair : Pairs<T>()) {
        SCOPED_TRACE(testing::PrintToString(pair.a) + " " + testing::PrintToString(pair.b));
        CQorStringT<T> const a(pair.a.c_str(), pair.a.size());
        CQorStringT<T> const b(pair.b.c_str(), pair.b.size());
        EXPECT_EQ(pair.order, Sign(a.Compare(b)));
        EXPECT_EQ(-pair.order, Sign(b.Compare(a)));
        EXPECT_EQ(pair.order, Sign(a.Compare(pair.b)));
    }
}

TYPED_TEST(QorStringCompare, EveryLengthAndPlaceOfTheDifference) {
    using T = TypeParam;
    for (int n = 1; n <= 40; ++n) {
        CQorStringT<T> const a(T('m'), n);
        for (int i = 0; i < n; ++i) {
            auto b = a;
            b.SetAt(i, T('n'));
            ASSERT_LT(a.Compare(b), 0);
            ASSERT_GT(b.Compare(a), 0);
            ASSERT_LT(a.CompareNoCase(b), 0);
            ASSERT_GT(b.CompareNoCase(a), 0);
        }
        ASSERT_EQ(0, a.Compare(CQorStringT<T>(T('m'), n)));
        ASSERT_EQ(0, a.CompareNoCase(CQorStringT<T>(T('M'), n)));
    }
}

TYPED_TEST(QorStringCompare, ReadsNothingBeyondTheTerminator) {
    using T = TypeParam;
    for (std::size_t n = 0; n <= 70; ++n) {
        GuardedArray<T> text(n + 1);
        std::fill_n(text.data(), n, T('x'));
        CQorStringT<T> const same(T('x'), static_cast<int>(n));
        CQorStringT<T> const longer(T('x'), static_cast<int>(n) + 30);
        EXPECT_EQ(0, same.Compare(text.data()));
        EXPECT_GT(longer.Compare(text.data()), 0);
        EXPECT_EQ(0, same.CompareNoCase(text.data()));
        EXPECT_GT(longer.CompareNoCase(text.data()), 0);
    }
}

TEST(QorStringCompareWide, CodesCountAsUnsignedOnEveryMachine) {
    wchar_t const high[] = {static_cast<wchar_t>(0xFFFFFFFFu), 0};
    CQorStringT<wchar_t> const a(L"a");
    EXPECT_LT(a.Compare(high), 0);
    EXPECT_GT(CQorStringT<wchar_t>(high).Compare(a), 0);
    EXPECT_TRUE(a < high);
}

TYPED_TEST(QorStringCompare, NoCaseIgnoresCase) {
    using T = TypeParam;
    struct {
        TextLiteral<T> a, b;
        int order;
    } const cases[] = {
        {Text<T>("abc"), Text<T>("ABC"), 0},  {Text<T>("AbC1["), Text<T>("aBc1["), 0},
        {Text<T>("abc"), Text<T>("ABD"), -1}, {Text<T>("ABD"), Text<T>("abc"), 1},
        {Text<T>("a"), Text<T>("Z"), -1},     {Text<T>("_"), Text<T>("A"), -1},  // folded down
        {Text<T>(""), Text<T>(""), 0},        {Text<T>(""), Text<T>("a"), -1},
        {Text<T>("abc"), Text<T>("AB"), 1},   {Text<T>("ab"), Text<T>("ABC"), -1},
        {Text<T>("ab\0c"), Text<T>("AB"), 0},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.a) + " " + testing::PrintToString(c.b));
        EXPECT_EQ(c.order, Sign(CQorStringT<T>(c.a.c_str(), c.a.size()).CompareNoCase(c.b)));
    }
}

TEST(QorStringCompareNoCaseWide, YieldsTheDifferenceOfTheFoldedCharacters) {
    struct {
        wchar_t const *a, *b;
        int result;
    } const cases[] = {
        {L"abc", L"ABC", 0},
        {L"abc", L"ABCD", -68},  // on purpose: the other's character is not folded
        {L"abc", L"ABCd", -100},
        {L"", L"A", -65},
        {L"", L"", 0},
        {L"ABCD", L"abc", 100},  // but this one's is
        {L"A", L"", 97},
        {L"abX", L"abA", 23},
        {L"aBa", L"AbX", -23},
        {L"A_", L"aA", -2},
        {L"\u00e9", L"e", 0xE9 - 'e'},
        {L"a", L"\U0001F600", 'a' - 0x1F600},
    };
    for (auto const& c : cases) EXPECT_EQ(c.result, CQorStringT<wchar_t>(c.a).CompareNoCase(c.b));
}

TEST(QorStringCompareNoCaseWide, FollowsTheLocale) {
    CQorStringT<wchar_t> const s(L"\u00c9\u0416\u03a3");
    {
        ScopedLocale const locale("C.UTF-8");
        EXPECT_EQ(0, s.CompareNoCase(L"\u00e9\u0436\u03c3"));
        EXPECT_EQ(0x0436 - 0x0437, s.CompareNoCase(L"\u00c9\u0417"));
        EXPECT_EQ(-0x0416, CQorStringT<wchar_t>(L"\u00e9").CompareNoCase(L"\u00c9\u0416"));
    }
    ScopedLocale const locale("C");
    EXPECT_EQ(0xC9 - 0xE9, s.CompareNoCase(L"\u00e9\u0436\u03c3"));
    EXPECT_EQ(0, s.CompareNoCase(L"\u00c9\u0416\u03a3"));
}

TEST(QorStringCompareNoCaseWide, RandomTextsAgreeWithAPlainWalk) {
    RandomText random(6);
    std::wstring const alphabet(L"aAbB[_\0", 7);
    for (int round = 0; round < 20000; ++round) {
        auto const a = random.Of(alphabet, random.Below(24));
        auto b = random.Below(3) == 0 ? random.Of(alphabet, random.Below(24)) : a;
        for (auto& ch : b)
            if (random.Below(2) == 0 && ch >= L'A' && ch <= L'B') ch += 32;
        if (!b.empty() && random.Below(3) == 0) b.pop_back();
        CQorStringT<wchar_t> const s(a.data(), static_cast<int>(a.size()));
        ASSERT_EQ(PlainCompareNoCase(a.c_str(), b.c_str()), s.CompareNoCase(b.c_str()))
            << testing::PrintToString(a) << testing::PrintToString(b);
    }
}

// --- Operators ---------------------------------------------------------------------------------

TYPED_TEST(QorStringOperators, AgreeWithCompareForStringsAndTexts) {
    using T = TypeParam;
    for (auto const& pair : Pairs<T>()) {
        SCOPED_TRACE(testing::PrintToString(pair.a) + " " + testing::PrintToString(pair.b));
        CQorStringT<T> const a(pair.a.c_str(), pair.a.size());
        CQorStringT<T> const b(pair.b.c_str(), pair.b.size());
        T const* const textA = pair.a;
        T const* const textB = pair.b;
        int const order = pair.order;
        EXPECT_EQ(order == 0, a == b);
        EXPECT_EQ(order == 0, a == textB);
        EXPECT_EQ(order == 0, textA == b);
        EXPECT_EQ(order != 0, a != b);
        EXPECT_EQ(order != 0, a != textB);
        EXPECT_EQ(order != 0, textA != b);
        EXPECT_EQ(order < 0, a < b);
        EXPECT_EQ(order < 0, a < textB);
        EXPECT_EQ(order < 0, textA < b);
        EXPECT_EQ(order <= 0, a <= b);
        EXPECT_EQ(order <= 0, a <= textB);
        EXPECT_EQ(order <= 0, textA <= b);
        EXPECT_EQ(order > 0, a > b);
        EXPECT_EQ(order > 0, a > textB);
        EXPECT_EQ(order > 0, textA > b);
        EXPECT_EQ(order >= 0, a >= b);
        EXPECT_EQ(order >= 0, a >= textB);
        EXPECT_EQ(order >= 0, textA >= b);
        EXPECT_EQ(order > 0, b < a);
        EXPECT_EQ(order<0, b> a);
        if (order == 0) {
            EXPECT_EQ(std::hash<CQorStringT<T>>()(a), std::hash<CQorStringT<T>>()(b));
        }
    }
}

TYPED_TEST(QorStringOperators, NullTextCountsAsEmpty) {
    using T = TypeParam;
    T const* const null = nullptr;
    auto const s = String<T>("a");
    CQorStringT<T> const nil;
    EXPECT_TRUE(nil == null);
    EXPECT_TRUE(null == nil);
    EXPECT_TRUE(s != null);
    EXPECT_TRUE(null < s);
    EXPECT_TRUE(s > null);
    EXPECT_EQ(0, nil.Compare(null));
    EXPECT_GT(s.Compare(null), 0);
}

TYPED_TEST(QorStringOperators, SharersAndCopiesAreEqual) {
    using T = TypeParam;
    auto const s = String<T>("abc");
    auto const sharer = s;
    EXPECT_TRUE(s == sharer);
    EXPECT_FALSE(s < sharer);
    EXPECT_TRUE(s == String<T>("abc"));
    EXPECT_TRUE(CQorStringT<T>() == WithRoom(Text<T>(""), 10));
}

TYPED_TEST(QorStringOperators, HashTellsTextsApart) {
    using T = TypeParam;
    std::hash<CQorStringT<T>> const hash{};
    std::set<std::size_t> codes;
    for (int i = 0; i < 26; ++i)
        for (int j = 0; j < 26; ++j) codes.insert(hash(CQorStringT<T>(T('a' + i)) + T('a' + j)));
    EXPECT_EQ(26u * 26u, codes.size());
    EXPECT_EQ(hash(CQorStringT<T>()), hash(WithRoom(Text<T>(""), 10)));
}

// --- Containers --------------------------------------------------------------------------------

TYPED_TEST(QorStringInContainers, MapAndUnorderedMap) {
    using T = TypeParam;
    std::map<CQorStringT<T>, int> ordered;
    std::unordered_map<CQorStringT<T>, int> unordered;
    RandomText random(7);
    std::map<std::basic_string<T>, int> expected;
    for (int i = 0; i < 500; ++i) {
        auto const key = random.Of(Text<T>("abc\xE9").characters, random.Below(5));
        ++expected[key];
        ++ordered[key.c_str()];
        ++unordered[key.c_str()];
    }
    ASSERT_EQ(expected.size(), ordered.size());
    ASSERT_EQ(expected.size(), unordered.size());
    for (auto const& entry : expected) {
        EXPECT_EQ(entry.second, ordered.at(entry.first.c_str()));
        EXPECT_EQ(entry.second, unordered.at(entry.first.c_str()));
    }
}

TYPED_TEST(QorStringInContainers, VectorsGrowSortAndKeepBuffers) {
    using T = TypeParam;
    std::vector<CQorStringT<T>> strings;
    std::vector<T const*> buffers;
    for (int i = 0; i < 200; ++i) {
        strings.push_back(CQorStringT<T>(T('a' + i * 7 % 26), 1 + i % 5));
        buffers.push_back(strings.back().c_str());
    }
    for (std::size_t i = 0; i < buffers.size(); ++i) EXPECT_EQ(buffers[i], strings[i].c_str());

    std::sort(strings.begin(), strings.end());
    EXPECT_TRUE(std::is_sorted(strings.begin(), strings.end()));
    std::sort(buffers.begin(), buffers.end());
    std::vector<T const*> sorted;
    for (auto const& s : strings) {
        EXPECT_EQ(1, Refs(s));
        sorted.push_back(s.c_str());
    }
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(buffers, sorted);  // moved, not copied

    strings.erase(strings.begin() + 10, strings.begin() + 190);
    strings.insert(strings.begin() + 5, 3, String<T>("copies"));
    EXPECT_EQ(23u, strings.size());
    EXPECT_EQ(Text<T>("copies"), strings[7]);
    EXPECT_EQ(strings[5].c_str(), strings[7].c_str());
    std::reverse(strings.begin(), strings.end());
    EXPECT_EQ(Text<T>("copies"), strings[15]);
}

TYPED_TEST(QorStringInContainers, IterationVisitsEveryCharacter) {
    using T = TypeParam;
    auto const s = String<T>("a\0bc");
    std::basic_string<T> visited;
    for (T const ch : s) visited += ch;
    EXPECT_EQ(Text<T>("a\0bc").characters, visited);
    EXPECT_EQ(1, std::count(s.begin(), s.end(), T()));
}
