#include <qorutils/fs/platform_file.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"

namespace {

using namespace base;

static_assert(sizeof(PlatformFileError) == 4, "");
static_assert(kFileOk == 0 && kFileErrorFailed == -1 && kFileErrorInUse == -2, "");
static_assert(kFileErrorExists == -3 && kFileErrorNotFound == -4, "");
static_assert(kFileErrorAccessDenied == -5 && kFileErrorTooManyOpened == -6, "");
static_assert(kFileErrorNoMemory == -7 && kFileErrorNoSpace == -8, "");
static_assert(kFileErrorNotADirectory == -9, "");
static_assert(kFromBegin == SEEK_SET && kFromCurrent == SEEK_CUR && kFromEnd == SEEK_END, "");
static_assert(kFileOpenExisting == 0x1 && kFileCreateNew == 0x2 && kFileOpenOrCreate == 0x4, "");
static_assert(kFileCreateOrTruncate == 0x8 && kFileTruncateExisting == 0x10, "");
static_assert(kFileRead == 0x20 && kFileWrite == 0x40 && kFileAppend == 0x80, "");
static_assert(kFileExclusiveRead == 0x100 && kFileExclusiveWrite == 0x200, "");
static_assert(kFileDeleteOnClose == 0x2000 && kFileTerminalDevice == 0x10000, "");

class ScopedUmask {
  public:
    explicit ScopedUmask(mode_t mask) : previous_(umask(mask)) {}
    ~ScopedUmask() { umask(previous_); }
    ScopedUmask(ScopedUmask const&) = delete;
    ScopedUmask& operator=(ScopedUmask const&) = delete;

  private:
    mode_t previous_;
};

// What a creating call gave; closes the descriptor.
class Opened {
  public:
    using Create = int (*)(qor_text::CQorStringT<wchar_t> const&, int, bool*, PlatformFileError*);

    Opened(std::wstring const& path, int flags, Create create = CreatePlatformFile) {
        errno = 0;
        file_ = create(path.c_str(), flags, &created, &error);
        errnoAfter = errno;
    }
    Opened(Opened const&) = delete;
    Opened& operator=(Opened const&) = delete;
    ~Opened() {
        if (file_ != -1) close(file_);
    }

    operator int() const { return file_; }

    bool created = true;
    PlatformFileError error = kFileErrorInUse;
    int errnoAfter = 0;

  private:
    int file_;
};

// A directory with a file "old" that holds "0123456789".
class PlatformFile : public testing::Test {
  protected:
    PlatformFile() { directory_.MakeFile("old", "0123456789"); }

    std::wstring Path(std::string const& name) const { return directory_.WidePath(name); }

