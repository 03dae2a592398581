/// @file
/// Single files: tests, sizes, deletion, copies, names, listings.
///
/// In paths, `\` separates as `/` does unless a function says otherwise, and relative ones belong
/// to the working directory. Paths are narrowed as the process locale says. One that it cannot
/// encode names nothing: every operation on it fails, in whatever way it does that, and touches
/// nothing.
///
/// Failure of the system is false, never an exception, and nothing is logged but a failed check for
/// a name of 260 bytes or more in a listing. Throws std::bad_alloc. Links are followed except where
/// said. A test and the action behind it are two steps: another process may come between them.

#ifndef QORUTILS_FS_FILE_FUNCS_H_
#define QORUTILS_FS_FILE_FUNCS_H_

#include "qorutils/export.h"
#include "qorutils/fs/file_enumerator.h"
#include "qorutils/text/qor_memory.h"
#include "qorutils/text/qor_string.h"

namespace FileFuncs {

/// What a listing holds; other bits are ignored.
enum EFindFolder : int {
    eFindFiles = 1,           ///< all that are no folders
    eFindFolders = 2,         ///< folders
    eFindFilesAndFolders = 3  ///< both
};

/// @name Tests
/// @{

/// Whether there is anything at path: a directory and a device count too, a dangling link does not.
QORUTILS_API bool IsFileExist(qor_text::CQorStringT<wchar_t> const& path);
/// As IsFileExist(); null counts as an empty path.
QORUTILS_API bool FileExists(wchar_t const* path);

/// Whether there is a directory at path.
QORUTILS_API bool IsDirExist(qor_text::CQorStringT<wchar_t> const& path);
/// As IsDirExist(); null counts as an empty path.
QORUTILS_API bool IsFolder(wchar_t const* path);

/// @}
/// @name Sizes of regular files, in bytes
/// @{

/// Stores the file's size and returns true. False, with size as it was, for anything else than a
/// regular file.
/// On purpose: `\` is a character like others here. Should the size be refused after the file was
/// found, size is -1.
QORUTILS_API bool GetFileLength(qor_text::CQorStringT<wchar_t> const& path, long long& size);

/// Stores the low and the high 32 bits of the file's size; sizeHigh may be null. False, with zeros,
/// for anything else than a regular file. Should the size be refused after the file was found, both
/// are 0xFFFFFFFF.
QORUTILS_API bool GetPathSize(wchar_t const* path, unsigned long& sizeLow, unsigned long* sizeHigh);

/// @}
/// @name Delete, copy, move
/// @{

/// Deletes a regular file, or a link to one, and returns whether it did. force first makes the file
/// writable for everyone (the one behind the link). The path is taken as GetAbsoluteFileName()
/// gives it (fs/file_names.h): a relative one deletes nothing where the locale cannot decode the
/// working directory.
QORUTILS_API bool DelFile(wchar_t const* path, bool force);

/// Copies a file with its permissions, not its times, and creates the folders that `to` lacks. With
/// overwrite, what is at `to` is deleted first, as DelFile() does it by force.
/// On purpose: relative paths belong to the directory that GetExeDir() names (appdirs/app_dirs.h),
/// or, as that is empty by default, to the working directory; only what is deleted first is looked
/// for in the working directory.
/// On purpose: the result is whether there is anything at `to` in the end. So it is true when an
/// existing file was not to be overwritten, and when a copy was cut short.
/// With overwrite, a file copied to itself is lost.
QORUTILS_API bool qor_CopyFile(wchar_t const* from, wchar_t const* to, bool overwrite);

/// qor_CopyFile(); but when `to` exists and is not to be overwritten, true at once.
QORUTILS_API bool CopyFromTo(wchar_t const* from, wchar_t const* to, bool overwrite);

/// Copies when `to` does not exist; false when `from` does not.
/// On purpose: when both exist nothing is copied, whichever is newer, and the result is true.
QORUTILS_API bool CopyFromToCheckDate(wchar_t const* from, wchar_t const* to);

/// Renames a regular file, or a link to one. False when there is something at `to`, a dangling link
/// excepted, which is replaced; and on another file system, as nothing is copied.
/// On purpose: `\` is a character like others here; only the look whether `to` exists takes it as
/// a separator.
QORUTILS_API bool MoveFile(wchar_t const* from, wchar_t const* to);

/// @}
/// @name Names
/// @{

/// Whether name is "." or ".."; false for null.
QORUTILS_API bool IsDots(wchar_t const* name);

/// Whether path lies on a removable card.
/// On purpose: false, as there are no removable cards to ask for.
QORUTILS_API bool IsPathOnFlashCard(wchar_t const* path);

/// The path without its last separator; before that, unless keepFileName is set, without its last
/// `/` and what follows it. Measures and shortens nothing, unlike its Windows namesake.
/// On purpose: a path with "..." in it counts as shortened already and is returned as it is; a
/// separator is left where the path has less than three characters, or where context, which is
/// asked nothing, is not null; and only `/` is looked for where the file name is cut off.
QORUTILS_API qor_text::CQorStringT<wchar_t> CompactPath(void* context, wchar_t const* path,
                                                        bool keepFileName, wchar_t separator);

/// Whether name is not empty and has none of these characters:
///
///     < > \ / " : ? * |
QORUTILS_API bool IsFileNameCorrect(qor_text::CQorStringT<wchar_t> const& name);

/// The name with each character replaced that IsFileNameCorrect() forbids; by '_' when the
/// replacement is such a one.
/// On purpose: an empty name gives the replacement itself, also when it is such a one.
QORUTILS_API qor_text::CQorStringT<wchar_t> CreateCorrectFileName(
    qor_text::CQorStringT<wchar_t> const& name, wchar_t replacement);

/// @}
/// @name Contents
/// @{

/// Creates the file, or empties it, and writes length bytes. What it creates has mode 0666, less
/// the umask. `\` is a character like others here. False when not all was written, as on a full
/// disk, and, with the file left empty, for a length above 2147483647.
/// On purpose: true when the file could not be created, and when it could not be closed.
QORUTILS_API bool WriteFile(wchar_t const* path, char const* data, unsigned int length);

/// Replaces out by what is in the folder, without "." and "..", in the order in which the system
/// has it; mask is the pattern of base::TFileEnumerator, null or empty for all. Empty for a folder
/// that cannot be opened.
QORUTILS_API void GetFileEntriesInFolder(qor_vector<base::_TFindInfo>& out, EFindFolder kind,
                                         qor_text::CQorStringT<wchar_t> const& folder,
                                         wchar_t const* mask);

/// @}

}  // namespace FileFuncs

#endif  // QORUTILS_FS_FILE_FUNCS_H_
