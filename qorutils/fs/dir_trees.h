/// @file
/// Whole folders: making, removing, emptying, copying, counting, searching, temporary ones.
///
/// Paths are narrowed as the process locale says. A path that it cannot encode makes every function
/// here fail, and touch nothing; so does a relative one in a working directory that it cannot
/// decode, save where no absolute path is made of it: in CountFiles() and FindFileInDirTree(). A
/// null path is an empty one.
///
/// `\` separates like `/`, save in FindFileInDirTree(); in a relative path also that in the name of
/// the working directory. At the start of a path, `\` is the root for CopyDirectory() and
/// CountFiles() only. On purpose: it is the working directory for those that make, remove and empty
/// folders.
///
/// Failure is false, 0 or an empty string. Only EmptyFolder() and FindFileInDirTree() can throw
/// boost::filesystem::filesystem_error, when a folder that they read breaks in the midst of it; all
/// can throw std::bad_alloc. Every function may be called from any thread; that others work on the
/// same folders meanwhile is not guarded against.

#ifndef QORUTILS_FS_DIR_TREES_H_
#define QORUTILS_FS_DIR_TREES_H_

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace FileFuncs {

/// Makes the folder with all folders above it that are missing. Returns whether it is there;
/// folders made before a failure stay.
/// On purpose: a step that finds its folder made already, by someone else or because the path has
/// "//", "." or ".." among the missing ones, counts as a failure. So does "/".
QORUTILS_API bool CreateDirRecursive(qor_text::CQorStringT<wchar_t> const& path);

/// The same, but "/", "//" and "." are fine.
/// On purpose: when someone else makes one of the missing folders at the same time, the walk ends
/// there, with true.
QORUTILS_API bool CreateDirectoryTree(wchar_t const* path);

/// Removes the folder with all that is in it; links in it are removed, not followed. A file or a
/// link at the path is removed, too. Returns whether there is no folder at the path now, so that a
/// missing one gives true. An empty path gives false. A path that ends in `/` after a link, or in
/// "/.", names a folder that cannot be removed by this name: it is emptied, and the result is
/// false.
QORUTILS_API bool RemoveDirectoryTree(wchar_t const* path);

/// Removes all that is in the folder, read-only files too. Stops at the first entry that cannot be
/// removed and returns false; what was removed before is gone.
/// On purpose: a folder that is empty already gives false. And a symbolic link, a special file, or
/// a name that holds a `\` or cannot be decoded, is an entry that cannot be removed.
QORUTILS_API bool EmptyFolder(qor_text::CQorStringT<wchar_t> const& folder);

/// Copies the files of the folder into another, which is made if it is missing; with recursive also
/// its folders. Links are followed. Files that are there are replaced; others stay. A missing
/// folder is copied as an empty one.
/// Passed over is what base::TFileEnumerator passes over: dangling links, files of 2 GiB and more,
/// names that the locale cannot decode. A name with a `\` in it is not copied and counts as failed.
/// A FIFO holds the copy up until someone writes to it. A folder copied with its folders into
/// itself is copied into its copy again, and so on until the path is too long for the system. So is
/// a link to a folder above it until the system refuses to follow any more links, at a depth of 40;
/// two such links in one folder double the work at each depth, which takes for ever. On purpose:
/// returns the result of the entry copied last, in the order in which the system lists them; true
/// when there was none. Two equal texts give false, but no two other names of one folder are seen
/// to be one: such a folder loses its files. On purpose: folders are looked for a second time by
/// their bare names in the working directory. Entries of those that are there are taken for entries
/// of the folder that is copied, and when one of them holds a folder of its own name, the copy
/// never ends. Call it with a working directory that holds no folder of such a name. passThrough
/// has no effect.
QORUTILS_API bool CopyDirectory(qor_text::CQorStringT<wchar_t> const& from,
                                qor_text::CQorStringT<wchar_t> const& to, bool recursive,
                                bool passThrough);

/// The number of entries of a folder, of whatever kind, without those in its folders. 0 for a
/// missing folder.
QORUTILS_API unsigned int CountFiles(qor_text::CQorStringT<wchar_t> const& folder);

/// Looks for a file called name, case-sensitive, in the folder and in all below it, depth first, in
/// the order in which the system lists them. Sets found to its path, which begins with folder, and
/// returns true; found is left alone otherwise. Folders are never found. Here `\` is a character
/// like others. Names that the locale cannot decode are passed over, with what is in folders called
/// so. Links to folders are followed. A link to a folder above it ends where the system refuses to
/// follow any more links, at a depth of 40; two such links in one folder double the work at each
/// depth, which takes for ever.
QORUTILS_API bool FindFileInDirTree(wchar_t const* folder, wchar_t const* name,
                                    qor_text::CQorStringT<wchar_t>& found);

/// The folder for temporary files as Boost.Filesystem's temp_directory_path names it, less one `/`
/// at its end. Empty when there is none. What the locale cannot decode is cut as by GetTempPath().
QORUTILS_API qor_text::CQorStringT<wchar_t> GetTempDirWithoutSlash();

/// Makes a new folder in base::CFile::GetTempPath(), which is made if it is missing, and returns
/// its path. Tries again while it cannot: it never returns when no folder can be made there.
/// On purpose: the path ends in `\`, not `/`, as callers cut it or append to it.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetUniqueTempDir();

}  // namespace FileFuncs

#endif  // QORUTILS_FS_DIR_TREES_H_
