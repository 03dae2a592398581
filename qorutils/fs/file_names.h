/// @file
/// The parts of a path: file name, suffix, directory.
///
/// Both `/` and `\` separate, so that paths written in Windows style can be taken apart on Linux.
/// There are no drive letters, no quoting, and only GetAbsoluteFileName() asks the system for
/// anything.
///
/// On purpose: the suffix begins at the last '.' of the whole path, also when that stands in a
/// directory name or begins a hidden file's name. "a.b/c" has the suffix "b/c"; ".hidden" is all
/// suffix.
///
/// Separators and the '.' are looked for up to the first zero character of a path; what lies behind
/// it belongs to the last piece. Pieces that are the whole path share its buffer. Throws
/// std::bad_alloc.

#ifndef QORUTILS_FS_FILE_NAMES_H_
#define QORUTILS_FS_FILE_NAMES_H_

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace qor {
namespace file_names {

/// The index behind the last separator, 0 when there is none.
QORUTILS_API int GetFileNameStart(qor_text::CQorStringT<wchar_t> const& path);

/// The index of the last '.', the path's length when there is none.
QORUTILS_API int GetFileExtStart(qor_text::CQorStringT<wchar_t> const& path);

/// "/usr/lib/libx.so.1" gives "libx.so.1"; "dir/" gives "".
QORUTILS_API qor_text::CQorStringT<wchar_t> ExtractFileNameWithExtFromPathName(
    qor_text::CQorStringT<wchar_t> const& path);

/// "/usr/lib/libx.so.1" gives "1", without the dot; "noext" and "file." give "".
QORUTILS_API qor_text::CQorStringT<wchar_t> ExtractFileNameExtFromPathName(
    qor_text::CQorStringT<wchar_t> const& path);

/// "/usr/lib/libx.so.1" gives "libx.so"; "a.b/c" gives "c"; ".hidden" gives "".
QORUTILS_API qor_text::CQorStringT<wchar_t> ExtractFileNameWithoutExtFromPathName(
    qor_text::CQorStringT<wchar_t> const& path);

/// "/usr/lib/libx.so.1" gives "/usr/lib/libx.so"; "a.b/c" gives "a".
QORUTILS_API qor_text::CQorStringT<wchar_t> ExtractPathNameWithoutExtFromPathName(
    qor_text::CQorStringT<wchar_t> const& path);

/// "/usr/lib/libx.so.1" gives "/usr/lib"; "/file" and "file" both give "".
QORUTILS_API qor_text::CQorStringT<wchar_t> ExtractDirNameWithoutSlashFromPathName(
    qor_text::CQorStringT<wchar_t> const& path);

/// "/usr/lib/libx.so.1" gives "/usr/lib/"; "/file" gives "/"; "file" gives "".
QORUTILS_API qor_text::CQorStringT<wchar_t> ExtractDirNameWithSlashFromPathName(
    qor_text::CQorStringT<wchar_t> const& path);

/// The path with every `\` replaced by `/`. "//", "." and ".." stay as they are.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetCanonicalFileName(
    qor_text::CQorStringT<wchar_t> const& path);

/// The path, up to its first zero character, made absolute against the working directory, then as
/// GetCanonicalFileName() gives it. "." and ".." stay; nothing needs to exist. An empty path gives
/// the working directory.
/// On purpose: only a leading `/` makes a path absolute; `\x` lies in the working directory. And
/// two leading slashes with no other behind them are a root name, as the file-system library sees
/// it: "//net" becomes "//net" followed by the working directory.
/// Empty when the process locale cannot encode the path, and, for a path that is not absolute, when
/// it cannot decode the whole working directory or there is none any more.
QORUTILS_API qor_text::CQorStringT<wchar_t> GetAbsoluteFileName(
    qor_text::CQorStringT<wchar_t> const& path);

/// Takes a path apart: "/x/y/z.txt" gives nameWithExt "z.txt", nameWithoutExt "z", ext "txt",
/// parentDirName "y" and parentPath "/x": the directory that parentDirName lies in. Returns whether
/// there is an extension.
/// path may be one of the outputs. One string may stand for several outputs; the last of them, in
/// the order of the parameters, is what it holds in the end.
QORUTILS_API bool ExtractFileNameAndExtAndParentDirFromPathName(
    qor_text::CQorStringT<wchar_t> const& path, qor_text::CQorStringT<wchar_t>& nameWithExt,
    qor_text::CQorStringT<wchar_t>& nameWithoutExt, qor_text::CQorStringT<wchar_t>& ext,
    qor_text::CQorStringT<wchar_t>& parentDirName, qor_text::CQorStringT<wchar_t>& parentPath);

}  // namespace file_names
}  // namespace qor

#endif  // QORUTILS_FS_FILE_NAMES_H_
