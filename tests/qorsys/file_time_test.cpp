#include <qorutils/qorsys/file_time.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "support/descriptors.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/ticks.h"

namespace {

using namespace qor::file_time;
using String = qor_text::CQorStringT<wchar_t>;

constexpr std::uint64_t kTicksAt1970 = 0x019DB1DED53E8000u;

TEST(ConvertAndFormatFileTime, PutsTheMonthFirst) {
    struct {
        std::uint64_t ticks;
        wchar_t const* date;
        wchar_t const* time;
    } const cases[] = {
        {0x01DA6ECBDB72C800u, L"03/05/2024", L"07:08"},
        {0x01DB5BE019BA18F0u, L"12/31/2024", L"23:59"},  // seconds are cut off
        {0x0000000000000000u, L"01/01/1601", L"00:00"},
        {0x7FFFFFFFFFFFFFFFu, L"09/14/30828", L"02:48"},
    };
    for (auto const& c : cases) {
        FILETIME ft = FromTicks(c.ticks);
        String date;
        String time;
        EXPECT_TRUE(ConvertAndFormatFileTime(ft, &date, &time));
        EXPECT_EQ(c.date, date);
        EXPECT_EQ(c.time, time);
        EXPECT_EQ(c.ticks, Ticks(ft));
    }
}

TEST(ConvertAndFormatFileTime, FormatsOnlyWhatIsAskedFor) {
    FILETIME ft = FromTicks(0x01DA6ECBDB72C800u);
    String text;
    EXPECT_TRUE(ConvertAndFormatFileTime(ft, &text, nullptr));
    EXPECT_EQ(L"03/05/2024", text);
    EXPECT_TRUE(ConvertAndFormatFileTime(ft, nullptr, &text));
    EXPECT_EQ(L"07:08", text);
    EXPECT_TRUE(ConvertAndFormatFileTime(ft, nullptr, nullptr));
}

struct Times {
    FILETIME creation = FromTicks(1);
    FILETIME access = FromTicks(2);
    FILETIME write = FromTicks(3);

    bool Get(std::wstring const& path) {
        return qorGetFileTimes(path.c_str(), &creation, &access, &write);
    }
};

TEST(QorGetFileTimes, GivesTheStartOf1970ForEveryFile) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "content");
    for (char const* name : {"file", "."}) {
        Times times;
        EXPECT_TRUE(times.Get(directory.WidePath(name)));
        EXPECT_EQ(kTicksAt1970, Ticks(times.creation));
        EXPECT_EQ(kTicksAt1970, Ticks(times.access));
        EXPECT_EQ(kTicksAt1970, Ticks(times.write));
    }
}

TEST(QorGetFileTimes, FillsOnlyWhatIsAskedFor) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "");
    std::wstring const path = directory.WidePath("file");
    FILETIME ft = {};
    EXPECT_TRUE(qorGetFileTimes(path.c_str(), nullptr, nullptr, nullptr));
    EXPECT_TRUE(qorGetFileTimes(path.c_str(), nullptr, &ft, nullptr));
    EXPECT_EQ(kTicksAt1970, Ticks(ft));
}

TEST(QorGetFileTimes, FillsNothingWhenItFails) {
    TemporaryDirectory directory;
    directory.MakeFile("a..b", "");
    directory.MakeSparseFile("large", 2147483648);
    for (char const* name : {"missing", "a..b", "large"}) {
        Times times;
        EXPECT_FALSE(times.Get(directory.WidePath(name))) << name;
        EXPECT_EQ(1u, Ticks(times.creation));
        EXPECT_EQ(2u, Ticks(times.access));
        EXPECT_EQ(3u, Ticks(times.write));
    }
    EXPECT_FALSE(qorGetFileTimes(nullptr, nullptr, nullptr, nullptr));
    EXPECT_FALSE(qorGetFileTimes(L"", nullptr, nullptr, nullptr));
}

TEST(QorGetFileTimes, FailsForAPathThatTheLocaleCannotEncode) {
    TemporaryDirectory directory;
    directory.MakeFile("\xC3\xA9", "");
    std::wstring const path = directory.WidePath("") + L'\u00E9';
    {
        ScopedLocale const locale("C.UTF-8");
        EXPECT_TRUE(Times().Get(path));
    }
    ScopedLocale const locale("C");
    EXPECT_FALSE(Times().Get(path));
}

// The descriptor that the next open file will have.
TEST(QorGetFileTimes, ClosesWhatItOpened) {
    TemporaryDirectory directory;
    directory.MakeFile("small", "");
    directory.MakeSparseFile("large", 2147483648);
    int const nextBefore = NextDescriptor();
    Times().Get(directory.WidePath("small"));
    Times().Get(directory.WidePath("large"));
    EXPECT_EQ(nextBefore, NextDescriptor());
}

struct Texts {
    String creationDate = L"-", creationTime = L"-";
    String writeDate = L"-", writeTime = L"-";
    String accessDate = L"-", accessTime = L"-";
};

