#include <qorutils/fs/platform_file.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "support/platform_file_fixture.h"
#include "support/temporary_directory.h"

namespace {

using namespace base;

static_assert(sizeof(PlatformFileError) == 4, "");
static_assert(kFileOk == 0 && kFileErrorFailed == -1 && kFileErrorInUse == -2, "");
static_assert(kFileErrorExists == -3 && kFileErrorNotFound == -4, "");
static_assert(kFileErrorAccessDenied == -5 && kFileErrorTooManyOpened == -6, "");
static_assert(kFileErrorNoMemory == -7 && kFileErrorNoSpace == -8, "");
static_assert(kFileErrorNotADirectory == -9, "");

PlatformFileInfo Filled() {
    PlatformFileInfo info;
    info.size = -7;
    info.isDirectory = info.isSymbolicLink = true;
    info.lastModified = info.lastAccessed = info.creationTime = -7;
    return info;
}

void ExpectNoTimes(PlatformFileInfo const& info) {
    EXPECT_EQ(0, info.lastModified);
    EXPECT_EQ(0, info.lastAccessed);
    EXPECT_EQ(0, info.creationTime);
}

TEST(PlatformFileInfo, IsZeroAtFirst) {
    PlatformFileInfo const info;
    EXPECT_EQ(0, info.size);
    EXPECT_FALSE(info.isDirectory);
    EXPECT_FALSE(info.isSymbolicLink);
    ExpectNoTimes(info);
}

TEST_F(PlatformFile, InfoTellsTheSizeAndNoTimes) {
    PlatformFileInfo info = Filled();
    EXPECT_TRUE(GetPlatformFileInfo(Opened(Path("old"), 0x21), &info));
    EXPECT_EQ(10, info.size);
    EXPECT_FALSE(info.isDirectory);
    EXPECT_FALSE(info.isSymbolicLink);
    ExpectNoTimes(info);
}

TEST_F(PlatformFile, InfoTellsADirectory) {
    PlatformFileInfo info = Filled();
    EXPECT_TRUE(GetPlatformFileInfo(Opened(Path(""), 0x21), &info));
    EXPECT_TRUE(info.isDirectory);
    EXPECT_FALSE(info.isSymbolicLink);
    ExpectNoTimes(info);
}

TEST_F(PlatformFile, InfoTellsALinkThatWasOpenedItself) {
    directory_.MakeLink("link", "old");
    int const link = open(directory_.Path("link").c_str(), O_PATH | O_NOFOLLOW);
    ASSERT_NE(-1, link);
    PlatformFileInfo info = Filled();
    EXPECT_TRUE(GetPlatformFileInfo(link, &info));
    EXPECT_TRUE(info.isSymbolicLink);
    EXPECT_FALSE(info.isDirectory);
    EXPECT_EQ(3, info.size);
    close(link);
    EXPECT_TRUE(GetPlatformFileInfo(Opened(Path("link"), 0x21), &info));
    EXPECT_FALSE(info.isSymbolicLink);
}

TEST(GetPlatformFileInfo, FailsAndLeavesTheRecordAlone) {
    PlatformFileInfo info = Filled();
    EXPECT_FALSE(GetPlatformFileInfo(0, nullptr));
    EXPECT_FALSE(GetPlatformFileInfo(-1, &info));
    errno = 0;
    EXPECT_FALSE(GetPlatformFileInfo(-2, &info));
    EXPECT_EQ(EBADF, errno);
    EXPECT_EQ(-7, info.size);
    EXPECT_EQ(-7, info.lastModified);
    EXPECT_TRUE(info.isDirectory);
}

// ---- Files around and beyond what 32 bits can count ----

TEST_F(PlatformFile, KnowsAFileOfTwoGibibytesLessOne) {
    directory_.MakeSparseFile("large", 2147483647);
    Opened const file(Path("large"), 0x61);
    PlatformFileInfo info;
    EXPECT_TRUE(GetPlatformFileInfo(file, &info));
    EXPECT_EQ(2147483647, info.size);
    EXPECT_EQ(2147483647, SeekPlatformFile(file, kFromEnd, 0));
    errno = 0;
    EXPECT_EQ(-1, SeekPlatformFile(file, kFromEnd, 1));
    EXPECT_EQ(EOVERFLOW, errno);
    EXPECT_EQ(2147483647, SeekPlatformFile(file, kFromCurrent, 0));
}

TEST_F(PlatformFile, OpensLargerFilesButTellsNeitherTheirSizeNorTheirEnd) {
    for (long long const size : {2147483648, 5368709120}) {
        directory_.MakeSparseFile("large", size);
        Opened const file(Path("large"), 0x61);
        EXPECT_EQ(kFileOk, file.error);
        PlatformFileInfo info = Filled();
        errno = 0;
        EXPECT_FALSE(GetPlatformFileInfo(file, &info));
        EXPECT_EQ(EOVERFLOW, errno);
        EXPECT_EQ(-7, info.size);
        ASSERT_EQ(1, SeekPlatformFile(file, kFromBegin, 1));
        errno = 0;
        EXPECT_EQ(-1, SeekPlatformFile(file, kFromEnd, 0));
        EXPECT_EQ(EOVERFLOW, errno);
        EXPECT_EQ(1, SeekPlatformFile(file, kFromCurrent, 0));
        EXPECT_EQ(std::string(3, '\0'), Read(file, 3));
        EXPECT_TRUE(TruncatePlatformFile(file, 4));
        EXPECT_TRUE(GetPlatformFileInfo(file, &info));
        EXPECT_EQ(4, info.size);
        directory_.Remove("large");
    }
}

TEST_F(PlatformFile, AppendsToALargeFile) {
    directory_.MakeSparseFile("large", 5368709120);
    Opened const file(Path("large"), 0x81);
    EXPECT_EQ(3, WritePlatformFile(file, "abc", 3));
    struct stat64 status = {};
    ASSERT_EQ(0, fstat64(file, &status));
    EXPECT_EQ(5368709123, status.st_size);
    errno = 0;
    EXPECT_EQ(-1, SeekPlatformFile(file, kFromCurrent, 0));
    EXPECT_EQ(EOVERFLOW, errno);
}

// ---- Errors ----

TEST(ErrnoToPlatformFileError, FollowsTheTable) {
    PlatformFileError const table[] = {
        kFileErrorFailed,         // 0
        kFileErrorAccessDenied,   // EPERM
        kFileErrorNotFound,       // ENOENT
        kFileErrorFailed,         // ESRCH
        kFileErrorFailed,         // EINTR
        kFileErrorFailed,         // EIO
        kFileErrorFailed,         // ENXIO
        kFileErrorFailed,         // E2BIG
        kFileErrorFailed,         // ENOEXEC
        kFileErrorFailed,         // EBADF
        kFileErrorFailed,         // ECHILD
        kFileErrorFailed,         // EAGAIN
        kFileErrorNoMemory,       // ENOMEM
        kFileErrorAccessDenied,   // EACCES
        kFileErrorFailed,         // EFAULT
        kFileErrorFailed,         // ENOTBLK
        kFileErrorFailed,         // EBUSY
        kFileErrorExists,         // EEXIST
        kFileErrorFailed,         // EXDEV
        kFileErrorFailed,         // ENODEV
        kFileErrorNotADirectory,  // ENOTDIR
        kFileErrorAccessDenied,   // EISDIR
        kFileErrorFailed,         // EINVAL
        kFileErrorFailed,         // ENFILE
        kFileErrorTooManyOpened,  // EMFILE
        kFileErrorFailed,         // ENOTTY
        kFileErrorInUse,          // ETXTBSY
        kFileErrorFailed,         // EFBIG
        kFileErrorNoSpace,        // ENOSPC
        kFileErrorFailed,         // ESPIPE
        kFileErrorAccessDenied,   // EROFS
        kFileErrorFailed,         // EMLINK, 31
    };
    int number = 0;
    for (PlatformFileError const expected : table) {
        EXPECT_EQ(expected, ErrnoToPlatformFileError(number)) << number;
        ++number;
    }
    ASSERT_EQ(32, number);
}

TEST(ErrnoToPlatformFileError, TakesEveryOtherNumberAsFailed) {
    for (int const number : {-1, -2, INT_MIN, 32, 36, 40, 95, 122, 257, 258, INT_MAX})
        EXPECT_EQ(kFileErrorFailed, ErrnoToPlatformFileError(number)) << number;
}

}  // namespace
