#include <qorutils/fs/file_funcs.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace {

using namespace FileFuncs;

constexpr wchar_t kNotNarrow[] = L"\u4E2D";  // not in the "C" locale

// The program has no module file name, so that relative paths belong to the working directory.
class FileCopy : public testing::Test {
  protected:
    FileCopy() {
        directory_.MakeFile("a", "new");
        directory_.MakeFile("b", "old");
    }

    std::wstring Path(std::string const& name) const { return directory_.WidePath(name); }

    mode_t Mode(std::string const& name) const {
        struct stat64 status = {};
        EXPECT_EQ(0, stat64(directory_.Path(name).c_str(), &status));
        return status.st_mode & 07777;
    }

    TemporaryDirectory directory_;
};

// ---- qor_CopyFile ----

TEST_F(FileCopy, CopiesContentAndPermissions) {
    ASSERT_EQ(0, chmod(directory_.Path("a").c_str(), 0640));
    for (bool const overwrite : {false, true}) {
        EXPECT_TRUE(qor_CopyFile(Path("a").c_str(), Path("c").c_str(), overwrite));
        EXPECT_EQ("new", directory_.Content("c"));
        EXPECT_EQ(0640u, Mode("c"));
        directory_.Remove("c");
    }
    EXPECT_EQ("new", directory_.Content("a"));
}

// On purpose: true, as the target exists.
TEST_F(FileCopy, LeavesAnExistingFileWithoutOverwriteAndSaysTrue) {
    EXPECT_TRUE(qor_CopyFile(Path("a").c_str(), Path("b").c_str(), false));
    EXPECT_EQ("old", directory_.Content("b"));
    EXPECT_TRUE(qor_CopyFile(Path("missing").c_str(), Path("b").c_str(), false));
    EXPECT_EQ("old", directory_.Content("b"));
}

TEST_F(FileCopy, OverwritesAlsoWhatIsReadOnly) {
    for (mode_t const mode : {0600, 0444}) {
        directory_.MakeFile("c", "old");
        ASSERT_EQ(0, chmod(directory_.Path("c").c_str(), mode));
        EXPECT_TRUE(qor_CopyFile(Path("a").c_str(), Path("c").c_str(), true));
        EXPECT_EQ("new", directory_.Content("c"));
        directory_.Remove("c");
    }
}

TEST_F(FileCopy, ReplacesALinkNotItsFile) {
    directory_.MakeLink("link", "b");
    EXPECT_TRUE(qor_CopyFile(Path("a").c_str(), Path("link").c_str(), true));
    EXPECT_EQ("new", directory_.Content("link"));
    EXPECT_EQ("old", directory_.Content("b"));
}

TEST_F(FileCopy, LosesTheTargetWhenThereIsNoSource) {
    directory_.MakeFile("c", "old");
    EXPECT_FALSE(qor_CopyFile(Path("missing").c_str(), Path("c").c_str(), true));
    EXPECT_FALSE(directory_.Has("c"));
    EXPECT_FALSE(qor_CopyFile(Path("missing").c_str(), Path("c").c_str(), false));
    EXPECT_FALSE(directory_.Has("c"));
}

TEST_F(FileCopy, LosesAFileThatIsCopiedToItself) {
    directory_.MakeFile("c", "old");
    EXPECT_TRUE(qor_CopyFile(Path("c").c_str(), Path("c").c_str(), false));
    EXPECT_EQ("old", directory_.Content("c"));
    EXPECT_FALSE(qor_CopyFile(Path("c").c_str(), Path("c").c_str(), true));
    EXPECT_FALSE(directory_.Has("c"));
}

TEST_F(FileCopy, CreatesTheFoldersThatAreMissing) {
    for (bool const overwrite : {false, true}) {
        EXPECT_TRUE(qor_CopyFile(Path("a").c_str(), (Path("x") + L"\\y/z.txt").c_str(), overwrite));
        EXPECT_EQ("new", directory_.Content("x/y/z.txt"));
        directory_.Remove("x/y/z.txt");
        directory_.Remove("x/y");
        directory_.Remove("x");
    }
}

TEST_F(FileCopy, CreatesTheFoldersAlsoWithoutASource) {
    EXPECT_FALSE(qor_CopyFile(Path("missing").c_str(), Path("x/y").c_str(), false));
    EXPECT_TRUE(directory_.Has("x"));
    EXPECT_FALSE(directory_.Has("x/y"));
    directory_.Remove("x");
}

TEST_F(FileCopy, FailsBelowAFile) {
    EXPECT_FALSE(qor_CopyFile(Path("a").c_str(), Path("b/c").c_str(), true));
    EXPECT_EQ("old", directory_.Content("b"));
}

// On purpose: something is there, so it says true.
TEST_F(FileCopy, LeavesAFolderAndSaysTrue) {
    directory_.MakeFolder("folder");
    for (bool const overwrite : {false, true}) {
        EXPECT_TRUE(qor_CopyFile(Path("a").c_str(), Path("folder").c_str(), overwrite));
        EXPECT_FALSE(directory_.Has("folder/a"));
        EXPECT_FALSE(qor_CopyFile(Path("folder").c_str(), Path("new").c_str(), overwrite));
        EXPECT_FALSE(directory_.Has("new"));
    }
}

TEST_F(FileCopy, TakesRelativePathsOfTheWorkingDirectory) {
    WorkingDirectory const here(directory_.Path(""));
    EXPECT_TRUE(qor_CopyFile(L"a", L"x\\y\\z.txt", true));
    EXPECT_EQ("new", directory_.Content("x/y/z.txt"));
    directory_.Remove("x/y/z.txt");
    directory_.Remove("x/y");
    directory_.Remove("x");
}

