// What a settings file says that a program does not get, or not so.

#ifndef QORUTILS_TOOLS_QORINI_INI_CHECK_H_
#define QORUTILS_TOOLS_QORINI_INI_CHECK_H_

#include <cstddef>
#include <string>
#include <vector>

#include "ini_document.h"

namespace qorini {

struct Finding {
    std::size_t line;  // counted from 1
    std::string what;
};

// In the order of the lines: those that the settings store refuses, passes over, merges, overwrites
// or changes. With ofRewriting, also the comments, and the lines that stand elsewhere once a
// program has written the settings.
std::vector<Finding> Check(IniDocument const& document, bool ofRewriting);

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_INI_CHECK_H_
