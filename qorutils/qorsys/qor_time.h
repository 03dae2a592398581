/// @file
/// Times and spans of time in whole seconds, in the shape of the MFC classes.
///
/// Counts are 64 bits wide and wrap where they overflow. The calendar side is one-way: a time can
/// be made from calendar fields (local time, as the system's mktime knows it), but not broken down
/// into them. On purpose: all that would need the latter gives 0, false or the empty string.

#ifndef QORUTILS_QORSYS_QOR_TIME_H_
#define QORUTILS_QORSYS_QOR_TIME_H_

#include <ctime>

#include "qorutils/export.h"
#include "qorutils/qorsys/win_time.h"
#include "qorutils/text/qor_string.h"

namespace base {

/// A span of time, which may be negative. Parts are cut off towards zero and have the sign of the
/// span: in -90 seconds GetTotalMinutes() is -1 and GetSeconds() is -30.
class QORUTILS_API CTimeSpan {
  public:
    /// @name Construction
    /// @{

    /// No time at all.
    CTimeSpan() noexcept : seconds_(0) {}
    /// So many seconds.
    CTimeSpan(long long seconds) noexcept : seconds_(seconds) {}

    /// The sum of the parts, each of which may be negative and of any size.
    /// On purpose: the sum is that of 32-bit numbers; beyond 68 years it wraps.
    CTimeSpan(long days, int hours, int mins, int secs) noexcept;

    /// @}
    /// @name The whole span in a unit
    /// @{

    /// The whole span in full days, hours, minutes or seconds.
    long long GetDays() const noexcept { return seconds_ / 86400; }
    long long GetTotalHours() const noexcept { return seconds_ / 3600; }
    long long GetTotalMinutes() const noexcept { return seconds_ / 60; }
    long long GetTotalSeconds() const noexcept { return seconds_; }

    /// @}
    /// @name What the next larger unit leaves
    /// @{

    /// The rest beside the next larger unit: up to 23 hours, 59 minutes, 59 seconds.
    int GetHours() const noexcept { return static_cast<int>(seconds_ / 3600 % 24); }
    int GetMinutes() const noexcept { return static_cast<int>(seconds_ / 60 % 60); }
    int GetSeconds() const noexcept { return static_cast<int>(seconds_ % 60); }

    /// @}
    /// @name The number that is kept
    /// @{

    /// The same as GetTotalSeconds().
    long long GetTimeSpan() const noexcept { return seconds_; }

    /// @}
    /// @name Sums and differences
    /// @{

    /// Wraps where 64 bits overflow.
    CTimeSpan& operator+=(CTimeSpan span) noexcept {
        seconds_ = Wrapped(Bits(seconds_) + Bits(span.seconds_));
        return *this;
    }
    CTimeSpan& operator-=(CTimeSpan span) noexcept {
        seconds_ = Wrapped(Bits(seconds_) - Bits(span.seconds_));
        return *this;
    }
    CTimeSpan operator+(CTimeSpan span) const noexcept { return CTimeSpan(*this) += span; }
    CTimeSpan operator-(CTimeSpan span) const noexcept { return CTimeSpan(*this) -= span; }

    /// @}
    /// @name Comparison
    /// @{

    /// By the number of seconds.
    bool operator==(CTimeSpan span) const noexcept { return seconds_ == span.seconds_; }
    bool operator!=(CTimeSpan span) const noexcept { return seconds_ != span.seconds_; }
    bool operator<(CTimeSpan span) const noexcept { return seconds_ < span.seconds_; }
    bool operator>(CTimeSpan span) const noexcept { return seconds_ > span.seconds_; }
    bool operator<=(CTimeSpan span) const noexcept { return seconds_ <= span.seconds_; }
    bool operator>=(CTimeSpan span) const noexcept { return seconds_ >= span.seconds_; }

    /// @}

  private:
    static unsigned long long Bits(long long count) noexcept {
        return static_cast<unsigned long long>(count);
    }
    static long long Wrapped(unsigned long long count) noexcept {
        return static_cast<long long>(count);
    }

    long long seconds_;
};

/// A point in time: seconds since 1970-01-01 00:00:00 UTC.
class QORUTILS_API CTime {
  public:
    /// @name Construction
    /// @{

    /// 1970-01-01 00:00:00 UTC.
    CTime() noexcept : time_(0) {}
    /// So many seconds since 1970 UTC.
    CTime(long long t) noexcept : time_(t) {}
    /// So many seconds since 1970 UTC.
    CTime& operator=(long long t) noexcept {
        time_ = t;
        return *this;
    }

