// Private: system calls with one meaning on every machine.
//
// Files are handled as a 32-bit process does: positions and sizes end at 2147483647. The 64-bit
// calls are made on every machine, and the range is checked here, so that no result depends on how
// wide off_t is.

#ifndef QORUTILS_FS_SYSTEM_CALLS_H_
#define QORUTILS_FS_SYSTEM_CALLS_H_

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <limits>

namespace base {

// Repeats an interrupted call, at most 100 times; the last result stands.
// Never for close(): an interrupted close counts as closed, and its descriptor may be another's
// already.
template <typename Call>
auto RetryOnEintr(Call call) {
    auto result = call();
    for (int repeat = 0; result == -1 && errno == EINTR && repeat < 100; ++repeat) result = call();
    return result;
}

inline bool FitsFilePosition32(off64_t position) {
    return position <= std::numeric_limits<std::int32_t>::max();
}

inline int FailWithOverflow() {
    errno = EOVERFLOW;
    return -1;
}

// open64, as a 32-bit open would refuse files of 2 GiB and more on some kernels only. What the
// process creates is for its owner alone, and no descriptor is closed on exec.
inline int OpenFile(char const* name, int flags) {
    return RetryOnEintr([=] { return open64(name, flags, S_IRUSR | S_IWUSR); });
}

// lseek; a position above 2147483647 fails with EOVERFLOW and leaves the position as it was.
inline std::int32_t Seek32(int file, std::int32_t offset, int whence) {
    off64_t const before = lseek64(file, 0, SEEK_CUR);
    off64_t const after = lseek64(file, offset, whence);
    if (FitsFilePosition32(after)) return static_cast<std::int32_t>(after);
    lseek64(file, before, SEEK_SET);
    return FailWithOverflow();
}

inline int Truncate32(int file, std::int32_t length) {
    return RetryOnEintr([=] { return ftruncate64(file, length); });
}

// fstat; a file of 2 GiB and more fails with EOVERFLOW.
inline int Stat32(int file, struct stat64* status) {
    int const result = fstat64(file, status);
    return result == 0 && !FitsFilePosition32(status->st_size) ? FailWithOverflow() : result;
}

}  // namespace base

#endif  // QORUTILS_FS_SYSTEM_CALLS_H_
