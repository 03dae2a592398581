// Dates, and the kinds of value that getTextValType tells apart.

#include <qorutils/formats/names.h>

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/random_text.h"
#include "support/reference_values.h"
#include "support/scoped_locale.h"

namespace {

using namespace qor_formats;

// ---- Dates ----

TEST(ValidateDateOnly, LooksAtMonthAndDay) {
    struct {
        wchar_t const* text;
        bool isValid;
    } const cases[] = {
        {L"2015-06-01", true},
        {L"2015-02-30", false},
        {L"2015-02-29", true},   // on purpose: no leap years
        {L"2015-04-31", true},   // on purpose: no months of 30 days
        {L"2015-01-32", false},  //
        {L"2015-01-00", false},
        {L"2015-00-01", false},
        {L"2015-12-31", true},
        {L"2015-13-01", false},
        {L"year-1-1", true},     // on purpose: the year is not looked at
        {L"2015-O6-01", false},  // no number is 0
        {L"2015-06-1O", true},   // a number as far as it goes
        {L"2015- 6 -\t1\r\n", true},
        {L"2015-6-1-99", true},  // what is more is not looked at
        {L"2015--6-01", false},  // one item too few: "2015", "-6-01"
        {L"2015-06", false},
        {L"2015-06-", false},
        {L"2015", false},
        {L"-2015-06-01", false},
        {L"", false},
        {nullptr, false},
        {L"2015-4294967297-01", false},  // beyond 32 bits
        {L"2015-01-4294967297", false},
        {L"2015-01-99999999999999999999", false},
    };
    for (auto const& c : cases) EXPECT_EQ(c.isValid, ValidateDateOnly(c.text)) << c.text;
}

TEST(ValidateDateAndTime, LooksAtDateAndTime) {
    struct {
        wchar_t const* text;
        bool isValid;
    } const cases[] = {
        {L"2015-06-01 10:20:30", true},
        {L"2015-06-01 24:00:00", true},  // on purpose: the hour 24
        {L"2015-06-01 24:59:59", true},
        {L"2015-06-01 25:00:00", false},
        {L"2015-06-01 12:60:00", false},
        {L"2015-06-01 12:00:60", false},
        {L"2015-06-01 -1:-70:-70", true},  // on purpose: negative values
        {L"2015-02-30 10:20:30", false},
        {L"2015-06-01  10:20:30", true},   // the rest " 10:20:30" is one item
        {L"2015-06-01 10:20:30 x", true},  // what is more is not looked at
        {L"2015-06-01 xx:yy:zz", true},    // no numbers are 0
        {L"2015-06-01 10", true},          // what is missing is no fault
        {L"2015-06-01 10:20", true},
        {L"2015-06-01 10:60", false},
        {L"2015-06-01 25", false},
        {L"2015-06-01 10: :30", true},
        {L"2015-06-01 :10:20", true},  // one item, which is no number
        {L"2015-06-01 10::99", true},  // the second item is ":99"
        {L"2015-06-01 \t", true},      // one empty item
        {L"2015-06-01", false},        // no time
        {L"2015-06-01 ", false},
        {L" 2015-06-01 10:20:30", false},  // a blank in front ends the splitting
        {L"10:20:30", false},
        {L"", false},
        {nullptr, false},
        {L"2015-06-01 4294967296:00:00", false},  // beyond 32 bits
        {L"2015-06-01 00:99999999999999999999:00", false},
    };
    for (auto const& c : cases) EXPECT_EQ(c.isValid, ValidateDateAndTime(c.text)) << c.text;
}

// ---- getTextValType ----

TEST(GetTextValType, TellsTheKindOfValue) {
    struct {
        wchar_t const* text;
        int kind;
    } const cases[] = {
        {nullptr, 3},
        {L"", 3},
        {L"   ", 3},
        {L" \t\r\n\v\f", 3},
        {L"42", 1},
        {L"-7", 1},
        {L"  42", 1},
        {L"12 ", 1},
        {L" -12 \t", 1},
        {L"-", 1},    // on purpose: the sign alone
        {L"  -", 1},  //
        {L"- ", 1},   //
        {L"00000000000000000000000000000001", 1},
        {L"--7", 0},
        {L"- 7", 0},
        {L"+5", 0},
        {L"1e5", 0},
        {L"12a", 0},
        {L"1 2", 0},
        {L"3.14", 2},
        {L"3,14", 2},
        {L" -1,5", 2},
        {L"12.", 2},
        {L".5", 2},
        {L"-.5", 2},
        {L"-.", 2},
        {L"-,", 2},
        {L".", 0},  // on purpose: the separator alone
        {L",", 0},
        {L"  .", 0},
        {L". ", 0},
        {L"1.5 ", 0},  // on purpose: blanks behind a decimal
        {L"12. ", 0},
        {L"1.2.3", 0},
        {L"1,-5", 0},
        {L"1.a", 0},
        {L"2015-06-01", 4},
        {L"2015-02-30", 0},
        {L"2015-1a-01", 4},  // the month is as far as it is a number
        {L"2015-O6-01", 0},
        {L" 2015-06-01", 0},  // blanks make the masks fail
        {L"2015-06-01 ", 0},
        {L"2015-06-1", 0},
        {L"2015-06-01 10:20:30", 5},
        {L"2015-06-01 24:00:00", 5},
        {L"2015-06-01 25:00:00", 0},
        {L"2015-06-01 10:20", 0},
        {L"abcd-01-01", 4},
        {L"abc", 0},
        {L"_", 0},
    };
    for (auto const& c : cases) EXPECT_EQ(c.kind, getTextValType(c.text)) << c.text;
}

TEST(GetTextValType, TakesWhiteSpaceOfTheLocale) {
    {
        ScopedLocale const plain("C");
        EXPECT_EQ(0, getTextValType(L"\u2003"));
        EXPECT_EQ(0, getTextValType(L"\u20037"));
    }
    ScopedLocale const locale("C.UTF-8");
    EXPECT_EQ(3, getTextValType(L"\u2003"));
    EXPECT_EQ(1, getTextValType(L"\u20037\u2003"));
    EXPECT_EQ(0, getTextValType(L"\u00A0"));  // a space that must not break is none
    EXPECT_EQ(0, getTextValType(L"\u0661"));  // nor is an Arabic digit a digit
}

TEST(GetTextValType, ReadsNothingBehindTheText) {
    for (wchar_t const* const text : {L"", L"  ", L"-", L".", L"12", L"1.5", L"2015-06-01",
                                      L"2015-06-01 10:20:30", L"2015-06"}) {
        std::wstring const characters = text;
        GuardedArray<wchar_t> const guarded(characters.c_str(), characters.size() + 1);
        EXPECT_EQ(reference_values::KindOf(characters), getTextValType(guarded.data()));
    }
}

TEST(GetTextValType, FollowsItsRulesOverRandomTexts) {
    RandomText random(5);
    std::wstring const alphabet = L"019-., \ta";
    for (int round = 0; round < 20000; ++round) {
        std::wstring const text = random.Of(alphabet, random.Below(7));
        EXPECT_EQ(reference_values::KindOf(text), getTextValType(text.c_str())) << text;
    }
    for (int round = 0; round < 20000; ++round) {
        std::wstring text = L"2015-06-01 10:20:30";
        if (random.Below(2) == 0) text.resize(10);
        for (int change = random.Below(4); change > 0; --change)
            text[static_cast<std::size_t>(random.Below(static_cast<int>(text.size())))] =
                L"0123456789-: Oa"[random.Below(15)];
        EXPECT_EQ(reference_values::KindOf(text), getTextValType(text.c_str())) << text;
        EXPECT_EQ(reference_values::IsDate(text), ValidateDateOnly(text.c_str())) << text;
        EXPECT_EQ(reference_values::IsDateAndTime(text), ValidateDateAndTime(text.c_str())) << text;
    }
}

}  // namespace
