// Text that a terminal shows and does not obey.

#ifndef QORUTILS_TOOLS_QORLOG_VISIBLE_TEXT_H_
#define QORUTILS_TOOLS_QORLOG_VISIBLE_TEXT_H_

#include <string>

#include <boost/utility/string_ref.hpp>

namespace qorlog {

// Control characters, and those that turn the direction of writing or break lines.
bool IsHarmful(wchar_t code);

// Adds a line of UTF-8, in which harmful characters but the tab are shown by their numbers:
// "\x1B", "\u202E". Bytes that are no UTF-8, which only names of files have, become U+FFFD.
void AppendVisible(boost::string_ref line, std::string* to);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_VISIBLE_TEXT_H_
