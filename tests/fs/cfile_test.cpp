#include <qorutils/fs/cfile.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/cfile_fixture.h"
#include "support/check_reports.h"
#include "support/descriptors.h"
#include "support/guard_page.h"

namespace {

using namespace base;

static_assert(sizeof(CFile) == sizeof(int), "");
static_assert(!std::is_polymorphic<CFile>::value, "");
static_assert(std::is_trivially_destructible<CFile>::value, "");

// The descriptor that the next open file will have.
bool IsOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) != -1;
}

// A file that the test opens and that is closed behind it.
class OpenedCFile : public CFile {
  public:
    OpenedCFile(std::wstring const& path, int flags) {
        EXPECT_TRUE(Open(path.c_str(), flags, nullptr, nullptr)) << errno;
    }
    OpenedCFile(OpenedCFile const&) = delete;
    OpenedCFile& operator=(OpenedCFile const&) = delete;
    ~OpenedCFile() { Close(); }
};

// ---- Opening and closing ----

TEST_F(CFileTest, OpensForReadingOnlyWhatExists) {
    CFile file;
    EXPECT_FALSE(file.OpenForReading(Path("new").c_str()));
    EXPECT_FALSE(directory_.Has("new"));
    ASSERT_TRUE(file.OpenForReading(Path("old").c_str()));
    char first = 0;
    EXPECT_EQ(1u, file.Read(&first, 1));
    EXPECT_EQ('0', first);
    EXPECT_EQ(With("Write", EBADF), Failure([&] { file.Write("x", 1); }));
    file.Close();
}

TEST_F(CFileTest, OpensForWritingWhatItCreatesOrEmpties) {
    for (char const* const name : {"old", "new"}) {
        CFile file;
        ASSERT_TRUE(file.OpenForWriting(Path(name).c_str()));
        EXPECT_EQ(0u, file.GetLength());
        EXPECT_EQ(3u, file.Write("abc", 3));
        char first = 0;
        EXPECT_EQ(With("Read", EBADF), Failure([&] { file.Read(&first, 1); }));
        file.Close();
        EXPECT_EQ("abc", directory_.Content(name));
    }
    directory_.Remove("new");
}

TEST_F(CFileTest, OpensWithTheFlagsAndResultsOfCreatePlatformFile) {
    CFile file;
    bool created = false;
    PlatformFileError error = kFileErrorInUse;
    ASSERT_TRUE(file.Open(Path("new").c_str(), kFileCreateNew | kFileWrite, &created, &error));
    EXPECT_TRUE(created);
    EXPECT_EQ(kFileOk, error);
    file.Close();
    EXPECT_FALSE(file.Open(Path("new").c_str(), kFileCreateNew | kFileWrite, &created, &error));
    EXPECT_FALSE(created);
    EXPECT_EQ(kFileErrorExists, error);
    directory_.Remove("new");
}

TEST_F(CFileTest, RefusesTwoDotsInANameAndLeavesCreatedAlone) {
    directory_.MakeFile("a..b", "");
    CFile file;
    bool created = true;
    PlatformFileError error = kFileOk;
    EXPECT_FALSE(file.Open(Path("a..b").c_str(), kFileOpenExisting, &created, &error));
    EXPECT_EQ(kFileErrorAccessDenied, error);
    EXPECT_TRUE(created);
    EXPECT_FALSE(file.OpenForReading(Path("a..b").c_str()));
    EXPECT_FALSE(file.OpenForWriting(Path("a..b").c_str()));
}

TEST_F(CFileTest, OnPurposeForgetsTheOpenFileWhenItOpensAnother) {
    int const descriptor = NextDescriptor();
    CFile file;
    ASSERT_TRUE(file.OpenForReading(Path("old").c_str()));
    EXPECT_FALSE(file.OpenForReading(Path("missing").c_str()));
    EXPECT_TRUE(IsOpen(descriptor));
    EXPECT_EQ(ULLONG_MAX, file.GetPosition());
    file.Close();
    EXPECT_TRUE(IsOpen(descriptor));
    close(descriptor);
}

