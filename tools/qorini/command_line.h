// The words behind "qorini", taken apart.

#ifndef QORUTILS_TOOLS_QORINI_COMMAND_LINE_H_
#define QORUTILS_TOOLS_QORINI_COMMAND_LINE_H_

#include <string>
#include <vector>

#include "commands.h"

namespace qorini {

// Does what the words ask for. What is for the standard output is appended to `out`.
ExitStatus Run(std::vector<std::string> const& words, std::string* out);

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_COMMAND_LINE_H_
