// How entries look.

#ifndef QORUTILS_TOOLS_QORLOG_ENTRY_PRINTER_H_
#define QORUTILS_TOOLS_QORLOG_ENTRY_PRINTER_H_

#include <string>

#include "log_entry.h"
#include "moments.h"

namespace qorlog {

struct Look {
    bool isJson = false;
    bool isColoured = false;
    bool isHarmless = false;  // for terminals: control characters are shown, not sent
    bool hasCalendarTimes = false;
};

// Of the log that an entry comes from.
struct LogFacts {
    std::string name;
    bool hasStart = false;
    Moment start = 0;
};

// Adds the entry, as lines of text, or as one line with a JSON object.
void PrintEntry(LogEntry const& entry, LogFacts const& log, Look const& look, std::string* to);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_ENTRY_PRINTER_H_