TEST_F(CFileTest, OnPurposeIsNotClosedByItsDestructor) {
    int const descriptor = NextDescriptor();
    {
        CFile file;
        ASSERT_TRUE(file.OpenForReading(Path("old").c_str()));
    }
    EXPECT_TRUE(IsOpen(descriptor));
    close(descriptor);
}

TEST_F(CFileTest, ClosesOnceAndThenDoesNothing) {
    int const descriptor = NextDescriptor();
    CFile file;
    file.Close();
    ASSERT_TRUE(file.OpenForReading(Path("old").c_str()));
    ASSERT_TRUE(IsOpen(descriptor));
    file.Close();
    EXPECT_FALSE(IsOpen(descriptor));
    file.Close();
}

TEST_F(CFileTest, IsClosedAlsoWhenClosingThrew) {
    int const descriptor = NextDescriptor();
    CFile file;
    ASSERT_TRUE(file.OpenForReading(Path("old").c_str()));
    ASSERT_EQ(0, close(descriptor));
    EXPECT_EQ(With("CloseHandle", EBADF), Failure([&] { file.Close(); }));
    file.Close();
}

// ---- Reading and writing ----

TEST_F(CFileTest, ReadsAlwaysFromTheStartAndLeavesThePosition) {
    OpenedCFile file(Path("old"), 0x21);
    EXPECT_EQ(7, file.Seek(7, 0));
    for (int time = 0; time < 2; ++time) {
        GuardedArray<char> bytes(4);
        EXPECT_EQ(4u, file.Read(bytes.data(), 4));
        EXPECT_EQ("0123", std::string(bytes.data(), 4));
    }
    EXPECT_EQ(7u, file.GetPosition());
}

TEST_F(CFileTest, ReadsAWholeFileByItsLength) {
    OpenedCFile file(Path("old"), 0x21);
    std::string content(file.GetLength(), '\0');
    EXPECT_EQ(10u, file.Read(&content[0], 10));
    EXPECT_EQ("0123456789", content);
}

TEST_F(CFileTest, ThrowsWhenTheFileIsShorterThanWhatIsRead) {
    OpenedCFile file(Path("old"), 0x21);
    char bytes[12] = "...........";
    errno = 71;  // nothing fails that would change it
    EXPECT_EQ("Read: 71", Failure([&] { file.Read(bytes, 11); }));
    EXPECT_STREQ("0123456789.", bytes);
}

TEST_F(CFileTest, ReadsAndWritesNothingOfAnOpenFile) {
    OpenedCFile file(Path("old"), 0x61);
    EXPECT_EQ(0u, file.Read(nullptr, 0));
    EXPECT_EQ(0u, file.Write(nullptr, 0));
    EXPECT_EQ("0123456789", directory_.Content("old"));
}

