#include <qorutils/text/qor_string.h>

#include <algorithm>
#include <cstddef>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/scoped_locale.h"
#include "support/string_edits.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringCase : public testing::Test {};
template <typename T>
class QorStringTrim : public testing::Test {};
template <typename T>
class QorStringInsert : public testing::Test {};
template <typename T>
class QorStringDelete : public testing::Test {};
template <typename T>
class QorStringAppend : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringCase, CharacterTypes, );
TYPED_TEST_SUITE(QorStringTrim, CharacterTypes, );
TYPED_TEST_SUITE(QorStringInsert, CharacterTypes, );
TYPED_TEST_SUITE(QorStringDelete, CharacterTypes, );
TYPED_TEST_SUITE(QorStringAppend, CharacterTypes, );

}  // namespace

// --- Case and order ----------------------------------------------------------------------------

TYPED_TEST(QorStringCase, FoldsAndReversesInPlace) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectInPlace(Text<T>("AB1Z[]AZ"), Text<T>("aB1Z[]az"), [](S& s) { s.MakeUpper(); });
    ExpectInPlace(Text<T>("ab1z[]az"), Text<T>("aB1Z[]az"), [](S& s) { s.MakeLower(); });
    ExpectInPlace(Text<T>("dcba"), Text<T>("abcd"), [](S& s) { s.MakeReverse(); });
    ExpectInPlace(Text<T>("cba"), Text<T>("abc"), [](S& s) { s.MakeReverse(); });
    ExpectInPlace(Text<T>("a"), Text<T>("a"), [](S& s) { s.MakeReverse(); });
    ExpectInPlace(Text<T>(""), Text<T>(""), [](S& s) { s.MakeReverse().MakeUpper().MakeLower(); });
}

TYPED_TEST(QorStringCase, EndsAtAnEmbeddedZero) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectInPlace(Text<T>("AB\0cd"), Text<T>("ab\0cd"), [](S& s) { s.MakeUpper(); });
    ExpectInPlace(Text<T>("ab\0CD"), Text<T>("AB\0CD"), [](S& s) { s.MakeLower(); });
    ExpectInPlace(Text<T>("ba\0cd"), Text<T>("ab\0cd"), [](S& s) { s.MakeReverse(); });
}

TYPED_TEST(QorStringCase, ReturnsTheStringAndCopiesBeforeWriting) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    auto s = String<T>("abc");
    EXPECT_EQ(&s, &s.MakeUpper());
    EXPECT_EQ(&s, &s.MakeLower());
    EXPECT_EQ(&s, &s.MakeReverse());
    ExpectPrivateCopy(Text<T>("abc"), [](S& changed) { changed.MakeUpper(); });
    ExpectPrivateCopy(Text<T>("abc"), [](S& changed) { changed.MakeLower(); });
    ExpectPrivateCopy(Text<T>("aba"), [](S& changed) { changed.MakeReverse(); });
}

TEST(QorStringCaseWide, FollowsTheLocale) {
    CQorStringT<wchar_t> const text(L"\u00e9\u0416\u03a3x");
    CQorStringT<wchar_t> s(text);
    {
        ScopedLocale const locale("C.UTF-8");
        EXPECT_STREQ(L"\u00c9\u0416\u03a3X", s.MakeUpper());
        EXPECT_STREQ(L"\u00e9\u0436\u03c3x", s.MakeLower());
    }
    ScopedLocale const locale("C");
    s = text;
    EXPECT_STREQ(L"\u00e9\u0416\u03a3X", s.MakeUpper());
    EXPECT_STREQ(L"\u00e9\u0416\u03a3x", s.MakeLower());
}

TEST(QorStringCaseNarrow, LeavesTheBytesOfMultibyteCharactersAlone) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<char> s("\xC3\xA9x");
    EXPECT_STREQ("\xC3\xA9X", s.MakeUpper());
    EXPECT_STREQ("\xC3\xA9x", s.MakeLower());
}

// --- Trim --------------------------------------------------------------------------------------