    /// From local calendar fields: month from 1, day from 1; dst above 0 for daylight saving time,
    /// 0 for standard time, -1 for whichever is in force. Fields out of range roll over: 32 January
    /// is 1 February.
    /// A time that 32 bits do not hold (before 1901-12-13 20:45:52 or after 2038-01-19 03:14:07
    /// UTC) and the last second before 1970 UTC fail the check "Illegal input time": it is
    /// reported, and std::runtime_error is thrown (see qor_enforce()).
    CTime(int year, int month, int day, int hour, int min, int sec, int dst);

    /// The same from a DOS date (day in bits 0 to 4, month in 5 to 8, years since 1980 above) and a
    /// DOS time (half seconds in bits 0 to 4, that is, units of two seconds; minute in 5 to 10,
    /// hour above).
    CTime(unsigned short dosDate, unsigned short dosTime, int dst);

    /// The same from st, of which wDayOfWeek and wMilliseconds are ignored.
    /// On purpose: 0 for years up to 1899, with no check of the other fields.
    CTime(_SYSTEMTIME const& st, int dst);

    /// 1970-01-01 00:00:00 UTC.
    /// On purpose: whatever the arguments are; base::to_time_t() reads a file time.
    CTime(_FILETIME const& ft, int dst) noexcept;

    /// @}
    /// @name The present, and file times
    /// @{

    /// The present time, in whole seconds.
    static CTime GetCurrentTime() noexcept;

    /// Whether a time can be made from ft.
    /// On purpose: always false.
    static bool IsValidFILETIME(_FILETIME const& ft) noexcept;

    /// @}
    /// @name Seconds, and calendar fields
    /// @{

    /// Seconds since 1970 UTC.
    long long GetTime() const noexcept { return time_.GetTimeSpan(); }

    /// The calendar fields of UTC.
    /// On purpose: always null; `*out` is untouched.
    std::tm* GetGmtTm(std::tm* out) const noexcept;
    /// The calendar fields of local time.
    /// On purpose: always null; `*out` is untouched.
    std::tm* GetLocalTm(std::tm* out) const noexcept;

    /// @}
    /// @name Local calendar fields
    /// @{

    /// A field of the local time; Sunday is day 1 of the week. On purpose: always 0, since
    /// GetLocalTm() gives none.
    int GetYear() const noexcept;
    int GetMonth() const noexcept;
    int GetDay() const noexcept;
    int GetHour() const noexcept;
    int GetMinute() const noexcept;
    int GetSecond() const noexcept;
    int GetDayOfWeek() const noexcept;

    /// @}
    /// @name Records and texts
    /// @{

    /// Stores the local calendar fields, Sunday as day 0 of the week. On purpose: always false,
    /// since GetLocalTm() gives none; st is untouched.
    bool GetAsSystemTime(_SYSTEMTIME& st) const noexcept;

    /// As wcsftime, of the local time. On purpose: always empty, since GetLocalTm() gives none.
    qor_text::CQorStringT<wchar_t> Format(wchar_t const* format) const;
    /// As wcsftime, of UTC. On purpose: always empty, since GetGmtTm() gives none.
    qor_text::CQorStringT<wchar_t> FormatGmt(wchar_t const* format) const;

    /// @}
    /// @name The time zone, and XML
    /// @{

    /// The difference between local time and UTC.
    /// On purpose: returns 0; the arguments are untouched.
    static int GetBias(int& bias, int& standardBias, int& daylightBias, int& isDaylight) noexcept;

    /// XML Schema date-time, in UTC ("2015-06-01T12:30:00Z") or as local time with its offset
    /// ("2015-06-01T14:30:00+02:00"). On purpose: always empty, as there are no calendar fields.
    static qor_text::CQorStringT<wchar_t> TimeToXSString(CTime t, bool utc);

    /// @}
    /// @name Sums and differences
    /// @{

    /// Wraps where 64 bits overflow.
    CTime& operator+=(CTimeSpan span) noexcept {
        time_ += span;
        return *this;
    }
    CTime& operator-=(CTimeSpan span) noexcept {
        time_ -= span;
        return *this;
    }
    CTime operator+(CTimeSpan span) const noexcept { return CTime(*this) += span; }
    CTime operator-(CTimeSpan span) const noexcept { return CTime(*this) -= span; }
    CTimeSpan operator-(CTime t) const noexcept { return time_ - t.time_; }

    /// @}
    /// @name Comparison
    /// @{

    /// By the number of seconds.
    bool operator==(CTime t) const noexcept { return time_ == t.time_; }
    bool operator!=(CTime t) const noexcept { return time_ != t.time_; }
    bool operator<(CTime t) const noexcept { return time_ < t.time_; }
    bool operator>(CTime t) const noexcept { return time_ > t.time_; }
    bool operator<=(CTime t) const noexcept { return time_ <= t.time_; }
    bool operator>=(CTime t) const noexcept { return time_ >= t.time_; }

    /// @}

  private:
    CTimeSpan time_;  // since 1970
};

}  // namespace base

#endif  // QORUTILS_QORSYS_QOR_TIME_H_
