#include <qorutils/text/qor_string.h>

#include <climits>
#include <cstdarg>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/text_literal.h"

using qor_text::CQorStringT;

namespace {

template <typename T>
class QorStringFormat : public testing::Test {};

using CharacterTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(QorStringFormat, CharacterTypes, );

// The format that prints one T const*.
template <typename T>
T const* OneString();
template <>
char const* OneString() {
    return "%s";
}
template <>
wchar_t const* OneString() {
    return L"%ls";
}

// Called by pointer, so that the same lines serve both types.
template <typename T>
void (CQorStringT<T>::*const kFormat)(T const*, ...) = &CQorStringT<T>::Format;

template <typename T, typename... Arguments>
void Format(CQorStringT<T>& s, T const* format, Arguments... arguments) {
    (s.*kFormat<T>)(format, arguments...);
}

template <typename T>
void CallFormatV(CQorStringT<T>& s, T const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    s.FormatV(format, arguments);
    va_end(arguments);
}

// Both strings from one argument list.
template <typename T>
void CallFormatVTwice(CQorStringT<T>& first, CQorStringT<T>& second, T const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    first.FormatV(format, arguments);
    second.FormatV(format, arguments);
    va_end(arguments);
}

}  // namespace

TYPED_TEST(QorStringFormat, FormatVLeavesTheArgumentListAsItIs) {
    using T = TypeParam;
    for (std::size_t const length : {3u, 2000u, 2040u}) {
        CQorStringT<T> const tail(T('x'), static_cast<int>(length));
        CQorStringT<T> first, second;
        CallFormatVTwice<T>(first, second, Text<T>("%d %s"), 11, std::string(length, 'x').c_str());
        EXPECT_EQ(CQorStringT<T>(Text<T>("11 ")) + tail, first) << length;
        EXPECT_EQ(first, second) << length;
    }
}

TEST(QorStringFormatNarrow, LongFormatVLeavesTheArgumentListAsItIs) {
    std::string const text(3000, 'x');
    CQorStringT<char> first, second;
    CallFormatVTwice<char>(first, second, "%d %s %d", 11, text.c_str(), 22);
    EXPECT_EQ(("11 " + text + " 22").c_str(), first);
    EXPECT_EQ(first, second);
}

TYPED_TEST(QorStringFormat, FormatsLikePrintf) {
    using T = TypeParam;
    CQorStringT<T> s;
    Format<T>(s, Text<T>("%d-%c-%05.1f-%x-%%"), 7, 'x', 2.5, 255u);
    EXPECT_EQ(Text<T>("7-x-002.5-ff-%"), s);
    Format<T>(s, Text<T>("%d-%s"), 7, "x");  // %s is char text for both types
    EXPECT_EQ(Text<T>("7-x"), s);
    Format<T>(s, Text<T>("[%ls]"), L"wide");
    EXPECT_EQ(Text<T>("[wide]"), s);
    Format<T>(s, Text<T>("%lld %ld %d"), LLONG_MIN, -5L, INT_MIN);
    EXPECT_EQ(Text<T>("-9223372036854775808 -5 -2147483648"), s);
    Format<T>(s, Text<T>("%*d|%-*d|%.*s"), 4, 1, 4, 2, 2, "abc");
    EXPECT_EQ(Text<T>("   1|2   |ab"), s);
}

TYPED_TEST(QorStringFormat, FormatVTakesAnArgumentList) {
    using T = TypeParam;
    CQorStringT<T> s;
    CallFormatV<T>(s, Text<T>("%d %s %d"), 1, "two", 3);
    EXPECT_EQ(Text<T>("1 two 3"), s);
}

