// A line of a log, taken apart.

#ifndef QORUTILS_TOOLS_QORLOG_LOG_ENTRY_H_
#define QORUTILS_TOOLS_QORLOG_LOG_ENTRY_H_

#include <cstddef>
#include <cstdint>

#include <boost/utility/string_ref.hpp>

#include "moments.h"

namespace qorlog {

// What stands in front of a message: "00012.345 ; 7 ; ".
struct LinePrefix {
    std::uint64_t milliseconds;
    int level;
    std::size_t length;
};

enum class PrefixForm { kWhole, kCut, kOther };

// Whether text begins with a prefix, which is then taken apart; kCut: it may yet become one.
PrefixForm ParsePrefix(boost::string_ref text, LinePrefix* prefix);

// What a message is about: the first and the last line of a log, a failed check, or anything else.
enum class MessageKind { kStart, kFinish, kCheck, kOther };

MessageKind KindOf(boost::string_ref message);

// The time in a log's first message, "Program ... started on 2026/11/22 10:00:00 UTC".
bool ParseBanner(boost::string_ref message, Moment* start);

// The parts of "DBGCHK expression file @ line". The expression may be empty and have blanks; a file
// with blanks lends its first words to the expression. The line is a number as JSON has them.
struct FailedCheck {
    boost::string_ref expression;
    boost::string_ref file;
    boost::string_ref line;
};

bool ParseCheck(boost::string_ref message, FailedCheck* check);

// A message with what stands in front of it, or a part of one: of a message that is too long to be
// kept, or that went on when it had been shown already.
struct LogEntry {
    boost::string_ref Message() const { return text.substr(prefixLength); }

    boost::string_ref text;  // without the line end behind it
    std::size_t prefixLength = 0;
    bool goesOn = false;  // the message began in an entry before
    bool beginsLine = true;
    bool isEnded = true;   // a line end follows
    bool hasTime = false;  // milliseconds and level are known: those of the message's beginning
    std::uint64_t milliseconds = 0;
    int level = 0;
    std::uint64_t lineNumber = 0;  // of its first line, as shown, from 1
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_LOG_ENTRY_H_
