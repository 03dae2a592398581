// A log that grows.

#ifndef QORUTILS_TOOLS_QORLOG_FOLLOW_H_
#define QORUTILS_TOOLS_QORLOG_FOLLOW_H_

#include "options.h"
#include "output.h"

namespace qorlog {

// Shows the log that the options name, waits for it if there is none, and goes on as lines come and
// when the program begins its next log, until a signal ends the process. Returns only when there is
// nothing to follow: a file that is no log, a directory that cannot be read.
void FollowLog(Options const& options, Output* output);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_FOLLOW_H_