TYPED_TEST(QorStringTrim, WhiteSpace) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectInPlace(Text<T>("a"), Text<T>("a \t\n"), [](S& s) { s.TrimRight(); });
    ExpectInPlace(Text<T>("a"), Text<T>("a \t\n\v\f\r"), [](S& s) { s.TrimRight(); });
    ExpectInPlace(Text<T>(" a b"), Text<T>(" a b "), [](S& s) { s.TrimRight(); });
    ExpectInPlace(Text<T>("a b"), Text<T>("a b"), [](S& s) { s.TrimRight(); });
    ExpectInPlace(Text<T>("a b "), Text<T>(" \t\n\v\f\ra b "), [](S& s) { s.TrimLeft(); });
    ExpectInPlace(Text<T>("a"), Text<T>("a"), [](S& s) { s.TrimLeft(); });
    ExpectInPlace(Text<T>("a b"), Text<T>("  a b  "), [](S& s) { s.Trim(); });
}

TYPED_TEST(QorStringTrim, TextOfNothingElseBecomesEmptyAndKeepsItsBuffer) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectInPlace(Text<T>(""), Text<T>(" \t "), [](S& s) { s.Trim(); });
    ExpectInPlace(Text<T>(""), Text<T>(" \t "), [](S& s) { s.TrimLeft(); });
    ExpectInPlace(Text<T>(""), Text<T>(" \t "), [](S& s) { s.TrimRight(); });
    ExpectInPlace(Text<T>(""), Text<T>("xxx"), [](S& s) { s.TrimLeft(T('x')); });
    ExpectInPlace(Text<T>(""), Text<T>("xxx"), [](S& s) { s.TrimRight(T('x')); });
    ExpectInPlace(Text<T>(""), Text<T>("xyx"), [](S& s) { s.TrimLeft(Text<T>("xy")); });
    ExpectInPlace(Text<T>(""), Text<T>("xyx"), [](S& s) { s.TrimRight(Text<T>("yx")); });
    ExpectInPlace(Text<T>(""), Text<T>(""), [](S& s) { s.Trim().Trim(T('x')).Trim(Text<T>("x")); });
}

TYPED_TEST(QorStringTrim, OneCharacter) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectInPlace(Text<T>("xxaxb"), Text<T>("xxaxbxx"), [](S& s) { s.TrimRight(T('x')); });
    ExpectInPlace(Text<T>("axbxx"), Text<T>("xxaxbxx"), [](S& s) { s.TrimLeft(T('x')); });
    ExpectInPlace(Text<T>("axb"), Text<T>("xxaxbxx"), [](S& s) { s.Trim(T('x')); });
    ExpectInPlace(Text<T>("abc"), Text<T>("abc"), [](S& s) { s.Trim(T('x')); });
    ExpectInPlace(Text<T>("abc"), Text<T>("abc"), [](S& s) { s.Trim(T()); });
}

TYPED_TEST(QorStringTrim, AnyCharacterOfASet) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectInPlace(Text<T>("xyaxyb"), Text<T>("xyaxybyx"), [](S& s) { s.TrimRight(Text<T>("xy")); });
    ExpectInPlace(Text<T>("axybyx"), Text<T>("xyaxybyx"), [](S& s) { s.TrimLeft(Text<T>("xy")); });
    ExpectInPlace(Text<T>("axyb"), Text<T>("xyaxybyx"), [](S& s) { s.Trim(Text<T>("xy")); });
    ExpectInPlace(Text<T>("abc"), Text<T>("abc"), [](S& s) { s.Trim(Text<T>("xy")); });
    ExpectInPlace(Text<T>("abc"), Text<T>("abc"), [](S& s) { s.Trim(Text<T>("")); });
    ExpectInPlace(Text<T>("a"),
                  Text<T>("\xE9"
                          "a\xE9\xFF"),
                  [](S& s) { s.Trim(Text<T>("\xFF\xE9")); });
}

