#include <qorutils/fs/file_enumerator.h>

#include <cerrno>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/descriptors.h"
#include "support/system_call_faults.h"
#include "support/temporary_directory.h"

namespace {

using namespace base;

class FileEnumeratorFaults : public testing::Test {
  protected:
    FileEnumeratorFaults() { directory_.MakeFile("file", ""); }

    // The dots and the file make 3.
    std::size_t CountEntries() {
        TFileEnumerator::readDirectory(entries_, directory_.WidePath("").c_str(), true);
        return entries_.size();
    }

    TemporaryDirectory directory_;
    qor_vector<_TFindInfo> entries_;
};

TEST_F(FileEnumeratorFaults, TakesADirectoryThatCannotBeOpenedForAnEmptyOne) {
    SystemCallFault const fault(SystemCall::kOpendir, EMFILE);
    EXPECT_EQ("", CheckReports([this] { EXPECT_EQ(0u, CountEntries()); }));
}

TEST_F(FileEnumeratorFaults, KeepsWhatItReadBeforeAnError) {
    SystemCallFault const fault(SystemCall::kReaddir, EIO, SystemCallFault::kAlways, 2);
    EXPECT_EQ(2u, CountEntries());
}

TEST_F(FileEnumeratorFaults, RepeatsAnInterruptedStatusAHundredTimes) {
    SystemCallFault const fault(SystemCall::kStat, EINTR, 100);
    EXPECT_EQ(3u, CountEntries());
    EXPECT_EQ(103, fault.Calls());
}

TEST_F(FileEnumeratorFaults, DropsAnEntryWhoseStatusStaysInterrupted) {
    SystemCallFault const fault(SystemCall::kStat, EINTR, 101);
    EXPECT_EQ(2u, CountEntries());
    EXPECT_EQ(103, fault.Calls());
}

TEST_F(FileEnumeratorFaults, DropsOnlyTheEntryWhoseStatusCannotBeHad) {
    SystemCallFault const fault(SystemCall::kStat, EACCES, 1, 1);
    EXPECT_EQ("", CheckReports([this] { EXPECT_EQ(2u, CountEntries()); }));
}

TEST_F(FileEnumeratorFaults, AsksForEachStatusOnce) {
    SystemCallFault const count(SystemCall::kStat, 0, 0);
    TFileEnumerator enumerator(directory_.WidePath("").c_str(), false, 0x13);
    while (!enumerator.Next().IsEmpty()) {
    }
    EXPECT_EQ(3, count.Calls());
}

TEST_F(FileEnumeratorFaults, ClosesTheDirectory) {
    int const before = CountDescriptors();
    CountEntries();
    EXPECT_EQ(before, CountDescriptors());
}

}  // namespace
