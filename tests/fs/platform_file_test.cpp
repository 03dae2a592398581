#include <qorutils/fs/platform_file.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "support/descriptors.h"
#include "support/guard_page.h"
#include "support/platform_file_fixture.h"
#include "support/temporary_directory.h"

namespace {

using namespace base;

static_assert(kFromBegin == SEEK_SET && kFromCurrent == SEEK_CUR && kFromEnd == SEEK_END, "");

// ---- Reading ----

TEST_F(PlatformFile, ReadsTheSameLeadingBytesEachTime) {
    Opened const file(Path("old"), 0x21);
    EXPECT_EQ("0123", Read(file, 4));
    EXPECT_EQ("0123", Read(file, 4));
    EXPECT_EQ("0123456789", Read(file, 10));
}

TEST_F(PlatformFile, ReadsFromTheStartAndLeavesThePosition) {
    Opened const file(Path("old"), 0x21);
    ASSERT_EQ(7, SeekPlatformFile(file, kFromBegin, 7));
    EXPECT_EQ("01", Read(file, 2));
    EXPECT_EQ(7, SeekPlatformFile(file, kFromCurrent, 0));
}

TEST_F(PlatformFile, ReadsNoMoreThanThereIs) {
    EXPECT_EQ("0123456789", Read(Opened(Path("old"), 0x21), 100));
    directory_.MakeFile("empty", "");
    EXPECT_EQ("", Read(Opened(Path("empty"), 0x21), 100));
    EXPECT_EQ("", Read(Opened(Path("old"), 0x21), 0));
}

TEST_F(PlatformFile, FailsToReadWhatItCannot) {
    char byte = 'x';
    errno = 0;
    EXPECT_EQ(-1, ReadPlatformFile(-1, &byte, 1));
    EXPECT_EQ(-1, ReadPlatformFile(INT_MIN, &byte, 1));
    Opened const file(Path("old"), 0x61);
    EXPECT_EQ(-1, ReadPlatformFile(file, &byte, 0x80000000u));
    EXPECT_EQ(-1, ReadPlatformFile(file, &byte, 0xFFFFFFFFu));
    EXPECT_EQ(0, errno);  // the system was not asked
    EXPECT_EQ(-1, ReadPlatformFile(Opened(Path("old"), 0x41), &byte, 1));
    EXPECT_EQ(EBADF, errno);
    EXPECT_EQ(-1, ReadPlatformFile(Opened(Path(""), 0x21), &byte, 1));
    EXPECT_EQ(EISDIR, errno);
    EXPECT_EQ('x', byte);
}

// A pipe that refuses instead of waiting.
struct Pipe {
    Pipe() { EXPECT_EQ(0, pipe2(ends, O_NONBLOCK)); }
    Pipe(Pipe const&) = delete;
    Pipe& operator=(Pipe const&) = delete;
    ~Pipe() {
        close(ends[0]);
        close(ends[1]);
    }
    int ends[2] = {-1, -1};
};

TEST(ReadPlatformFile, CannotReadAPipe) {
    Pipe const pipe;
    ASSERT_EQ(1, WritePlatformFile(pipe.ends[1], "x", 1));
    errno = 0;
    EXPECT_EQ("failed", Read(pipe.ends[0], 1));
    EXPECT_EQ(ESPIPE, errno);
}

// ---- Writing ----

TEST_F(PlatformFile, WritesAtThePosition) {
    Opened const file(Path("old"), 0x41);
    EXPECT_EQ(2, WritePlatformFile(file, "ab", 2));
    ASSERT_EQ(5, SeekPlatformFile(file, kFromBegin, 5));
    EXPECT_EQ(1, WritePlatformFile(file, "c", 1));
    EXPECT_EQ(1, WritePlatformFile(file, "d", 1));
    EXPECT_EQ(0, WritePlatformFile(file, "e", 0));
    EXPECT_EQ("ab234cd789", directory_.Content("old"));
}

TEST_F(PlatformFile, WritesAtTheEndWhenAppending) {
    Opened const file(Path("old"), 0x81);
    ASSERT_EQ(0, SeekPlatformFile(file, kFromBegin, 0));
    EXPECT_EQ(2, WritePlatformFile(file, "ab", 2));
    EXPECT_EQ("0123456789ab", directory_.Content("old"));
}

TEST_F(PlatformFile, WritesBytesOfAnyValueAndNumber) {
    std::string bytes(1000003, '\0');
    for (std::size_t i = 0; i != bytes.size(); ++i) bytes[i] = static_cast<char>(i % 251);
    GuardedArray<char> const guarded(bytes.data(), bytes.size());
    {
        Opened const file(Path("file"), 0x62);
        EXPECT_EQ(1000003, WritePlatformFile(file, guarded.data(), 1000003));
        EXPECT_TRUE(bytes == Read(file, 1000003));
    }
    EXPECT_TRUE(bytes == directory_.Content("file"));
    directory_.Remove("file");
}

TEST_F(PlatformFile, FailsToWriteWhatItCannot) {
    errno = 0;
    EXPECT_EQ(-1, WritePlatformFile(-1, "x", 1));
    Opened const file(Path("old"), 0x61);
    EXPECT_EQ(-1, WritePlatformFile(file, "x", 0x80000000u));
    EXPECT_EQ(-1, WritePlatformFile(file, "x", 0xFFFFFFFFu));
    EXPECT_EQ(0, errno);  // the system was not asked
    EXPECT_EQ(-1, WritePlatformFile(Opened(Path("old"), 0x21), "x", 1));
    EXPECT_EQ(EBADF, errno);
    EXPECT_EQ("0123456789", directory_.Content("old"));
}

TEST(WritePlatformFile, TellsHowMuchWentIntoAFullPipeAndFailsOnlyThen) {
    Pipe const pipe;
    int const room = fcntl(pipe.ends[1], F_GETPIPE_SZ);
    ASSERT_GT(room, 0);
    std::string const bytes(static_cast<std::size_t>(room) + 1, 'x');
    auto const size = static_cast<unsigned int>(bytes.size());
    EXPECT_EQ(room, WritePlatformFile(pipe.ends[1], bytes.data(), size));
    errno = 0;
    EXPECT_EQ(-1, WritePlatformFile(pipe.ends[1], bytes.data(), 1));
    EXPECT_EQ(EAGAIN, errno);
}

// ---- Position and size ----

TEST_F(PlatformFile, SeeksFromBeginCurrentAndEnd) {
    Opened const file(Path("old"), 0x21);
    EXPECT_EQ(3, SeekPlatformFile(file, kFromBegin, 3));
    EXPECT_EQ(5, SeekPlatformFile(file, kFromCurrent, 2));
    EXPECT_EQ(10, SeekPlatformFile(file, kFromEnd, 0));
    EXPECT_EQ(14, SeekPlatformFile(file, kFromEnd, 4));
    EXPECT_EQ(2147483647, SeekPlatformFile(file, kFromBegin, 2147483647));
}

TEST_F(PlatformFile, RefusesToSeekBackwardsWithoutAskingTheSystem) {
    Opened const file(Path("old"), 0x21);
    ASSERT_EQ(3, SeekPlatformFile(file, kFromBegin, 3));
    errno = 0;
    for (auto const whence : {kFromBegin, kFromCurrent, kFromEnd}) {
        EXPECT_EQ(-1, SeekPlatformFile(file, whence, -1));
        EXPECT_EQ(-1, SeekPlatformFile(file, whence, LLONG_MIN));
        EXPECT_EQ(-1, SeekPlatformFile(-1, whence, 0));
    }
    EXPECT_EQ(0, errno);
    EXPECT_EQ(3, SeekPlatformFile(file, kFromCurrent, 0));
}

TEST_F(PlatformFile, SeeksByTheLowThirtyTwoBitsAsASignedNumber) {
    Opened const file(Path("old"), 0x21);
    EXPECT_EQ(3, SeekPlatformFile(file, kFromBegin, 0x100000003));
    EXPECT_EQ(2, SeekPlatformFile(file, kFromCurrent, 0xFFFFFFFF));
    EXPECT_EQ(8, SeekPlatformFile(file, kFromEnd, 0x7FFFFFFFFFFFFFFE));
    errno = 0;
    EXPECT_EQ(-1, SeekPlatformFile(file, kFromBegin, 0x80000000));
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(8, SeekPlatformFile(file, kFromCurrent, 0));
}

TEST_F(PlatformFile, DoesNotSeekToTwoGibibytes) {
    Opened const file(Path("old"), 0x21);
    ASSERT_EQ(2147483640, SeekPlatformFile(file, kFromBegin, 2147483640));
    errno = 0;
    EXPECT_EQ(-1, SeekPlatformFile(file, kFromCurrent, 8));
    EXPECT_EQ(EOVERFLOW, errno);
    EXPECT_EQ(2147483640, SeekPlatformFile(file, kFromCurrent, 0));
    EXPECT_EQ(2147483647, SeekPlatformFile(file, kFromCurrent, 7));
}

TEST(SeekPlatformFile, FailsForWhatHasNoPosition) {
    Pipe const pipe;
    errno = 0;
    EXPECT_EQ(-1, SeekPlatformFile(pipe.ends[0], kFromBegin, 0));
    EXPECT_EQ(ESPIPE, errno);
}

TEST_F(PlatformFile, TruncatesAndLengthens) {
    Opened const file(Path("old"), 0x61);
    EXPECT_TRUE(TruncatePlatformFile(file, 12));
    EXPECT_EQ(std::string("0123456789\0\0", 12), directory_.Content("old"));
    EXPECT_TRUE(TruncatePlatformFile(file, 0x100000004));  // the low 32 bits
    EXPECT_EQ("0123", directory_.Content("old"));
    EXPECT_TRUE(TruncatePlatformFile(file, 0));
    EXPECT_EQ("", directory_.Content("old"));
}

TEST_F(PlatformFile, FailsToTruncateToNegativeLengths) {
    Opened const file(Path("old"), 0x61);
    for (long long const length : {-1LL, 0x80000000LL, 0xFFFFFFFFLL}) {
        errno = 0;
        EXPECT_FALSE(TruncatePlatformFile(file, length)) << length;
        EXPECT_EQ(EINVAL, errno) << length;
    }
    EXPECT_TRUE(TruncatePlatformFile(file, -0x100000000LL + 5));
    EXPECT_EQ("01234", directory_.Content("old"));
}

TEST_F(PlatformFile, FailsToTruncateWhatItCannotWrite) {
    EXPECT_FALSE(TruncatePlatformFile(Opened(Path("old"), 0x21), 0));
    errno = 0;
    EXPECT_FALSE(TruncatePlatformFile(-1, 0));
    EXPECT_EQ(0, errno);
    EXPECT_EQ("0123456789", directory_.Content("old"));
}

// ---- Flushing, closing, duplicating ----

TEST_F(PlatformFile, FlushesFilesOnly) {
    EXPECT_TRUE(FlushPlatformFile(Opened(Path("old"), 0x41)));
    Pipe const pipe;
    EXPECT_FALSE(FlushPlatformFile(pipe.ends[1]));
    errno = 0;
    EXPECT_FALSE(FlushPlatformFile(-1));
    EXPECT_EQ(EBADF, errno);
}

TEST_F(PlatformFile, ClosesOnce) {
    int const file = CreatePlatformFile(Path("old").c_str(), 0x21, nullptr, nullptr);
    EXPECT_TRUE(ClosePlatformFile(file));
    errno = 0;
    EXPECT_FALSE(ClosePlatformFile(file));
    EXPECT_EQ(EBADF, errno);
    errno = EINTR;  // of some earlier call
    EXPECT_FALSE(ClosePlatformFile(-1));
}

TEST_F(PlatformFile, DuplicatesShareThePosition) {
    Opened const file(Path("old"), 0x21);
    PlatformFileError error = kFileErrorInUse;
    int const copy = DuplicatePlatformFileHandle(file, &error);
    EXPECT_EQ(kFileOk, error);
    EXPECT_NE(file, copy);
    EXPECT_EQ(4, SeekPlatformFile(file, kFromBegin, 4));
    EXPECT_EQ(4, SeekPlatformFile(copy, kFromCurrent, 0));
    EXPECT_TRUE(ClosePlatformFile(copy));
    EXPECT_EQ("01", Read(file, 2));
}

TEST(DuplicatePlatformFileHandle, FailsWithOneErrorForAll) {
    PlatformFileError error = kFileOk;
    EXPECT_EQ(-1, DuplicatePlatformFileHandle(-1, &error));
    EXPECT_EQ(kFileErrorFailed, error);
    EXPECT_EQ(-1, DuplicatePlatformFileHandle(-1, nullptr));
}

// The descriptor that the next open file will have.
// Lets the process have no more descriptors than it has.
class NoDescriptors {
  public:
    NoDescriptors() {
        getrlimit(RLIMIT_NOFILE, &previous_);
        rlimit const none = {static_cast<rlim_t>(NextDescriptor()), previous_.rlim_max};
        isSet_ = setrlimit(RLIMIT_NOFILE, &none) == 0;
    }
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &previous_); }
    NoDescriptors(NoDescriptors const&) = delete;
    NoDescriptors& operator=(NoDescriptors const&) = delete;

    bool isSet() const { return isSet_; }

  private:
    rlimit previous_;
    bool isSet_;
};

