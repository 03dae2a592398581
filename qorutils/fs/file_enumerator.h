/// @file
/// Directory listings, one entry after the other, in the manner of FindFirstFile and FindNextFile.
///
///     using namespace base;
///     TFileEnumerator files(L"/etc", false, kEnumFiles | kEnumAllTypes, L"*.conf");
///     for (auto name = files.Next(); !name.IsEmpty(); name = files.Next()) {
///         _TFindInfo info;
///         files.GetFindInfo(&info);
///         wprintf(L"%ls %lld\n", name.c_str(), TFileEnumerator::GetFilesize(info));
///     }
///
/// Symbolic links count as what they point to. Entries come in the order in which the system has
/// them. An entry is passed over when its status cannot be had (a dangling link; a path too long
/// for the system), when it holds 2 GiB or more, and when the process locale cannot decode its name
/// whole. A directory that cannot be opened is as an empty one. Throws std::bad_alloc.

#ifndef QORUTILS_FS_FILE_ENUMERATOR_H_
#define QORUTILS_FS_FILE_ENUMERATOR_H_

#include <sys/stat.h>

#include "qorutils/export.h"
#include "qorutils/text/qor_memory.h"
#include "qorutils/text/qor_string.h"

// struct stat has two layouts on 32-bit machines; _TFindInfo carries the library's.
#if !defined(__LP64__) && defined(_FILE_OFFSET_BITS) && _FILE_OFFSET_BITS == 64
#error "qorutils/fs/file_enumerator.h: struct stat is the library's without _FILE_OFFSET_BITS only"
#endif
#if !defined(__LP64__) && defined(_TIME_BITS) && _TIME_BITS == 64
#error "qorutils/fs/file_enumerator.h: struct stat is the library's without _TIME_BITS only"
#endif

namespace base {

/// Which entries an enumerator returns: any of these together.
enum FileEnumeratorType : int {
    kEnumFiles = 0x1,          ///< all that are no directories
    kEnumDirectories = 0x2,    ///< all that are directories
    kEnumIncludeDotDot = 0x4,  ///< ".." too, with kEnumDirectories; "." is never returned
    /// On purpose: without it, entries are dropped by two bits of their mode, whatever else is
    /// asked for: only directories and FIFOs are left.
    kEnumAllTypes = 0x10
};

/// An entry. Where time_t or ino_t have 32 bits, dates and inode numbers are cut to their low ones.
struct _TFindInfo {
    struct ::stat stat;  ///< of what a link points to
    char filename[260];  ///< without directory, as the system has it; zero-terminated
};

/// One walk through a directory. An object belongs to one thread at a time.
class QORUTILS_API TFileEnumerator {
  public:
    /// @name Construction
    /// @{

    /// Walks root, in which `\` separates as `/` does, and with recursive the directories in it.
    /// fileType is made of FileEnumeratorType. Nothing is read before the first Next.
    ///
    /// pattern selects by name, in any case of its letters: '*' is any run of characters, '?' any
    /// one; the empty pattern, every name. Nothing matches one that the locale cannot encode.
    /// On purpose: a character is a byte here, so that '?' is less than a letter of two bytes, and
    /// letters beyond ASCII have one case only in UTF-8; what stands before a `\` in a name is not
    /// compared; and ".*" or "*.*" mean what they say: a name without a dot does not match.
    ///
    /// On purpose: only the entries of root are selected by pattern, those of the directories in it
    /// are all returned.
    ///
    /// recursive together with kEnumIncludeDotDot is reported as a failed check: the walk climbs
    /// then, and may never end.
    TFileEnumerator(qor_text::CQorStringT<wchar_t> const& root, bool recursive, int fileType);
    TFileEnumerator(qor_text::CQorStringT<wchar_t> const& root, bool recursive, int fileType,
                    qor_text::CQorStringT<wchar_t> const& pattern);

    /// @}
    /// @name The walk
    /// @{

    /// Goes to the next entry and returns its name, without a directory; the empty string at the
    /// end of the walk, and ever after.
    ///
    /// A directory comes before what is in it. The directories of one listing are walked when that
    /// listing is through, the last one first.
    /// On purpose: they are opened by their bare names, and thus looked for in the process's
    /// working directory; the walk is complete only where that is root, and root has one level.
    qor_text::CQorStringT<wchar_t> Next();

    /// Copies the entry that Next went to; leaves `*info` alone when there is none. A null info is
    /// reported as a failed check.
    /// On purpose: it is written through all the same, which ends the program.
    void GetFindInfo(_TFindInfo* info);

    /// @}
    /// @name What an entry says
    /// @{

    /// Whether the entry is a directory, or a link to one.
    static bool IsDirectory(_TFindInfo const& info);
    /// The entry's name, without a directory.
    static qor_text::CQorStringT<wchar_t> GetFilename(_TFindInfo const& info);

    /// The entry's size in bytes.
    static long long GetFilesize(_TFindInfo const& info);

    /// On purpose: not the time of modification, but its seconds since 1970 taken as ticks of 100
    /// ns since 1601, and these as seconds since 1970: a number from -11644473600 to -11644473170.
    /// Of the seconds the low 32 bits count, as an unsigned number.
    static long long GetLastModifiedTime(_TFindInfo const& info);

    /// @}
    /// @name Parts of the walk
    /// @{

    /// Replaces entries by what is in dir, "." and ".." included. With allTypes false, what has bit
    /// 0x8000 or 0x2000 in its mode is left out: regular files, sockets, devices.
    /// A name of 260 bytes or more is reported as a failed check and cut to 259.
    static void readDirectory(qor_vector<_TFindInfo>& entries,
                              qor_text::CQorStringT<wchar_t> const& dir, bool allTypes);

    /// Whether the name at the end of path, which may be behind `/` or `\`, is one that Next passes
    /// over: it does not match the pattern, or is "." or, without kEnumIncludeDotDot, "..".
    bool ShouldSkip(qor_text::CQorStringT<char> const& path);

    /// @}

  private:
    QORUTILS_LOCAL bool IsSkipped(char const* path) const;
    QORUTILS_LOCAL bool IsReturned(_TFindInfo const& entry);
    QORUTILS_LOCAL bool FindFrom(unsigned int first);
    QORUTILS_LOCAL bool ReadNextDirectory();

    bool hasCurrent = false;
    _TFindInfo current;
    qor_vector<_TFindInfo> entries;
    unsigned int index = 0;
    qor_text::CQorStringT<wchar_t> currentDir;
    bool recursive;
    int fileType;
    qor_text::CQorStringT<wchar_t> pattern;
    qor_vector<qor_text::CQorStringT<char>> pending;  // the last one is walked first
    qor_text::CQorStringT<char> narrowPattern_;
};

/// @name The names of a directory itself and of the one above it
/// @{

/// Whether s is "." exactly.
QORUTILS_API bool IsDot(qor_text::CQorStringT<wchar_t> const& s);
/// Whether s is "." exactly.
QORUTILS_API bool IsDot(qor_text::CQorStringT<char> const& s);
/// Whether s is ".." exactly.
QORUTILS_API bool IsDotDot(qor_text::CQorStringT<wchar_t> const& s);
/// Whether s is ".." exactly.
QORUTILS_API bool IsDotDot(qor_text::CQorStringT<char> const& s);

/// @}

}  // namespace base

#endif  // QORUTILS_FS_FILE_ENUMERATOR_H_