    TemporaryDirectory directory_;
};

// ---- Creating and opening ----

struct CreateCase {
    int flags;
    PlatformFileError error;
    bool created;
    char const* content;  // afterwards; null: there is no file
};

class CreatePlatformFileTest : public PlatformFile {
  protected:
    void ExpectEach(std::vector<CreateCase> const& cases, bool isThere) {
        for (CreateCase const& c : cases) {
            SCOPED_TRACE(testing::Message() << "flags 0x" << std::hex << c.flags);
            if (isThere) directory_.MakeFile("file", "abc");
            {
                Opened const file(Path("file"), c.flags);
                EXPECT_EQ(c.error, file.error);
                EXPECT_EQ(c.error == kFileOk, file != -1);
                EXPECT_EQ(c.created, file.created);
            }
            ASSERT_EQ(c.content != nullptr, directory_.Has("file"));
            if (c.content == nullptr) continue;
            EXPECT_EQ(c.content, directory_.Content("file"));
            directory_.Remove("file");
        }
    }
};

TEST_F(CreatePlatformFileTest, FollowsTheFlagsForAFileThatExists) {
    ExpectEach(
        {
            {0x21, kFileOk, false, "abc"},
            {0x01, kFileOk, false, "abc"},  // reads without being asked to
            {0x41, kFileOk, false, "abc"},
            {0x61, kFileOk, false, "abc"},
            {0x81, kFileOk, false, "abc"},
            {0x42, kFileErrorExists, false, "abc"},
            {0x43, kFileErrorExists, false, "abc"},
            {0x46, kFileErrorExists, false, "abc"},
            {0x44, kFileOk, false, "abc"},
            {0x344, kFileOk, false, "abc"},  // exclusive only when it creates
            {0x04, kFileOk, false, "abc"},
            {0x48, kFileOk, true, ""},  // on purpose: created, though it was there
            {0x49, kFileOk, true, ""},
            {0x4C, kFileOk, true, ""},
            {0x50, kFileOk, false, ""},
            {0x51, kFileOk, false, ""},
            {0x54, kFileOk, false, ""},
            {0x2041, kFileOk, false, nullptr},
            {0x2048, kFileOk, true, nullptr},
            {0x10021, kFileOk, false, "abc"},
            {0x21 | 1024 | 2048 | 4096 | 16384 | 32768, kFileOk, false, "abc"},
        },
        true);
}

TEST_F(CreatePlatformFileTest, FollowsTheFlagsForAFileThatDoesNotExist) {
    ExpectEach(
        {
            {0x21, kFileErrorNotFound, false, nullptr},
            {0x41, kFileErrorNotFound, false, nullptr},
            {0x81, kFileErrorNotFound, false, nullptr},
            {0x42, kFileOk, true, ""},
            {0x02, kFileOk, true, ""},
            {0x46, kFileOk, true, ""},
            {0x44, kFileOk, true, ""},
            {0x04, kFileOk, true, ""},
            {0x24, kFileOk, true, ""},
            {0x144, kFileOk, true, ""},
            {0x244, kFileOk, true, ""},
            {0x48, kFileOk, true, ""},
            {0x50, kFileErrorNotFound, false, nullptr},
            {0x54, kFileOk, true, ""},
            {0x2042, kFileOk, true, nullptr},
            {0x2044, kFileOk, true, nullptr},
            {0x2041, kFileErrorNotFound, false, nullptr},
        },
        false);
}

TEST_F(CreatePlatformFileTest, RefusesFlagsThatNameNoWayToOpen) {
    for (int const flags : {0x20, 0, 0x40, 0x60, 0x80, 0x300, 0x2000, 0x10000, 0x7C00}) {
        for (char const* name : {"old", "missing"}) {
            Opened const file(Path(name), flags);
            EXPECT_EQ(-1, file) << flags;
            EXPECT_EQ(EOPNOTSUPP, file.errnoAfter) << flags;
            EXPECT_EQ(kFileErrorFailed, file.error) << flags;
            EXPECT_FALSE(file.created) << flags;
        }
    }
}

TEST_F(CreatePlatformFileTest, RefusesTwoDotsAndLeavesCreatedAlone) {
    directory_.MakeFile("a..b", "");
    for (char const* name : {"../x", "x/../old", "a..b", "..", "new..", "..new", "a...b"}) {
        Opened const file(Path(name), 0x44);
        EXPECT_EQ(-1, file) << name;
        EXPECT_EQ(kFileErrorAccessDenied, file.error) << name;
        EXPECT_TRUE(file.created) << name;
        EXPECT_EQ(0, file.errnoAfter) << name;
    }
    EXPECT_EQ(-1, CreatePlatformFile(Path("a..b").c_str(), 0x21, nullptr, nullptr));
    EXPECT_FALSE(directory_.Has("new.."));
    EXPECT_FALSE(directory_.Has("..new"));
}

TEST_F(CreatePlatformFileTest, TakesDotsThatAreApart) {
    directory_.MakeFile("a.b.c", "");
    EXPECT_NE(-1, Opened(Path("./a.b.c"), 0x21));
}

TEST_F(CreatePlatformFileTest, IsUnsafeWithTwoDots) {
    directory_.MakeFile("a..b", "");
    EXPECT_NE(-1, Opened(Path("a..b"), 0x21, CreatePlatformFileUnsafe));
    EXPECT_NE(-1, Opened(Path("../") + Path("old").substr(5), 0x21, CreatePlatformFileUnsafe));
}

TEST_F(CreatePlatformFileTest, TakesNullForWhatNobodyAsksFor) {
    for (int const flags : {0x20, 0x21, 0x44, 0x48}) {
        int const file = CreatePlatformFile(Path("old").c_str(), flags, nullptr, nullptr);
        EXPECT_EQ(flags != 0x20, file != -1);
        if (file != -1) close(file);
    }
    EXPECT_EQ(-1, CreatePlatformFile(Path("missing").c_str(), 0x21, nullptr, nullptr));
}

// Missing for the first open and there for the second, as a file that another process creates in
// between.
TEST_F(CreatePlatformFileTest, DoesNotOpenWhatAnotherCreatedMeanwhileWhenExclusive) {
    directory_.MakeLink("link", "target");
    for (int const flags : {0x144, 0x244, 0x344}) {
        Opened const file(Path("link"), flags);
        EXPECT_EQ(-1, file);
        EXPECT_EQ(kFileErrorExists, file.error);
        EXPECT_FALSE(file.created);
    }
    EXPECT_FALSE(directory_.Has("target"));
    Opened const file(Path("link"), 0x44);
    EXPECT_EQ(kFileOk, file.error);
    EXPECT_TRUE(file.created);
    directory_.Remove("target");
}

TEST_F(CreatePlatformFileTest, CreatesForTheOwnerOnlyLessTheUmask) {
    struct {
        mode_t mask;
        mode_t mode;
    } const cases[] = {{0, 0600}, {022, 0600}, {0200, 0400}, {0400, 0200}};
    for (auto const& c : cases) {
        for (int const flags : {0x42, 0x44, 0x48}) {
            {
                ScopedUmask const mask(c.mask);
                EXPECT_NE(-1, Opened(Path("file"), flags));
            }
            struct stat64 status = {};
            EXPECT_EQ(0, stat64(directory_.Path("file").c_str(), &status));
            EXPECT_EQ(c.mode, status.st_mode & 07777);
            directory_.Remove("file");
        }
    }
}

TEST_F(CreatePlatformFileTest, OpensForReadingUnlessToldOtherwise) {
    struct {
        int flags;
        int status;
    } const cases[] = {
        {0x01, O_RDONLY},
        {0x21, O_RDONLY},
        {0x41, O_WRONLY},
        {0x61, O_RDWR},
        {0x81, O_WRONLY | O_APPEND},
        {0xC1, O_WRONLY | O_APPEND},
        {0xA1, O_RDWR | O_APPEND},
        {0xE1, O_RDWR | O_APPEND},
        {0x10021, O_RDONLY | O_NONBLOCK},
        {0x10061, O_RDWR | O_NONBLOCK},
    };
    for (auto const& c : cases) {
        Opened const file(Path("old"), c.flags);
        EXPECT_EQ(c.status, fcntl(file, F_GETFL) & (O_ACCMODE | O_APPEND | O_NONBLOCK)) << c.flags;
        EXPECT_EQ(0, fcntl(file, F_GETFD) & FD_CLOEXEC) << c.flags;
    }
}

TEST_F(CreatePlatformFileTest, TellsWhyItFailed) {
    directory_.MakeFolder("folder");
    directory_.MakeLink("loop", "loop");
    struct {
        std::string name;
        int flags;
        PlatformFileError error;
        int errnoAfter;
    } const cases[] = {
        {"missing", 0x21, kFileErrorNotFound, ENOENT},
        {"missing/x", 0x44, kFileErrorNotFound, ENOENT},
        {"old", 0x42, kFileErrorExists, EEXIST},
        {"old/x", 0x44, kFileErrorNotADirectory, ENOTDIR},
        {"folder", 0x41, kFileErrorAccessDenied, EISDIR},
        {"loop", 0x21, kFileErrorFailed, ELOOP},
        {std::string(300, 'n'), 0x44, kFileErrorFailed, ENAMETOOLONG},
    };
    for (auto const& c : cases) {
        Opened const file(Path(c.name), c.flags);
        EXPECT_EQ(-1, file) << c.name;
        EXPECT_EQ(c.error, file.error) << c.name;
        EXPECT_EQ(c.errnoAfter, file.errnoAfter) << c.name;
        EXPECT_FALSE(file.created) << c.name;
    }
}

TEST_F(CreatePlatformFileTest, FailsForANameThatTheLocaleCannotEncode) {
    std::wstring const name = Path("") + L"\u00E9";
    ScopedLocale const plain("C");
    for (std::wstring const& path : {name, std::wstring()}) {
        for (int const flags : {0x21, 0x42, 0x44, 0x48}) {
            Opened const file(path, flags);
            EXPECT_EQ(-1, file);
            EXPECT_EQ(kFileErrorNotFound, file.error);
            EXPECT_FALSE(file.created);
        }
    }
}

TEST_F(CreatePlatformFileTest, NarrowsNamesAsTheLocaleSays) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_NE(-1, Opened(Path("") + L"\u00E9\u4E2D\U0001F600", 0x42));
    directory_.Remove("\xC3\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80");
}

