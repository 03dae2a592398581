// Relative paths where the locale cannot decode the name of the working directory. Cut at what it
// cannot decode, that name is "folder/" or "folder/file": others, and not to be touched.

#include <qorutils/fs/dir_trees.h>
#include <qorutils/fs/file_funcs.h>

#include <string>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace {

using namespace FileFuncs;

class UndecodableWorkingDirectory : public testing::TestWithParam<char const*> {
  protected:
    UndecodableWorkingDirectory() : locale_("C.UTF-8"), working_(MakeFolders()) {}
    ~UndecodableWorkingDirectory() {
        EXPECT_EQ("kept", directory_.Content("folder/file"));
        EXPECT_EQ("kept", directory_.Content(GetParam() + std::string("/x/file")));
    }

    std::string MakeFolders() {
        std::string const name = GetParam();
        directory_.MakeFolder("folder");
        directory_.MakeFile("folder/file", "kept");
        directory_.MakeFolder(name);
        directory_.MakeFolder(name + "/x");
        directory_.MakeFile(name + "/x/file", "kept");
        return directory_.Path(name);
    }

    TemporaryDirectory directory_;
    ScopedLocale locale_;
    WorkingDirectory working_;
};

INSTANTIATE_TEST_SUITE_P(DirTrees, UndecodableWorkingDirectory,
                         testing::Values("folder/\xFF", "folder/file\xFF"));

TEST_P(UndecodableWorkingDirectory, NothingIsRemoved) {
    for (wchar_t const* const path : {L"x", L"x/file", L"missing", L".", L"..", L"\\"}) {
        EXPECT_FALSE(RemoveDirectoryTree(path));
        EXPECT_FALSE(EmptyFolder(path));
        EXPECT_FALSE(DelFile(path, true));
    }
}

TEST_P(UndecodableWorkingDirectory, NothingIsMade) {
    for (wchar_t const* const path : {L"x", L"new", L"new/er", L"", L"."}) {
        EXPECT_FALSE(CreateDirRecursive(path));
        EXPECT_FALSE(CreateDirectoryTree(path));
    }
}

TEST_P(UndecodableWorkingDirectory, FilesAreCountedAndFound) {
    EXPECT_EQ(1u, CountFiles(L"x"));
    qor_text::CQorStringT<wchar_t> found;
    EXPECT_TRUE(FindFileInDirTree(L".", L"file", found));
    EXPECT_EQ(L"./x/file", found);
}

TEST_P(UndecodableWorkingDirectory, AbsolutePathsAreAsEver) {
    std::wstring const path = directory_.WidePath("new");
    EXPECT_TRUE(CreateDirRecursive(path.c_str()));
    EXPECT_TRUE(CreateDirectoryTree((path + L"/er").c_str()));
    EXPECT_TRUE(EmptyFolder(path.c_str()));
    EXPECT_TRUE(RemoveDirectoryTree(path.c_str()));
    EXPECT_FALSE(directory_.Has("new"));
}

}  // namespace
