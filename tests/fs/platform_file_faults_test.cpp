#include <qorutils/fs/platform_file.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "support/system_call_faults.h"
#include "support/temporary_directory.h"

namespace {

int const kInterruptions[] = {1, 100};

// An open file of the given content, closed at the end whatever the test made fail.
class OpenFile {
  public:
    explicit OpenFile(std::string const& content) {
        directory_.MakeFile("f", content);
        descriptor_ = open(directory_.Path("f").c_str(), O_RDWR);
    }
    ~OpenFile() { close(descriptor_); }

    int Descriptor() const { return descriptor_; }
    std::string Content() const { return directory_.Content("f"); }
    std::wstring WidePath() const { return directory_.WidePath("f"); }

  private:
    TemporaryDirectory directory_;
    int descriptor_;
};

TEST(OpenFaults, InterruptedOpensAreRepeatedAHundredTimes) {
    OpenFile file("x");
    for (int interruptions : kInterruptions) {
        SystemCallFault fault(SystemCall::kOpen, EINTR, interruptions);
        base::PlatformFileError error;
        int const opened = base::CreatePlatformFile(
            file.WidePath().c_str(), base::kFileOpenExisting | base::kFileRead, nullptr, &error);
        EXPECT_NE(-1, opened);
        EXPECT_EQ(interruptions + 1, fault.Calls());
        EXPECT_EQ(base::kFileOk, error);
        base::ClosePlatformFile(opened);
    }
}

TEST(OpenFaults, TheHundredAndFirstInterruptionStands) {
    OpenFile file("x");
    SystemCallFault fault(SystemCall::kOpen, EINTR);
    base::PlatformFileError error;
    EXPECT_EQ(-1,
              base::CreatePlatformFile(file.WidePath().c_str(),
                                       base::kFileOpenExisting | base::kFileRead, nullptr, &error));
    EXPECT_EQ(EINTR, errno);
    EXPECT_EQ(101, fault.Calls());
    EXPECT_EQ(base::kFileErrorFailed, error);
}

TEST(OpenFaults, ErrorsAreNotRepeatedAndAreTranslated) {
    struct {
        int code;
        base::PlatformFileError error;
    } const kCases[] = {
        {EMFILE, base::kFileErrorTooManyOpened}, {ENOSPC, base::kFileErrorNoSpace},
        {ENOMEM, base::kFileErrorNoMemory},      {EROFS, base::kFileErrorAccessDenied},
        {ETXTBSY, base::kFileErrorInUse},        {EIO, base::kFileErrorFailed},
        {ENFILE, base::kFileErrorFailed},        {ELOOP, base::kFileErrorFailed},
    };
    OpenFile file("x");
    for (auto const& c : kCases) {
        SystemCallFault fault(SystemCall::kOpen, c.code);
        base::PlatformFileError error;
        EXPECT_EQ(-1, base::CreatePlatformFile(file.WidePath().c_str(),
                                               base::kFileOpenExisting | base::kFileRead, nullptr,
                                               &error));
        EXPECT_EQ(c.error, error) << c.code;
        EXPECT_EQ(1, fault.Calls());
    }
}

TEST(OpenFaults, OpenOrCreateTriesTheSecondOpenAfterAnyFailure) {
    OpenFile file("kept");
    SystemCallFault fault(SystemCall::kOpen, EIO, 1);
    bool created = false;
    int const opened = base::CreatePlatformFile(
        file.WidePath().c_str(), base::kFileOpenOrCreate | base::kFileRead, &created, nullptr);
    EXPECT_NE(-1, opened);
    EXPECT_TRUE(created);
    EXPECT_EQ(2, fault.Calls());
    base::ClosePlatformFile(opened);
    EXPECT_EQ("kept", file.Content());
}

TEST(OpenFaults, AFailedUnlinkLeavesTheOpenFileUsable) {
    OpenFile file("kept");
    SystemCallFault fault(SystemCall::kUnlink, EPERM);
    int const opened = base::CreatePlatformFile(
        file.WidePath().c_str(),
        base::kFileOpenExisting | base::kFileRead | base::kFileDeleteOnClose, nullptr, nullptr);
    char data[4];
    EXPECT_EQ(4, base::ReadPlatformFile(opened, data, 4));
    EXPECT_EQ(1, fault.Calls());
    base::ClosePlatformFile(opened);
}

TEST(ReadFaults, InterruptionsAndShortReadsAreBridged) {
    OpenFile file("0123456789");
    ShortTransfers threeBytes(3);
    SystemCallFault fault(SystemCall::kPread, EINTR, 100, 1);
    char data[10];
    EXPECT_EQ(10, base::ReadPlatformFile(file.Descriptor(), data, sizeof data));
    EXPECT_EQ("0123456789", std::string(data, sizeof data));
    EXPECT_EQ(104, fault.Calls());
}

TEST(ReadFaults, WhatWasReadBeforeAFailureCounts) {
    OpenFile file("0123456789");
    ShortTransfers fourBytes(4);
    SystemCallFault fault(SystemCall::kPread, EIO, 1, 1);
    char data[10];
    EXPECT_EQ(4, base::ReadPlatformFile(file.Descriptor(), data, sizeof data));
    EXPECT_EQ(2, fault.Calls());
}

TEST(ReadFaults, AFailureBeforeTheFirstByteIsMinusOne) {
    OpenFile file("0123456789");
    char data[10];
    SystemCallFault fault(SystemCall::kPread, EIO);
    EXPECT_EQ(-1, base::ReadPlatformFile(file.Descriptor(), data, sizeof data));
    EXPECT_EQ(EIO, errno);
    EXPECT_EQ(1, fault.Calls());
}

TEST(ReadFaults, AHundredAndOneInterruptionsAreMinusOne) {
    OpenFile file("0123456789");
    char data[10];
    SystemCallFault fault(SystemCall::kPread, EINTR);
    EXPECT_EQ(-1, base::ReadPlatformFile(file.Descriptor(), data, sizeof data));
    EXPECT_EQ(101, fault.Calls());
}

TEST(WriteFaults, InterruptionsAndShortWritesAreBridged) {
    OpenFile file("");
    {
        ShortTransfers threeBytes(3);
        SystemCallFault fault(SystemCall::kWrite, EINTR, 100, 2);
        EXPECT_EQ(10, base::WritePlatformFile(file.Descriptor(), "0123456789", 10));
        EXPECT_EQ(104, fault.Calls());
    }
    EXPECT_EQ("0123456789", file.Content());
}

TEST(WriteFaults, EachPieceHasItsOwnHundredRepetitions) {
    OpenFile file("");
    ShortTransfers fiveBytes(5);
    SystemCallFault fault(SystemCall::kWrite, EINTR, 101, 1);
    EXPECT_EQ(5, base::WritePlatformFile(file.Descriptor(), "0123456789", 10));
    EXPECT_EQ(102, fault.Calls());
}

TEST(WriteFaults, AFullDiskInTheMiddleGivesTheBytesWritten) {
    OpenFile file("");
    {
        ShortTransfers sixBytes(6);
        SystemCallFault fault(SystemCall::kWrite, ENOSPC, SystemCallFault::kAlways, 1);
        EXPECT_EQ(6, base::WritePlatformFile(file.Descriptor(), "0123456789", 10));
    }
    EXPECT_EQ("012345", file.Content());
}

TEST(WriteFaults, AFullDiskFromTheStartIsMinusOne) {
    OpenFile file("");
    SystemCallFault fault(SystemCall::kWrite, ENOSPC);
    EXPECT_EQ(-1, base::WritePlatformFile(file.Descriptor(), "0123456789", 10));
    EXPECT_EQ(ENOSPC, errno);
}

TEST(WriteFaults, ADeviceThatTakesNothingEndsTheLoop) {
    OpenFile file("");
    ShortTransfers nothing(0);
    EXPECT_EQ(0, base::WritePlatformFile(file.Descriptor(), "0123456789", 10));
}

TEST(TruncateFaults, OnlyInterruptionsAreRepeated) {
    OpenFile file("0123456789");
    {
        SystemCallFault fault(SystemCall::kFtruncate, EINTR, 100);
        EXPECT_TRUE(base::TruncatePlatformFile(file.Descriptor(), 4));
        EXPECT_EQ(101, fault.Calls());
    }
    {
        SystemCallFault fault(SystemCall::kFtruncate, EINTR);
        EXPECT_FALSE(base::TruncatePlatformFile(file.Descriptor(), 2));
        EXPECT_EQ(101, fault.Calls());
    }
    SystemCallFault fault(SystemCall::kFtruncate, EIO);
    EXPECT_FALSE(base::TruncatePlatformFile(file.Descriptor(), 2));
    EXPECT_EQ(1, fault.Calls());
    EXPECT_EQ("0123", file.Content());
}

TEST(FlushFaults, OnlyInterruptionsAreRepeated) {
    OpenFile file("x");
    {
        SystemCallFault fault(SystemCall::kFsync, EINTR, 100);
        EXPECT_TRUE(base::FlushPlatformFile(file.Descriptor()));
        EXPECT_EQ(101, fault.Calls());
    }
    {
        SystemCallFault fault(SystemCall::kFsync, EINTR);
        EXPECT_FALSE(base::FlushPlatformFile(file.Descriptor()));
        EXPECT_EQ(101, fault.Calls());
    }
    SystemCallFault fault(SystemCall::kFsync, EIO);
    EXPECT_FALSE(base::FlushPlatformFile(file.Descriptor()));
    EXPECT_EQ(1, fault.Calls());
}

TEST(CloseFaults, AnInterruptedCloseCountsAsClosedAndIsNotRepeated) {
    SystemCallFault fault(SystemCall::kClose, EINTR);
    EXPECT_TRUE(base::ClosePlatformFile(dup(0)));
    EXPECT_EQ(1, fault.Calls());
}

TEST(CloseFaults, AFailedCloseIsNotRepeated) {
    SystemCallFault fault(SystemCall::kClose, EIO);
    EXPECT_FALSE(base::ClosePlatformFile(dup(0)));
    EXPECT_EQ(1, fault.Calls());
}

TEST(SeekFaults, AFailedSeekIsMinusOne) {
    OpenFile file("x");
    SystemCallFault fault(SystemCall::kLseek, EINVAL);
    EXPECT_EQ(-1, base::SeekPlatformFile(file.Descriptor(), base::kFromBegin, 1));
    EXPECT_EQ(EINVAL, errno);
}

TEST(StatusFaults, AFailedStatusLeavesTheRecordAsItWas) {
    OpenFile file("x");
    base::PlatformFileInfo info;
    info.size = 77;
    SystemCallFault fault(SystemCall::kStat, EIO);
    EXPECT_FALSE(base::GetPlatformFileInfo(file.Descriptor(), &info));
    EXPECT_EQ(77, info.size);
}

TEST(TouchFaults, AFailureIsNotRepeated) {
    OpenFile file("x");
    SystemCallFault fault(SystemCall::kFutimens, EINTR);
    EXPECT_FALSE(base::TouchPlatformFile(file.Descriptor(), 1, 1));
    EXPECT_EQ(1, fault.Calls());
}

TEST(DuplicateFaults, AFullTableIsAPlainFailure) {
    SystemCallFault fault(SystemCall::kDup, EMFILE);
    base::PlatformFileError error = base::kFileOk;
    EXPECT_EQ(-1, base::DuplicatePlatformFileHandle(0, &error));
    EXPECT_EQ(base::kFileErrorFailed, error);
}

}  // namespace
