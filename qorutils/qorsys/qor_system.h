/// @file
/// Small Win32 and runtime-library functions under their Windows names. Nothing here throws, except
/// that OutputDebugString() needs memory.

#ifndef QORUTILS_QORSYS_QOR_SYSTEM_H_
#define QORUTILS_QORSYS_QOR_SYSTEM_H_

#include "qorutils/export.h"

/// Blocks the calling thread for so many milliseconds. On purpose: 0 and less return at once, and
/// unlike on Windows no other thread gets its turn then. A signal handler ends the sleep.
QORUTILS_API void Sleep(int ms);

/// Prints the text on standard output if that is a terminal; no line end is added. Does nothing
/// otherwise, nor for a text that the process locale cannot encode whole. Throws std::bad_alloc.
///
/// WARNING: THE TEXT IS A printf FORMAT, WITHOUT ARGUMENTS BEHIND IT. On purpose, as ported code
/// relies on "%%". "100%" prints rubbish, and "%s" or "%n" crash the program or worse. Never pass
/// text from outside; double each `%` in it.
QORUTILS_API void OutputDebugString(wchar_t const* text);

/// Unlike its Windows namesake it counts nothing and is not atomic.
/// On purpose: returns `*p` as it is and copies it to the neighbour `p[1]`, which must exist.
QORUTILS_API int InterlockedIncrement(int volatile* p);

/// Unlike its Windows namesake it counts nothing and is not atomic.
/// On purpose: returns `*p` as it is and copies it to the neighbour `p[-1]`, which must exist.
QORUTILS_API int InterlockedDecrement(int volatile* p);

/// The next double after x on the way to y: nextafter.
QORUTILS_API double _nextafter(double x, double y);

// Memory statistics of the original platform.
namespace MemoryFuncs {

/// Returns 0: nothing is measured here.
QORUTILS_API unsigned int GetFreeSliderMemory();
/// Returns 0: nothing is measured here.
QORUTILS_API unsigned int GetFreeVirtMemory();

}  // namespace MemoryFuncs

#endif  // QORUTILS_QORSYS_QOR_SYSTEM_H_
