// Private: the offset of local time from UTC, found by comparing the same moment's calendar fields,
// and its text.

#ifndef QORUTILS_QORSYS_UTC_OFFSET_H_
#define QORUTILS_QORSYS_UTC_OFFSET_H_

#include <cstdlib>
#include <ctime>

#include "qorutils/text/qor_string.h"

namespace base {

// 1 January counts as day 366, which follows 31 December in leap years. On purpose: in other years
// it comes out as two days later.
inline int DayForOffset(std::tm const& fields) {
    return fields.tm_yday == 0 ? 366 : fields.tm_yday;
}

// In minutes, positive east of Greenwich.
inline int UtcOffset(std::tm const& local, std::tm const& utc) {
    int const days = DayForOffset(local) - DayForOffset(utc);
    return (local.tm_hour + days * 24 - utc.tm_hour) * 60 + local.tm_min - utc.tm_min;
}

// "2015-06-01T14:30:00" and 120 minutes give "2015-06-01T14:30:00+02:00".
inline qor_text::CQorStringT<wchar_t> WithUtcOffset(wchar_t const* localTime, int minutes) {
    int const distance = std::abs(minutes);
    qor_text::CQorStringT<wchar_t> text;
    text.Format(L"%ls%c%02d:%02d", localTime, minutes < 0 ? '-' : '+', distance / 60,
                distance % 60);
    return text;
}

}  // namespace base

#endif  // QORUTILS_QORSYS_UTC_OFFSET_H_