TEST_F(CFileTest, ThrowsForCountsThatAreNoSignedNumber) {
    OpenedCFile file(Path("old"), 0x61);
    char byte = 'x';
    for (unsigned int const count : {0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ("Read", FailedOperation([&] { file.Read(&byte, count); })) << count;
        EXPECT_EQ("Write", FailedOperation([&] { file.Write(&byte, count); })) << count;
    }
    EXPECT_EQ("0123456789", directory_.Content("old"));
}

TEST_F(CFileTest, WritesAtThePosition) {
    OpenedCFile file(Path("old"), 0x61);
    EXPECT_EQ(2u, file.Write("ab", 2));
    EXPECT_EQ(5, file.Seek(5, 0));
    EXPECT_EQ(2u, file.Write("cd", 2));
    EXPECT_EQ(7u, file.GetPosition());
    EXPECT_EQ("ab234cd789", directory_.Content("old"));
}

TEST_F(CFileTest, AppendsWhereverThePositionIs) {
    OpenedCFile file(Path("old"), 0x81);
    EXPECT_EQ(0, file.SeekToBegin());
    EXPECT_EQ(2u, file.Write("ab", 2));
    EXPECT_EQ("0123456789ab", directory_.Content("old"));
}

TEST(CFile, ThrowsWhenTheDiskIsFull) {
    OpenedCFile file(L"/dev/full", 0x41);
    EXPECT_EQ(With("Write", ENOSPC), Failure([&] { file.Write("x", 1); }));
}

TEST(CFile, ReportsReadsAndWritesWithoutAFileAndThenThrows) {
    char byte = 0;
    CFile file;
    std::string const start = "DBGCHK  qorutils/fs/platform_file @ ";
    for (unsigned int const count : {0u, 1u}) {
        std::string const read = CheckReports(
            [&] { EXPECT_EQ("Read", FailedOperation([&] { file.Read(&byte, count); })); });
        std::string const written = CheckReports(
            [&] { EXPECT_EQ("Write", FailedOperation([&] { file.Write(&byte, count); })); });
        for (std::string const& report : {read, written}) {
            EXPECT_EQ(start, report.substr(0, start.size()));
            EXPECT_EQ(report.size() - 1, report.find_first_not_of("0123456789", start.size()));
            EXPECT_EQ(report.size() - 1, report.find('\n'));
        }
        EXPECT_NE(read, written);  // the lines
    }
}

TEST_F(CFileTest, ReportsNothingWithAFile) {
    OpenedCFile file(Path("old"), 0x61);
    EXPECT_EQ("", CheckReports([&] {
                  char bytes[20];
                  file.Read(bytes, 10);
                  EXPECT_EQ("Read", FailedOperation([&] { file.Read(bytes, 20); }));
                  file.Write("x", 1);
              }));
}

TEST_F(CFileTest, FlushesFilesOnly) {
    OpenedCFile file(Path("old"), 0x41);
    EXPECT_TRUE(file.Flush());
    OpenedCFile device(L"/dev/null", 0x41);
    EXPECT_EQ(With("FlushFileBuffers", EINVAL), Failure([&] { device.Flush(); }));
    EXPECT_EQ(With("FlushFileBuffers", EBADF), Failure([&] { CFile().Flush(); }));
}

// ---- Position and length ----

TEST_F(CFileTest, SeeksFromBeginCurrentAndEndAlsoBackwards) {
    OpenedCFile file(Path("old"), 0x21);
    EXPECT_EQ(6, file.Seek(6, 0));
    EXPECT_EQ(4, file.Seek(-2, 1));
    EXPECT_EQ(5, file.Seek(1, 1));
    EXPECT_EQ(7, file.Seek(-3, 2));
    EXPECT_EQ(12, file.Seek(2, 2));
    EXPECT_EQ(12u, file.GetPosition());
    EXPECT_EQ(10, file.SeekToEnd());
    EXPECT_EQ(0, file.SeekToBegin());
    EXPECT_EQ(0u, file.GetPosition());
}

TEST_F(CFileTest, SeeksBeyondFourGibibytes) {
    OpenedCFile file(Path("old"), 0x21);
    EXPECT_EQ(0x200000001, file.Seek(0x200000001, 0));
    EXPECT_EQ(0x200000001u, file.GetPosition());
    EXPECT_EQ(0x200000000, file.Seek(-1, 1));
}

TEST_F(CFileTest, WritesBeyondFourGibibytes) {
    OpenedCFile file(Path("old"), 0x61);
    EXPECT_EQ(0x100000000, file.Seek(0x100000000, 0));
    EXPECT_EQ(2u, file.Write("ab", 2));
    EXPECT_EQ(0x100000002u, file.GetPosition());
    EXPECT_EQ(0x100000002, file.SeekToEnd());
    EXPECT_EQ(0x100000002, CFile::GetLength(Path("old").c_str()));
}

TEST_F(CFileTest, StaysWhereItIsWhenItCannotSeek) {
    OpenedCFile file(Path("old"), 0x21);
    EXPECT_EQ(3, file.Seek(3, 0));
    errno = 0;
    EXPECT_EQ(-1, file.Seek(-1, 0));
    EXPECT_EQ(EINVAL, errno);
    EXPECT_EQ(-1, file.Seek(-4, 1));
    EXPECT_EQ(-1, file.Seek(-11, 2));
    EXPECT_EQ(-1, file.Seek(0, 99));
    EXPECT_EQ(3u, file.GetPosition());
}

TEST(CFile, HasNoPositionAndNoLengthWithoutAFile) {
    CFile file;
    errno = 0;
    EXPECT_EQ(-1, file.Seek(0, 0));
    EXPECT_EQ(EBADF, errno);
    EXPECT_EQ(-1, file.SeekToBegin());
    EXPECT_EQ(-1, file.SeekToEnd());
    EXPECT_EQ(ULLONG_MAX, file.GetPosition());
    EXPECT_EQ(0u, file.GetLength());
    EXPECT_EQ(-1, file.SetLength(0));
}

TEST_F(CFileTest, SetsTheLengthAndThePosition) {
    OpenedCFile file(Path("old"), 0x61);
    EXPECT_EQ(0, file.SetLength(12));
    EXPECT_EQ(12u, file.GetPosition());
    EXPECT_EQ(std::string("0123456789\0\0", 12), directory_.Content("old"));
    EXPECT_EQ(0, file.SetLength(4));
    EXPECT_EQ(4u, file.GetPosition());
    EXPECT_EQ(4u, file.GetLength());
    EXPECT_EQ("0123", directory_.Content("old"));
}

TEST_F(CFileTest, OnPurposeSetsTheLengthByTheLowThirtyTwoBitsAsASignedNumber) {
    struct {
        unsigned long long length;
        int result;
        unsigned long long positionAfter;
        char const* content;
    } const cases[] = {
        {0x100000004, 0, 0x100000004, "0123"},
        {0x80000000, -1, 0x80000000, "0123456789"},
        {0xFFFFFFFF, -1, 0xFFFFFFFF, "0123456789"},
        {0xFFFFFFFF00000005, 0, 1, "01234"},  // no position: it stays
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.length);
        directory_.MakeFile("old", "0123456789");
        OpenedCFile file(Path("old"), 0x61);
        EXPECT_EQ(1, file.Seek(1, 0));
        errno = 0;
        EXPECT_EQ(c.result, file.SetLength(c.length));
        if (c.result != 0) {
            EXPECT_EQ(EINVAL, errno);
        }
        EXPECT_EQ(c.positionAfter, file.GetPosition());
        EXPECT_EQ(c.content, directory_.Content("old"));
    }
}

