// What is wrong, told to the user.

#ifndef QORUTILS_TOOLS_QORLOG_COMPLAINTS_H_
#define QORUTILS_TOOLS_QORLOG_COMPLAINTS_H_

#include <string>

#include <boost/utility/string_ref.hpp>

namespace qorlog {

// "qorlog: what" on stderr, which is safe on a terminal, whatever names and arguments are in it.
void Tell(boost::string_ref what);

// "qorlog: about: what".
void Tell(std::string const& about, std::string const& what);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_COMPLAINTS_H_
