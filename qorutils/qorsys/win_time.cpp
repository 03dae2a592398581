#include "qorutils/qorsys/win_time.h"

#include <sys/time.h>

#include <cerrno>

static_assert(sizeof(_FILETIME) == 8, "ported code reads and writes these as bytes");
static_assert(sizeof(_SYSTEMTIME) == 16, "ported code reads and writes these as bytes");

namespace {

constexpr std::int64_t kTicksPerSecond = 10000000;
constexpr std::int64_t kTicksPerMillisecond = 10000;
constexpr std::int64_t kTicksAt1970 = 116444736000000000;
constexpr int kSecondsPerDay = 86400;
constexpr int kInvalidParameter = 87;

std::int64_t Ticks(_FILETIME const& ft) {
    return static_cast<std::int64_t>(std::uint64_t{ft.dwHighDateTime} << 32 | ft.dwLowDateTime);
}

_FILETIME FromTicks(std::uint64_t ticks) {
    return {static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
}

// The date of the day that is `days` behind 1601-01-01. Years are counted from March, so that the
// leap day is the last; 1461 days are four years, 1959/64 days a month.
void SetDate(int days, _SYSTEMTIME& st) {
    int const cleaned = days + ((4 * days + 1227) / 146097 + 1) * 3 / 4 + 28188;
    int const years = (20 * cleaned - 2442) / 7305;
    int const yearDay = cleaned - years * 1461 / 4;
    int const months = 64 * yearDay / 1959;
    bool const isBeforeNewYear = months < 14;
    st.wMonth = static_cast<std::uint16_t>(months - (isBeforeNewYear ? 1 : 13));
    st.wYear = static_cast<std::uint16_t>(years + (isBeforeNewYear ? 1524 : 1525));
    st.wDay = static_cast<std::uint16_t>(yearDay - 1959 * months / 64);
    st.wDayOfWeek = static_cast<std::uint16_t>((days + 1) % 7);
}

void SetTime(int secondOfDay, _SYSTEMTIME& st) {
    st.wHour = static_cast<std::uint16_t>(secondOfDay / 3600);
    st.wMinute = static_cast<std::uint16_t>(secondOfDay % 3600 / 60);
    st.wSecond = static_cast<std::uint16_t>(secondOfDay % 60);
}

bool IsValid(_SYSTEMTIME const& st) {
    static int const kMostDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return st.wYear >= 1601 && st.wMonth >= 1 && st.wMonth <= 12 && st.wDay >= 1 &&
           st.wDay <= kMostDays[st.wMonth - 1] && st.wHour < 24 && st.wMinute < 60 &&
           st.wSecond < 60 && st.wMilliseconds < 1000;
}

// Days since 1601-01-01. Years begin in March, as above.
unsigned int DayNumber(_SYSTEMTIME const& st) {
    bool const isBeforeMarch = st.wMonth < 3;
    unsigned int const month = st.wMonth + (isBeforeMarch ? 13u : 1u);
    unsigned int const year = st.wYear - (isBeforeMarch ? 1u : 0u);
    return 36525 * year / 100 - (year / 100 + 1) * 3 / 4 + 1959 * month / 64 + st.wDay - 584817;
}

BOOL Copy(_FILETIME const* in, _FILETIME* out) {
    if (in == nullptr || out == nullptr) return 0;
    *out = *in;
    return 1;
}

}  // namespace

BOOL FileTimeToSystemTime(_FILETIME const* ft, _SYSTEMTIME* st) {
    if (ft == nullptr || st == nullptr) return 0;
    std::int64_t const ticks = Ticks(*ft);
    std::int64_t const seconds = ticks / kTicksPerSecond;
    SetDate(static_cast<int>(seconds / kSecondsPerDay), *st);
    SetTime(static_cast<int>(seconds % kSecondsPerDay), *st);
    st->wMilliseconds = static_cast<std::uint16_t>(ticks % kTicksPerSecond / kTicksPerMillisecond);
    return 1;
}

BOOL SystemTimeToFileTime(_SYSTEMTIME const* st, _FILETIME* ft) {
    if (st == nullptr || ft == nullptr) return 0;
    if (!IsValid(*st)) {
        errno = kInvalidParameter;
        return 0;
    }
    unsigned int const secondOfDay = (st->wHour * 60u + st->wMinute) * 60u + st->wSecond;
    std::uint64_t const seconds = std::uint64_t{DayNumber(*st)} * kSecondsPerDay + secondOfDay;
    *ft = FromTicks((seconds * 1000 + st->wMilliseconds) * kTicksPerMillisecond);
    return 1;
}

void GetSystemTime(_SYSTEMTIME* st) {
    timeval now;
    gettimeofday(&now, nullptr);
    std::int64_t const ticks = kTicksAt1970 + now.tv_sec * kTicksPerSecond + now.tv_usec * 10;
    _FILETIME const ft = FromTicks(static_cast<std::uint64_t>(ticks));
    FileTimeToSystemTime(&ft, st);
}

BOOL FileTimeToLocalFileTime(_FILETIME const* in, _FILETIME* out) {
    return Copy(in, out);
}

BOOL LocalFileTimeToFileTime(_FILETIME const* in, _FILETIME* out) {
    return Copy(in, out);
}

namespace base {

void to_FILETIME(long t, _FILETIME& ft) {
    std::int64_t const ticks = kTicksAt1970 + static_cast<std::int32_t>(t) * kTicksPerSecond;
    ft = FromTicks(static_cast<std::uint64_t>(ticks));
}

// Unsigned, as the difference may pass the lowest number.
long long to_time_t(_FILETIME const& ft) {
    std::uint64_t const difference =
        static_cast<std::uint64_t>(Ticks(ft)) - static_cast<std::uint64_t>(kTicksAt1970);
    return static_cast<std::int64_t>(difference) / kTicksPerSecond;
}

}  // namespace base
