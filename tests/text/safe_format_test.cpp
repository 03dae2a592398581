#include <qorutils/text/safe_format.h>

#include <array>
#include <cstddef>
#include <cwchar>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

namespace {

using qor_text::CQorStringT;
using qor_text::qor_printf;
using qor_text::detail::qor_safefmt_impl;

template <typename... Texts>
std::wstring Fill(wchar_t const* fmt, Texts... texts) {
    return Content(qor_safefmt_impl(fmt, sizeof...(texts), texts...));
}

template <std::size_t N, std::size_t... I>
std::wstring FillFrom(wchar_t const* fmt, std::array<wchar_t const*, N> const& texts,
                      std::index_sequence<I...>) {
    return Fill(fmt, texts[I]...);
}

template <std::size_t N>
std::wstring FillFrom(wchar_t const* fmt, std::array<wchar_t const*, N> const& texts) {
    return FillFrom(fmt, texts, std::make_index_sequence<N>());
}

wchar_t const* const kNull = nullptr;

// An address at which nothing can be read.
class Unreadable {
  public:
    wchar_t const* text() const { return page_.data(); }

  private:
    GuardedArray<wchar_t> page_{0};
};

TEST(QorSafefmtImpl, PutsArgumentsWhereTheirNumbersStand) {
    EXPECT_EQ(L"b-a", Fill(L"{2}-{1}", L"a", L"b"));
    EXPECT_EQ(L"aa", Fill(L"{1}{1}", L"a"));
    EXPECT_EQ(L"<long text>", Fill(L"<{1}>", L"long text"));
    EXPECT_EQ(L"12% of disk", Fill(L"{2} of {1}", L"disk", L"12%"));
}

TEST(QorSafefmtImpl, KeepsTextWithoutPlaceholders) {
    EXPECT_EQ(L"", Fill(L""));
    EXPECT_EQ(L"plain %s %d text", Fill(L"plain %s %d text"));
    EXPECT_EQ(L"plain", Fill(L"plain", L"unused"));
}

TEST(QorSafefmtImpl, ReadsBraces) {
    struct {
        wchar_t const* fmt;
        wchar_t const* result;
    } const cases[] = {
        {L"{{", L"{"},               // a doubled brace is a literal one
        {L"{{x}", L"{x}"},           // and what closes nothing stands for itself
        {L"}", L"}"},                //
        {L"}}", L"}}"},              // not halved
        {L"{{{{", L"{{"},            //
        {L"{{{1}", L"{one"},         //
        {L"{{1}", L"{1}"},           //
        {L"{1}}", L"one}"},          //
        {L"}{1}{", L"}one"},         // the last one is not closed
        {L"{1{", L"{"},              // the digits are dropped
        {L"{1{2}", L"{2}"},          //
        {L"{1{{2}", L"{two"},        // the third brace opens
        {L"{9{{1}", L"{one"},        // dropped digits name nothing
        {L"{x{y}", L"{y}"},          //
        {L"{{{{{2}}", L"{{two}"},    //
        {L"{1}{{{2}", L"one{two"},   //
        {L"{", L""},                 //
        {L"{1", L""},                //
        {L"{99", L""},               // not even looked up
        {L"{1}tail{2", L"onetail"},  //
    };
    for (auto const& c : cases) EXPECT_EQ(c.result, Fill(c.fmt, L"one", L"two")) << c.fmt;
}

TEST(QorSafefmtImpl, DropsAPlaceholderThatTheFormatDoesNotClose) {
    EXPECT_EQ(L"x", Fill(L"x{1", L"a"));
}

TEST(QorSafefmtImpl, ReadsNumbersAsWcstolDoes) {
    struct {
        wchar_t const* fmt;
        wchar_t const* result;
    } const cases[] = {
        {L"<{01}>", L"<one>"},           {L"<{0000000000000000000000000000000002}>", L"<two>"},
        {L"<{+1}>", L"<one>"},           {L"<{ 1}>", L"<one>"},
        {L"<{ \t\n\v\f\r2}>", L"<two>"}, {L"<{ +1th}>", L"<one>"},
        {L"<{1 2}>", L"<one>"},          {L"<{1,5}>", L"<one>"},
        {L"<{2x}>", L"<two>"},           {L"<{2-1}>", L"<two>"},
    };
    for (auto const& c : cases) EXPECT_EQ(c.result, Fill(c.fmt, L"one", L"two")) << c.fmt;
}

TEST(QorSafefmtImpl, GivesNothingForAPlaceholderThatNamesNoArgument) {
    wchar_t const* const formats[] = {
        L"{0}",
        L"{3}",
        L"{}",
        L"{ }",
        L"{+}",
        L"{-}",
        L"{x}",
        L"{x1}",
        L"{+ 1}",
        L"{--1}",
        L"{+-1}",
        L"{0x1}",
        L"{-0}",
        L"{-1}",
        L"{-2}",
        L"{100}",
        L"{2147483647}",
        L"{2147483648}",
        L"{-2147483647}",
        L"{-2147483648}",
        L"{-2147483649}",
        L"{4294967295}",
        L"{4294967296}",
        L"{4294967297}",  // 1 in 32 bits
        L"{4294967298}",
        L"{-4294967295}",  // 1 in 32 bits
        L"{-4294967294}",
        L"{9223372036854775807}",
        L"{9223372036854775808}",
        L"{-9223372036854775808}",
        L"{18446744073709551617}",  // 1 in 64 bits
        L"{-18446744073709551615}",
        L"{100000000000000000000000000000000000000001}",
        L"{\u0661}",  // a digit of another script
        L"{1}{2}{3}{1}",
        L"text {1} and {0} more",
        L"{{{0}",
    };
    for (wchar_t const* fmt : formats) EXPECT_EQ(L"", Fill(fmt, L"one", L"two")) << fmt;
}

TEST(QorSafefmtImpl, HasNoArgumentsToNameWhenThereAreNone) {
    EXPECT_EQ(L"{x}", Fill(L"{{x}"));
    EXPECT_EQ(L"", Fill(L"{1}"));
    EXPECT_EQ(L"", Fill(L"{0}"));
}

TEST(QorSafefmtImpl, NumbersArgumentsFromOneToCount) {
    EXPECT_EQ(L"", Fill(L"{0}", L"a"));
    EXPECT_EQ(L"", Fill(L"{3}", L"a", L"b"));
    EXPECT_EQ(L"b", Fill(L"{2}", L"a", L"b"));
}

TEST(QorSafefmtImpl, SkipsTheWhiteSpaceOfTheLocale) {
    {
        ScopedLocale locale("C.UTF-8");
        EXPECT_EQ(L"one", Fill(L"{\u2003\u20031}", L"one"));
    }
    {
        ScopedLocale locale("C");
        EXPECT_EQ(L"", Fill(L"{\u2003\u20031}", L"one"));
    }
}

TEST(QorSafefmtImpl, AppendsNothingForNull) {
    EXPECT_EQ(L"<>", Fill(L"<{1}>", kNull));
    EXPECT_EQ(L"<b>", Fill(L"<{1}{2}{1}>", kNull, L"b"));
    EXPECT_EQ(L"", Fill(L"{1}", kNull));
}

TEST(QorSafefmtImpl, AppendsNothingForAnEmptyText) {
    EXPECT_EQ(L"<>", Fill(L"<{1}>", L""));
    EXPECT_EQ(L"", Fill(L"{1}{2}", L"", L""));
}

TEST(QorSafefmtImpl, DoesNotReadPlaceholdersInArguments) {
    EXPECT_EQ(L"{2}b", Fill(L"{1}{2}", L"{2}", L"b"));
    EXPECT_EQ(L"{0}}{", Fill(L"{1}", L"{0}}{"));
}

TEST(QorSafefmtImpl, IsEmptyForANullFormat) {
    EXPECT_EQ(L"", Fill(kNull));
    EXPECT_EQ(L"", Fill(kNull, L"a"));
}

TEST(QorSafefmtImpl, TakesAHundredArguments) {
    std::array<wchar_t const*, 100> texts;
    texts.fill(L"-");
    texts[0] = L"first";
    texts[9] = L"tenth";
    texts[99] = L"last";
    EXPECT_EQ(L"last,tenth,first", FillFrom(L"{100},{10},{1}", texts));
    EXPECT_EQ(L"", FillFrom(L"{101}", texts));
}

TEST(QorSafefmtImpl, RefusesAHundredAndOneArgumentsWithoutReadingTheFormat) {
    std::array<wchar_t const*, 101> texts;
    texts.fill(L"-");
    EXPECT_EQ(L"", FillFrom(L"text", texts));
    Unreadable const unreadable;
    EXPECT_EQ(L"", FillFrom(unreadable.text(), texts));
    EXPECT_EQ(L"", Content(qor_safefmt_impl(unreadable.text(), 101)));
    EXPECT_EQ(L"", Content(qor_safefmt_impl(unreadable.text(), 4294967295u)));
}

TEST(QorSafefmtImpl, DoesNotReadArgumentsThatAreNotNamed) {
    Unreadable const unreadable;
    EXPECT_EQ(L"a", Fill(L"{1}", L"a", unreadable.text()));
    EXPECT_EQ(L"{", Fill(L"{2{", L"a", unreadable.text()));
}

TEST(QorSafefmtImpl, DoesNotReadArgumentsBeyondCount) {
    Unreadable const unreadable;
    EXPECT_EQ(L"", Content(qor_safefmt_impl(L"{2}", 1, L"a", unreadable.text())));
    EXPECT_EQ(L"", Content(qor_safefmt_impl(L"{1}", 0, unreadable.text())));
}

TEST(QorSafefmtImpl, StopsAtTheTerminatorOfFormatAndArguments) {
    wchar_t const* const formats[] = {L"", L"{", L"{1", L"{1}", L"{1}x", L"{{", L"}", L"text{ 1"};
    for (wchar_t const* fmt : formats) {
        GuardedArray<wchar_t> const guarded(fmt, std::wcslen(fmt) + 1);
        GuardedArray<wchar_t> const text(L"one", 4);
        EXPECT_EQ(Fill(fmt, L"one"), Fill(guarded.data(), text.data())) << fmt;
    }
}

TEST(QorSafefmtImpl, KeepsCharactersOutsideOfUnicode) {
    wchar_t const fmt[] = {static_cast<wchar_t>(0x80000001), L'{', L'1', L'}', 0x10FFFF, 0};
    wchar_t const text[] = {static_cast<wchar_t>(0xFFFFFFFF), 0};
    wchar_t const result[] = {static_cast<wchar_t>(0x80000001), static_cast<wchar_t>(0xFFFFFFFF),
                              0x10FFFF, 0};
    EXPECT_EQ(result, Fill(fmt, text));
}

TEST(QorSafefmtImpl, FillsManyPlaceholdersInOneGo) {
    constexpr std::size_t kMany = 200000;
    std::wstring fmt;
    std::wstring expected;
    for (std::size_t i = 0; i != kMany; ++i) {
        fmt += L"{2}{{{1}}";
        expected += L"second{first}";
    }
    EXPECT_TRUE(expected == Fill(fmt.c_str(), L"first", L"second"));
}

TEST(QorSafefmtImpl, ReturnsAPrivateTerminatedString) {
    CQorStringT<wchar_t> filled = qor_safefmt_impl(L"<{1}>", 1, L"a");
    EXPECT_EQ(3, filled.GetLength());
    EXPECT_EQ(L'\0', filled.c_str()[3]);
    filled += L"!";
    EXPECT_EQ(L"<a>!", Content(filled));
}

TEST(QorPrintf, FormatsIntoANewString) {
    EXPECT_EQ(L"page-7 0x2a", Content(qor_printf(L"%ls-%d 0x%x", L"page", 7, 42u)));
    EXPECT_EQ(L"no arguments", Content(qor_printf(L"no arguments")));
    EXPECT_EQ(L"100%", Content(qor_printf<wchar_t>(L"%d%%", 100)));
    EXPECT_EQ(L"", Content(qor_printf(L"")));
}

TEST(QorPrintf, ReturnsWideStringsByValue) {
    EXPECT_TRUE((std::is_same<CQorStringT<wchar_t>, decltype(qor_printf(L""))>::value));
}

TEST(QorPrintf, IsEmptyForANullFormat) {
    EXPECT_EQ(L"", Content(qor_printf(kNull)));
}

TEST(QorPrintf, IsEmptyFrom2048CharactersOn) {
    std::wstring const longest(2047, L'x');
    EXPECT_EQ(longest, Content(qor_printf(L"%ls", longest.c_str())));
    EXPECT_EQ(longest, Content(qor_printf(L"%2047ls", longest.c_str())));
    EXPECT_EQ(L"", Content(qor_printf(L"%ls!", longest.c_str())));
    EXPECT_EQ(L"", Content(qor_printf(L"%2048d", 1)));
    EXPECT_EQ(L"", Content(qor_printf(L"%100000d", 1)));
}

TEST(QorPrintf, IsEmptyForWhatCannotBeFormatted) {
    ScopedLocale locale("C.UTF-8");
    EXPECT_EQ(L"caf\u00E9", Content(qor_printf(L"%s", "caf\xC3\xA9")));
    EXPECT_EQ(L"", Content(qor_printf(L"text %s", "caf\xE9")));
}

TEST(QorPrintf, KeepsAZeroCharacterAmongTheText) {
    EXPECT_EQ(std::wstring(L"a\0b", 3), Content(qor_printf(L"a%cb", 0)));
}

}  // namespace