TYPED_TEST(QorStringFormat, GrownBufferHasRoomForOneCharacterMore) {
    using T = TypeParam;
    CQorStringT<T> s;
    Format<T>(s, Text<T>("%d"), 123);
    EXPECT_EQ(3, s.GetLength());
    EXPECT_EQ(4, s.GetAllocLength());
    EXPECT_EQ(1, Refs(s));
    Format<T>(s, Text<T>("%d"), 1234);  // no room for five
    EXPECT_EQ(Text<T>("1234"), s);
    EXPECT_EQ(5, s.GetAllocLength());
}

TYPED_TEST(QorStringFormat, EmptyResultTakesABufferOfOneCharacter) {
    using T = TypeParam;
    CQorStringT<T> s;
    Format<T>(s, Text<T>(""));
    EXPECT_EQ(Text<T>(""), s);
    EXPECT_FALSE(IsNil(s));
    EXPECT_EQ(1, s.GetAllocLength());
    auto used = String<T>("abc");
    T const* const buffer = used.c_str();
    Format<T>(used, OneString<T>(), Text<T>("").c_str());
    EXPECT_EQ(Text<T>(""), used);
    EXPECT_EQ(buffer, used.c_str());
}

TYPED_TEST(QorStringFormat, PrivateBufferThatIsLargeEnoughStays) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("before"), 8);
    T const* const buffer = s.c_str();
    Format<T>(s, Text<T>("%d"), 1234567);
    EXPECT_EQ(Text<T>("1234567"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(8, s.GetAllocLength());
    Format<T>(s, Text<T>("%d"), 12345678);
    EXPECT_EQ(Text<T>("12345678"), s);
    EXPECT_EQ(9, s.GetAllocLength());
}

TYPED_TEST(QorStringFormat, SharedStringLeavesTheOtherAlone) {
    using T = TypeParam;
    auto const keeper = String<T>("a text from before");
    auto s = keeper;
    Format<T>(s, Text<T>("%d"), 42);
    EXPECT_EQ(Text<T>("42"), s);
    EXPECT_EQ(18, s.GetAllocLength());  // a shared buffer is replaced by one of the old length
    EXPECT_EQ(Text<T>("a text from before"), keeper);
    EXPECT_EQ(1, Refs(keeper));
    CQorStringT<T> const copy(T('x'), 2);
    s = copy;
    Format<T>(s, Text<T>("%d"), 12345);
    EXPECT_EQ(6, s.GetAllocLength());
    EXPECT_EQ(Text<T>("xx"), copy);
}

TYPED_TEST(QorStringFormat, LockedBufferThatIsLargeEnoughStaysLocked) {
    using T = TypeParam;
    auto s = WithRoom(Text<T>("before"), 8);
    T const* const buffer = s.LockBuffer();
    Format<T>(s, Text<T>("%d"), 1234567);
    EXPECT_EQ(Text<T>("1234567"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(-1, Refs(s));
}

TYPED_TEST(QorStringFormat, LengthsUpTo2047ComeOutWhole) {
    using T = TypeParam;
    for (int n : {1, 100, 1023, 1024, 2046, 2047}) {
        CQorStringT<T> s;
        std::basic_string<T> const text(static_cast<std::size_t>(n), T('x'));
        Format<T>(s, OneString<T>(), text.c_str());
        EXPECT_EQ(text, Content(s));
        EXPECT_TRUE(IsTerminated(s));
        EXPECT_EQ(n + 1, s.GetAllocLength());
        Format<T>(s, Text<T>("%*d"), n, 7);
        EXPECT_EQ(text.substr(1).size(), static_cast<std::size_t>(s.Find(T('7'))));
    }
}

TYPED_TEST(QorStringFormat, ZeroCharacterArgumentCountsInTheLength) {
    using T = TypeParam;
    CQorStringT<T> s;
    Format<T>(s, Text<T>("a%cb"), 0);
    EXPECT_EQ(Text<T>("a\0b"), s);
    EXPECT_EQ(4, s.GetAllocLength());
    auto roomy = WithRoom(Text<T>(""), 20);
    Format<T>(roomy, Text<T>("%c%c%d"), 0, 0, 1);
    EXPECT_EQ(Text<T>("\0\0"
                      "1"),
              roomy);
}

TYPED_TEST(QorStringFormat, ArgumentsMayLieInsideTheString) {
    using T = TypeParam;
    std::basic_string<T> format = OneString<T>();
    format += format;
    auto s = String<T>("abc");
    Format<T>(s, format.c_str(), s.c_str(), s.c_str());
    EXPECT_EQ(Text<T>("abcabc"), s);
    auto roomy = WithRoom(Text<T>("abc"), 50);
    Format<T>(roomy, format.c_str(), roomy.c_str(), roomy.c_str() + 1);
    EXPECT_EQ(Text<T>("abcbc"), roomy);
    auto const keeper = String<T>("abc");
    auto sharer = keeper;
    Format<T>(sharer, format.c_str(), sharer.c_str(), sharer.c_str());
    EXPECT_EQ(Text<T>("abcabc"), sharer);
    EXPECT_EQ(Text<T>("abc"), keeper);
}

TYPED_TEST(QorStringFormat, FormatMayBeTheStringItself) {
    using T = TypeParam;
    auto s = String<T>("%d-%d");
    Format<T>(s, s.c_str(), 1234567, 2);
    EXPECT_EQ(Text<T>("1234567-2"), s);
}

TYPED_TEST(QorStringFormat, FailureLeavesTheTextUpToItsFirstZero) {
    using T = TypeParam;
    ScopedLocale const locale("C");
    auto const unencodable = L"\u20ac";  // no char text can hold it here
    std::basic_string<T> const format = Text<T>(sizeof(T) == 1 ? "%ls" : "%s ").characters;
    char const invalid[] = "\xFF\xFE";
    void const* const argument =
        sizeof(T) == 1 ? static_cast<void const*>(unencodable) : static_cast<void const*>(invalid);

    auto s = WithRoom(Text<T>("old\0text"), 20);
    T const* const buffer = s.c_str();
    Format<T>(s, format.c_str(), argument);
    EXPECT_EQ(Text<T>("old"), s);
    EXPECT_EQ(buffer, s.c_str());
    EXPECT_EQ(20, s.GetAllocLength());

    auto const keeper = String<T>("shared");
    auto sharer = keeper;
    Format<T>(sharer, format.c_str(), argument);
    EXPECT_EQ(Text<T>("shared"), sharer);
    EXPECT_NE(keeper.c_str(), sharer.c_str());
    EXPECT_EQ(1, Refs(keeper));

    CQorStringT<T> nil;
    Format<T>(nil, format.c_str(), argument);
    EXPECT_TRUE(IsNil(nil));
}

TEST(QorStringFormatNarrow, TextsOfAnyLengthComeOutWhole) {
    for (int n : {2048, 2049, 5000, 8192, 40000, 200000}) {
        CQorStringT<char> s("before");
        std::string const text(static_cast<std::size_t>(n), 'x');
        s.Format("%s", text.c_str());
        EXPECT_EQ(text, Content(s));
        EXPECT_TRUE(IsTerminated(s));
        EXPECT_EQ(n + 1, s.GetAllocLength());
        s.Format("%d%s", 1, text.c_str());  // fits exactly: length n + 1, room for n + 2 is missing
        EXPECT_EQ("1" + text, Content(s));
        EXPECT_EQ(n + 2, s.GetAllocLength());
        char const* const buffer = s.c_str();
        s.Format("%s", text.c_str());
        EXPECT_EQ(text, Content(s));
        EXPECT_EQ(buffer, s.c_str());
    }
}

TEST(QorStringFormatNarrow, LongTextIntoASharedStringLeavesTheOtherAlone) {
    CQorStringT<char> const keeper('k', 6000);
    CQorStringT<char> s(keeper);
    std::string const text(5000, 'x');
    s.Format("%s", text.c_str());
    EXPECT_EQ(text, Content(s));
    EXPECT_EQ(6000, s.GetAllocLength());
    EXPECT_EQ(CQorStringT<char>('k', 6000), keeper);
    EXPECT_EQ(1, Refs(keeper));
}

TEST(QorStringFormatNarrow, LongArgumentsMayLieInsideTheString) {
    std::string const text = std::string(2999, 'a') + "b";
    CQorStringT<char> s(text.c_str());
    s.Format("%s%s", s.c_str(), s.c_str());
    EXPECT_EQ(text + text, Content(s));
    s = text.c_str();
    s.GetBuffer(10000);
    s.Format("%s%s", s.c_str(), s.c_str() + 2990);
    EXPECT_EQ(text + text.substr(2990), Content(s));
    CQorStringT<char> const keeper(text.c_str());
    CQorStringT<char> sharer(keeper);
    sharer.Format("<%s>", sharer.c_str());
    EXPECT_EQ("<" + text + ">", Content(sharer));
    EXPECT_EQ(text, Content(keeper));
}

TEST(QorStringFormatNarrow, LongFormatVUsesItsArgumentsTwice) {
    std::string const text(3000, 'x');
    CQorStringT<char> s;
    CallFormatV<char>(s, "%s-%d-%f-%lld", text.c_str(), 7, 0.5, 123456789012LL);
    EXPECT_EQ(text + "-7-0.500000-123456789012", Content(s));
}

TEST(QorStringFormatNarrow, WideTextIsConvertedAsTheLocaleSays) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<char> s;
    s.Format("%ls|%lc", L"\u00e9\u20ac", static_cast<wint_t>(L'\u20ac'));
    EXPECT_STREQ("\xC3\xA9\xE2\x82\xAC|\xE2\x82\xAC", s);
}

TEST(QorStringFormatWide, NarrowTextIsConvertedAsTheLocaleSays) {
    ScopedLocale const locale("C.UTF-8");
    CQorStringT<wchar_t> s;
    s.Format(L"%s|%ls|%lc", "\xE2\x82\xAC", L"\u00e9", static_cast<wint_t>(L'\u20ac'));
    EXPECT_STREQ(L"\u20ac|\u00e9|\u20ac", s);
    EXPECT_EQ(5, s.GetLength());
}

TEST(QorStringFormatWide, TextOf2048CharactersOrMoreLeavesTheTextBefore) {
    for (int n : {2048, 2049, 5000, 40000}) {
        std::wstring const text(static_cast<std::size_t>(n), L'x');
        auto s = WithRoom(Text<wchar_t>("before"), 10);
        wchar_t const* const buffer = s.c_str();
        s.Format(L"%ls", text.c_str());
        EXPECT_EQ(Text<wchar_t>("before"), s);
        EXPECT_EQ(buffer, s.c_str());
        EXPECT_EQ(10, s.GetAllocLength());

        CQorStringT<wchar_t> roomy(L'y', n + 10);  // even where it would fit
        s = roomy;
        s.Format(L"%ls", text.c_str());
        EXPECT_EQ(roomy, s);
        EXPECT_NE(roomy.c_str(), s.c_str());

        auto zeros = String<wchar_t>("be\0fore");  // measured
        zeros.Format(L"%*d", n, 1);
        EXPECT_EQ(Text<wchar_t>("be"), zeros);
        EXPECT_EQ(7, zeros.GetAllocLength());

        CQorStringT<wchar_t> nil;
        nil.Format(L"%ls", text.c_str());
        EXPECT_TRUE(IsNil(nil));
    }
}

TEST(QorStringFormatWide, LongestTextThatFitsMayBeItsOwnArgument) {
    CQorStringT<wchar_t> s(L'x', 1023);
    s.Format(L"%ls%ls-", s.c_str(), s.c_str());
    EXPECT_EQ(std::wstring(2046, L'x') + L"-", Content(s));
    s.Format(L"%ls-", s.c_str());
    EXPECT_EQ(std::wstring(2046, L'x') + L"-", Content(s));
}
