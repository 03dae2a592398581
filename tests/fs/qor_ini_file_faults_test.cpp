// INI files when the system fails. Links system_call_faults.cpp.

#include <qorutils/fs/qor_ini_file.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/descriptors.h"
#include "support/ini_settings.h"
#include "support/system_call_faults.h"
#include "support/temporary_directory.h"

namespace {

using qor::text_utils::EQorTextEncoding;
using qor::text_utils::eTextEncodingAnsi;
using qor::text_utils::eTextEncodingUtf16LE;
using qor_settings::CThreeTupleStore;
using qor_settings::writeSettingsAsIni;

// A directory with a file "file" that holds "[A]\nk=1\n".
class IniFile : public testing::Test {
  protected:
    IniFile() { directory_.MakeFile("file", "[A]\nk=1\n"); }

    std::wstring Path() const { return directory_.WidePath("file"); }

    // The descriptors that a call leaves open, which it then closes: it has to be the lowest.
    template <typename Call>
    static int DescriptorsLeft(Call call) {
        int const before = CountDescriptors();
        int const lowest = dup(STDERR_FILENO);
        close(lowest);
        call();
        int const left = CountDescriptors() - before;
        if (left == 1) close(lowest);
        return left;
    }

    TemporaryDirectory directory_;
    CThreeTupleStore const store_ = ToStore({{L"B", {{L"l", L"2"}}}});
};

class ReadSettingsAsIniFault : public IniFile {};
class WriteSettingsAsIniFault : public IniFile {};

TEST_F(ReadSettingsAsIniFault, RepeatsAnInterruptedOpenAtMostAHundredTimes) {
    {
        SystemCallFault const fault(SystemCall::kOpen, EINTR, 100);
        EXPECT_TRUE(IniRead(Path()).succeeded);
        EXPECT_EQ(101, fault.Calls());
    }
    SystemCallFault const fault(SystemCall::kOpen, EINTR, 101);
    EXPECT_TRUE(IniRead(Path()).IsUntouched());
    EXPECT_EQ(101, fault.Calls());
}

TEST_F(ReadSettingsAsIniFault, RepeatsAnInterruptedCloseAtMostAHundredTimesOnPurpose) {
    SystemCallFault const fault(SystemCall::kClose, EINTR);
    EXPECT_TRUE(IniRead(Path()).succeeded);
    EXPECT_EQ(101, fault.Calls());
}

TEST_F(ReadSettingsAsIniFault, ClosesTheFileOnce) {
    EXPECT_EQ(0, DescriptorsLeft([&] { EXPECT_TRUE(IniRead(Path()).succeeded); }));
    SystemCallFault const fault(SystemCall::kClose, EIO, 0);
    EXPECT_TRUE(IniRead(Path()).succeeded);
    EXPECT_EQ(1, fault.Calls());
}

TEST_F(ReadSettingsAsIniFault, UnmapsTheFileOnceAlsoAfterABadLine) {
    std::ofstream(directory_.Path("file")) << "_\n";
    SystemCallFault const fault(SystemCall::kMunmap, EINVAL, 0);
    std::string const report = CheckReports([&] {
        EXPECT_EQ(0, DescriptorsLeft([&] { EXPECT_FALSE(IniRead(Path()).succeeded); }));
        EXPECT_EQ(1, fault.Calls());
    });
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 245\n", report);
}

TEST_F(ReadSettingsAsIniFault, FailsWithoutWriteAccess) {
    SystemCallFault const fault(SystemCall::kOpen, EACCES);
    EXPECT_TRUE(IniRead(Path()).IsUntouched());
    EXPECT_EQ(1, fault.Calls());
}

TEST_F(ReadSettingsAsIniFault, AsksForReadAndWriteAccess) {
    // The descriptor of an empty file stays open, so that it can be asked.
    directory_.MakeFile("empty", "");
    int const lowest = dup(STDERR_FILENO);
    close(lowest);
    EXPECT_TRUE(IniRead(directory_.WidePath("empty")).IsUntouched());
    EXPECT_EQ(O_RDWR, fcntl(lowest, F_GETFL) & O_ACCMODE);
    close(lowest);
}

TEST_F(ReadSettingsAsIniFault, KeepsTheDescriptorOfWhatItCannotMapOnPurpose) {
    {
        SystemCallFault const fault(SystemCall::kStat, EIO);
        EXPECT_EQ(1, DescriptorsLeft([&] { EXPECT_TRUE(IniRead(Path()).IsUntouched()); }));
    }
    {
        SystemCallFault const fault(SystemCall::kMmap, ENODEV, 1);
        EXPECT_EQ(1, DescriptorsLeft([&] { EXPECT_TRUE(IniRead(Path()).IsUntouched()); }));
        EXPECT_EQ(1, fault.Calls());
    }
    directory_.MakeFile("empty", "");
    directory_.MakeSparseFile("large", 2147483648);
    for (char const* name : {"empty", "large"})
        EXPECT_EQ(1, DescriptorsLeft(
                         [&] { EXPECT_TRUE(IniRead(directory_.WidePath(name)).IsUntouched()); }))
            << name;
}

TEST_F(WriteSettingsAsIniFault, FailsWhenTheSystemTakesNothing) {
    CThreeTupleStore const large = ToStore({{L"A", {{L"x", std::wstring(100000, L'v')}}}});
    ShortTransfers const transfers(0);
    for (EQorTextEncoding const encoding : {eTextEncodingAnsi, eTextEncodingUtf16LE}) {
        EXPECT_FALSE(writeSettingsAsIni(Path().c_str(), store_, encoding));
        EXPECT_FALSE(writeSettingsAsIni(Path().c_str(), large, encoding));
        EXPECT_TRUE(writeSettingsAsIni(Path().c_str(), CThreeTupleStore(), encoding));
    }
}

TEST_F(WriteSettingsAsIniFault, StopsWhenTheSystemTakesNothing) {
    SettingsMap settings;
    for (int key = 0; key < 20000; ++key) settings[L"A"][std::to_wstring(key)] = L"value";
    CThreeTupleStore const store = ToStore(settings);
    ShortTransfers const transfers(0);
    SystemCallFault const fault(SystemCall::kWrite, EIO, 0);
    EXPECT_FALSE(writeSettingsAsIni(Path().c_str(), store, eTextEncodingAnsi));
    EXPECT_EQ(1, fault.Calls());
}

TEST_F(WriteSettingsAsIniFault, WritesOnWhenTheSystemTakesAFewBytesAtATime) {
    ShortTransfers const transfers(3);
    EXPECT_TRUE(writeSettingsAsIni(Path().c_str(), store_, eTextEncodingAnsi));
    EXPECT_EQ("[B]\r\nl=2\r\n\r\n", directory_.Content("file"));
}

TEST_F(WriteSettingsAsIniFault, CountsARefusedWriteAsWrittenOnPurpose) {
    for (int const error : {ENOSPC, EIO, EBADF}) {
        SystemCallFault const fault(SystemCall::kWrite, error);
        EXPECT_TRUE(writeSettingsAsIni(Path().c_str(), store_, eTextEncodingAnsi));
        EXPECT_GT(fault.Calls(), 0);
    }
    EXPECT_EQ("", directory_.Content("file"));
}

TEST_F(WriteSettingsAsIniFault, RepeatsAnInterruptedWrite) {
    SystemCallFault const fault(SystemCall::kWrite, EINTR, 100);
    EXPECT_TRUE(writeSettingsAsIni(Path().c_str(), store_, eTextEncodingAnsi));
    EXPECT_EQ(101, fault.Calls());
    EXPECT_EQ("[B]\r\nl=2\r\n\r\n", directory_.Content("file"));
}

TEST_F(WriteSettingsAsIniFault, GathersManyPiecesInFewWrites) {
    SettingsMap settings;
    for (int key = 0; key < 10000; ++key) settings[L"A"][std::to_wstring(100000 + key)] = L"v";
    CThreeTupleStore const store = ToStore(settings);
    SystemCallFault const fault(SystemCall::kWrite, EIO, 0);
    EXPECT_TRUE(writeSettingsAsIni(Path().c_str(), store, eTextEncodingAnsi));
    EXPECT_EQ(7, fault.Calls());  // of 100009 bytes
}

TEST_F(WriteSettingsAsIniFault, ClosesTheFileWhateverHappens) {
    EXPECT_EQ(0, DescriptorsLeft([&] {
                  EXPECT_TRUE(writeSettingsAsIni(Path().c_str(), store_, eTextEncodingAnsi));
              }));
    ShortTransfers const transfers(0);
    EXPECT_EQ(0, DescriptorsLeft([&] {
                  EXPECT_FALSE(writeSettingsAsIni(Path().c_str(), store_, eTextEncodingAnsi));
              }));
}

}  // namespace
