#include "qorutils/logging/checks.h"

#include <unistd.h>

#include <cstdio>
#include <stdexcept>

#include "qorutils/text/qor_string.h"

namespace qor_logging {

// Written past the stream, which may be buffered, and closed to narrow text once a program has
// written wide text to it.
void qor_err_log(char const* file, int line, char const* expression) {
    dprintf(STDERR_FILENO, "DBGCHK %s %s @ %d\n", expression, file, line);
}

void qor_enforce(char const* file, int line, char const* expression) {
    qor_err_log(file, line, expression);
    qor_text::CQorStringT<char> text;
    text.Format("Error %s\n%s\n@%d", expression, file, line);
    throw std::runtime_error(text.c_str());
}

}  // namespace qor_logging
