#include <qorutils/fs/cfile.h>
#include <qorutils/fs/file_funcs.h>

#include <cerrno>
#include <cstdio>

#include <gtest/gtest.h>

#include "support/cfile_fixture.h"
#include "support/descriptors.h"
#include "support/next_in_line.h"
#include "support/system_call_faults.h"
#include "support/temporary_directory.h"

namespace {

bool isAcrossFileSystems = false;

}  // namespace

// Stands before the C library's.
extern "C" int rename(char const* from, char const* to) noexcept {
    static auto* const next = NextInLine(&rename, "rename");
    if (!isAcrossFileSystems) return next(from, to);
    errno = EXDEV;
    return -1;
}

namespace {

using FileFuncs::WriteFile;

class FileWriteFaults : public testing::Test {
  protected:
    FileWriteFaults() { directory_.MakeFile("f", "old"); }

    bool Write() { return WriteFile(directory_.WidePath("f").c_str(), "abcdef", 6); }

    TemporaryDirectory directory_;
};

TEST_F(FileWriteFaults, RepeatsAnInterruptedCreationAHundredTimes) {
    SystemCallFault const fault(SystemCall::kOpen, EINTR, 100);
    EXPECT_TRUE(Write());
    EXPECT_EQ(101, fault.Calls());
    EXPECT_EQ("abcdef", directory_.Content("f"));
}

// On purpose: true.
TEST_F(FileWriteFaults, SaysTrueWhenTheCreationStaysInterrupted) {
    {
        SystemCallFault const fault(SystemCall::kOpen, EINTR);
        EXPECT_TRUE(Write());
        EXPECT_EQ(101, fault.Calls());
    }
    EXPECT_EQ("old", directory_.Content("f"));
}

TEST_F(FileWriteFaults, RepeatsAnInterruptedWriteAHundredTimes) {
    {
        SystemCallFault const fault(SystemCall::kWrite, EINTR, 100);
        EXPECT_TRUE(Write());
        EXPECT_EQ(101, fault.Calls());
    }
    EXPECT_EQ("abcdef", directory_.Content("f"));
}

TEST_F(FileWriteFaults, FailsWhenAWriteStaysInterrupted) {
    {
        SystemCallFault const fault(SystemCall::kWrite, EINTR);
        EXPECT_FALSE(Write());
        EXPECT_EQ(101, fault.Calls());
    }
    EXPECT_EQ("", directory_.Content("f"));
}

TEST_F(FileWriteFaults, WritesPieceByPiece) {
    ShortTransfers const pieces(4);
    SystemCallFault const count(SystemCall::kWrite, 0, 0);
    EXPECT_TRUE(Write());
    EXPECT_EQ(2, count.Calls());
    EXPECT_EQ("abcdef", directory_.Content("f"));
}

TEST_F(FileWriteFaults, CountsInterruptionsOfEachPieceAnew) {
    ShortTransfers const pieces(4);
    SystemCallFault const fault(SystemCall::kWrite, EINTR, 100, 1);
    EXPECT_TRUE(Write());
    EXPECT_EQ(102, fault.Calls());
    EXPECT_EQ("abcdef", directory_.Content("f"));
}

TEST_F(FileWriteFaults, FailsWhenTheDiskFillsUp) {
    {
        ShortTransfers const pieces(4);
        SystemCallFault const fault(SystemCall::kWrite, ENOSPC, SystemCallFault::kAlways, 1);
        EXPECT_FALSE(Write());
        EXPECT_EQ(2, fault.Calls());
    }
    EXPECT_EQ("abcd", directory_.Content("f"));
}

TEST_F(FileWriteFaults, FailsOnADeviceThatTakesNothing) {
    ShortTransfers const nothing(0);
    EXPECT_FALSE(Write());
}

TEST_F(FileWriteFaults, TakesAnInterruptedCloseForAClose) {
    SystemCallFault const close(SystemCall::kClose, EINTR);
    EXPECT_TRUE(Write());
    EXPECT_EQ(1, close.Calls());
    SystemCallFault const write(SystemCall::kWrite, ENOSPC);
    EXPECT_FALSE(Write());
}

// On purpose: true, whatever was written.
TEST_F(FileWriteFaults, SaysTrueWhenTheCloseFails) {
    SystemCallFault const close(SystemCall::kClose, EIO);
    EXPECT_TRUE(Write());
    EXPECT_EQ(1, close.Calls());
    SystemCallFault const write(SystemCall::kWrite, ENOSPC);
    EXPECT_TRUE(Write());
    EXPECT_EQ(2, close.Calls());
}

TEST_F(CFileTest, IsNotMovedToAnotherFileSystem) {
    std::wstring const from = Path("old");
    std::wstring const to = Path("new");
    isAcrossFileSystems = true;
    EXPECT_FALSE(FileFuncs::MoveFile(from.c_str(), to.c_str()));
    EXPECT_EQ("MoveFile", FailedOperation([&] { base::CFile::Rename(from.c_str(), to.c_str()); }));
    isAcrossFileSystems = false;
    EXPECT_EQ("0123456789", directory_.Content("old"));
    EXPECT_FALSE(directory_.Has("new"));
    EXPECT_TRUE(FileFuncs::MoveFile(from.c_str(), to.c_str()));
    directory_.Remove("new");
}

TEST_F(FileWriteFaults, LeavesNoDescriptorOpen) {
    int const before = CountDescriptors();
    Write();
    {
        SystemCallFault const fault(SystemCall::kWrite, EIO);
        Write();
    }
    EXPECT_EQ(before, CountDescriptors());
}

}  // namespace
