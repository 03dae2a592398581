/// @file
/// Lines for the main log (logging/main_logger.h tells where they go), formatted as printf does.
///
///     QOR_TRACE_ALWAYS(L"%d of %ls received", count, name);
///
/// A wide message of 2048 characters or more, or one that cannot be formatted, becomes an empty
/// line; a narrow one may have any length, is converted as the process locale says, and ends where
/// that fails. Formats must match their arguments; the compiler checks the narrow ones.

#ifndef QORUTILS_LOGGING_TRACE_H_
#define QORUTILS_LOGGING_TRACE_H_

#include "qorutils/export.h"
#include "qorutils/logging/checks.h"
#include "qorutils/text/qor_string.h"

namespace qor_logging {

namespace detail {

// What the string forms below do; level is that of LOGMESSAGE. Unchecked, since the compiler cannot
// check a format that is not a literal.
QORUTILS_API void TraceText(long level, wchar_t const* format, ...);
QORUTILS_API void TraceText(long level, char const* format, ...);

}  // namespace detail

/// @name Lines
/// @{

/// Writes a line.
QORUTILS_API void QOR_TRACE_ALWAYS(wchar_t const* format, ...);
QORUTILS_API __attribute__((format(printf, 1, 2))) void QOR_TRACE_ALWAYS(char const* format, ...);

/// @}
/// @name Debug lines
/// @{

/// Writes nothing: debug lines are switched off for good, and cost one test.
QORUTILS_API void QOR_TRACE_DEBUG(wchar_t const* format, ...);
QORUTILS_API __attribute__((format(printf, 1, 2))) void QOR_TRACE_DEBUG(char const* format, ...);

/// @}
/// @name Lines with a string as their format
/// The format is the string's text up to its first zero. Arguments are passed as they are: a string
/// among them needs its c_str().
/// @{

/// Writes a line.
template <typename T, typename... Args>
void QOR_TRACE_ALWAYS(qor_text::CQorStringT<T> const& format, Args... args) {
    detail::TraceText(0, format.c_str(), args...);
}
/// Writes nothing.
template <typename T, typename... Args>
void QOR_TRACE_DEBUG(qor_text::CQorStringT<T> const& format, Args... args) {
    detail::TraceText(4, format.c_str(), args...);
}

/// @}
/// @name Lines of a level
/// @{

/// As QOR_TRACE_ALWAYS() for the levels 0 to 3, as QOR_TRACE_DEBUG() for every other. On purpose:
/// the line shows 7, not the level given here.
QORUTILS_API void LOGMESSAGE(long level, wchar_t const* format, ...);
QORUTILS_API __attribute__((format(printf, 2, 3))) void LOGMESSAGE(long level, char const* format,
                                                                   ...);

/// @}
/// @name Data
/// @{

/// Writes a line of the title and `length` bytes of data, both as text in the locale's encoding; a
/// `%` in them has no meaning in the file (see main_logger.h for terminals). The data need not be
/// terminated: their text ends at a zero, at an invalid sequence, or after length bytes. A null
/// title is an empty one. Not a hexadecimal dump.
QORUTILS_API void QOR_TRACE_BIN_ALWAYS(char const* title, unsigned char const* data,
                                       unsigned int length);

/// @}

}  // namespace qor_logging

#endif  // QORUTILS_LOGGING_TRACE_H_
