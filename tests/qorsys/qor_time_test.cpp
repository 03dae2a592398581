#include <qorutils/qorsys/qor_time.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include <qorutils/qorsys/utc_offset.h>

#include "support/check_reports.h"
#include "support/scoped_locale.h"
#include "support/scoped_time_zone.h"
#include "support/text_literal.h"

namespace {

using base::CTime;
using base::CTimeSpan;

static_assert(sizeof(CTime) == 8 && sizeof(CTimeSpan) == 8, "");
static_assert(std::is_trivially_copyable<CTime>::value, "");
static_assert(std::is_trivially_copyable<CTimeSpan>::value, "");

// ---- Spans ----

TEST(CTimeSpan, IsMadeOfItsParts) {
    CTimeSpan const span(1, 2, 3, 4);
    EXPECT_EQ(93784, span.GetTimeSpan());
    EXPECT_EQ(1, span.GetDays());
    EXPECT_EQ(2, span.GetHours());
    EXPECT_EQ(3, span.GetMinutes());
    EXPECT_EQ(4, span.GetSeconds());
    EXPECT_EQ(26, span.GetTotalHours());
    EXPECT_EQ(1563, span.GetTotalMinutes());
    EXPECT_EQ(93784, span.GetTotalSeconds());
    EXPECT_EQ(0, CTimeSpan().GetTimeSpan());
}

TEST(CTimeSpan, CutsItsPartsOffTowardsZero) {
    CTimeSpan const span(-90);
    EXPECT_EQ(0, span.GetDays());
    EXPECT_EQ(0, span.GetTotalHours());
    EXPECT_EQ(-1, span.GetTotalMinutes());
    EXPECT_EQ(-90, span.GetTotalSeconds());
    EXPECT_EQ(0, span.GetHours());
    EXPECT_EQ(-1, span.GetMinutes());
    EXPECT_EQ(-30, span.GetSeconds());
}

// On purpose: the parts are summed in 32 bits.
TEST(CTimeSpan, WrapsPartsBeyondSixtyEightYears) {
    EXPECT_EQ(2147483647, CTimeSpan(24855, 3, 14, 7).GetTimeSpan());
    EXPECT_EQ(-2147483648LL, CTimeSpan(24855, 3, 14, 8).GetTimeSpan());
    EXPECT_EQ(0, CTimeSpan(1L << 29, 0, 0, 0).GetTimeSpan());
    EXPECT_EQ(-3600, CTimeSpan(0, INT_MAX, 0, 0).GetTimeSpan());
    EXPECT_EQ(-90, CTimeSpan(0, 0, -1, -30).GetTimeSpan());
}

TEST(CTimeSpan, CountsIn64Bits) {
    CTimeSpan const span(LLONG_MAX);
    EXPECT_EQ(106751991167300, span.GetDays());
    EXPECT_EQ(15, span.GetHours());
    EXPECT_EQ(30, span.GetMinutes());
    EXPECT_EQ(7, span.GetSeconds());
    EXPECT_EQ(-8, CTimeSpan(LLONG_MIN).GetSeconds());
}

TEST(CTimeSpan, AddsAndSubtracts) {
    CTimeSpan span(100);
    EXPECT_EQ(130, (span + CTimeSpan(30)).GetTimeSpan());
    EXPECT_EQ(70, (span - CTimeSpan(30)).GetTimeSpan());
    EXPECT_EQ(130, (span += CTimeSpan(30)).GetTimeSpan());
    EXPECT_EQ(-70, (span -= CTimeSpan(200)).GetTimeSpan());
    EXPECT_EQ(-140, (span += span).GetTimeSpan());
    EXPECT_EQ(LLONG_MIN, (CTimeSpan(LLONG_MAX) + CTimeSpan(1)).GetTimeSpan());
    EXPECT_EQ(LLONG_MAX, (CTimeSpan(LLONG_MIN) - CTimeSpan(1)).GetTimeSpan());
}

template <typename T>
void ExpectOrder(T const& low, T const& high) {
    EXPECT_TRUE(low < high && !(high < low) && !(low < low));
    EXPECT_TRUE(high > low && !(low > high) && !(low > low));
    EXPECT_TRUE(low <= high && low <= low && !(high <= low));
    EXPECT_TRUE(high >= low && low >= low && !(low >= high));
    EXPECT_TRUE(low == low && !(low == high));
    EXPECT_TRUE(low != high && !(low != low));
}

TEST(CTimeSpan, IsOrderedByItsCount) {
    ExpectOrder(CTimeSpan(-1), CTimeSpan(0));
    ExpectOrder(CTimeSpan(1), CTimeSpan(1LL << 32));
}

// ---- Times ----

TEST(CTime, IsItsCountOfSeconds) {
    EXPECT_EQ(0, CTime().GetTime());
    EXPECT_EQ(-5, CTime(-5).GetTime());
    CTime t(1LL << 40);
    EXPECT_EQ(1LL << 40, t.GetTime());
    t = 7;
    EXPECT_EQ(7, t.GetTime());
    ExpectOrder(CTime(-1), CTime(1LL << 32));
}

TEST(CTime, MovesBySpans) {
    CTime t(1000);
    EXPECT_EQ(1090, (t + CTimeSpan(90)).GetTime());
    EXPECT_EQ(910, (t - CTimeSpan(90)).GetTime());
    EXPECT_EQ(1090, (t += CTimeSpan(90)).GetTime());
    EXPECT_EQ(1000, (t -= CTimeSpan(90)).GetTime());
    EXPECT_EQ(-90, (CTime(910) - CTime(1000)).GetTimeSpan());
    EXPECT_EQ(LLONG_MIN, (CTime(LLONG_MAX) + CTimeSpan(1)).GetTime());
}

TEST(CTime, IsMadeOfCalendarFields) {
    ScopedTimeZone const zone("UTC0");
    struct {
        int year, month, day, hour, min, sec;
        long long seconds;
    } const cases[] = {
#include "formats/data/utc_times.inc"
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.seconds, CTime(c.year, c.month, c.day, c.hour, c.min, c.sec, 0).GetTime())
            << c.year << '-' << c.month << '-' << c.day;
}

TEST(CTime, TakesFieldsAsLocalTime) {
    ScopedTimeZone const zone("AAA-2BBB,M3.5.0,M10.5.0/3");  // as in eastern Europe
    EXPECT_EQ(1704060000, CTime(2024, 1, 1, 0, 0, 0, -1).GetTime());
    EXPECT_EQ(86400,
              (CTime(2024, 1, 1, 0, 0, 0, -1) - CTime(2023, 12, 31, 0, 0, 0, -1)).GetTimeSpan());
    EXPECT_EQ(82800,
              (CTime(2024, 4, 1, 0, 0, 0, -1) - CTime(2024, 3, 31, 0, 0, 0, -1)).GetTimeSpan());
    EXPECT_EQ(3600, (CTime(2024, 7, 1, 0, 0, 0, 0) - CTime(2024, 7, 1, 0, 0, 0, 1)).GetTimeSpan());
    EXPECT_EQ(CTime(2024, 7, 1, 0, 0, 0, 1), CTime(2024, 7, 1, 0, 0, 0, -1));
}

TEST(CTime, TakesTheSideOfAClockChangeThatIsAskedFor) {
    ScopedTimeZone const zone("AAA-2BBB,M3.5.0,M10.5.0/3");
    EXPECT_EQ(1729989000, CTime(2024, 10, 27, 2, 30, 0, 0).GetTime());  // comes twice
    EXPECT_EQ(1729985400, CTime(2024, 10, 27, 2, 30, 0, 1).GetTime());
    EXPECT_EQ(1711845000, CTime(2024, 3, 31, 2, 30, 0, 0).GetTime());  // never comes
    EXPECT_EQ(1711841400, CTime(2024, 3, 31, 2, 30, 0, 1).GetTime());
    EXPECT_EQ(1711843199, CTime(2024, 3, 31, 1, 59, 59, -1).GetTime());
    EXPECT_EQ(1711843200, CTime(2024, 3, 31, 3, 0, 0, -1).GetTime());
}

// The text of the exception up to the line number, and the report with it cut out.
struct Refusal {
    std::string thrown;
    std::string report;
};

template <typename Action>
Refusal Refused(Action action) {
    std::string thrown = "nothing";
    std::string const report = CheckReports([&] {
        try {
            action();
        } catch (std::runtime_error const& error) {
            thrown = error.what();
        }
    });
    return {thrown.substr(0, thrown.rfind('@') + 1), report.substr(0, report.rfind('@') + 1)};
}

template <typename Action>
void ExpectIllegal(Action action) {
    Refusal const refusal = Refused(action);
    EXPECT_EQ("Error Illegal input time\nqorutils/qorsys/qor_time\n@", refusal.thrown);
    EXPECT_EQ("DBGCHK Illegal input time qorutils/qorsys/qor_time @", refusal.report);
}

TEST(CTime, RefusesWhatA32BitTimeDoesNotHold) {
    ScopedTimeZone const zone("UTC0");
    ExpectIllegal([] { CTime(2038, 1, 19, 3, 14, 8, 0); });
    ExpectIllegal([] { CTime(1901, 12, 13, 20, 45, 51, 0); });
    ExpectIllegal([] { CTime(3000, 1, 1, 0, 0, 0, 0); });
    ExpectIllegal([] { CTime(1, 1, 1, 0, 0, 0, 0); });
    ExpectIllegal([] { CTime(2106, 2, 7, 6, 28, 16, 0); });  // 0 in 32 bits
    ExpectIllegal([] { CTime(INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, 0); });
    ExpectIllegal([] { CTime(INT_MIN, INT_MIN, 1, 0, 0, 0, 0); });
    ExpectIllegal([] { CTime(0x7FFF, 0, -1); });  // a DOS time of 2043
    ExpectIllegal([] { CTime(_SYSTEMTIME{1900, 1, 0, 1, 0, 0, 0, 0}, 0); });
}

TEST(CTime, HasTheLimitsOfUtcInEveryZone) {
    struct {
        char const* rule;
        int hours;  // ahead of UTC
    } const cases[] = {{"UTC0", 0}, {"AAA-5", 5}, {"AAA+7", -7}, {"AAA-2BBB,M3.5.0,M10.5.0/3", 2}};
    for (auto const& c : cases) {
        ScopedTimeZone const zone(c.rule);
        int const hours = c.hours;
        EXPECT_EQ(INT_MAX, CTime(2038, 1, 19, 3 + hours, 14, 7, 0).GetTime());
        EXPECT_EQ(INT_MIN, CTime(1901, 12, 13, 20 + hours, 45, 52, 0).GetTime());
        ExpectIllegal([&] { CTime(2038, 1, 19, 3 + hours, 14, 8, 0); });
        ExpectIllegal([&] { CTime(1901, 12, 13, 20 + hours, 45, 51, 0); });
        ExpectIllegal([&] { CTime(1970, 1, 1, hours, 0, -1, 0); });
        EXPECT_EQ(-2, CTime(1970, 1, 1, hours, 0, -2, 0).GetTime());
    }
}

TEST(CTime, RefusesYearsBefore1900) {
    ScopedTimeZone const zone("UTC0");
    for (int const year : {1899, 1900, 1, 0, -1, -1900, INT_MIN})
        ExpectIllegal([&] { CTime(year, 12, 31, 0, 0, 0, 0); });
}

// On purpose: mktime says "failed" with the same number.
TEST(CTime, RefusesTheLastSecondBefore1970) {
    ScopedTimeZone const zone("UTC0");
    ExpectIllegal([] { CTime(1969, 12, 31, 23, 59, 59, 0); });
    EXPECT_EQ(-2, CTime(1969, 12, 31, 23, 59, 58, 0).GetTime());
}

TEST(CTime, IsMadeOfADosDateAndTime) {
    ScopedTimeZone const zone("UTC0");
    EXPECT_EQ(CTime(2025, 1, 1, 13, 26, 20, 0), CTime(0x5A21, 0x6B4A, 0));
    EXPECT_EQ(1735737980, CTime(0x5A21, 0x6B4A, 0).GetTime());
    EXPECT_EQ(CTime(1980, 1, 1, 0, 0, 0, 0), CTime(0x0021, 0, 0));
    EXPECT_EQ(CTime(1979, 11, 30, 0, 0, 0, 0), CTime(0, 0, 0));  // month 0, day 0
    EXPECT_EQ(CTime(2036, 15, 31, 31, 63, 62, 0), CTime(0x71FF, 0xFFFF, 0));
}

TEST(CTime, IsMadeOfASystemTime) {
    ScopedTimeZone const zone("UTC0");
    _SYSTEMTIME st = {2024, 2, 77, 29, 23, 59, 58, 999};
    EXPECT_EQ(CTime(2024, 2, 29, 23, 59, 58, 0), CTime(st, 0));
    st.wYear = 1902;
    EXPECT_EQ(CTime(1902, 2, 29, 23, 59, 58, 0), CTime(st, 0));
}

TEST(CTime, TakesSystemAndDosTimesAsLocalTimeToo) {
    ScopedTimeZone const zone("AAA-2BBB,M3.5.0,M10.5.0/3");
    _SYSTEMTIME const winter = {2025, 1, 0, 1, 13, 26, 20, 0};
    EXPECT_EQ(1735730780, CTime(winter, 0).GetTime());
    EXPECT_EQ(1735730780, CTime(winter, -1).GetTime());
    EXPECT_EQ(1735727180, CTime(winter, 1).GetTime());
    EXPECT_EQ(1735730780, CTime(0x5A21, 0x6B4A, 0).GetTime());
    EXPECT_EQ(1735730780, CTime(0x5A21, 0x6B4A, -1).GetTime());
    EXPECT_EQ(1735727180, CTime(0x5A21, 0x6B4A, 1).GetTime());
    _SYSTEMTIME const summer = {2025, 7, 0, 1, 13, 26, 20, 0};
    EXPECT_EQ(1751365580, CTime(summer, -1).GetTime());
    EXPECT_EQ(1751365580, CTime(0x5AE1, 0x6B4A, -1).GetTime());
}

TEST(CTime, IsZeroForSystemTimesUpTo1899) {
    _SYSTEMTIME const odd = {1899, 99, 99, 99, 99, 99, 99, 9999};
    EXPECT_EQ(0, CTime(odd, 0).GetTime());
    EXPECT_EQ(0, CTime(_SYSTEMTIME{0, 1, 0, 1, 0, 0, 0, 0}, -1).GetTime());
}

// On purpose: file times are not converted.
TEST(CTime, IsZeroForEveryFileTime) {
    _FILETIME const ft = {0xD53E8000, 0x019DB1DE};
    EXPECT_EQ(0, CTime(ft, 0).GetTime());
    EXPECT_FALSE(CTime::IsValidFILETIME(ft));
}

TEST(CTime, KnowsThePresent) {
    std::int64_t const before = std::time(nullptr);
    std::int64_t const now = CTime::GetCurrentTime().GetTime();
    EXPECT_LE(before, now);
    EXPECT_GE(std::int64_t{std::time(nullptr)}, now);
}

// ---- What is deliberately not there ----

std::string Bytes(std::tm const& fields) {
    return std::string(reinterpret_cast<char const*>(&fields), sizeof fields);
}

TEST(CTime, BreaksNoTimeDown) {
    std::tm fields;
    std::memset(&fields, 0x5A, sizeof fields);
    std::string const before = Bytes(fields);
    for (long long const seconds : {0LL, 1433161800LL, -1LL}) {
        CTime const t(seconds);
        EXPECT_EQ(nullptr, t.GetGmtTm(&fields));
        EXPECT_EQ(nullptr, t.GetLocalTm(&fields));
        EXPECT_EQ(0, t.GetYear());
        EXPECT_EQ(0, t.GetMonth());
        EXPECT_EQ(0, t.GetDay());
        EXPECT_EQ(0, t.GetHour());
        EXPECT_EQ(0, t.GetMinute());
        EXPECT_EQ(0, t.GetSecond());
        EXPECT_EQ(0, t.GetDayOfWeek());
    }
    EXPECT_EQ(before, Bytes(fields));
}

TEST(CTime, LeavesASystemTimeAlone) {
    _SYSTEMTIME st = {1, 2, 3, 4, 5, 6, 7, 8};
    _SYSTEMTIME const before = st;
    EXPECT_FALSE(CTime(1433161800).GetAsSystemTime(st));
    EXPECT_EQ(0, std::memcmp(&before, &st, sizeof st));
}

TEST(CTime, FormatsToNothing) {
    CTime const t(1433161800);
    EXPECT_EQ(L"", Content(t.Format(L"%Y")));
    EXPECT_EQ(L"", Content(t.Format(L"text")));
    EXPECT_EQ(L"", Content(t.Format(nullptr)));
    EXPECT_EQ(L"", Content(t.FormatGmt(L"%Y")));
    EXPECT_EQ(L"", Content(t.FormatGmt(nullptr)));
    ScopedTimeZone const zone("AAA-2");
    EXPECT_EQ(L"", Content(CTime::TimeToXSString(t, false)));
    EXPECT_EQ(L"", Content(CTime::TimeToXSString(t, true)));
}

TEST(CTime, HasNoBias) {
    int bias[] = {1, 2, 3, 4};
    EXPECT_EQ(0, CTime::GetBias(bias[0], bias[1], bias[2], bias[3]));
    EXPECT_EQ(1, bias[0]);
    EXPECT_EQ(2, bias[1]);
    EXPECT_EQ(3, bias[2]);
    EXPECT_EQ(4, bias[3]);
}

// ---- The offset of local time ----

std::tm Fields(int dayOfYear, int hour, int minute) {
    std::tm fields = {};
    fields.tm_yday = dayOfYear;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    return fields;
}

TEST(UtcOffset, IsTheDistanceInMinutes) {
    struct {
        std::tm local, utc;
        int minutes;
    } const cases[] = {
        {Fields(151, 14, 30), Fields(151, 12, 30), 120},
        {Fields(151, 12, 30), Fields(151, 12, 30), 0},
        {Fields(151, 9, 0), Fields(151, 12, 30), -210},
        {Fields(152, 1, 15), Fields(151, 19, 45), 330},  // local time is a day ahead
        {Fields(151, 23, 0), Fields(152, 4, 0), -300},   // and a day behind
        {Fields(0, 1, 0), Fields(365, 23, 0), 120},      // New Year after a leap year
        {Fields(365, 23, 0), Fields(0, 1, 0), -120},
        {Fields(0, 1, 0), Fields(364, 23, 0), 120 + 1440},  // on purpose: a day too much
        {Fields(364, 23, 0), Fields(0, 1, 0), -120 - 1440},
        {Fields(0, 5, 0), Fields(0, 3, 0), 120},                 // both on 1 January
        {Fields(1, 0, 30), Fields(0, 23, 30), 60 - 366 * 1440},  // on purpose: 2 January before 1
    };
    for (auto const& c : cases) EXPECT_EQ(c.minutes, base::UtcOffset(c.local, c.utc));
}

TEST(WithUtcOffset, AppendsSignHoursAndMinutes) {
    struct {
        int minutes;
        wchar_t const* text;
    } const cases[] = {
        {120, L"2015-06-01T14:30:00+02:00"},  {1, L"2015-06-01T14:30:00+00:01"},
        {-1, L"2015-06-01T14:30:00-00:01"},   {-210, L"2015-06-01T14:30:00-03:30"},
        {1560, L"2015-06-01T14:30:00+26:00"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.text, Content(base::WithUtcOffset(L"2015-06-01T14:30:00", c.minutes)));
}

}  // namespace
