#include <qorutils/fs/dir_trees.h>

#include <boost/filesystem/operations.hpp>
#include <cerrno>

#include <gtest/gtest.h>

#include "support/descriptors.h"
#include "support/system_call_faults.h"
#include "support/temporary_directory.h"

namespace {

using namespace FileFuncs;
using WideString = qor_text::CQorStringT<wchar_t>;

// A folder with two files. Of its listing, the first three entries at most can be read: "." and
// ".." and one file, in whatever order.
class BrokenFolder : public testing::Test {
  protected:
    BrokenFolder() {
        directory_.MakeFolder("a");
        directory_.MakeFile("a/1", "x");
        directory_.MakeFile("a/2", "x");
    }

    WideString Path() const { return directory_.WidePath("a").c_str(); }

    TemporaryDirectory directory_;
};

int const kReadable = 3;

TEST_F(BrokenFolder, LetsAnExceptionOutOfEmptyFolder) {
    SystemCallFault const fault(SystemCall::kReaddir, EIO, SystemCallFault::kAlways, kReadable);
    EXPECT_THROW(EmptyFolder(Path()), boost::filesystem::filesystem_error);
}

TEST_F(BrokenFolder, LetsAnExceptionOutOfFindFileInDirTree) {
    SystemCallFault const fault(SystemCall::kReaddir, EIO, SystemCallFault::kAlways, kReadable);
    WideString found = L"before";
    EXPECT_THROW(FindFileInDirTree(Path(), L"missing", found), boost::filesystem::filesystem_error);
    EXPECT_EQ(L"before", found);
}

TEST_F(BrokenFolder, EndsTheCountOfItsFiles) {
    SystemCallFault const fault(SystemCall::kReaddir, EIO, SystemCallFault::kAlways, kReadable);
    EXPECT_GT(2u, CountFiles(Path()));
}

TEST_F(BrokenFolder, IsStillThereWhenItCannotBeRemoved) {
    SystemCallFault const fault(SystemCall::kReaddir, EIO);
    EXPECT_FALSE(RemoveDirectoryTree(Path()));
    EXPECT_TRUE(directory_.Has("a"));
}

TEST_F(BrokenFolder, IsAsNothingWhenItCannotBeOpened) {
    SystemCallFault const fault(SystemCall::kOpendir, EACCES);
    WideString found = L"before";
    EXPECT_FALSE(EmptyFolder(Path()));
    EXPECT_FALSE(FindFileInDirTree(Path(), L"1", found));
    EXPECT_EQ(L"before", found);
    EXPECT_EQ(0u, CountFiles(Path()));
    EXPECT_FALSE(RemoveDirectoryTree(Path()));
    EXPECT_TRUE(directory_.Has("a/1"));
    EXPECT_TRUE(directory_.Has("a/2"));
}

TEST_F(BrokenFolder, ClosesItsDescriptorsWhateverHappens) {
    int const before = CountDescriptors();
    SystemCallFault const fault(SystemCall::kReaddir, EIO, SystemCallFault::kAlways, kReadable);
    EXPECT_ANY_THROW(EmptyFolder(Path()));
    CountFiles(Path());
    EXPECT_EQ(before, CountDescriptors());
}

}  // namespace
