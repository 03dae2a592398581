// Private: the status of directory entries as struct stat, the same on every machine.

#ifndef QORUTILS_FS_ENTRY_STATUS_H_
#define QORUTILS_FS_ENTRY_STATUS_H_

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <ctime>

#include "qorutils/fs/system_calls.h"

namespace base {

inline timespec ToTimespec(struct statx_timestamp const& time) {
    timespec result = {};
    result.tv_sec = static_cast<time_t>(time.tv_sec);
    result.tv_nsec = static_cast<long>(time.tv_nsec);
    return result;
}

// Of a status that is all zero. What does not fit is cut to its low bits.
inline void FillStatus(struct statx const& from, struct stat& to) {
    to.st_dev = makedev(from.stx_dev_major, from.stx_dev_minor);
    to.st_ino = static_cast<ino_t>(from.stx_ino);
    to.st_mode = from.stx_mode;
    to.st_nlink = from.stx_nlink;
    to.st_uid = from.stx_uid;
    to.st_gid = from.stx_gid;
    to.st_rdev = makedev(from.stx_rdev_major, from.stx_rdev_minor);
    to.st_size = static_cast<off_t>(from.stx_size);
    to.st_blksize = static_cast<blksize_t>(from.stx_blksize);
    to.st_blocks = static_cast<blkcnt_t>(from.stx_blocks);
    to.st_atim = ToTimespec(from.stx_atime);
    to.st_mtim = ToTimespec(from.stx_mtime);
    to.st_ctim = ToTimespec(from.stx_ctime);
}

// stat of a name in an open directory, into a status that is all zero; an entry of 2 GiB and more
// fails with EOVERFLOW. statx, as the other calls of a 32-bit process refuse dates behind 2038 and
// large inode numbers.
inline int EntryStatus32(int directory, char const* name, struct stat* status) {
    struct statx found;
    int const result = RetryOnEintr(
        [&] { return statx(directory, name, AT_NO_AUTOMOUNT, STATX_BASIC_STATS, &found); });
    if (result != 0) return result;
    if (!FitsFilePosition32(static_cast<off64_t>(found.stx_size))) return FailWithOverflow();
    FillStatus(found, *status);
    return 0;
}

}  // namespace base

#endif  // QORUTILS_FS_ENTRY_STATUS_H_
