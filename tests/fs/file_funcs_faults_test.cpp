#include <qorutils/fs/file_funcs.h>

#include <cerrno>

#include <gtest/gtest.h>

#include "support/descriptors.h"
#include "support/system_call_faults.h"
#include "support/temporary_directory.h"

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
