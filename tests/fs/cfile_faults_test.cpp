#include <qorutils/fs/cfile.h>

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "support/cfile_fixture.h"
#include "support/system_call_faults.h"
#include "support/temporary_directory.h"

namespace {

// A file "f" with 0123456789, open for reading and writing.
class CFileFaults : public testing::Test {
  protected:
    CFileFaults() {
        directory_.MakeFile("f", "0123456789");
        EXPECT_TRUE(file_.Open(Path().c_str(),
                               base::kFileOpenExisting | base::kFileRead | base::kFileWrite,
                               nullptr, nullptr));
    }
    ~CFileFaults() { file_.Close(); }

    std::wstring Path() const { return directory_.WidePath("f"); }

    TemporaryDirectory directory_;
    base::CFile file_;
    char buffer_[10] = {};
};

TEST_F(CFileFaults, TheNumberInTheTextIsThatOfTheCallThatFailed) {
    SystemCallFault const faults[] = {{SystemCall::kPread, EIO},
                                      {SystemCall::kWrite, EDQUOT},
                                      {SystemCall::kFsync, EROFS},
                                      {SystemCall::kUnlink, EPERM}};
    EXPECT_EQ(With("Read", EIO), Failure([&] { file_.Read(buffer_, 1); }));
    EXPECT_EQ(With("Write", EDQUOT), Failure([&] { file_.Write("x", 1); }));
    EXPECT_EQ(With("FlushFileBuffers", EROFS), Failure([&] { file_.Flush(); }));
    EXPECT_EQ(With("DeleteFile", EPERM), Failure([&] { base::CFile::Remove(Path().c_str()); }));
    EXPECT_TRUE(directory_.Has("f"));
}

TEST_F(CFileFaults, AFailedCloseThrowsOnce) {
    SystemCallFault const fault(SystemCall::kClose, EIO);
    EXPECT_EQ(With("CloseHandle", EIO), Failure([&] { file_.Close(); }));
    EXPECT_EQ(1, fault.Calls());
    file_.Close();
    EXPECT_EQ(1, fault.Calls());
}

TEST_F(CFileFaults, AnInterruptedCloseCountsAsClosed) {
    SystemCallFault const fault(SystemCall::kClose, EINTR);
    file_.Close();
    file_.Close();
    EXPECT_EQ(1, fault.Calls());
}

TEST_F(CFileFaults, InterruptedCallsAreRepeatedAHundredTimes) {
    {
        SystemCallFault const fault(SystemCall::kFtruncate, EINTR, 100);
        EXPECT_EQ(0, file_.SetLength(4));
        EXPECT_EQ(101, fault.Calls());
    }
    SystemCallFault const fault(SystemCall::kFtruncate, EINTR, 101);
    EXPECT_EQ(-1, file_.SetLength(2));
    EXPECT_EQ("0123", directory_.Content("f"));
}

TEST_F(CFileFaults, ReadsAndWritesInPiecesWhenTheSystemDoes) {
    ShortTransfers const transfers(3);
    EXPECT_EQ(10u, file_.Read(buffer_, 10));
    EXPECT_EQ("0123456789", std::string(buffer_, 10));
    EXPECT_EQ(10u, file_.Write("abcdefghij", 10));
    EXPECT_EQ(10u, file_.GetPosition());
}

TEST_F(CFileFaults, AWriteThatStopsInTheMidstThrows) {
    ShortTransfers const transfers(3);
    SystemCallFault const fault(SystemCall::kWrite, ENOSPC, SystemCallFault::kAlways, 2);
    EXPECT_EQ(With("Write", ENOSPC), Failure([&] { file_.Write("abcdefghij", 10); }));
    EXPECT_EQ("abcdef6789", directory_.Content("f"));
}

}  // namespace