TEST(QorGetFileTimeFormatted, FormatsEachOfThreeTimes) {
    FILETIME creation = FromTicks(0x01DA6ECBDB72C800u);
    FILETIME access = FromTicks(0x01BF82BA271A5BB0u);
    FILETIME write = FromTicks(0x01E9FD1ED4A5E980u);
    Texts t;
    EXPECT_TRUE(qorGetFileTimeFormatted(&creation, &access, &write, &t.creationDate,
                                        &t.creationTime, &t.writeDate, &t.writeTime, &t.accessDate,
                                        &t.accessTime));
    EXPECT_EQ(L"03/05/2024", t.creationDate);
    EXPECT_EQ(L"07:08", t.creationTime);
    EXPECT_EQ(L"01/19/2038", t.writeDate);
    EXPECT_EQ(L"03:14", t.writeTime);
    EXPECT_EQ(L"02/29/2000", t.accessDate);
    EXPECT_EQ(L"13:37", t.accessTime);
}

TEST(QorGetFileTimeFormatted, PassesOverTimesWithoutADateOrAValue) {
    FILETIME ft = FromTicks(0x01DA6ECBDB72C800u);
    Texts t;
    EXPECT_TRUE(qorGetFileTimeFormatted(&ft, nullptr, &ft, nullptr, &t.creationTime, &t.writeDate,
                                        nullptr, &t.accessDate, &t.accessTime));
    EXPECT_EQ(L"-", t.creationTime);
    EXPECT_EQ(L"03/05/2024", t.writeDate);
    EXPECT_EQ(L"-", t.accessDate);
    EXPECT_EQ(L"-", t.accessTime);
}

bool Format(std::wstring const& path, Texts& t) {
    return qorGetFileTimeFormatted(path.c_str(), &t.creationDate, &t.creationTime, &t.writeDate,
                                   &t.writeTime, &t.accessDate, &t.accessTime);
}

void ExpectAll(wchar_t const* date, wchar_t const* time, Texts const& t) {
    EXPECT_EQ(date, t.creationDate);
    EXPECT_EQ(time, t.creationTime);
    EXPECT_EQ(date, t.writeDate);
    EXPECT_EQ(time, t.writeTime);
    EXPECT_EQ(date, t.accessDate);
    EXPECT_EQ(time, t.accessTime);
}

TEST(QorGetFileTimeFormatted, FormatsTheTimesOfAFile) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "");
    Texts t;
    EXPECT_TRUE(Format(directory.WidePath("file"), t));
    ExpectAll(L"01/01/1970", L"00:00", t);
}

TEST(QorGetFileTimeFormatted, FormatsZeroTicksForAFileThatCannotBeOpened) {
    TemporaryDirectory const directory;
    Texts t;
    EXPECT_TRUE(Format(directory.WidePath("missing"), t));
    ExpectAll(L"01/01/1601", L"00:00", t);
}

TEST(QorGetFileTimeFormatted, PassesOverTimesOfAFileWithoutADate) {
    Texts t;
    EXPECT_TRUE(qorGetFileTimeFormatted(L"", nullptr, &t.creationTime, nullptr, nullptr,
                                        &t.accessDate, nullptr));
    EXPECT_EQ(L"-", t.creationTime);
    EXPECT_EQ(L"01/01/1601", t.accessDate);
}

TEST(QorSystemTimeToFileTime, TellsWhetherItSucceeded) {
    SYSTEMTIME st = {2024, 3, 2, 5, 7, 8, 0, 0};
    FILETIME ft = {};
    EXPECT_TRUE(qorSystemTimeToFileTime(&st, ft));
    EXPECT_EQ(0x01DA6ECBDB72C800u, Ticks(ft));
    st.wSecond = 60;
    EXPECT_FALSE(qorSystemTimeToFileTime(&st, ft));
    EXPECT_FALSE(qorSystemTimeToFileTime(nullptr, ft));
    EXPECT_EQ(0x01DA6ECBDB72C800u, Ticks(ft));
}

TEST(QorGetSystemTimeAsFileTime, IsTheTimeOfTheClockInWholeMilliseconds) {
    SYSTEMTIME before;
    SYSTEMTIME after;
    FILETIME ft[3] = {};
    GetSystemTime(&before);
    EXPECT_TRUE(qorGetSystemTimeAsFileTime(ft[1]));
    GetSystemTime(&after);
    ASSERT_EQ(1, SystemTimeToFileTime(&before, &ft[0]));
    ASSERT_EQ(1, SystemTimeToFileTime(&after, &ft[2]));
    EXPECT_LE(Ticks(ft[0]), Ticks(ft[1]));
    EXPECT_LE(Ticks(ft[1]), Ticks(ft[2]));
    EXPECT_EQ(0u, Ticks(ft[1]) % 10000);
}

}  // namespace
