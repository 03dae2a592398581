/// @file
/// Spans of time, times of day and calendar times to text and back. All throw std::bad_alloc only.

#ifndef QORUTILS_FORMATS_TIME_TEXT_H_
#define QORUTILS_FORMATS_TIME_TEXT_H_

#include "qorutils/export.h"
#include "qorutils/qorsys/qor_time.h"
#include "qorutils/qorsys/win_time.h"
#include "qorutils/text/qor_string.h"

namespace qor_formats {

/// Hours, minutes and seconds, of two digits at least: "100:05:03". In a negative span each part
/// has its sign: "00:-1:-30". Of the hours, the low 32 bits count.
QORUTILS_API qor_text::CQorStringT<wchar_t> TimeSpanToString(base::CTimeSpan const& span);

/// A time in hours, with its fraction: 13.5 gives "13:30:0.000".
/// On purpose: hours and minutes are padded with blanks, seconds not at all: 1.25 gives
/// " 1:15:0.000". The decimal point is the locale's. A negative time has the sign in each part;
/// hours and minutes are clamped to the range of an int.
QORUTILS_API qor_text::CQorStringT<wchar_t> TimeToString(double hours);

/// base::CTime::TimeToXSString(). On purpose: always empty, as calendar fields are not to be had.
QORUTILS_API qor_text::CQorStringT<wchar_t> TimeToXSString(base::CTime t, bool utc);

/// The display pattern of date-time attributes, "yyyy-MM-dd HH:mm:ss".
QORUTILS_API qor_text::CQorStringT<wchar_t> GetDateTimeAttrFormat();

/// Reads a text of that pattern into st, year to second; fields may have any number of digits and
/// white space before them, and are not checked. wDayOfWeek stays as it was. Returns 1; or 0 when
/// fewer than six numbers are found, those found being stored, or when the text is empty, st being
/// untouched.
/// On purpose: wMilliseconds becomes wSecond / 1000, that is 0, unless the seconds are 1000 or
/// more.
QORUTILS_API int ParseDtTimeAttrFormatFromStr(qor_text::CQorStringT<wchar_t> const& text,
                                              _SYSTEMTIME& st);

}  // namespace qor_formats

#endif  // QORUTILS_FORMATS_TIME_TEXT_H_
