#include "moments.h"

#include <qorutils/qorsys/win_time.h>

#include <cstdio>

#include "text_reader.h"

namespace qorlog {

namespace {

constexpr std::int64_t kTicksPerMillisecond = 10000;
constexpr std::int64_t kSecond = 1000;

// Of a second: nothing, or a dot and digits, of which those behind the third do not count.
bool ReadFraction(TextReader* reader, std::int64_t* milliseconds) {
    *milliseconds = 0;
    if (!reader->Take('.')) return true;
    std::int64_t digit = 0;
    int count = 0;
    for (std::int64_t worth = 100; reader->Digit(&digit); worth /= 10, ++count)
        *milliseconds += digit * worth;
    return count > 0;
}

struct Date {
    std::int64_t year;
    std::int64_t month;
    std::int64_t day;
};

struct TimeOfDay {
    std::int64_t hour = 0;
    std::int64_t minute = 0;
    std::int64_t second = 0;
    std::int64_t millisecond = 0;
};

// The calendar of the library would let 29 February pass in any year.
bool HasDay(Date const& date) {
    bool const isLeap = date.year % 4 == 0 && (date.year % 100 != 0 || date.year % 400 == 0);
    return date.month != 2 || date.day != 29 || isLeap;
}

bool ToMoment(Date const& date, TimeOfDay const& time, Moment* moment) {
    SYSTEMTIME fields = {};
    fields.wYear = static_cast<std::uint16_t>(date.year);
    fields.wMonth = static_cast<std::uint16_t>(date.month);
    fields.wDay = static_cast<std::uint16_t>(date.day);
    fields.wHour = static_cast<std::uint16_t>(time.hour);
    fields.wMinute = static_cast<std::uint16_t>(time.minute);
    fields.wSecond = static_cast<std::uint16_t>(time.second);
    fields.wMilliseconds = static_cast<std::uint16_t>(time.millisecond);
    FILETIME ticks;
    if (!HasDay(date) || SystemTimeToFileTime(&fields, &ticks) == 0) return false;
    std::uint64_t const bits = std::uint64_t{ticks.dwHighDateTime} << 32 | ticks.dwLowDateTime;
    *moment = static_cast<std::int64_t>(bits) / kTicksPerMillisecond;
    return true;
}

bool ReadDate(TextReader* reader, char separator, Date* date) {
    return reader->Number(4, 4, &date->year) && reader->Take(separator) &&
           reader->Number(2, 2, &date->month) && reader->Take(separator) &&
           reader->Number(2, 2, &date->day);
}

bool ReadTimeOfDay(TextReader* reader, TimeOfDay* time) {
    if (!reader->Number(2, 2, &time->hour) || !reader->Take(':') ||
        !reader->Number(2, 2, &time->minute))
        return false;
    return !reader->Take(':') ||
           (reader->Number(2, 2, &time->second) && ReadFraction(reader, &time->millisecond));
}

bool ParseCalendar(boost::string_ref text, Moment* moment) {
    TextReader reader(text);
    Date date = {};
    TimeOfDay time;
    if (!ReadDate(&reader, '-', &date)) return false;
    if ((reader.Take(' ') || reader.Take('T')) && !ReadTimeOfDay(&reader, &time)) return false;
    reader.Take('Z');
    return reader.AtEnd() && ToMoment(date, time, moment);
}

bool ParseSpan(boost::string_ref text, std::int64_t* milliseconds) {
    TextReader reader(text);
    std::int64_t total = 0;
    if (!reader.Number(1, 9, &total)) return false;
    std::int64_t number = 0;
    for (int parts = 1; parts < 3 && reader.Take(':'); ++parts) {
        if (!reader.Number(2, 2, &number) || number >= 60) return false;
        total = total * 60 + number;
    }
    std::int64_t fraction = 0;
    if (!ReadFraction(&reader, &fraction) || !reader.AtEnd()) return false;
    *milliseconds = total * kSecond + fraction;
    return true;
}

}  // namespace

bool ParseTimeBound(boost::string_ref text, TimeBound* bound) {
    if (ParseSpan(text, &bound->milliseconds)) {
        bound->kind = TimeBound::Kind::kSinceStart;
        return true;
    }
    if (ParseCalendar(text, &bound->milliseconds)) {
        bound->kind = TimeBound::Kind::kCalendar;
        return true;
    }
    return false;
}

bool ParseBannerTime(boost::string_ref text, Moment* moment) {
    TextReader reader(text);
    Date date = {};
    TimeOfDay time;
    return ReadDate(&reader, '/', &date) && reader.Take(' ') && ReadTimeOfDay(&reader, &time) &&
           reader.AtEnd() && ToMoment(date, time, moment);
}

std::string MomentText(Moment moment, char separator) {
    auto const ticks = static_cast<std::uint64_t>(moment) * kTicksPerMillisecond;
    FILETIME const time = {static_cast<std::uint32_t>(ticks & 0xFFFFFFFF),
                           static_cast<std::uint32_t>(ticks >> 32)};
    SYSTEMTIME fields = {};
    FileTimeToSystemTime(&time, &fields);
    char text[64];
    std::snprintf(text, sizeof text, "%04u-%02u-%02u%c%02u:%02u:%02u.%03u", unsigned{fields.wYear},
                  unsigned{fields.wMonth}, unsigned{fields.wDay}, separator, unsigned{fields.wHour},
                  unsigned{fields.wMinute}, unsigned{fields.wSecond},
                  unsigned{fields.wMilliseconds});
    return text;
}

}  // namespace qorlog
