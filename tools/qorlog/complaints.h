// What is wrong, told to the user.

#ifndef QORUTILS_TOOLS_QORLOG_COMPLAINTS_H_
#define QORUTILS_TOOLS_QORLOG_COMPLAINTS_H_

#include <cstdint>
#include <string>

#include <boost/utility/string_ref.hpp>

namespace qorlog {

// "qorlog: about: what" on stderr. It is safe on a terminal, whatever the name.
void Tell(boost::string_ref about, boost::string_ref what);

// "1 character", "5 characters".
std::string Counted(std::uint64_t number, char const* thing);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_COMPLAINTS_H_
