/// @file
/// Files as plain POSIX descriptors, opened with flags in the manner of Windows.
///
///     using namespace base;
///     PlatformFileError error;
///     int const file = CreatePlatformFile(L"/tmp/notes.txt", kFileCreateOrTruncate | kFileWrite,
///                                         nullptr, &error);
///     if (file == -1) return error;
///     WritePlatformFile(file, "hello", 5);
///     ClosePlatformFile(file);
///
/// A file is an int, -1 where there is none; whoever opened it closes it. Names are narrowed as the
/// process locale says; one that it cannot encode is as an empty name: no such file.
///
/// Positions and sizes are those of a 32-bit process on every machine: they end at 2147483647.
/// Larger files can be opened, read and written.
///
/// Nothing here throws. Failure is -1 or false, with errno as the system call left it. System calls
/// that a signal interrupts are repeated, at most 100 times. Every function may be called from any
/// thread; a descriptor belongs to one thread at a time.

#ifndef QORUTILS_FS_PLATFORM_FILE_H_
#define QORUTILS_FS_PLATFORM_FILE_H_

#include <cstdint>

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace base {

/// Why a file could not be opened.
enum PlatformFileError : int {
    kFileOk = 0,                   ///< success
    kFileErrorFailed = -1,         ///< none of those below
    kFileErrorInUse = -2,          ///< a program that is running
    kFileErrorExists = -3,         ///< there is one already
    kFileErrorNotFound = -4,       ///< the file, or a part of its path
    kFileErrorAccessDenied = -5,   ///< no permission, read-only, a directory, or ".." in the name
    kFileErrorTooManyOpened = -6,  ///< by this process
    kFileErrorNoMemory = -7,       ///< the system has none left
    kFileErrorNoSpace = -8,        ///< on the device
    kFileErrorNotADirectory = -9   ///< a part of the path
};

/// What an offset counts from. The numbers are those of lseek and of SetFilePointer.
enum PlatformFileWhence : int {
    kFromBegin = 0,    ///< from the first byte
    kFromCurrent = 1,  ///< from the position
    kFromEnd = 2       ///< from behind the last byte
};

/// How to open a file: one of the first five, with any of the others. Other bits are ignored.
enum PlatformFileFlags : int {
    kFileOpenExisting = 0x1,       ///< fails if there is none
    kFileCreateNew = 0x2,          ///< fails if there is one
    kFileOpenOrCreate = 0x4,       ///< opens what there is, or creates it
    kFileCreateOrTruncate = 0x8,   ///< empties what there is
    kFileTruncateExisting = 0x10,  ///< the same, but fails if there is none; needs kFileWrite
    kFileRead = 0x20,              ///< read access
    kFileWrite = 0x40,             ///< write access
    kFileAppend = 0x80,            ///< writes go to the end; gives write access
    /// With kFileOpenOrCreate: a file that another process creates meanwhile is not opened. It
    /// locks nothing.
    kFileExclusiveRead = 0x100,
    kFileExclusiveWrite = 0x200,  ///< the same as kFileExclusiveRead
    kFileDeleteOnClose = 0x2000,  ///< the name goes at once, the file with its last descriptor
    /// A terminal does not become the controlling one, and opening does not wait for a line.
    kFileTerminalDevice = 0x10000
};

/// What GetPlatformFileInfo() says about a file.
struct PlatformFileInfo {
    std::int64_t size = 0;          ///< bytes
    bool isDirectory = false;       ///< whether it is a directory
    bool isSymbolicLink = false;    ///< false, as links are followed
    std::int32_t lastModified = 0;  ///< On purpose: never filled in.
    std::int32_t lastAccessed = 0;  ///< On purpose: never filled in.
    std::int32_t creationTime = 0;  ///< On purpose: never filled in.
};

/// Opens or creates a file and returns its descriptor, or -1. What it creates is readable and
/// writable for its owner only, less the umask. Without kFileRead and kFileWrite a file is opened
/// for reading. Descriptors stay open across exec.
///
/// `*created` is whether the file was made; `*error` is kFileOk or why there is no descriptor. Both
/// may be null.
/// On purpose: `*created` is true with kFileCreateOrTruncate also when that emptied an existing
/// file.
///
/// Flags that name no way to open fail with EOPNOTSUPP and kFileErrorFailed. Ways that exclude each
/// other are reported as a failed check, and so is kFileTruncateExisting without kFileWrite; the
/// later of kFileCreateNew, kFileCreateOrTruncate and kFileTruncateExisting then holds.
QORUTILS_API int CreatePlatformFileUnsafe(qor_text::CQorStringT<wchar_t> const& name, int flags,
                                          bool* created, PlatformFileError* error);

/// CreatePlatformFileUnsafe(), but for names without "..": any other gives -1 and
/// kFileErrorAccessDenied, asks the system nothing and leaves `*created` and errno alone.
/// On purpose: two dots within a name count too, as in "a..b".
QORUTILS_API int CreatePlatformFile(qor_text::CQorStringT<wchar_t> const& name, int flags,
                                    bool* created, PlatformFileError* error);

/// Reads the first bytes of the file, as many as there are up to size; returns how many, 0 for an
/// empty file. Returns -1 when nothing could be read, and for a size above 2147483647.
/// On purpose: always from the start of the file, whatever its position, which stays as it is.
/// Pipes and terminals, which have no start, cannot be read.
QORUTILS_API int ReadPlatformFile(int file, void* data, unsigned int size);

/// Writes at the file's position, or at its end if it was opened with kFileAppend. Returns how many
/// bytes were written: fewer than size when the system refuses the rest, -1 when it takes none.
/// -1 also for a size above 2147483647.
QORUTILS_API int WritePlatformFile(int file, void const* data, unsigned int size);

/// Moves the position and returns it, or -1. A position above 2147483647 fails with EOVERFLOW and
/// is not taken.
/// On purpose: a negative offset is refused without asking the system, so that nothing moves
/// backwards; of any other, the low 32 bits count, as a signed number.
QORUTILS_API long long SeekPlatformFile(int file, PlatformFileWhence whence, long long offset);

/// Cuts the file to length bytes, or lengthens it with zeros; returns whether that succeeded. The
/// low 32 bits of length count, as a signed number.
QORUTILS_API bool TruncatePlatformFile(int file, long long length);

/// Returns true when the file's data have reached the device, false on failure.
QORUTILS_API bool FlushPlatformFile(int file);

/// Closes the file and returns whether that succeeded. An interrupted close counts as closed.
QORUTILS_API bool ClosePlatformFile(int file);

/// Sets both times, in seconds since 1970 UTC, and returns whether that succeeded. The low 32 bits
/// count, as a signed number.
QORUTILS_API bool TouchPlatformFile(int file, long const& lastAccessTime,
                                    long const& lastModifiedTime);

/// Stores the file's size and kind at info and returns true. False, with `*info` untouched, for a
/// null info, for no file, and, with EOVERFLOW, for a file of 2 GiB and more.
QORUTILS_API bool GetPlatformFileInfo(int file, PlatformFileInfo* info);

/// A second descriptor of the same open file, or -1: both share one position. error may be null.
/// On purpose: every failure is kFileErrorFailed.
QORUTILS_API int DuplicatePlatformFileHandle(int file, PlatformFileError* error);

/// The failure that a value of errno stands for.
/// On purpose: EBUSY and ENFILE are kFileErrorFailed, as is every number without a meaning above,
/// 0 among them.
QORUTILS_API PlatformFileError ErrnoToPlatformFileError(int savedErrno);

}  // namespace base

#endif  // QORUTILS_FS_PLATFORM_FILE_H_
