#include <qorutils/fs/system_calls.h>

#include <cerrno>

#include <gtest/gtest.h>

#include "support/temporary_directory.h"

namespace {

// A call that is interrupted so many times, then returns a result.
struct FakeCall {
    int interruptions;
    long long result;
    int error;
    int* calls;

    long long operator()() const {
        bool const isInterrupted = ++*calls <= interruptions;
        errno = isInterrupted ? EINTR : error;
        return isInterrupted ? -1 : result;
    }
};

TEST(RetryOnEintr, RepeatsAnInterruptedCallAtMostAHundredTimes) {
    struct {
        int interruptions;
        int error;
        long long result;
        int calls;
        int errnoAfter;
        long long returned;
    } const cases[] = {
        {0, 0, 7, 1, 0, 7},
        {0, 0, 0, 1, 0, 0},
        {1, 0, 7, 2, 0, 7},
        {99, 0, 7, 100, 0, 7},
        {100, 0, 7, 101, 0, 7},
        {101, 0, 7, 101, EINTR, -1},
        {1000, 0, 7, 101, EINTR, -1},
        // other failures are final
        {0, EIO, -1, 1, EIO, -1},
        {1, EIO, -1, 2, EIO, -1},
        // EINTR tells nothing without a failure
        {0, EINTR, 7, 1, EINTR, 7},
        {0, EINTR, 0, 1, EINTR, 0},
        // a wide result arrives whole
        {1, 0, 5368709120, 2, 0, 5368709120},
    };
    for (auto const& c : cases) {
        int calls = 0;
        EXPECT_EQ(c.returned,
                  base::RetryOnEintr(FakeCall{c.interruptions, c.result, c.error, &calls}));
        EXPECT_EQ(c.errnoAfter, errno);
        EXPECT_EQ(c.calls, calls) << c.interruptions << " interruptions";
    }
}

class SystemCalls : public testing::Test {
  protected:
    SystemCalls() { directory_.MakeFile("file", "0123456789"); }
    ~SystemCalls() override { close(file_); }

    int Open() {
        file_ = base::OpenFile(directory_.Path("file").c_str(), O_RDWR);
        return file_;
    }
    long long Size() const {
        struct stat64 status;
        return fstat64(file_, &status) == 0 ? status.st_size : -1;
    }

  private:
    TemporaryDirectory directory_;
    int file_ = -1;
};

TEST_F(SystemCalls, SeekToTheLastPositionOfAThirtyTwoBitProcess) {
    int const file = Open();
    EXPECT_EQ(4, base::Seek32(file, 4, SEEK_SET));
    EXPECT_EQ(2147483647, base::Seek32(file, 2147483643, SEEK_CUR));
    EXPECT_EQ(2147483647, lseek64(file, 0, SEEK_CUR));
    EXPECT_EQ(7, base::Seek32(file, -3, SEEK_END));
}

TEST_F(SystemCalls, RefuseToSeekFurtherAndStay) {
    int const file = Open();
    ASSERT_EQ(4, base::Seek32(file, 4, SEEK_SET));
    errno = 0;
    EXPECT_EQ(-1, base::Seek32(file, 2147483644, SEEK_CUR));
    EXPECT_EQ(EOVERFLOW, errno);
    EXPECT_EQ(4, lseek64(file, 0, SEEK_CUR));
    errno = 0;
    EXPECT_EQ(-1, base::Seek32(file, 2147483638, SEEK_END));
    EXPECT_EQ(EOVERFLOW, errno);
    EXPECT_EQ(4, lseek64(file, 0, SEEK_CUR));
}

TEST_F(SystemCalls, RefuseToTellAPositionTooHighAndStay) {
    int const file = Open();
    ASSERT_EQ(2147483648, lseek64(file, 2147483648, SEEK_SET));
    errno = 0;
    EXPECT_EQ(-1, base::Seek32(file, 0, SEEK_CUR));
    EXPECT_EQ(EOVERFLOW, errno);
    EXPECT_EQ(2147483648, lseek64(file, 0, SEEK_CUR));
}

TEST_F(SystemCalls, FailToSeekAsTheSystemDoes) {
    int const file = Open();
    errno = 0;
    EXPECT_EQ(-1, base::Seek32(file, -1, SEEK_SET));
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(-1, base::Seek32(-1, 0, SEEK_SET));
    EXPECT_EQ(EBADF, errno);
}

TEST_F(SystemCalls, TruncateToTheLastSizeOfAThirtyTwoBitProcess) {
    int const file = Open();
    EXPECT_EQ(0, base::Truncate32(file, 2147483647));
    EXPECT_EQ(2147483647, Size());
    EXPECT_EQ(0, base::Truncate32(file, 3));
    EXPECT_EQ(3, Size());
    errno = 0;
    EXPECT_EQ(-1, base::Truncate32(file, -1));
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(3, Size());
}

TEST_F(SystemCalls, TellTheStatusBelowTwoGibibytesOnly) {
    struct {
        long long size;
        int result;
    } const cases[] = {{0, 0}, {2147483647, 0}, {2147483648, -1}, {5368709120, -1}};
    int const file = Open();
    for (auto const& c : cases) {
        ASSERT_EQ(0, ftruncate64(file, c.size));
        struct stat64 status;
        errno = 0;
        EXPECT_EQ(c.result, base::Stat32(file, &status)) << c.size;
        EXPECT_EQ(c.result == 0 ? 0 : EOVERFLOW, errno) << c.size;
        if (c.result != 0) continue;
        EXPECT_EQ(c.size, status.st_size);
    }
}

TEST(Stat32, FailsAsTheSystemDoes) {
    struct stat64 status;
    errno = 0;
    EXPECT_EQ(-1, base::Stat32(-1, &status));
    EXPECT_EQ(EBADF, errno);
}

}  // namespace
