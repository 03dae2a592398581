#include <qorutils/fs/file_funcs.h>

#include <sys/stat.h>

#include <string>

#include <gtest/gtest.h>

#include "support/guard_page.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace {

using FileFuncs::WriteFile;

class FileWrite : public testing::Test {
  protected:
    std::wstring Path(std::string const& name) const { return directory_.WidePath(name); }

    TemporaryDirectory directory_;
};

TEST_F(FileWrite, CreatesOrEmptiesAndWritesExactly) {
    std::string const bytes("a\0\r\n\xFF", 5);
    GuardedArray<char> const data(bytes.data(), bytes.size());
    directory_.MakeFile("old", "something longer");
    for (char const* name : {"old", "new"}) {
        EXPECT_TRUE(WriteFile(Path(name).c_str(), data.data(), 5)) << name;
        EXPECT_EQ(bytes, directory_.Content(name)) << name;
    }
    directory_.Remove("new");
}

TEST_F(FileWrite, WritesMuch) {
    std::string const much(3000001, 'x');
    EXPECT_TRUE(WriteFile(Path("f").c_str(), much.data(), 3000001));
    EXPECT_EQ(much, directory_.Content("f"));
    directory_.Remove("f");
}

TEST_F(FileWrite, EmptiesAFileForNoBytes) {
    directory_.MakeFile("old", "abc");
    for (char const* name : {"old", "new"}) {
        EXPECT_TRUE(WriteFile(Path(name).c_str(), nullptr, 0)) << name;
        EXPECT_EQ("", directory_.Content(name)) << name;
    }
    directory_.Remove("new");
}

TEST_F(FileWrite, FailsBeyond2GiBAndLeavesAnEmptyFile) {
    directory_.MakeFile("f", "abc");
    for (unsigned int const length : {0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(WriteFile(Path("f").c_str(), "x", length));
        EXPECT_EQ("", directory_.Content("f"));
    }
}

// On purpose.
TEST_F(FileWrite, SaysTrueWhenTheFileCannotBeCreated) {
    directory_.MakeFolder("folder");
    for (char const* name : {"missing/f", "folder"})
        EXPECT_TRUE(WriteFile(Path(name).c_str(), "abc", 3)) << name;
    EXPECT_TRUE(WriteFile(L"", "abc", 3));
    EXPECT_TRUE(WriteFile(nullptr, "abc", 3));
    EXPECT_TRUE(WriteFile(Path("missing/f").c_str(), "abc", 0xFFFFFFFF));
    EXPECT_FALSE(directory_.Has("missing"));
}

TEST_F(FileWrite, CreatesNothingByAPathThatTheLocaleCannotEncode) {
    ScopedLocale const locale("C");
    WorkingDirectory const here(directory_.Path(""));  // fails for what it finds left behind
    EXPECT_TRUE(WriteFile(L"\u4E2D", "abc", 3));
    EXPECT_TRUE(WriteFile(L"a\u4E2D", "abc", 3));
}

TEST_F(FileWrite, TakesABackslashAsItStands) {
    directory_.MakeFolder("a");
    EXPECT_TRUE(WriteFile((Path("") + L"a\\b").c_str(), "abc", 3));
    EXPECT_EQ("abc", directory_.Content("a\\b"));
    directory_.Remove("a\\b");
}

TEST_F(FileWrite, FailsOnAFullDevice) {
    EXPECT_FALSE(WriteFile(L"/dev/full", "abc", 3));
    EXPECT_TRUE(WriteFile(L"/dev/full", "", 0));
}

TEST_F(FileWrite, CreatesForEverybodyLessTheUmask) {
    struct {
        mode_t mask;
        mode_t mode;
    } const cases[] = {{0, 0666}, {022, 0644}, {0277, 0400}, {0777, 0}};
    for (auto const& c : cases) {
        mode_t const previous = umask(c.mask);
        EXPECT_TRUE(WriteFile(Path("f").c_str(), "abc", 3));
        umask(previous);
        struct stat64 status = {};
        EXPECT_EQ(0, stat64(directory_.Path("f").c_str(), &status));
        EXPECT_EQ(c.mode, status.st_mode & 07777);
        EXPECT_EQ(3, status.st_size);
        directory_.Remove("f");
    }
}

TEST_F(FileWrite, LeavesTheModeOfAnExistingFile) {
    directory_.MakeFile("f", "");
    ASSERT_EQ(0, chmod(directory_.Path("f").c_str(), 0751));
    EXPECT_TRUE(WriteFile(Path("f").c_str(), "abc", 3));
    struct stat64 status = {};
    EXPECT_EQ(0, stat64(directory_.Path("f").c_str(), &status));
    EXPECT_EQ(0751u, status.st_mode & 07777);
}

TEST_F(FileWrite, EmptiesAFileOf5GiB) {
    directory_.MakeSparseFile("f", 5368709120);
    EXPECT_TRUE(WriteFile(Path("f").c_str(), "abc", 3));
    EXPECT_EQ("abc", directory_.Content("f"));
}

}  // namespace