TYPED_TEST(QorStringTrim, EmbeddedZerosEndTheTextOnTheRightOnly) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    // The trailing run is the one before the first zero; without one there the text stays.
    ExpectInPlace(Text<T>("a"), Text<T>("a  \0b  "), [](S& s) { s.TrimRight(); });
    ExpectInPlace(Text<T>("a\0b  "), Text<T>("a\0b  "), [](S& s) { s.TrimRight(); });
    ExpectInPlace(Text<T>("a"), Text<T>("axx\0b"), [](S& s) { s.TrimRight(T('x')); });
    ExpectInPlace(Text<T>("a\0x"), Text<T>("a\0x"), [](S& s) { s.TrimRight(T('x')); });
    ExpectInPlace(Text<T>("a"), Text<T>("axy\0b"), [](S& s) { s.TrimRight(Text<T>("xy")); });
    ExpectInPlace(Text<T>("a\0x"), Text<T>("a\0x"), [](S& s) { s.TrimRight(Text<T>("x")); });
    // What follows a zero moves along.
    ExpectInPlace(Text<T>("a\0 b"), Text<T>("  a\0 b"), [](S& s) { s.TrimLeft(); });
    ExpectInPlace(Text<T>("a\0xb"), Text<T>("xxa\0xb"), [](S& s) { s.TrimLeft(T('x')); });
    ExpectInPlace(Text<T>("a\0xb"), Text<T>("xya\0xb"), [](S& s) { s.TrimLeft(Text<T>("xy")); });
    ExpectInPlace(Text<T>("\0x"), Text<T>("xx\0x"), [](S& s) { s.TrimLeft(Text<T>("xy")); });
    ExpectInPlace(Text<T>("\0x"), Text<T>("\0x"), [](S& s) { s.TrimLeft(T('x')); });
}

TYPED_TEST(QorStringTrim, ReturnsTheString) {
    using T = TypeParam;
    auto s = String<T>("abc");
    EXPECT_EQ(&s, &s.Trim());
    EXPECT_EQ(&s, &s.TrimLeft());
    EXPECT_EQ(&s, &s.TrimRight());
    EXPECT_EQ(&s, &s.Trim(T('x')));
    EXPECT_EQ(&s, &s.TrimLeft(T('x')));
    EXPECT_EQ(&s, &s.TrimRight(T('x')));
    EXPECT_EQ(&s, &s.Trim(Text<T>("x")));
    EXPECT_EQ(&s, &s.TrimLeft(Text<T>("x")));
    EXPECT_EQ(&s, &s.TrimRight(Text<T>("x")));
}

TYPED_TEST(QorStringTrim, CopiesBeforeWritingEvenIfNothingIsCutOff) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    for (auto const& text : {Text<T>("abc"), Text<T>(" xabcx ")}) {
        ExpectPrivateCopy(text, [](S& s) { s.TrimRight(); });
        ExpectPrivateCopy(text, [](S& s) { s.TrimLeft(); });
        ExpectPrivateCopy(text, [](S& s) { s.Trim(); });
        ExpectPrivateCopy(text, [](S& s) { s.TrimRight(T('x')); });
        ExpectPrivateCopy(text, [](S& s) { s.TrimLeft(T('x')); });
        ExpectPrivateCopy(text, [](S& s) { s.Trim(T('x')); });
        ExpectPrivateCopy(text, [](S& s) { s.TrimRight(Text<T>("x")); });
        ExpectPrivateCopy(text, [](S& s) { s.TrimRight(Text<T>("")); });
        ExpectPrivateCopy(text, [](S& s) { s.TrimLeft(Text<T>("x")); });
        ExpectPrivateCopy(text, [](S& s) { s.Trim(Text<T>("x")); });
        ExpectPrivateCopy(text, [](S& s) { s.Trim(Text<T>("")); });
    }
}

TYPED_TEST(QorStringTrim, LeftWithoutASetChangesAndCopiesNothing) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectStillShared(Text<T>(" a "), [](S& s) { s.TrimLeft(Text<T>("")); });
    ExpectStillShared(Text<T>(" a "), [](S& s) { s.TrimLeft(static_cast<T const*>(nullptr)); });
    ExpectStillShared(Text<T>(" a "), [](S& s) { s.TrimRight(static_cast<T const*>(nullptr)); });
}

