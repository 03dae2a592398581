// Text as a string of JSON.

#ifndef QORUTILS_TOOLS_QORLOG_JSON_TEXT_H_
#define QORUTILS_TOOLS_QORLOG_JSON_TEXT_H_

#include <string>

#include <boost/utility/string_ref.hpp>

namespace qorlog {

// Adds the text in quotes, with escapes for what is harmful on a terminal, too. Bytes that are no
// UTF-8, which only names of files have, become U+FFFD.
void AppendJsonText(boost::string_ref text, std::string* to);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_JSON_TEXT_H_
