/// @file
/// The times of files, and file times as text: "03/05/2024" (month first) and "07:08", in UTC.
/// Output pointers may be null where that is said. Throws std::bad_alloc.

#ifndef QORUTILS_QORSYS_FILE_TIME_H_
#define QORUTILS_QORSYS_FILE_TIME_H_

#include "qorutils/export.h"
#include "qorutils/qorsys/win_time.h"
#include "qorutils/text/qor_string.h"

namespace qor {
namespace file_time {

/// Fills those of the three times that are not null. False, with nothing filled, when the file
/// cannot be opened for reading, has ".." in its name, or holds 2 GiB or more.
/// On purpose: all three are 1970-01-01 00:00:00, whatever the file's times are.
QORUTILS_API bool qorGetFileTimes(wchar_t const* path, _FILETIME* creation, _FILETIME* access,
                                  _FILETIME* write);

/// Formats the date and the time of day of ft; each may be null. Returns true.
QORUTILS_API bool ConvertAndFormatFileTime(_FILETIME& ft, qor_text::CQorStringT<wchar_t>* date,
                                           qor_text::CQorStringT<wchar_t>* time);

/// Formats each of three times of which neither the value nor the date is null; a time of day may
/// be null. Returns true. Note the order: the values come as creation, access, write; the texts as
/// creation, write, access.
QORUTILS_API bool qorGetFileTimeFormatted(_FILETIME* creation, _FILETIME* access, _FILETIME* write,
                                          qor_text::CQorStringT<wchar_t>* creationDate,
                                          qor_text::CQorStringT<wchar_t>* creationTime,
                                          qor_text::CQorStringT<wchar_t>* writeDate,
                                          qor_text::CQorStringT<wchar_t>* writeTime,
                                          qor_text::CQorStringT<wchar_t>* accessDate,
                                          qor_text::CQorStringT<wchar_t>* accessTime);

/// The same for the times that qorGetFileTimes() finds.
/// On purpose: returns true also when it finds none; the texts are then those of 1601-01-01 00:00.
QORUTILS_API bool qorGetFileTimeFormatted(wchar_t const* path,
                                          qor_text::CQorStringT<wchar_t>* creationDate,
                                          qor_text::CQorStringT<wchar_t>* creationTime,
                                          qor_text::CQorStringT<wchar_t>* writeDate,
                                          qor_text::CQorStringT<wchar_t>* writeTime,
                                          qor_text::CQorStringT<wchar_t>* accessDate,
                                          qor_text::CQorStringT<wchar_t>* accessTime);

/// As SystemTimeToFileTime(); returns whether it succeeded.
QORUTILS_API bool qorSystemTimeToFileTime(_SYSTEMTIME* st, _FILETIME& ft);

/// Stores the present time, in whole milliseconds; returns whether it succeeded.
QORUTILS_API bool qorGetSystemTimeAsFileTime(_FILETIME& ft);

}  // namespace file_time
}  // namespace qor

#endif  // QORUTILS_QORSYS_FILE_TIME_H_
