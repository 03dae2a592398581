/// @file
/// The main log: one file for the whole process, made by the first call of any logging function.
///
/// It lies in the application's root directory (GetRootDir()), which is created if it is missing,
/// or, failing that, in the temporary directory, or, if there is none either, in "/". It is named
/// after the application ("qor" if that has no name), with a number from 1 to 10 and ".log.txt":
/// the eleventh start of a program takes the first name again and empties that file. If it cannot
/// be created, lines go to the terminal only.
///
/// The file holds the bytes FF FE and then lines of 32-bit little-endian characters. On purpose: a
/// mark of two bytes in front of characters of four. A line is
///
///     00012.345 ; 7 ; message\r\n
///
/// with the seconds and milliseconds since the file was opened, which start again at 0 after
/// 4294967296 milliseconds (49.7 days), and the level, always 7. Each line is given to the system
/// in one call before the logging function returns, so that a crash loses none; a line that cannot
/// be written whole is lost or cut, without a word. If standard output is a terminal, every line is
/// shown there too, in pieces of at most 250 characters and with '.' for each zero character.
///
/// WARNING: ON A TERMINAL THE LINE IS A printf FORMAT, WITHOUT ARGUMENTS BEHIND IT: see
/// OutputDebugString() in qorsys/qor_system.h. Doubling each `%` does not help here, as a line may
/// be cut between the two: let no text from outside that has one into a line. The file always gets
/// the text as it is.
///
/// Threads: lines never mix, and their times rise in the order of the file. The first logging call
/// belongs before the first thread: the log is made without a lock, so that two first calls at the
/// same time make two logs, of which the one that is destroyed may still be in use.
///
/// The end: when the process exits, or the library is unloaded, the log gets the line "Logging
/// finished", and its file is closed. Everything that is destroyed before that can still log:
/// static objects of the program and of every library and plug-in that is linked to this one,
/// whenever they were made, and functions given to atexit. What still logs later (a library that
/// this one is not linked from) is dropped; but no other thread may be in a logging call while the
/// log ends. A first logging call during exit still makes a log.
///
/// Other processes: a child made by fork goes on in the same file, behind what stands there, and
/// when it exits, unlike by _exit, it writes "Logging finished" as well. It must not log if another
/// thread was logging at the fork. Programs of one name that start at the same moment may get one
/// file and overwrite each other's lines.
///
/// Logging functions leave errno as it is. They throw what making the log or formatting a line
/// throws: std::bad_alloc, boost::thread_resource_error when the system has no mutex left.

#ifndef QORUTILS_LOGGING_MAIN_LOGGER_H_
#define QORUTILS_LOGGING_MAIN_LOGGER_H_

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace qor_logging {

class CQorLogger;

/// The one logger, made if there is none yet. Never to be freed. Null after the end of the log.
QORUTILS_API CQorLogger* getMainLogger();

/// Returns when the file's lines have reached the device. Does nothing without a file.
QORUTILS_API void qor_flush_log();

/// The path of the log file; empty when there is none.
QORUTILS_API qor_text::CQorStringT<wchar_t> getQorMainLogFileName();

}  // namespace qor_logging

#endif  // QORUTILS_LOGGING_MAIN_LOGGER_H_
