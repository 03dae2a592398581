// Text of which nothing is obeyed: neither by a terminal nor by a reader of JSON.

#ifndef QORUTILS_TOOLS_QORLOG_ESCAPED_TEXT_H_
#define QORUTILS_TOOLS_QORLOG_ESCAPED_TEXT_H_

#include <string>

#include <boost/utility/string_ref.hpp>

namespace qorlog {

// Both add UTF-8. Harmful are control characters, and those that turn the direction of writing or
// break lines. Bytes that are no UTF-8, which only names and arguments have, become U+FFFD.

// A line for a terminal. Harmful characters but the tab are shown by their numbers: "\x1B",
// "\u202E".
void AppendVisible(boost::string_ref line, std::string* to);

// A string of JSON, in quotes. Harmful characters are escaped.
void AppendJsonText(boost::string_ref text, std::string* to);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_ESCAPED_TEXT_H_
