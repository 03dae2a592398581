// The signals that end a program that goes on until it is told to stop.

#ifndef QORUTILS_TOOLS_QORLOG_SIGNALS_H_
#define QORUTILS_TOOLS_QORLOG_SIGNALS_H_

namespace qorlog {

// Such a signal came during a wait that nothing else ends.
class Interrupted {};

// From now on SIGINT and SIGTERM are noted, and interrupt system calls that wait.
void NoteStopSignals();

// The signal that was noted, or 0.
int StopSignal();

// Ends the process as the signal does, so that whoever started it sees the usual status.
[[noreturn]] void EndBySignal(int signal);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_SIGNALS_H_