TEST_F(CFileTest, OnPurposeCutsALargeFileAtTheLowThirtyTwoBits) {
    directory_.MakeSparseFile("large", 0x180000000);
    OpenedCFile file(Path("large"), 0x41);
    EXPECT_EQ(-1, file.SetLength(0x180000000));
    EXPECT_EQ(0x180000000, CFile::GetLength(Path("large").c_str()));
    EXPECT_EQ(0, file.SetLength(0x140000000));
    EXPECT_EQ(0x140000000u, file.GetPosition());
    EXPECT_EQ(0x40000000u, file.GetLength());
}

TEST_F(CFileTest, DoesNotSetTheLengthOfWhatItCannotWrite) {
    OpenedCFile file(Path("old"), 0x21);
    EXPECT_EQ(-1, file.SetLength(2));
    EXPECT_EQ(2u, file.GetPosition());
    EXPECT_EQ("0123456789", directory_.Content("old"));
}

TEST_F(CFileTest, HasALengthBelowTwoGibibytesOnly) {
    directory_.MakeSparseFile("largest", 0x7FFFFFFF);
    directory_.MakeSparseFile("too large", 0x80000000);
    directory_.MakeSparseFile("5 GiB", 0x140000000);  // its low 32 bits are a length, too
    EXPECT_EQ(0x7FFFFFFFu, OpenedCFile(Path("largest"), 0x21).GetLength());
    EXPECT_EQ(0u, OpenedCFile(Path("too large"), 0x21).GetLength());
    EXPECT_EQ(0u, OpenedCFile(Path("5 GiB"), 0x21).GetLength());
}

}  // namespace
