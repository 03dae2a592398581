#include "entry_filter.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace qorlog {

namespace {

// The milliseconds of the entry, counted as the bound's are.
std::int64_t TimeFor(TimeBound const& bound, LogEntry const& entry, Moment start) {
    auto const sinceStart = static_cast<std::int64_t>(entry.milliseconds);
    return bound.kind == TimeBound::Kind::kCalendar ? start + sinceStart : sinceStart;
}

// The lines end in LF alone: $ knows no other line end.
std::string WithoutCrs(boost::string_ref text) {
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') lines += text[i];
    return lines;
}

// regcomp calls itself for every parenthesis, and would come to the end of the stack.
constexpr std::size_t kLongestPattern = 4096;

}  // namespace

Pattern::Pattern(std::string const& expression, bool ignoresCase) {
    if (expression.size() > kLongestPattern) throw std::invalid_argument("longer than 4096 bytes");
    int const flags = REG_EXTENDED | REG_NOSUB | REG_NEWLINE | (ignoresCase ? REG_ICASE : 0);
    int const error = regcomp(&compiled_, expression.c_str(), flags);
    if (error == 0) return;
    char reason[256];
    regerror(error, &compiled_, reason, sizeof reason);
    throw std::invalid_argument(reason);
}

Pattern::~Pattern() {
    regfree(&compiled_);
}

// By its length: a text may have zero characters.
bool Pattern::Matches(boost::string_ref text) const {
    std::string const withoutCrs = text.find('\n') != text.npos ? WithoutCrs(text) : std::string();
    if (!withoutCrs.empty()) text = withoutCrs;
    regmatch_t range = {0, static_cast<regoff_t>(text.size())};
    return regexec(&compiled_, text.data(), 1, &range, REG_STARTEND) == 0;
}

bool EntryFilter::Selects(LogEntry const& entry, Moment start) const {
    if (since.kind != TimeBound::Kind::kNone && TimeFor(since, entry, start) < since.milliseconds)
        return false;
    if (until.kind != TimeBound::Kind::kNone && TimeFor(until, entry, start) > until.milliseconds)
        return false;
    if (checksOnly && KindOf(entry.Message()) != MessageKind::kCheck) return false;
    return pattern == nullptr || pattern->Matches(entry.Message());
}

bool EntryFilter::NeedsStart() const {
    return since.kind == TimeBound::Kind::kCalendar || until.kind == TimeBound::Kind::kCalendar;
}

}  // namespace qorlog
