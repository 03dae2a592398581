#include <qorutils/formats/time_text.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "support/numeric_locale.h"
#include "support/reference_scan.h"
#include "support/scoped_locale.h"
#include "support/scoped_time_zone.h"
#include "support/text_literal.h"

namespace {

using qor_formats::GetDateTimeAttrFormat;
using qor_formats::ParseDtTimeAttrFormatFromStr;
using qor_formats::TimeSpanToString;
using qor_formats::TimeToString;
using qor_formats::TimeToXSString;
using qor_text::CQorStringT;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(TimeSpanToString, WritesHoursMinutesAndSeconds) {
    struct {
        long long seconds;
        wchar_t const* text;
    } const cases[] = {
        {0, L"00:00:00"},
        {360303, L"100:05:03"},  // hours have no limit
        {86399, L"23:59:59"},
        {86400, L"24:00:00"},
        {-90, L"00:-1:-30"},  // on purpose: each part has its sign
        {-3600, L"-1:00:00"},
        {7730941132799, L"2147483647:59:59"},
        {7730941132800, L"-2147483648:00:00"},  // of the hours, 32 bits count
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.text, Content(TimeSpanToString(base::CTimeSpan(c.seconds)))) << c.seconds;
}

TEST(TimeToString, PadsWithBlanks) {
    ScopedLocale const plain("C");
    struct {
        double hours;
        wchar_t const* text;
    } const cases[] = {
        {0, L" 0: 0:0.000"},
        {1.25, L" 1:15:0.000"},
        {13.5, L"13:30:0.000"},
        {23.999, L"23:59:56.400"},
        {0.0125, L" 0: 0:45.000"},
        {100.75, L"100:45:0.000"},
        {-1.25, L"-1:-15:0.000"},
        {-0.0125, L" 0: 0:-45.000"},
        {1 + 1.0 / 120, L" 1: 0:30.000"},
        {2147483648.0, L"2147483647:60:0.000"},  // clamped as the target does it
        {1e300, L"2147483647:2147483647:"},
        {kInfinity, L"2147483647:2147483647:  inf"},
        {-kInfinity, L"-2147483648:-2147483648: -inf"},
        {std::numeric_limits<double>::quiet_NaN(), L" 0: 0:  nan"},
    };
    for (auto const& c : cases) {
        std::wstring const text = Content(TimeToString(c.hours));
        EXPECT_EQ(c.text, text.substr(0, c.hours == 1e300 ? 22 : text.size())) << c.hours;
    }
}

TEST(TimeToString, WritesTheDecimalPointOfTheLocale) {
    NumericLocale const locale;
    EXPECT_EQ(L" 1:15:0,000", Content(TimeToString(1.25)));
}

// On purpose: there are no calendar fields to write.
TEST(TimeToXSString, IsEmpty) {
    for (char const* const rule : {"UTC0", "AAA-2"}) {
        ScopedTimeZone const zone(rule);
        EXPECT_EQ(L"", Content(TimeToXSString(base::CTime(1433161800), true)));
        EXPECT_EQ(L"", Content(TimeToXSString(base::CTime(1433161800), false)));
    }
}

TEST(GetDateTimeAttrFormat, IsThePatternOfIsoDates) {
    EXPECT_EQ(L"yyyy-MM-dd HH:mm:ss", Content(GetDateTimeAttrFormat()));
}

// ---- Date-times from text ----

struct DateTime {
    _SYSTEMTIME st;
};

bool operator==(DateTime const& a, DateTime const& b) {
    return a.st.wYear == b.st.wYear && a.st.wMonth == b.st.wMonth &&
           a.st.wDayOfWeek == b.st.wDayOfWeek && a.st.wDay == b.st.wDay &&
           a.st.wHour == b.st.wHour && a.st.wMinute == b.st.wMinute &&
           a.st.wSecond == b.st.wSecond && a.st.wMilliseconds == b.st.wMilliseconds;
}

std::ostream& operator<<(std::ostream& out, DateTime const& t) {
    return out << t.st.wYear << '-' << t.st.wMonth << '-' << t.st.wDay << ' ' << t.st.wHour << ':'
               << t.st.wMinute << ':' << t.st.wSecond << '.' << t.st.wMilliseconds
               << ", day of week " << t.st.wDayOfWeek;
}

DateTime const kBefore = {{91, 92, 93, 94, 95, 96, 2097, 98}};

struct ParseCase {
    wchar_t const* text;
    int returned;
    DateTime expected;  // in the order of the record: year, month, day of week, day, hour ...
};

void ExpectParsed(ParseCase const& c) {
    DateTime parsed = kBefore;
    EXPECT_EQ(c.returned, ParseDtTimeAttrFormatFromStr(c.text, parsed.st)) << c.text;
    EXPECT_EQ(c.expected, parsed) << c.text;
}

TEST(ParseDtTimeAttrFormatFromStr, FillsSixFieldsAndTheMilliseconds) {
    ParseCase const cases[] = {
        {L"2015-06-01 14:30:00", 1, {{2015, 6, 93, 1, 14, 30, 0, 0}}},
        {L"2015-6-1 14:30:7 and more", 1, {{2015, 6, 93, 1, 14, 30, 7, 0}}},
        {L" 2015- 06- 01\t14: 30: 59", 1, {{2015, 6, 93, 1, 14, 30, 59, 0}}},
        {L"2015-06-01\n+14:30:00", 1, {{2015, 6, 93, 1, 14, 30, 0, 0}}},
        {L"2015-06-01+14:30:00", 1, {{2015, 6, 93, 1, 14, 30, 0, 0}}},  // the blank may be missing
        {L"99-13-45 77:88:99", 1, {{99, 13, 93, 45, 77, 88, 99, 0}}},   // nothing is checked
        {L"-1--2--3 -4:-5:-6", 1, {{65535, 65534, 93, 65533, 65532, 65531, 65530, 65}}},
        {L"65537-1-1 1:1:1", 1, {{1, 1, 93, 1, 1, 1, 1, 0}}},            // low 16 bits
        {L"1-1-1 1:1:9999999999", 1, {{1, 1, 93, 1, 1, 1, 65535, 65}}},  // of 2147483647
        {L"1-1-1 1:1:5999", 1, {{1, 1, 93, 1, 1, 1, 5999, 5}}},  // on purpose: whole thousands
    };
    for (auto const& c : cases) ExpectParsed(c);
}

TEST(ParseDtTimeAttrFormatFromStr, KeepsWhatItReadBeforeAFailure) {
    ParseCase const cases[] = {
        {L"x", 0, {{91, 92, 93, 94, 95, 96, 2097, 2}}},
        {L"2015", 0, {{2015, 92, 93, 94, 95, 96, 2097, 2}}},
        {L"2015 -06-01 14:30:00", 0, {{2015, 92, 93, 94, 95, 96, 2097, 2}}},
        {L"2015/06/01 14:30:00", 0, {{2015, 92, 93, 94, 95, 96, 2097, 2}}},
        {L"2015-", 0, {{2015, 92, 93, 94, 95, 96, 2097, 2}}},
        {L"2015-06", 0, {{2015, 6, 93, 94, 95, 96, 2097, 2}}},
        {L"2015-06-01", 0, {{2015, 6, 93, 1, 95, 96, 2097, 2}}},
        {L"2015-06-01T14:30:00", 0, {{2015, 6, 93, 1, 95, 96, 2097, 2}}},
        {L"2015-06-01 14.30.00", 0, {{2015, 6, 93, 1, 14, 96, 2097, 2}}},
        {L"2015-06-01 14:30", 0, {{2015, 6, 93, 1, 14, 30, 2097, 2}}},
        {L"2015-06-01 14:30:", 0, {{2015, 6, 93, 1, 14, 30, 2097, 2}}},
    };
    for (auto const& c : cases) ExpectParsed(c);
}

TEST(ParseDtTimeAttrFormatFromStr, LeavesTheRecordAloneForAnEmptyText) {
    ExpectParsed({L"", 0, kBefore});
}

TEST(ParseDtTimeAttrFormatFromStr, FindsNoNumberInATextThatBeginsWithZero) {
    DateTime parsed = kBefore;
    CQorStringT<wchar_t> const text(L"\0002015-06-01 14:30:00", 20);
    EXPECT_EQ(0, ParseDtTimeAttrFormatFromStr(text, parsed.st));
    EXPECT_EQ((DateTime{{91, 92, 93, 94, 95, 96, 2097, 2}}), parsed);
}

DateTime Reference(wchar_t const* text, int* count) {
    _SYSTEMTIME st = kBefore.st;
    std::uint16_t* const fields[] = {&st.wYear, &st.wMonth,  &st.wDay,
                                     &st.wHour, &st.wMinute, &st.wSecond};
    short read[6];
    *count = reference_scan::DateTime(text, read);
    for (int i = 0; i < *count; ++i) *fields[i] = static_cast<std::uint16_t>(read[i]);
    st.wMilliseconds = static_cast<std::uint16_t>(st.wSecond / 1000);
    return {st};
}

TEST(ParseDtTimeAttrFormatFromStr, AgreesWithTheCLibrary) {
    ScopedLocale const locale("C.UTF-8");
    static wchar_t const kCharacters[] = L"0123456789-: \t+x\u2003";
    std::minstd_rand random(4);
    for (int i = 0; i < 20000; ++i) {
        std::wstring text = L"2015-06-01 14:30:59";
        for (unsigned int edits = random() % 4; edits > 0; --edits) {
            std::size_t const at = random() % text.size();
            wchar_t const ch = kCharacters[random() % 17];
            if (random() % 2 == 0)
                text.insert(at, random() % 12, ch);
            else
                text[at] = ch;
        }
        int count = 0;
        DateTime const expected = Reference(text.c_str(), &count);
        DateTime parsed = kBefore;
        int const returned = ParseDtTimeAttrFormatFromStr(text.c_str(), parsed.st);
        ASSERT_EQ(count == 6, returned == 1) << text;
        ASSERT_EQ(expected, parsed) << text;
    }
}

}  // namespace
