// What qorini does, a function for each of its commands.

#ifndef QORUTILS_TOOLS_QORINI_COMMANDS_H_
#define QORUTILS_TOOLS_QORINI_COMMANDS_H_

#include <string>
#include <vector>

#include "complaint.h"

namespace qorini {

// The words of the user, in the locale's encoding; as many as the command takes.
struct Request {
    std::vector<std::string> operands;
    bool ofRewriting = false;  // check --rewrite
    std::string encoding;      // convert --to
    std::string output;        // convert -o
};

// Each appends what it has to say to `out`, and throws a Complaint when it cannot do its work.
ExitStatus Get(Request const& request, std::string* out);
ExitStatus Set(Request const& request, std::string* out);
ExitStatus Unset(Request const& request, std::string* out);
ExitStatus ListSections(Request const& request, std::string* out);
ExitStatus ListKeys(Request const& request, std::string* out);
ExitStatus CheckFiles(Request const& request, std::string* out);
ExitStatus Convert(Request const& request, std::string* out);

// For a user: "qorini: " and the words on the standard error output, which is safe on a terminal,
// whatever names and arguments are in them.
void Complain(std::string const& words);

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_COMMANDS_H_
