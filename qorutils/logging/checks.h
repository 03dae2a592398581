/// @file
/// Reports of failed internal checks. Any code may report: nothing but the export mark is needed.
///
/// file is the source file that reports, line the line in it, expression the text of the check,
/// which may be empty. All texts are zero-terminated and not null.

#ifndef QORUTILS_LOGGING_CHECKS_H_
#define QORUTILS_LOGGING_CHECKS_H_

#include "qorutils/export.h"

namespace qor_logging {

/// Reports "DBGCHK expression file @ line" as one line, which has left the process on return, so
/// that it survives a crash right behind the check. The caller then goes on.
QORUTILS_API void qor_err_log(char const* file, int line, char const* expression);

/// Reports as qor_err_log() does, then throws std::runtime_error, whose text has three lines:
/// "Error expression", the file, and "@line". Never returns.
[[noreturn]] QORUTILS_API void qor_enforce(char const* file, int line, char const* expression);

}  // namespace qor_logging

#endif  // QORUTILS_LOGGING_CHECKS_H_
