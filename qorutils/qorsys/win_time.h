/// @file
/// The Win32 time records and the conversions between them.
///
/// All times are UTC. On purpose: so are local times, and the conversions to and from local time
/// copy.

#ifndef QORUTILS_QORSYS_WIN_TIME_H_
#define QORUTILS_QORSYS_WIN_TIME_H_

#include <cstdint>

#include "qorutils/export.h"
#include "qorutils/qorsys/qor_types.h"

/// Ticks of 100 ns since 1601-01-01 00:00:00. Functions that calculate read them as a signed
/// number.
struct _FILETIME {
    std::uint32_t dwLowDateTime;   ///< bits 0 to 31
    std::uint32_t dwHighDateTime;  ///< bits 32 to 63
};
/// The name in ported code.
using FILETIME = _FILETIME;

/// A time by the Gregorian calendar.
struct _SYSTEMTIME {
    std::uint16_t wYear;          ///< 1601 and later
    std::uint16_t wMonth;         ///< 1..12
    std::uint16_t wDayOfWeek;     ///< 0..6, 0 is Sunday
    std::uint16_t wDay;           ///< 1..31
    std::uint16_t wHour;          ///< 0..23
    std::uint16_t wMinute;        ///< 0..59
    std::uint16_t wSecond;        ///< 0..59
    std::uint16_t wMilliseconds;  ///< 0..999
};
/// The name in ported code.
using SYSTEMTIME = _SYSTEMTIME;

/// Stores the calendar time of ft at st; what is less than a millisecond is cut off. Returns 1, or
/// 0 for a null pointer.
/// On purpose: negative ticks are not refused, as Windows does. They give fields without a meaning,
/// the same on every machine.
QORUTILS_API BOOL FileTimeToSystemTime(_FILETIME const* ft, _SYSTEMTIME* st);

/// Stores the ticks of st, a year from 1601; wDayOfWeek is ignored. Returns 1, or 0 for a null
/// pointer, or, with errno 87 (ERROR_INVALID_PARAMETER), for a field out of range. `*ft` is then
/// untouched.
/// On purpose: 29 February passes in common years too, as 1 March.
/// From the year 30828 on, the ticks are negative numbers.
QORUTILS_API BOOL SystemTimeToFileTime(_SYSTEMTIME const* st, _FILETIME* ft);

/// Stores the present time.
QORUTILS_API void GetSystemTime(_SYSTEMTIME* st);

/// Copies in to out: local time is UTC here. Returns 1, or 0 for a null pointer.
QORUTILS_API BOOL FileTimeToLocalFileTime(_FILETIME const* in, _FILETIME* out);
/// Copies in to out: local time is UTC here. Returns 1, or 0 for a null pointer.
QORUTILS_API BOOL LocalFileTimeToFileTime(_FILETIME const* in, _FILETIME* out);

namespace base {

/// Sets ft from seconds since 1970. Their low 32 bits count, as a signed number, so that the
/// times are those from 1901 to 2038.
QORUTILS_API void to_FILETIME(long t, _FILETIME& ft);

/// The time in whole seconds since 1970, rounded towards 1970.
QORUTILS_API long long to_time_t(_FILETIME const& ft);

}  // namespace base

#endif  // QORUTILS_QORSYS_WIN_TIME_H_