TYPED_TEST(QorStringTrim, SetsAreNotReadBeyondTheirTerminator) {
    using T = TypeParam;
    for (std::size_t n = 1; n <= 40; ++n) {
        GuardedArray<T> set(n + 1);
        std::fill_n(set.data(), n, T('x'));
        auto s = String<T>("xxaxx");
        EXPECT_EQ(Text<T>("a"), s.Trim(set.data()));
    }
}

TEST(QorStringTrimWide, WhiteSpaceFollowsTheLocale) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<wchar_t> s(L"\u2003 a\u2003b\u3000\u2003");
    EXPECT_STREQ(L"a\u2003b", s.Trim());
    s = L"\u00a0a\u00a0";  // does not count as a space where lines break
    EXPECT_STREQ(L"\u00a0a\u00a0", s.Trim());
}

TEST(QorStringTrimNarrow, BytesOfMultibyteCharactersAreTestedOneByOne) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<char> s(
        "\xE2\x80\x83"
        "a\xE2\x80\x83");  // the bytes of U+2003
    EXPECT_STREQ(
        "\xE2\x80\x83"
        "a\xE2\x80\x83",
        s.Trim());
    s = "\xFF"
        "a\xFF ";
    EXPECT_STREQ(
        "\xFF"
        "a\xFF",
        s.Trim());
}

// --- Insert ------------------------------------------------------------------------------------

TYPED_TEST(QorStringInsert, CharacterAtAClampedIndex) {
    using T = TypeParam;
    struct {
        int index;
        TextLiteral<T> expected;
    } const cases[] = {
        {-7, Text<T>("xab")}, {0, Text<T>("xab")},  {1, Text<T>("axb")},
        {2, Text<T>("abx")},  {99, Text<T>("abx")}, {2147483647, Text<T>("abx")},
    };
    for (auto const& c : cases) {
        auto s = String<T>("ab");
        EXPECT_EQ(3, s.Insert(c.index, T('x')));
        EXPECT_EQ(c.expected, s);
        EXPECT_EQ(3, s.GetAllocLength());
        ExpectInPlace(c.expected, Text<T>("ab"),
                      [&c](CQorStringT<T>& roomy) { roomy.Insert(c.index, T('x')); });
        ExpectPrivateCopy(Text<T>("ab"),
                          [&c](CQorStringT<T>& sharer) { sharer.Insert(c.index, T('x')); });
    }
}

TYPED_TEST(QorStringInsert, ZeroCharacterCounts) {
    using T = TypeParam;
    auto s = String<T>("ab");
    EXPECT_EQ(3, s.Insert(1, T()));
    EXPECT_EQ(Text<T>("a\0b"), s);
    EXPECT_EQ(4, s.Insert(3, T('x')));
    EXPECT_EQ(Text<T>("a\0bx"), s);
    EXPECT_EQ(6, s.Insert(2, Text<T>("yz")));
    EXPECT_EQ(Text<T>("a\0yzbx"), s);
}

TYPED_TEST(QorStringInsert, IntoTheNilString) {
    using T = TypeParam;
    CQorStringT<T> s;
    EXPECT_EQ(1, s.Insert(5, T('x')));
    EXPECT_EQ(Text<T>("x"), s);
    EXPECT_EQ(1, s.GetAllocLength());
    CQorStringT<T> t;
    EXPECT_EQ(2, t.Insert(-1, Text<T>("xy")));
    EXPECT_EQ(Text<T>("xy"), t);
    EXPECT_EQ(2, t.GetAllocLength());
}

TYPED_TEST(QorStringInsert, TextAtAClampedIndex) {
    using T = TypeParam;
    struct {
        int index;
        TextLiteral<T> expected;
    } const cases[] = {
        {-7, Text<T>("xyzab")}, {0, Text<T>("xyzab")},  {1, Text<T>("axyzb")},
        {2, Text<T>("abxyz")},  {99, Text<T>("abxyz")}, {2147483647, Text<T>("abxyz")},
    };
    for (auto const& c : cases) {
        auto s = String<T>("ab");
        EXPECT_EQ(5, s.Insert(c.index, Text<T>("xyz\0more")));
        EXPECT_EQ(c.expected, s);
        EXPECT_EQ(5, s.GetAllocLength());
        ExpectInPlace(c.expected, Text<T>("ab"),
                      [&c](CQorStringT<T>& roomy) { roomy.Insert(c.index, Text<T>("xyz")); });
        ExpectPrivateCopy(Text<T>("ab"),
                          [&c](CQorStringT<T>& sharer) { sharer.Insert(c.index, Text<T>("x")); });
    }
}

