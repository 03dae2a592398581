/// @file
/// CFile: a file in the shape of MFC's CFile, and the path functions that went with it.
///
///     base::CFile file;
///     if (!file.OpenForReading(path)) return false;
///     std::vector<char> content(file.GetLength());
///     file.Read(content.data(), content.size());
///     file.Close();
///
/// Close, Flush, Read, Write, Rename and Remove report failure by throwing std::runtime_error, and
/// only they do. Its text is "[file:line] operation: errno": where it was thrown, the name of the
/// Windows function that would have failed, and errno as it was then, in decimal digits. Functions
/// that take or make strings can also throw std::bad_alloc.
///
/// Paths are narrowed as the process locale says; one that it cannot encode is as an empty path: no
/// such file. A null path is an empty one, too.

#ifndef QORUTILS_FS_CFILE_H_
#define QORUTILS_FS_CFILE_H_

#include "qorutils/export.h"
#include "qorutils/fs/platform_file.h"
#include "qorutils/text/qor_string.h"

namespace base {

/// One file descriptor. An object belongs to one thread at a time.
///
/// On purpose: the destructor does not close, unlike MFC's. Whoever opens calls Close. A copy has
/// the same descriptor; only one of the two may be closed.
class QORUTILS_API CFile {
  public:
    /// No file is open.
    CFile() noexcept : file_(-1) {}

    /// @name The open file
    /// @{

    /// Opens as CreatePlatformFile() does, with its flags, its results and its refusal of ".." in
    /// the name; created and error may be null. Returns whether there is an open file now.
    /// On purpose: a file that was open is forgotten, not closed, also when opening fails.
    bool Open(qor_text::CQorStringT<wchar_t> const& name, int flags, bool* created,
              PlatformFileError* error);

    /// Opens a file that exists, for reading only. Returns whether there is an open file now.
    bool OpenForReading(qor_text::CQorStringT<wchar_t> const& name);

    /// Opens a new file, or an existing one, which is emptied, for writing only. Returns whether
    /// there is an open file now.
    bool OpenForWriting(qor_text::CQorStringT<wchar_t> const& name);

    /// Reads the first count bytes of the file and returns count. Throws ("Read") when there are
    /// fewer, unlike MFC's, which returns how many there were; what could be read is in buffer
    /// then. A count above 2147483647 throws, too. Without an open file: reports a failed check
    /// first.
    /// On purpose: always from the start of the file, whatever its position, which stays as it is.
    unsigned int Read(void* buffer, unsigned int count);

    /// Writes at the position, or at the end of a file opened with kFileAppend, and returns count.
    /// Throws ("Write") when not all could be written, and for a count above 2147483647. Without an
    /// open file: reports a failed check first.
    unsigned int Write(void const* buffer, unsigned int count);

    /// Throws ("CloseHandle") on failure; no file is open afterwards in any case. Without an open
    /// file: does nothing.
    void Close();

    /// Returns true when the file's data have reached the device. Throws ("FlushFileBuffers").
    bool Flush();

    /// Moves the position, which may lie beyond 2 GiB, to offset bytes from the begin (from 0), the
    /// present position (1) or the end (2). Returns the new position; -1, with errno, when it would
    /// be negative. MFC's throws instead.
    long long Seek(long long offset, unsigned long from);
    /// Seek(0, 0): moves the position to the first byte.
    long long SeekToBegin();
    /// Seek(0, 2): moves the position behind the last byte.
    long long SeekToEnd();

    /// Moves the position to length, then cuts the file there, or lengthens it with zeros. Returns
    /// 0, or -1 with errno; MFC's throws instead.
    /// On purpose: the file gets the low 32 bits of length, as a signed number, while the position
    /// gets all of them. A length with bit 31 set therefore fails with EINVAL, the position moved.
    int SetLength(unsigned long long length);

    /// The file's length in bytes. 0 when it cannot be had: without an open file, and from 2 GiB
    /// on.
    unsigned long long GetLength() const;

    /// The position, in bytes from the begin.
    /// On purpose: on failure all bits are set, as in -1.
    unsigned long long GetPosition() const;

    /// @}
    /// @name Files by name
    /// @{

    /// FileFuncs::MoveFile: moves a regular file within one file system, to a name that is free.
    /// Returns true. Throws ("MoveFile") otherwise; the number in the text is then not always that
    /// of the reason. Only the look whether the name is free takes `\` as a separator.
    static bool Rename(wchar_t const* oldName, wchar_t const* newName);

    /// Removes a file or a link, never a directory. Throws ("DeleteFile").
    static void Remove(wchar_t const* name);

    /// Whether anything is there, of whatever kind; a dangling link counts as nothing. `\`
    /// separates like `/`, as it does for no other function that opens, moves, removes or measures
    /// a file. isDirectory: whether that is a directory; false when nothing is there.
    static bool FileExists(wchar_t const* name, bool& isDirectory);
    /// The same, for callers who need not know the kind.
    static bool FileExists(wchar_t const* name);

    /// The bytes of a regular file of any size; -1 for everything else.
    static long long GetLength(wchar_t const* name);

    /// @}
    /// @name Names of the system's
    /// @{

    /// On purpose: only empties result, whatever is asked. GetApplicationPath() knows the name.
    static void GetModuleFileName(int module, qor_text::CQorStringT<wchar_t>& result, bool flag);

    /// The environment variable TMPDIR, also when it is empty; "/tmp" when it is not set. A text
    /// that the process locale cannot decode is cut before its first such character.
    /// On purpose: unlike Windows', adds no separator at the end, and takes none away.
    static void GetTempPath(qor_text::CQorStringT<wchar_t>& result);

    /// On purpose: only empties result, and makes no file. Callers rely on getting no name;
    /// FileFuncs::GetUniqueTempDir() gives a place for temporary files.
    static void GetTempFileName(wchar_t const* path, wchar_t const* prefix, unsigned int unique,
                                qor_text::CQorStringT<wchar_t>& result);

    /// @}
    /// @name Paths as text
    /// In the manner of Windows: both `/` and `\` separate, results have `\` only. The file system
    /// is not asked. Inputs may point into outputs.
    /// @{

    /// "C:/a/b/name.tar.gz" gives drive "C:", dir `\a\b\`, fname "name.tar" and ext ".gz". Missing
    /// pieces are empty.
    /// On purpose: the drive is all up to the first ':', wherever that stands.
    static void SplitPath(wchar_t const* path, qor_text::CQorStringT<wchar_t>& drive,
                          qor_text::CQorStringT<wchar_t>& dir,
                          qor_text::CQorStringT<wchar_t>& fname,
                          qor_text::CQorStringT<wchar_t>& ext);

    /// Joins what SplitPath() gives: pieces that are null are left out; a `\` goes between the
    /// others, and a '.' before ext, where there is none. Runs of separators become one.
    /// On purpose: a leading `\\` becomes `\`, so that no network name survives. An empty dir or
    /// fname still gets its `\`, when there is a piece before it: "C:" and "x" give `C:\x`.
    static void MakePath(qor_text::CQorStringT<wchar_t>& result, wchar_t const* drive,
                         wchar_t const* dir, wchar_t const* fname, wchar_t const* ext);

    /// The path with newName in place of its name and extension: "/tmp/old.txt" and "new.log" give
    /// `\tmp\new.log`. An empty path gives newName as it is.
    static void UpdateFileName(wchar_t const* path, wchar_t const* newName,
                               qor_text::CQorStringT<wchar_t>& result);

    /// @}

  private:
    int file_;
};

}  // namespace base

#endif  // QORUTILS_FS_CFILE_H_
