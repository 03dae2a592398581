#include "qorutils/fs/platform_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <new>

#include "qorutils/fs/system_calls.h"
#include "qorutils/logging/checks.h"

using qor_text::CQorStringT;

namespace base {

namespace {

void Check(bool holds, int line) {
    if (!holds) qor_logging::qor_err_log("qorutils/fs/platform_file", line, "");
}

int CreationMode(int flags) {
    int mode = (flags & kFileCreateNew) != 0 ? O_CREAT | O_EXCL : 0;
    if ((flags & kFileCreateOrTruncate) != 0) {
        Check(mode == 0, __LINE__);
        mode = O_CREAT | O_TRUNC;
    }
    if ((flags & kFileTruncateExisting) != 0) {
        Check(mode == 0, __LINE__);
        Check((flags & kFileWrite) != 0, __LINE__);
        mode = O_TRUNC;
    }
    return mode;
}

int AccessMode(int flags) {
    bool const reads = (flags & kFileRead) != 0;
    int mode = O_RDONLY;
    if ((flags & kFileWrite) != 0) mode = reads ? O_RDWR : O_WRONLY;
    if ((flags & kFileAppend) != 0) mode |= O_APPEND | (reads ? O_RDWR : O_WRONLY);
    if ((flags & kFileTerminalDevice) != 0) mode |= O_NOCTTY | O_NONBLOCK;
    return mode;
}

// Tells files that this call created, as far as the system can, from those that were there.
int OpenOrCreate(char const* name, int flags, int mode, bool* created) {
    int file = OpenFile(name, mode);
    bool isNew = (flags & (kFileCreateNew | kFileCreateOrTruncate)) != 0;
    if (file == -1 && (flags & kFileOpenOrCreate) != 0) {
        bool const isExclusive = (flags & (kFileExclusiveRead | kFileExclusiveWrite)) != 0;
        file = OpenFile(name, mode | O_CREAT | (isExclusive ? O_EXCL : 0));
        isNew = true;
    }
    if (file != -1 && isNew && created != nullptr) *created = true;
    return file;
}

int OpenNamed(CQorStringT<wchar_t> const& name, int flags, bool* created) {
    if (created != nullptr) *created = false;
    int const creation = CreationMode(flags);
    if (creation == 0 && (flags & (kFileOpenExisting | kFileOpenOrCreate)) == 0) {
        errno = EOPNOTSUPP;
        return -1;
    }
    CQorStringT<char> const narrow(name.c_str());
    int const file = OpenOrCreate(narrow.c_str(), flags, creation | AccessMode(flags), created);
    if (file != -1 && (flags & kFileDeleteOnClose) != 0) unlink(narrow.c_str());
    return file;
}

// Repeats transfer(done), which moves what lies behind the first `done` bytes, until all is moved
// or no more can be. Returns the bytes moved; if none, what the call returned.
template <typename Transfer>
int TransferWhole(int file, unsigned int size, Transfer transfer) {
    if (file < 0 || size > INT_MAX) return -1;
    unsigned int done = 0;
    ssize_t moved = 0;
    do {
        moved = RetryOnEintr([&] { return transfer(done); });
        if (moved > 0) done += static_cast<unsigned int>(moved);
    } while (moved > 0 && done < size);
    return static_cast<int>(done != 0 ? done : moved);
}

timespec WholeSeconds(long seconds) {
    timespec time = {};
    time.tv_sec = static_cast<std::int32_t>(seconds);
    return time;
}

}  // namespace

int CreatePlatformFileUnsafe(CQorStringT<wchar_t> const& name, int flags, bool* created,
                             PlatformFileError* error) {
    int file = -1;
    try {
        file = OpenNamed(name, flags, created);
    } catch (std::bad_alloc const&) {
        errno = ENOMEM;
    }
    if (error != nullptr) *error = file != -1 ? kFileOk : ErrnoToPlatformFileError(errno);
    return file;
}

int CreatePlatformFile(CQorStringT<wchar_t> const& name, int flags, bool* created,
                       PlatformFileError* error) {
    if (name.Find(L"..") == -1) return CreatePlatformFileUnsafe(name, flags, created, error);
    if (error != nullptr) *error = kFileErrorAccessDenied;
    return -1;
}

int ReadPlatformFile(int file, void* data, unsigned int size) {
    char* const bytes = static_cast<char*>(data);
    return TransferWhole(file, size, [=](unsigned int done) {
        return pread(file, bytes + done, size - done, static_cast<off_t>(done));
    });
}

int WritePlatformFile(int file, void const* data, unsigned int size) {
    char const* const bytes = static_cast<char const*>(data);
    return TransferWhole(file, size,
                         [=](unsigned int done) { return write(file, bytes + done, size - done); });
}

long long SeekPlatformFile(int file, PlatformFileWhence whence, long long offset) {
    if (file < 0 || offset < 0) return -1;
    return Seek32(file, static_cast<std::int32_t>(offset), whence);
}

bool TruncatePlatformFile(int file, long long length) {
    return file >= 0 && Truncate32(file, static_cast<std::int32_t>(length)) == 0;
}

bool FlushPlatformFile(int file) {
    return RetryOnEintr([=] { return fsync(file); }) == 0;
}

bool ClosePlatformFile(int file) {
    return close(file) == 0 || errno == EINTR;
}

bool TouchPlatformFile(int file, long const& lastAccessTime, long const& lastModifiedTime) {
    timespec const times[] = {WholeSeconds(lastAccessTime), WholeSeconds(lastModifiedTime)};
    return file >= 0 && futimens(file, times) == 0;
}

bool GetPlatformFileInfo(int file, PlatformFileInfo* info) {
    struct stat64 status;
    if (info == nullptr || file == -1 || Stat32(file, &status) != 0) return false;
    *info = PlatformFileInfo();
    info->size = status.st_size;
    info->isDirectory = S_ISDIR(status.st_mode);
    info->isSymbolicLink = S_ISLNK(status.st_mode);
    return true;
}

int DuplicatePlatformFileHandle(int file, PlatformFileError* error) {
    int const copy = dup(file);
    if (error != nullptr) *error = copy != -1 ? kFileOk : kFileErrorFailed;
    return copy;
}

PlatformFileError ErrnoToPlatformFileError(int savedErrno) {
    switch (savedErrno) {
        case EPERM:
        case EACCES:
        case EISDIR:
        case EROFS:
            return kFileErrorAccessDenied;
        case ENOENT:
            return kFileErrorNotFound;
        case ENOMEM:
            return kFileErrorNoMemory;
        case EEXIST:
            return kFileErrorExists;
        case ENOTDIR:
            return kFileErrorNotADirectory;
        case EMFILE:
            return kFileErrorTooManyOpened;
        case ETXTBSY:
            return kFileErrorInUse;
        case ENOSPC:
            return kFileErrorNoSpace;
        default:
            return kFileErrorFailed;
    }
}

}  // namespace base