TYPED_TEST(QorStringInsert, NothingCopiesNothing) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectStillShared(Text<T>("ab"), [](S& s) { EXPECT_EQ(2, s.Insert(0, Text<T>(""))); });
    ExpectStillShared(Text<T>("ab"),
                      [](S& s) { EXPECT_EQ(2, s.Insert(0, static_cast<T const*>(nullptr))); });
}

TYPED_TEST(QorStringInsert, TextInsideTheString) {
    using T = TypeParam;
    auto s = String<T>("abc");
    EXPECT_EQ(6, s.Insert(1, s));
    EXPECT_EQ(Text<T>("aabcbc"), s);
    auto roomy = WithRoom(Text<T>("abc"), 20);
    EXPECT_EQ(6, roomy.Insert(1, roomy));
    EXPECT_EQ(Text<T>("aabcbc"), roomy);
    EXPECT_EQ(10, roomy.Insert(0, roomy.c_str() + 2));
    EXPECT_EQ(Text<T>("bcbcaabcbc"), roomy);
    EXPECT_EQ(13, roomy.Insert(10, roomy.c_str() + 7));
    EXPECT_EQ(Text<T>("bcbcaabcbccbc"), roomy);
    auto const keeper = String<T>("abc");
    auto sharer = keeper;
    EXPECT_EQ(5, sharer.Insert(2, sharer.c_str() + 1));
    EXPECT_EQ(Text<T>("abbcc"), sharer);
    EXPECT_EQ(Text<T>("abc"), keeper);
}

TYPED_TEST(QorStringInsert, PushBackAppendsOneCharacter) {
    using T = TypeParam;
    CQorStringT<T> s;
    EXPECT_EQ(1, s.push_back(T('a')));
    EXPECT_EQ(2, s.push_back(T()));
    EXPECT_EQ(3, s.push_back(T('b')));
    EXPECT_EQ(Text<T>("a\0b"), s);
    EXPECT_EQ(3, s.GetAllocLength());
    ExpectPrivateCopy(Text<T>("ab"), [](CQorStringT<T>& sharer) { sharer.push_back(T('x')); });
}

// --- Delete ------------------------------------------------------------------------------------

TYPED_TEST(QorStringDelete, RemovesCharactersAndReturnsTheLengthBefore) {
    using T = TypeParam;
    struct {
        int index, count;
        TextLiteral<T> expected;
    } const cases[] = {
        {1, 2, Text<T>("ad")},
        {0, 1, Text<T>("bcd")},
        {3, 1, Text<T>("abc")},
        {0, 4, Text<T>("")},
        {-5, 1, Text<T>("bcd")},
        {0, 2147483647, Text<T>("")},
        {1, 3, Text<T>("a")},
        {2, 100, Text<T>("ab")},
        {3, 2147483647, Text<T>("abc")},
        {-2147483647 - 1, 2, Text<T>("cd")},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.index << ", " << c.count);
        ExpectInPlace(c.expected, Text<T>("abcd"),
                      [&c](CQorStringT<T>& s) { EXPECT_EQ(4, s.Delete(c.index, c.count)); });
        ExpectPrivateCopy(Text<T>("abcd"),
                          [&c](CQorStringT<T>& sharer) { sharer.Delete(c.index, c.count); });
    }
    auto s = String<T>("abcd");
    EXPECT_EQ(4, s.Delete(1));
    EXPECT_EQ(Text<T>("acd"), s);
}

