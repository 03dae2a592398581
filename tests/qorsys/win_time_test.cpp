#include <qorutils/qorsys/win_time.h>

#include <sys/time.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <ostream>

#include <gtest/gtest.h>

#include "support/ticks.h"

bool operator==(SYSTEMTIME const& a, SYSTEMTIME const& b) {
    return a.wYear == b.wYear && a.wMonth == b.wMonth && a.wDayOfWeek == b.wDayOfWeek &&
           a.wDay == b.wDay && a.wHour == b.wHour && a.wMinute == b.wMinute &&
           a.wSecond == b.wSecond && a.wMilliseconds == b.wMilliseconds;
}

void PrintTo(SYSTEMTIME const& st, std::ostream* out) {
    *out << st.wYear << '-' << st.wMonth << '-' << st.wDay << ' ' << st.wHour << ':' << st.wMinute
         << ':' << st.wSecond << '.' << st.wMilliseconds << ", day of week " << st.wDayOfWeek;
}

namespace {

constexpr std::uint64_t kTicksAt1970 = 0x019DB1DED53E8000u;
constexpr std::uint64_t kTicksPerDay = 864000000000u;

static_assert(offsetof(FILETIME, dwHighDateTime) == 4, "");
static_assert(offsetof(SYSTEMTIME, wMonth) == 2, "");
static_assert(offsetof(SYSTEMTIME, wDayOfWeek) == 4, "");
static_assert(offsetof(SYSTEMTIME, wDay) == 6, "");
static_assert(offsetof(SYSTEMTIME, wHour) == 8, "");
static_assert(offsetof(SYSTEMTIME, wMinute) == 10, "");
static_assert(offsetof(SYSTEMTIME, wSecond) == 12, "");
static_assert(offsetof(SYSTEMTIME, wMilliseconds) == 14, "");

SYSTEMTIME Calendar(std::uint64_t ticks) {
    FILETIME const ft = FromTicks(ticks);
    SYSTEMTIME st = {};
    EXPECT_EQ(1, FileTimeToSystemTime(&ft, &st));
    return st;
}

std::uint64_t Ticks(SYSTEMTIME const& st) {
    FILETIME ft = {};
    EXPECT_EQ(1, SystemTimeToFileTime(&st, &ft)) << testing::PrintToString(st);
    return Ticks(ft);
}

struct TimeCase {
    std::uint64_t ticks;
    SYSTEMTIME st;
};

// Year, month, day of week, day, hour, minute, second, millisecond.
TimeCase const kTimes[] = {
    {0x0000000000000000u, {1601, 1, 1, 1, 0, 0, 0, 0}},  // the first
    {0x0000000000002710u, {1601, 1, 1, 1, 0, 0, 0, 1}},
    {0x00011ED178C698F0u, {1601, 12, 1, 31, 23, 59, 59, 999}},
    {0x00038AD130B38000u, {1604, 2, 0, 29, 0, 0, 0, 0}},  // the first leap day
    {0x006F2B714ABBC000u, {1700, 2, 0, 28, 0, 0, 0, 0}},  // no leap year
    {0x006F2C3A75258000u, {1700, 3, 1, 1, 0, 0, 0, 0}},
    {0x014F35A9A90CC000u, {1899, 12, 6, 30, 0, 0, 0, 0}},
    {0x014F65342F0AA000u, {1900, 2, 3, 28, 12, 0, 0, 0}},
    {0x014F6598C43F8000u, {1900, 3, 4, 1, 0, 0, 0, 0}},
    {0x019DB1DED53E58F0u, {1969, 12, 3, 31, 23, 59, 59, 999}},
    {0x019DB1DED53E8000u, {1970, 1, 4, 1, 0, 0, 0, 0}},
    {0x01BF53EB256D18F0u, {1999, 12, 5, 31, 23, 59, 59, 999}},
    {0x01BF53EB256D4000u, {2000, 1, 6, 1, 0, 0, 0, 0}},
    {0x01BF82BA271A5BB0u, {2000, 2, 2, 29, 13, 37, 42, 123}},
    {0x01BF831116364000u, {2000, 3, 3, 1, 0, 0, 0, 0}},
    {0x01D94BD0C4224000u, {2023, 3, 3, 1, 0, 0, 0, 0}},
    {0x01DA6AA23CE90000u, {2024, 2, 4, 29, 0, 0, 0, 0}},
    {0x01DA6ECBDB72C800u, {2024, 3, 2, 5, 7, 8, 0, 0}},
    {0x01DB5BE019BA18F0u, {2024, 12, 2, 31, 23, 59, 59, 999}},
    {0x01E9FD1ED4A5E980u, {2038, 1, 2, 19, 3, 14, 7, 0}},  // the last 32-bit time
    {0x01E9FD1ED53E8000u, {2038, 1, 2, 19, 3, 14, 8, 0}},
    {0x022F9EF713598000u, {2100, 2, 0, 28, 0, 0, 0, 0}},
    {0x022F9FC03DC34000u, {2100, 3, 1, 1, 0, 0, 0, 0}},
    {0x037FF5CDB46A4000u, {2400, 2, 2, 29, 0, 0, 0, 0}},
    {0x24C85A5ED1C018F0u, {9999, 12, 5, 31, 23, 59, 59, 999}},
    {0x7FFF35F4F06C58F0u, {30827, 12, 5, 31, 23, 59, 59, 999}},  // the last whole year
};

TEST(WinTime, ConvertsBetweenTicksAndCalendar) {
    for (TimeCase const& c : kTimes) {
        EXPECT_EQ(c.st, Calendar(c.ticks)) << c.ticks;
        EXPECT_EQ(c.ticks, Ticks(c.st)) << testing::PrintToString(c.st);
    }
}

// A calendar that only knows how to go to the next day.
class DayByDay {
  public:
    SYSTEMTIME const& today() const { return today_; }