TEST_F(CreatePlatformFileTest, KeepsADeletedFileUsable) {
    Opened const file(Path("file"), 0x2062);
    EXPECT_FALSE(directory_.Has("file"));
    EXPECT_EQ(3, WritePlatformFile(file, "abc", 3));
    char read[3] = {};
    EXPECT_EQ(3, ReadPlatformFile(file, read, 3));
    EXPECT_EQ("abc", std::string(read, 3));
}

// The digits of line numbers replaced by one "#" each.
std::string WithoutLines(std::string const& reports) {
    std::string result;
    for (char const c : reports)
        if (!std::isdigit(static_cast<unsigned char>(c)))
            result += c;
        else if (result.back() != '#')
            result += '#';
    return result;
}

TEST_F(CreatePlatformFileTest, ReportsContradictionsAndGoesOn) {
    std::string const report = "DBGCHK  qorutils/fs/platform_file @ #\n";
    struct {
        int flags;
        int reports;
        PlatformFileError error;  // for a file that does not exist
        bool created;
    } const cases[] = {
        {0x42, 0, kFileOk, true},
        {0x48, 0, kFileOk, true},
        {0x4A, 1, kFileOk, true},              // create or truncate holds
        {0x50, 0, kFileErrorNotFound, false},  //
        {0x52, 1, kFileErrorNotFound, false},  // truncate existing holds
        {0x58, 1, kFileErrorNotFound, false},  //
        {0x5A, 2, kFileErrorNotFound, false},  //
        {0x30, 1, kFileErrorNotFound, false},  // without write access
        {0x90, 1, kFileErrorNotFound, false},  // append is not enough
        {0x3A, 3, kFileErrorNotFound, false},  //
    };
    for (auto const& c : cases) {
        testing::internal::CaptureStderr();
        {
            Opened const file(Path("file"), c.flags);
            EXPECT_EQ(c.error, file.error) << c.flags;
            EXPECT_EQ(c.created, file.created) << c.flags;
        }
        std::string expected;
        for (int i = 0; i != c.reports; ++i) expected += report;
        EXPECT_EQ(expected, WithoutLines(testing::internal::GetCapturedStderr())) << c.flags;
        if (c.created) directory_.Remove("file");
    }
}

TEST_F(CreatePlatformFileTest, LetsTheLaterOfTwoWaysHold) {
    testing::internal::CaptureStderr();
    {
        Opened const file(Path("old"), 0x4A);
        EXPECT_EQ(kFileOk, file.error);
        EXPECT_TRUE(file.created);
    }
    EXPECT_EQ("", directory_.Content("old"));
    directory_.MakeFile("old", "abc");
    {
        Opened const file(Path("old"), 0x52);
        EXPECT_EQ(kFileOk, file.error);
        EXPECT_TRUE(file.created);  // create new was asked for
    }
    EXPECT_EQ("", directory_.Content("old"));
    EXPECT_NE("", testing::internal::GetCapturedStderr());
}

// ---- Reading ----

std::string Read(int file, unsigned int size) {
    GuardedArray<char> bytes(size);
    int const n = ReadPlatformFile(file, bytes.data(), size);
    return n < 0 ? "failed" : std::string(bytes.data(), static_cast<std::size_t>(n));
}

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
int NextDescriptor() {
    int const file = open("/", O_RDONLY);
    close(file);
    return file;
}

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

// ---- Status ----

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
