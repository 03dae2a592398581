#include <qorutils/fs/platform_file.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/platform_file_fixture.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"

namespace {

using namespace base;

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

TEST_F(CreatePlatformFileTest, LocksNothingWhenExclusive) {
    directory_.MakeFile("file", "");
    Opened const exclusive(Path("file"), 0x361);  // to read and write alone
    Opened const other(Path("file"), 0x61);
    EXPECT_EQ(kFileOk, exclusive.error);
    EXPECT_EQ(kFileOk, other.error);
    EXPECT_EQ(1, WritePlatformFile(other, "x", 1));
    EXPECT_EQ("x", directory_.Content("file"));
}

TEST_F(CreatePlatformFileTest, TakesABackslashForALetterOfTheName) {
    directory_.MakeFolder("a");
    Opened const file(Path("a\\b"), 0x44);
    EXPECT_EQ(kFileOk, file.error);
    directory_.Remove("a\\b");
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
        std::string const reports = CheckReports([&] {
            Opened const file(Path("file"), c.flags);
            EXPECT_EQ(c.error, file.error) << c.flags;
            EXPECT_EQ(c.created, file.created) << c.flags;
        });
        std::string expected;
        for (int i = 0; i != c.reports; ++i) expected += report;
        EXPECT_EQ(expected, WithoutLines(reports)) << c.flags;
        if (c.created) directory_.Remove("file");
    }
}

TEST_F(CreatePlatformFileTest, LetsTheLaterOfTwoWaysHold) {
    std::string const report = CheckReports([&] {
        Opened const file(Path("old"), 0x4A);
        EXPECT_EQ(kFileOk, file.error);
        EXPECT_TRUE(file.created);
    });
    EXPECT_NE("", report);
    EXPECT_EQ("", directory_.Content("old"));
    directory_.MakeFile("old", "abc");
    CheckReports([&] {
        Opened const file(Path("old"), 0x52);
        EXPECT_EQ(kFileOk, file.error);
        EXPECT_TRUE(file.created);  // create new was asked for
    });
    EXPECT_EQ("", directory_.Content("old"));
}

}  // namespace