TYPED_TEST(QorStringDelete, NothingToRemoveCopiesNothing) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectStillShared(Text<T>("abcd"), [](S& s) { EXPECT_EQ(4, s.Delete(4)); });
    ExpectStillShared(Text<T>("abcd"), [](S& s) { EXPECT_EQ(4, s.Delete(99, 5)); });
    ExpectStillShared(Text<T>("abcd"), [](S& s) { EXPECT_EQ(4, s.Delete(1, 0)); });
    ExpectStillShared(Text<T>("abcd"), [](S& s) { EXPECT_EQ(4, s.Delete(1, -3)); });
    EXPECT_EQ(0, CQorStringT<T>().Delete(0));
}

TYPED_TEST(QorStringDelete, EmbeddedZerosAreOrdinaryCharacters) {
    using T = TypeParam;
    auto s = String<T>("a\0b\0c");
    EXPECT_EQ(5, s.Delete(1, 2));
    EXPECT_EQ(Text<T>("a\0c"), s);
}

TYPED_TEST(QorStringDelete, RemoveDropsEveryOccurrence) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectInPlace(Text<T>("bnn"), Text<T>("banana"), [](S& s) { EXPECT_EQ(3, s.Remove(T('a'))); });
    ExpectInPlace(Text<T>("bn\0n"), Text<T>("ban\0ana"),
                  [](S& s) { EXPECT_EQ(3, s.Remove(T('a'))); });
    ExpectInPlace(Text<T>("banana"), Text<T>("ban\0ana"),
                  [](S& s) { EXPECT_EQ(1, s.Remove(T())); });
    ExpectInPlace(Text<T>(""), Text<T>("aaa"), [](S& s) { EXPECT_EQ(3, s.Remove(T('a'))); });
    ExpectInPlace(Text<T>("abc"), Text<T>("abc"), [](S& s) { EXPECT_EQ(0, s.Remove(T('x'))); });
    ExpectPrivateCopy(Text<T>("abc"), [](S& s) { s.Remove(T('x')); });
    ExpectPrivateCopy(Text<T>("abc"), [](S& s) { s.Remove(T('a')); });
}

// --- Appending ---------------------------------------------------------------------------------

TYPED_TEST(QorStringAppend, StringKeepsItsZeros) {
    using T = TypeParam;
    auto s = String<T>("ab");
    EXPECT_EQ(&s, &(s += String<T>("\0c\0")));
    EXPECT_EQ(Text<T>("ab\0c\0"), s);
    EXPECT_EQ(5, s.GetAllocLength());
}

TYPED_TEST(QorStringAppend, TextEndsAtItsTerminator) {
    using T = TypeParam;
    auto s = String<T>("ab");
    EXPECT_EQ(&s, &(s += Text<T>("cd\0e")));
    EXPECT_EQ(Text<T>("abcd"), s);
    EXPECT_EQ(4, s.GetAllocLength());
}

TYPED_TEST(QorStringAppend, CharacterEvenWhenZero) {
    using T = TypeParam;
    using Other = typename CQorStringT<T>::Other;
    auto s = String<T>("ab");
    EXPECT_EQ(&s, &(s += T('c')));
    s += T();
    s += Other('d');
    s += Other();
    EXPECT_EQ(Text<T>("abc\0d\0"), s);
    EXPECT_EQ(6, s.GetAllocLength());
}

TEST(QorStringAppendNarrow, WideCharacterIsNarrowedByValue) {
    CQorStringT<char> s("a");
    s += static_cast<wchar_t>(0x20AC);
    EXPECT_EQ(Text<char>("a\xAC"), s);
}

TYPED_TEST(QorStringAppend, NothingChangesNothing) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    ExpectStillShared(Text<T>("ab"), [](S& s) { s += S(); });
    ExpectStillShared(Text<T>("ab"), [](S& s) { s += Text<T>(""); });
    ExpectStillShared(Text<T>("ab"), [](S& s) { s += static_cast<T const*>(nullptr); });
    CQorStringT<T> nil;
    nil += nil;
    nil += CQorStringT<T>();
    EXPECT_TRUE(IsNil(nil));
}

