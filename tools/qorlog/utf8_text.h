// UTF-8, character by character.

#ifndef QORUTILS_TOOLS_QORLOG_UTF8_TEXT_H_
#define QORUTILS_TOOLS_QORLOG_UTF8_TEXT_H_

#include <boost/utility/string_ref.hpp>

namespace qorlog {

struct Utf8Character {
    wchar_t code;
    boost::string_ref bytes;
};

// Takes the first character off a text that is not empty. A byte that is no UTF-8 counts as U+FFFD.
Utf8Character TakeCharacter(boost::string_ref* text);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_UTF8_TEXT_H_
