// What the user asks for.

#ifndef QORUTILS_TOOLS_QORLOG_OPTIONS_H_
#define QORUTILS_TOOLS_QORLOG_OPTIONS_H_

#include <stdexcept>
#include <string>
#include <vector>

#include "entry_filter.h"
#include "entry_printer.h"

namespace qorlog {

// Arguments that cannot be understood, in words for the user.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

struct Options {
    bool wantsHelp = false;
    bool wantsVersion = false;
    std::vector<std::string> files;  // empty: the newest of program in directory
    std::string program;             // empty: of any
    std::string directory;
    bool follows = false;
    EntryFilter filter;
    Look look;
};

Options ParseOptions(int argc, char** argv);

extern char const kHelp[];

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_OPTIONS_H_