TYPED_TEST(QorStringAppend, GrowsExactlyAndUsesTheRoomThereIs) {
    using T = TypeParam;
    CQorStringT<T> s;
    for (int n = 1; n <= 100; ++n) {
        s += T('x');
        ASSERT_EQ(n, s.GetAllocLength());
        ASSERT_EQ(n, s.GetLength());
    }
    EXPECT_EQ(CQorStringT<T>(T('x'), 100), s);
    T const* const buffer = s.GetBuffer(200);
    for (int n = 1; n <= 100; ++n) s += T('y');
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(200, s.GetAllocLength());
    EXPECT_EQ(CQorStringT<T>(T('x'), 100) + CQorStringT<T>(T('y'), 100), s);
    EXPECT_TRUE(IsTerminated(s));
}

TYPED_TEST(QorStringAppend, ToASharedStringLeavesTheOtherAlone) {
    using T = TypeParam;
    using S = CQorStringT<T>;
    auto const keeper = WithRoom(Text<T>("ab"), 10);
    for (auto const& append : {+[](S& s) { s += T('x'); }, +[](S& s) { s += Text<T>("x"); },
                               +[](S& s) { s += String<T>("x"); }}) {
        auto s = keeper;
        append(s);
        EXPECT_EQ(Text<T>("abx"), s);
        EXPECT_EQ(3, s.GetAllocLength());
        EXPECT_EQ(Text<T>("ab"), keeper);
        EXPECT_EQ(1, Refs(keeper));
    }
}

TYPED_TEST(QorStringAppend, KeepsTheLockWhereThereIsRoom) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("ab"), 10);
    T const* const buffer = s.LockBuffer();
    s += T('c');
    s += Text<T>("de");
    s += String<T>("f");
    EXPECT_EQ(Text<T>("abcdef"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(-1, Refs(s));
}

TYPED_TEST(QorStringAppend, TextInsideTheString) {
    using T = TypeParam;
    auto s = String<T>("abc");
    s += s;
    EXPECT_EQ(Text<T>("abcabc"), s);
    s += s.c_str() + 4;
    EXPECT_EQ(Text<T>("abcabcbc"), s);
    auto roomy = WithRoom(Text<T>("abc"), 40);
    T const* const buffer = roomy.c_str();
    roomy += roomy;
    roomy += roomy.c_str();
    roomy += roomy.c_str() + 11;
    roomy += roomy[0];
    EXPECT_EQ(Text<T>("abcabcabcabcca"), roomy);
    EXPECT_EQ(buffer, roomy.c_str());
    auto const keeper = String<T>("abc");
    auto sharer = keeper;
    sharer += sharer;
    EXPECT_EQ(Text<T>("abcabc"), sharer);
    EXPECT_EQ(Text<T>("abc"), keeper);
}

TYPED_TEST(QorStringAppend, PlusJoinsStringsTextsAndCharacters) {
    using T = TypeParam;
    auto const a = String<T>("a\0b");
    auto const b = String<T>("c\0");
    EXPECT_EQ(Text<T>("a\0bc\0"), a + b);
    EXPECT_EQ(5, (a + b).GetAllocLength());
    auto const text = Text<T>("xy");
    EXPECT_EQ(Text<T>("a\0bxy"), a + text.c_str());
    EXPECT_EQ(Text<T>("xya\0b"), text.c_str() + a);
    EXPECT_EQ(Text<T>("a\0bz"), a + T('z'));
    EXPECT_EQ(Text<T>("za\0b"), T('z') + a);
    EXPECT_EQ(Text<T>("a\0b\0"), a + T());
    EXPECT_EQ(Text<T>("\0a\0b"), T() + a);
    EXPECT_EQ(Text<T>("-a\0bxyc\0"), T('-') + a + text.c_str() + b);
    T const* const null = nullptr;
    EXPECT_EQ(Text<T>("a\0b"), a + null);
    EXPECT_EQ(Text<T>("a\0b"), null + a);
    EXPECT_TRUE(IsNil(CQorStringT<T>() + CQorStringT<T>()));
    EXPECT_TRUE(IsNil(CQorStringT<T>() + null));
    EXPECT_TRUE(IsNil(Text<T>("").c_str() + CQorStringT<T>()));
    EXPECT_EQ(Text<T>("a\0ba\0b"), a + a);
    EXPECT_EQ(Text<T>("a\0b"), a);
}
