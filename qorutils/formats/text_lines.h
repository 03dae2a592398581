/// @file
/// Lines read from a platform file, text written to a stdio stream.

#ifndef QORUTILS_FORMATS_TEXT_LINES_H_
#define QORUTILS_FORMATS_TEXT_LINES_H_

#include <cstdio>

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace qor_formats {

/// Reads the line at the position of fd, without its end, and leaves the position at the first byte
/// of the next line. Each byte is one character of the same value (Latin-1): nothing is decoded.
/// Any run of CR and LF is one line end, so that blank lines are passed over, but for one at the
/// very start. A line of nothing but white space becomes empty; any other keeps its own.
///
/// There is no telling an empty line from the end of the file, nor from a failure to read: a
/// failure ends the line as the end of the file does. Interrupted reads are repeated, at most 100
/// times each. Throws std::bad_alloc when there is no memory for the line: the position is as it
/// was, and line holds what it held or how the line begins.
///
/// On purpose: a zero byte cuts the line. The line is taken 128 bytes at a time, and with a zero
/// among them no more are taken: what follows them up to the line end is left for the next call.
///
/// A descriptor that cannot seek, such as a pipe, is read byte by byte up to the first CR or LF.
/// Since nothing can be put back, it is the line ends in front of a line that are passed over
/// there, those at the very start too; an exception loses the line.
QORUTILS_API void ReadLine(int fd, qor_text::CQorStringT<wchar_t>& line);

/// Writes text, up to its first zero, as UTF-8, whatever the locale. Returns whether all of it was
/// written. A text with a character that UTF-8 does not encode (a surrogate, or one above U+10FFFF)
/// writes nothing and returns false. Throws std::bad_alloc, having written nothing.
QORUTILS_API bool WriteString(std::FILE* stream, qor_text::CQorStringT<wchar_t> const& text);

/// Writes the characters as they are in memory, zeros included. Returns whether all were written.
/// On purpose: that is UTF-32LE, four bytes a character, in spite of the name.
QORUTILS_API bool WriteUTF16String(std::FILE* stream, qor_text::CQorStringT<wchar_t> const& text);

/// Writes FF FE. Returns whether both were written; without the first the second is not tried.
QORUTILS_API bool WriteUTF16BOM(std::FILE* stream);

}  // namespace qor_formats

#endif  // QORUTILS_FORMATS_TEXT_LINES_H_
