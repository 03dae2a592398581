/// @file
/// The platform's word on which file the running program was loaded from. Everything in app_dirs.h
/// is derived from it.

#ifndef QORUTILS_APPDIRS_MODULE_FILE_NAME_H_
#define QORUTILS_APPDIRS_MODULE_FILE_NAME_H_

#include "qorutils/export.h"

namespace qor_appdirs {

/// Sets the function that yields the module file name; null restores the default, which yields the
/// empty name. Call it before the first use of a directory: the directories that were derived once
/// stay as they are. Any thread may call.
///
/// The hook writes a path with `\` between its parts, as in `C:\App\prog.exe`, into buffer, which
/// comes with size (260) characters, all zero. A name that fills the buffer needs no terminator.
/// It is called more than once, and what it says the second time counts for the file's own name; it
/// runs in whichever thread asks for a directory first. When it throws, so does that request, and
/// the next one calls it again. A directory that the hook itself asks for is empty.
///
/// `\` separates the file's name from its folder. Within the folder, `/` is the better choice: the
/// overrides file of app_dirs.h is opened by the literal name.
///
///     void OwnName(wchar_t* buffer, int size) {
///         std::wcsncpy(buffer, L"/opt/survey\\survey", size);
///     }
///     qor_appdirs::SetModuleFileNameHook(OwnName);
QORUTILS_API void SetModuleFileNameHook(void (*hook)(wchar_t* buffer, int size));

}  // namespace qor_appdirs

#endif  // QORUTILS_APPDIRS_MODULE_FILE_NAME_H_
