// Times: since a log's start, and by the calendar.

#ifndef QORUTILS_TOOLS_QORLOG_MOMENTS_H_
#define QORUTILS_TOOLS_QORLOG_MOMENTS_H_

#include <cstdint>
#include <string>

#include <boost/utility/string_ref.hpp>

namespace qorlog {

// Milliseconds since 1601 by the calendar, UTC.
using Moment = std::int64_t;

// A limit that a user sets to the times of lines.
struct TimeBound {
    enum class Kind { kNone, kSinceStart, kCalendar };
    Kind kind = Kind::kNone;
    std::int64_t milliseconds = 0;  // since the log's start; or a Moment
};

// Since the start: "12.5", "2:03" and "1:02:03.250": seconds, minutes, hours; all but the first
// number below 60, fractions to the millisecond. By the calendar, UTC: "2026-11-22", also with
// "10:00", "10:00:30" or "10:00:30.5" behind a blank or a T; a Z may follow. False for any other.
bool ParseTimeBound(boost::string_ref text, TimeBound* bound);

// Of "2026/11/22 10:00:00", as a log's first line has it.
bool ParseBannerTime(boost::string_ref text, Moment* moment);

// "2026-11-22 10:00:12.345", with the separator between date and time.
std::string MomentText(Moment moment, char separator);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_MOMENTS_H_