TEST_F(PlatformFile, TellsThatTooManyFilesAreOpenExceptWhenDuplicating) {
    Opened const open(Path("old"), 0x21);
    NoDescriptors const limit;
    ASSERT_TRUE(limit.isSet());
    for (int const flags : {0x21, 0x42, 0x44, 0x48}) {
        Opened const file(Path("new"), flags);
        EXPECT_EQ(-1, file);
        EXPECT_EQ(kFileErrorTooManyOpened, file.error);
        EXPECT_EQ(EMFILE, file.errnoAfter);
        EXPECT_FALSE(file.created);
    }
    PlatformFileError error = kFileOk;
    EXPECT_EQ(-1, DuplicatePlatformFileHandle(open, &error));
    EXPECT_EQ(kFileErrorFailed, error);
}

// ---- Times ----

TEST_F(PlatformFile, TouchSetsWholeSeconds) {
    struct {
        long long access, modification;
        long long accessAfter, modificationAfter;
    } const cases[] = {
        {1000000000, 1709622480, 1000000000, 1709622480},
        {0, 1, 0, 1},
        {2147483647, 0, 2147483647, 0},
        {0x100000005, 0x300000006, 5, 6},  // the low 32 bits, wherever long has more
    };
    Opened const file(Path("old"), 0x21);
    for (auto const& c : cases) {
        EXPECT_TRUE(TouchPlatformFile(file, static_cast<long>(c.access),
                                      static_cast<long>(c.modification)));
        struct stat64 status = {};
        ASSERT_EQ(0, fstat64(file, &status));
        EXPECT_EQ(c.accessAfter, status.st_atim.tv_sec);
        EXPECT_EQ(c.modificationAfter, status.st_mtim.tv_sec);
        EXPECT_EQ(0, status.st_atim.tv_nsec);
        EXPECT_EQ(0, status.st_mtim.tv_nsec);
    }
}

TEST(TouchPlatformFile, FailsWithoutAFile) {
    errno = 0;
    EXPECT_FALSE(TouchPlatformFile(-1, 0, 0));
    EXPECT_FALSE(TouchPlatformFile(INT_MIN, 0, 0));
    EXPECT_EQ(0, errno);
    EXPECT_FALSE(TouchPlatformFile(NextDescriptor(), 0, 0));
    EXPECT_EQ(EBADF, errno);
}
}  // namespace
