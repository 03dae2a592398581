/// @file
/// The directories of the running application: where its program lies, and where its files go.
///
/// There is one table of them in a process, built by the first call of any function here and never
/// refreshed. It is derived from the module file name, which module_file_name.h supplies; as long
/// as that is empty, which is the default, or holds no `\`, all entries are empty.
/// With the module file name `C:\App\prog.exe`:
///
///     GetApplicationPath()          "C:\App\prog.exe"
///     GetExeDir()                   "C:\App"
///     GetRootDir()                  "C:\App"            or what the key "User" says
///     GetTavrelAppDataDir()         "C:\App"
///     GetDocsDir()                  "C:\App"            or what the key "Documents" says
///     GetTavrelAppGeoidsDataDir()   "C:\App\Geoids\"    or what the key "Geoids" says, and "\"
///     GetTavrelAppGeoDataDir()      "C:\App\Geo\3.0\"   if that is a folder, else "C:\App\Geo\";
///                                                       or what the key "Geo" says, and "\"
///
/// Paths are kept in Windows style, `\` between their parts; nothing is turned into `/`. The two
/// geodata directories end in `\`, the others are as they stand in the table.
///
/// The keys stand in the section "Directories" of the INI file "qor_dir.ini" beside the program, as
/// in "[Directories]" and `User=D:\Data`. Both names are case-sensitive; a value replaces the
/// directory just as it is, also when there is no such folder, or when it is empty. A file that
/// cannot be read (see readSettingsAsIni(), which needs write access, too) changes nothing; a
/// malformed one is a failed check and changes nothing. On purpose: the file is opened under its
/// literal name, `C:\App\qor_dir.ini`, so that `\` is a part of that name, while the folder probed
/// for geodata is "C:/App/Geo/3.0".
///
/// Failure: the only exceptions are std::bad_alloc and what the hook of module_file_name.h throws,
/// while the table is built; the next call then builds it anew.
///
/// Threads: any may call; the others wait while one builds the table. Code that runs in the course
/// of the build, on its thread, finds all entries empty: the hook, and the log that a failed check
/// is written to. So does code that runs after the table was destroyed, as the process exits.

#ifndef QORUTILS_APPDIRS_APP_DIRS_H_
#define QORUTILS_APPDIRS_APP_DIRS_H_

#include <array>

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

/// The entries in the order of the functions that return them: application path, program's folder,
/// root, application data, documents, geoids, geodata. Unlike the functions' results, the last two
/// have no `\` at their end.
using CApplicationDirectories = std::array<qor_text::CQorStringT<wchar_t>, 7>;

/// The table. The reference is good until the process exits, except one that was taken in the
/// course of the build: that always refers to an empty table.
QORUTILS_API CApplicationDirectories const& GetApplicationFileName();

/// The program's file.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetApplicationPath();

/// The folder that the program lies in.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetExeDir();

/// The user's folder; the log goes there.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetRootDir();

/// The application's data. Always the program's folder: no key changes it.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetTavrelAppDataDir();

/// The folder for the user's documents.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetDocsDir();

/// The folder of the geoid models, with `\` at its end.
/// On purpose: `\`, not empty, where the table's entry is empty.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetTavrelAppGeoidsDataDir();

/// The folder of the other geodata, with `\` at its end.
/// On purpose: `\`, not empty, where the table's entry is empty.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetTavrelAppGeoDataDir();

#endif  // QORUTILS_APPDIRS_APP_DIRS_H_
