#include "qorutils/logging/log_line.h"

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

namespace {

using qor_logging::LinePrefix;
using qor_logging::ToTicks;

std::wstring Prefix(std::uint32_t ticks, long level) {
    LinePrefix const prefix(ticks, level);
    return std::wstring(prefix.Text(), static_cast<std::size_t>(prefix.Length()));
}

TEST(LinePrefix, HasSecondsMillisecondsAndLevel) {
    struct {
        std::uint32_t ticks;
        long level;
        wchar_t const* text;
    } const cases[] = {
        {0, 7, L"00000.000 ; 7 ; "},
        {999, 7, L"00000.999 ; 7 ; "},
        {1000, 7, L"00001.000 ; 7 ; "},
        {12345, 7, L"00012.345 ; 7 ; "},
        {99999999, 7, L"99999.999 ; 7 ; "},
        {100000000, 7, L"100000.000 ; 7 ; "},     // the field grows where it must
        {4294967295u, 7, L"4294967.295 ; 7 ; "},  // the last one before 0
        {0, 1, L"00000.000 ; 1 ; "},
        {0, 10, L"00000.000 ;10 ; "},  // two places of its own
        {0, 123, L"00000.000 ;123 ; "},
        {0, -1, L"00000.000 ;-1 ; "},
        {4294967295u, -2147483647 - 1, L"4294967.295 ;-2147483648 ; "},  // the longest
    };
    for (auto const& c : cases) EXPECT_EQ(c.text, Prefix(c.ticks, c.level));
}

timespec Time(time_t seconds, long nanoseconds) {
    timespec time = {};
    time.tv_sec = seconds;
    time.tv_nsec = nanoseconds;
    return time;
}

TEST(ToTicks, CountsWholeMilliseconds) {
    EXPECT_EQ(0u, ToTicks(Time(0, 0)));
    EXPECT_EQ(0u, ToTicks(Time(0, 999999)));
    EXPECT_EQ(1u, ToTicks(Time(0, 1000000)));
    EXPECT_EQ(12345u, ToTicks(Time(12, 345678901)));
}

TEST(ToTicks, StartsAgainAtZeroBehind32Bits) {
    EXPECT_EQ(4294967295u, ToTicks(Time(4294967, 295000000)));
    EXPECT_EQ(0u, ToTicks(Time(4294967, 296000000)));
    EXPECT_EQ(704u, ToTicks(Time(4294968, 0)));
    EXPECT_EQ(2147483647000u % 4294967296u, ToTicks(Time(2147483647, 0)));
}

}  // namespace
