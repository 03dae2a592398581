#include "qorutils/logging/checks.h"

#include <stdexcept>

#include "qorutils/logging/main_logger.h"
#include "qorutils/logging/trace.h"
#include "qorutils/text/qor_string.h"

namespace qor_logging {

void qor_err_log(char const* file, int line, char const* expression) {
    QOR_TRACE_ALWAYS("DBGCHK %s %s @ %d", expression, file, line);
    qor_flush_log();
}

void qor_enforce(char const* file, int line, char const* expression) {
    qor_err_log(file, line, expression);
    qor_flush_log();
    qor_text::CQorStringT<char> text;
    text.Format("Error %s\n%s\n@%d", expression, file, line);
    throw std::runtime_error(text.c_str());
}

}  // namespace qor_logging
