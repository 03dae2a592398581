// Which entries the user wants to see.

#ifndef QORUTILS_TOOLS_QORLOG_ENTRY_FILTER_H_
#define QORUTILS_TOOLS_QORLOG_ENTRY_FILTER_H_

#include <regex.h>

#include <memory>
#include <string>

#include <boost/utility/string_ref.hpp>

#include "log_entry.h"
#include "moments.h"

namespace qorlog {

// A POSIX extended regular expression. ^ and $ match at each line of a text, and . no line end.
class Pattern {
  public:
    // Throws std::invalid_argument with the reason.
    Pattern(std::string const& expression, bool ignoresCase);
    ~Pattern();
    Pattern(Pattern const&) = delete;
    Pattern& operator=(Pattern const&) = delete;

    bool Matches(boost::string_ref text) const;

  private:
    regex_t compiled_;
};

struct EntryFilter {
    // For an entry at so many milliseconds since a start, which is known if a bound asks for it.
    bool Selects(LogEntry const& entry, Moment start) const;

    bool NeedsStart() const;

    TimeBound since;
    TimeBound until;
    bool checksOnly = false;
    std::shared_ptr<Pattern const> pattern;  // null: every message
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_ENTRY_FILTER_H_