    void GoOn() {
        today_.wDayOfWeek = static_cast<std::uint16_t>((today_.wDayOfWeek + 1) % 7);
        ++today_.wDay;
        if (today_.wDay <= DaysInMonth()) return;
        today_.wDay = 1;
        ++today_.wMonth;
        if (today_.wMonth <= 12) return;
        today_.wMonth = 1;
        ++today_.wYear;
    }

  private:
    int DaysInMonth() const {
        int const year = today_.wYear;
        bool const isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
        switch (today_.wMonth) {
            case 2:
                return isLeap ? 29 : 28;
            case 4:
            case 6:
            case 9:
            case 11:
                return 30;
            default:
                return 31;
        }
    }

    SYSTEMTIME today_ = {1601, 1, 1, 1, 0, 0, 0, 0};
};

TEST(WinTime, KnowsEveryDayOfTheCalendarForEightHundredYears) {
    DayByDay calendar;
    for (std::uint64_t days = 0; calendar.today().wYear < 2401; ++days, calendar.GoOn()) {
        ASSERT_EQ(calendar.today(), Calendar(days * kTicksPerDay));
        ASSERT_EQ(days * kTicksPerDay, Ticks(calendar.today()));
    }
}

TEST(WinTime, KnowsEverySecondOfADay) {
    std::uint64_t ticks = 0x01DA6AA23CE90000u;
    for (std::uint16_t hour = 0; hour != 24; ++hour)
        for (std::uint16_t minute = 0; minute != 60; ++minute)
            for (std::uint16_t second = 0; second != 60; ++second, ticks += 10000000) {
                SYSTEMTIME const st = {2024, 2, 4, 29, hour, minute, second, 0};
                ASSERT_EQ(st, Calendar(ticks));
                ASSERT_EQ(ticks, Ticks(st));
            }
}

TEST(FileTimeToSystemTime, CutsOffWhatIsLessThanAMillisecond) {
    SYSTEMTIME const first = {1601, 1, 1, 1, 0, 0, 0, 0};
    SYSTEMTIME const lastButOne = {1969, 12, 3, 31, 23, 59, 59, 999};
    EXPECT_EQ(first, Calendar(9999));
    EXPECT_EQ(lastButOne, Calendar(kTicksAt1970 - 1));
}

TEST(FileTimeToSystemTime, KnowsTheLastTick) {
    SYSTEMTIME const last = {30828, 9, 4, 14, 2, 48, 5, 477};
    EXPECT_EQ(last, Calendar(0x7FFFFFFFFFFFFFFFu));
}

TEST(FileTimeToSystemTime, GivesTheSameFieldsForNegativeTicksEverywhere) {
    TimeCase const cases[] = {
        {0xFFFFFFFFFFFFFFFFu, {1601, 1, 1, 1, 0, 0, 0, 0}},
        {0xFFFFFFFFFFFFD8F0u, {1601, 1, 1, 1, 0, 0, 0, 65535}},
        {0xFFFFFFFFFF676980u, {1601, 1, 1, 1, 0, 0, 65535, 0}},
        {0xFFFFFF36D5964000u, {1600, 12, 0, 31, 0, 0, 0, 0}},
        {0xFFFEE0655CCF8000u, {1600, 1, 65535, 1, 0, 0, 0, 0}},
        {0x8000000000000000u, {37910, 65529, 65534, 65527, 65534, 65488, 65531, 65059}},
    };
    for (TimeCase const& c : cases) EXPECT_EQ(c.st, Calendar(c.ticks)) << c.ticks;
}

TEST(SystemTimeToFileTime, CountsTheYearsThatTicksCannotHoldModulo) {
    EXPECT_EQ(0xFA79CD3FE6A24000u, Ticks(SYSTEMTIME{58795, 1, 0, 1, 0, 0, 0, 0}));
    EXPECT_EQ(0x17FF5248BCB1C000u, Ticks(SYSTEMTIME{65535, 12, 0, 31, 0, 0, 0, 0}));
}

TEST(SystemTimeToFileTime, IgnoresTheDayOfWeek) {
    EXPECT_EQ(kTicksAt1970, Ticks(SYSTEMTIME{1970, 1, 65535, 1, 0, 0, 0, 0}));
}

TEST(SystemTimeToFileTime, TakesFebruary29OfACommonYearAsMarch1) {
    EXPECT_EQ(0x01D94BD0C4224000u, Ticks(SYSTEMTIME{2023, 2, 0, 29, 0, 0, 0, 0}));
    EXPECT_EQ(0x014F6598C43F8000u, Ticks(SYSTEMTIME{1900, 2, 0, 29, 0, 0, 0, 0}));
}

TEST(SystemTimeToFileTime, TakesTheLastDayOfEachMonthAndNoLaterOne) {
    std::uint16_t const lengths[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (std::uint16_t const year : {2023, 2024}) {
        for (std::uint16_t month = 1; month <= 12; ++month) {
            SYSTEMTIME st = {year, month, 0, lengths[month - 1], 0, 0, 0, 0};
            FILETIME ft = {};
            EXPECT_EQ(1, SystemTimeToFileTime(&st, &ft)) << testing::PrintToString(st);
            ++st.wDay;
            EXPECT_EQ(0, SystemTimeToFileTime(&st, &ft)) << testing::PrintToString(st);
        }
    }
}

TEST(SystemTimeToFileTime, RefusesFieldsOutOfRangeWithErrno87AndWritesNothing) {
    SYSTEMTIME const cases[] = {
        {1600, 12, 0, 31, 0, 0, 0, 0},     // before the first
        {0, 1, 0, 1, 0, 0, 0, 0},          //
        {2024, 0, 0, 1, 0, 0, 0, 0},       // no month
        {2024, 13, 0, 1, 0, 0, 0, 0},      //
        {2024, 65535, 0, 1, 0, 0, 0, 0},   //
        {2024, 1, 0, 0, 0, 0, 0, 0},       // no day
        {2024, 1, 0, 0x8001, 0, 0, 0, 0},  // negative as a signed number
        {2024, 2, 0, 65535, 0, 0, 0, 0},   //
        {2024, 2, 0, 30, 0, 0, 0, 0},      //
        {2023, 4, 0, 31, 0, 0, 0, 0},      //
        {2024, 1, 0, 1, 24, 0, 0, 0},      //
        {2024, 1, 0, 1, 65535, 0, 0, 0},   //
        {2024, 1, 0, 1, 0, 60, 0, 0},      //
        {2024, 1, 0, 1, 0, 65535, 0, 0},   //
        {2024, 1, 0, 1, 0, 0, 60, 0},      // no leap seconds
        {2024, 1, 0, 1, 0, 0, 65535, 0},   //
        {2024, 1, 0, 1, 0, 0, 0, 1000},    //
        {2024, 1, 0, 1, 0, 0, 0, 65535},   //
    };
    for (SYSTEMTIME const& st : cases) {
        FILETIME ft = {1, 2};
        errno = 0;
        EXPECT_EQ(0, SystemTimeToFileTime(&st, &ft)) << testing::PrintToString(st);
        EXPECT_EQ(87, errno) << testing::PrintToString(st);
        EXPECT_EQ(0x0000000200000001u, Ticks(ft)) << testing::PrintToString(st);
    }
}

TEST(WinTime, RefusesNullPointers) {
    FILETIME ft = FromTicks(5);
    SYSTEMTIME st = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(0, FileTimeToSystemTime(nullptr, &st));
    EXPECT_EQ(0, FileTimeToSystemTime(&ft, nullptr));
    EXPECT_EQ(0, SystemTimeToFileTime(nullptr, &ft));
    EXPECT_EQ(0, SystemTimeToFileTime(&st, nullptr));
    for (auto const convert : {FileTimeToLocalFileTime, LocalFileTimeToFileTime}) {
        EXPECT_EQ(0, convert(nullptr, &ft));
        EXPECT_EQ(0, convert(&ft, nullptr));
        EXPECT_EQ(0, convert(nullptr, nullptr));
    }
    EXPECT_EQ(5u, Ticks(ft));
    EXPECT_EQ(1, st.wYear);
}

TEST(LocalFileTime, IsTheSameInEveryZone) {
    for (auto const convert : {FileTimeToLocalFileTime, LocalFileTimeToFileTime}) {
        FILETIME const in = FromTicks(0xFEDCBA9876543210u);
        FILETIME out = {};
        EXPECT_EQ(1, convert(&in, &out));
        EXPECT_EQ(0xFEDCBA9876543210u, Ticks(out));
    }
}

std::uint64_t MillisecondsNow() {
    timeval now;
    gettimeofday(&now, nullptr);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000 +
           static_cast<std::uint64_t>(now.tv_usec) / 1000;
}

TEST(GetSystemTime, IsTheTimeOfTheClockInUtc) {
    std::uint64_t const before = MillisecondsNow();
    SYSTEMTIME now = {};
    GetSystemTime(&now);
    std::uint64_t const after = MillisecondsNow();
    std::uint64_t const found = (Ticks(now) - kTicksAt1970) / 10000;
    EXPECT_LE(before, found);
    EXPECT_LE(found, after);
    EXPECT_EQ(Calendar(Ticks(now)), now);
}

std::uint64_t TicksOf(long long t) {
    FILETIME ft = {};
    base::to_FILETIME(static_cast<long>(t), ft);
    return Ticks(ft);
}

TEST(ToFiletime, CountsFrom1601) {
    struct {
        long long t;
        std::uint64_t ticks;
    } const cases[] = {
        {-2147483648, 0x0151669ED53E8000u}, {-1, 0x019DB1DED4A5E980u},
        {0, 0x019DB1DED53E8000u},           {1, 0x019DB1DED5D71680u},
        {1709622480, 0x01DA6ECBDB72C800u},  {2147483647, 0x01E9FD1ED4A5E980u},
    };
    for (auto const& c : cases) EXPECT_EQ(c.ticks, TicksOf(c.t)) << c.t;
}

TEST(ToFiletime, TakesThirtyTwoBitsOnEveryMachine) {
    EXPECT_EQ(TicksOf(-2147483648), TicksOf(0x80000000));
    EXPECT_EQ(TicksOf(-1), TicksOf(0xFFFFFFFF));
    EXPECT_EQ(TicksOf(1), TicksOf(0x100000001));
}

TEST(ToTimeT, GivesBackEveryThirtyTwoBitTime) {
    auto const expectSame = [](long long t) {
        FILETIME ft = {};
        base::to_FILETIME(static_cast<long>(t), ft);
        ASSERT_EQ(t, base::to_time_t(ft));
    };
    for (long long t = INT_MIN; t <= INT_MAX; t += 9973) expectSame(t);
    for (long long t = -1000; t <= 1000; ++t) expectSame(t);
    expectSame(INT_MAX);
}

TEST(ToTimeT, RoundsTowards1970AndTakesAnyTicks) {
    struct {
        std::uint64_t ticks;
        long long t;
    } const cases[] = {
        {0, -11644473600},
        {kTicksAt1970 - 10000000, -1},
        {kTicksAt1970 - 9999999, 0},
        {kTicksAt1970 + 9999999, 0},
        {kTicksAt1970 + 10000000, 1},
        {0x7FFFFFFFFFFFFFFFu, 910692730085},
        {0xFFFFFFFFFFFFFFFFu, -11644473600},
        // the difference to 1970 wraps
        {0x8000000000000000u, 910692730085},
    };
    for (auto const& c : cases) EXPECT_EQ(c.t, base::to_time_t(FromTicks(c.ticks))) << c.ticks;
}

}  // namespace