TEST_F(FileCopy, TouchesNothingByAPathThatTheLocaleCannotEncode) {
    ScopedLocale const locale("C");
    WorkingDirectory const here(directory_.Path(""));
    for (bool const overwrite : {false, true}) {
        for (auto const copy : {qor_CopyFile, CopyFromTo}) {
            EXPECT_FALSE(copy(kNotNarrow, L"b", overwrite));
            EXPECT_FALSE(copy(kNotNarrow, L"x/c", overwrite));
            EXPECT_FALSE(copy(L"a", kNotNarrow, overwrite));
            EXPECT_FALSE(copy(L"a", (std::wstring(L"x/") + kNotNarrow).c_str(), overwrite));
            EXPECT_FALSE(copy(kNotNarrow, kNotNarrow, overwrite));
        }
    }
    EXPECT_EQ("old", directory_.Content("b"));
    EXPECT_FALSE(directory_.Has("x"));
}

TEST_F(FileCopy, CopiesByNamesOfTheLocale) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_TRUE(qor_CopyFile(Path("a").c_str(), (Path("") + kNotNarrow).c_str(), false));
    EXPECT_EQ("new", directory_.Content("\u4E2D"));
    directory_.Remove("\u4E2D");
}

TEST_F(FileCopy, ThrowsNothingWithoutAWorkingDirectory) {
    directory_.MakeFolder("gone");
    WorkingDirectory const here(directory_.Path("gone"));
    directory_.Remove("gone");
    EXPECT_TRUE(qor_CopyFile(Path("a").c_str(), Path("c").c_str(), true));
    EXPECT_EQ("new", directory_.Content("c"));
    directory_.Remove("c");
    EXPECT_FALSE(qor_CopyFile(Path("a").c_str(), L"c", true));
    EXPECT_FALSE(qor_CopyFile(L"a", Path("c").c_str(), true));
    EXPECT_FALSE(DelFile(L"a", true));
    directory_.MakeFolder("gone");
}

// ---- CopyFromTo ----

TEST_F(FileCopy, CopyFromToOverwritesOnlyWhenTold) {
    EXPECT_TRUE(CopyFromTo(Path("a").c_str(), Path("b").c_str(), false));
    EXPECT_EQ("old", directory_.Content("b"));
    EXPECT_TRUE(CopyFromTo(Path("missing").c_str(), Path("b").c_str(), false));
    EXPECT_TRUE(CopyFromTo(Path("a").c_str(), Path("b").c_str(), true));
    EXPECT_EQ("new", directory_.Content("b"));
    for (bool const overwrite : {false, true}) {
        EXPECT_TRUE(CopyFromTo(Path("a").c_str(), Path("c").c_str(), overwrite));
        EXPECT_EQ("new", directory_.Content("c"));
        directory_.Remove("c");
        EXPECT_FALSE(CopyFromTo(Path("missing").c_str(), Path("c").c_str(), overwrite));
    }
}

// ---- CopyFromToCheckDate ----

class FileCopyCheckDate : public FileCopy {
  protected:
    void SetModified(std::string const& name, time_t seconds) {
        struct timespec times[2] = {};
        times[0].tv_sec = times[1].tv_sec = seconds;
        ASSERT_EQ(0, utimensat(AT_FDCWD, directory_.Path(name).c_str(), times, 0));
    }
};

TEST_F(FileCopyCheckDate, CopiesToWhereNothingIs) {
    EXPECT_TRUE(CopyFromToCheckDate(Path("a").c_str(), Path("c").c_str()));
    EXPECT_EQ("new", directory_.Content("c"));
    directory_.Remove("c");
}

// On purpose: true, and nothing is copied.
TEST_F(FileCopyCheckDate, LeavesAnExistingFileWhicheverIsNewer) {
    for (time_t const seconds : {0, 1000000, 2000000}) {
        SetModified("a", seconds);
        SetModified("b", 1000000);
        EXPECT_TRUE(CopyFromToCheckDate(Path("a").c_str(), Path("b").c_str()));
        EXPECT_EQ("old", directory_.Content("b"));
    }
}

TEST_F(FileCopyCheckDate, IsFalseWithoutASource) {
    EXPECT_FALSE(CopyFromToCheckDate(Path("missing").c_str(), Path("b").c_str()));
    EXPECT_EQ("old", directory_.Content("b"));
    EXPECT_FALSE(CopyFromToCheckDate(Path("missing").c_str(), Path("c").c_str()));
    EXPECT_FALSE(directory_.Has("c"));
}

// The times of neither can be had: their paths have ".." in them.
TEST_F(FileCopyCheckDate, IsTrueWhenATimeCannotBeHad) {
    directory_.MakeFolder("x");
    EXPECT_TRUE(CopyFromToCheckDate(Path("x/../a").c_str(), Path("b").c_str()));
    EXPECT_TRUE(CopyFromToCheckDate(Path("a").c_str(), Path("x/../b").c_str()));
    EXPECT_EQ("old", directory_.Content("b"));
}

TEST_F(FileCopyCheckDate, TouchesNothingByAPathThatTheLocaleCannotEncode) {
    ScopedLocale const locale("C");
    WorkingDirectory const here(directory_.Path(""));
    EXPECT_FALSE(CopyFromToCheckDate(kNotNarrow, L"b"));
    EXPECT_FALSE(CopyFromToCheckDate(L"a", kNotNarrow));
    EXPECT_FALSE(CopyFromToCheckDate(kNotNarrow, L"c"));
    EXPECT_FALSE(directory_.Has("c"));
    EXPECT_EQ("old", directory_.Content("b"));
}

}  // namespace
