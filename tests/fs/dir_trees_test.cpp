#include <qorutils/fs/dir_trees.h>

#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace {

using namespace FileFuncs;
using WideString = qor_text::CQorStringT<wchar_t>;

class DirTrees : public testing::Test {
  protected:
    WideString Path(std::string const& name) const { return directory_.WidePath(name).c_str(); }

    bool IsFolder(std::string const& name) const {
        struct stat64 status;
        return stat64(directory_.Path(name).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    }

    TemporaryDirectory directory_;
};

// A working directory with a file in it, for what must not take it for its own.
class DirTreesAtWork : public DirTrees {
  protected:
    DirTreesAtWork() : working_(directory_.Path("")) { directory_.MakeFile("file", "x"); }

    WorkingDirectory working_;
};

// A working directory that was removed.
class DirTreesNowhere : public DirTrees {
  protected:
    DirTreesNowhere() : working_(MakeFolder()) { directory_.Remove("gone"); }

    std::string MakeFolder() {
        directory_.MakeFolder("gone");
        return directory_.Path("gone");
    }

    WorkingDirectory working_;
};

// Calls act with each path that the C locale cannot encode.
template <typename Act>
void ForPathsThatCannotBeNarrowed(WideString const& folder, Act act) {
    ScopedLocale const locale("C");
    for (wchar_t const* const path : {L"\u20AC", L"x/\u20AC", L"\u20AC/x"}) {
        act(WideString(path));
        act(folder + L'/' + path);
    }
}

// ---- CreateDirRecursive ----

TEST_F(DirTrees, CreateDirRecursiveMakesWhatIsMissing) {
    directory_.MakeFolder("a");
    EXPECT_TRUE(CreateDirRecursive(Path("a/b/c")));
    EXPECT_TRUE(IsFolder("a/b/c"));
    EXPECT_TRUE(CreateDirRecursive(Path("a/b/d/")));  // one separator at the end
    EXPECT_TRUE(CreateDirRecursive(Path("a\\b\\e")));
    for (char const* const made : {"a/b/c", "a/b/d", "a/b/e", "a/b"}) directory_.Remove(made);
}

TEST_F(DirTrees, CreateDirRecursiveIsContentWithWhatIsThere) {
    directory_.MakeFolder("a");
    directory_.MakeFolder("a/b");
    directory_.MakeLink("link", "a/b");
    for (char const* const path : {"a", "a/b", "a/b/", "a//b", "a/./b", "a/b/..", "link", "link/"})
        EXPECT_TRUE(CreateDirRecursive(Path(path))) << path;
}

TEST_F(DirTrees, CreateDirRecursiveFailsAtAFileAndMakesNothingBelowIt) {
    directory_.MakeFile("file", "x");
    directory_.MakeLink("dangling", "missing");
    for (char const* const path : {"file", "file/", "file/a", "file/a/b", "dangling", "dangling/a"})
        EXPECT_FALSE(CreateDirRecursive(Path(path))) << path;
    EXPECT_EQ("x", directory_.Content("file"));
}

TEST_F(DirTrees, OnPurposeCreateDirRecursiveFailsAtAFolderThatItFindsMadeAlready) {
    struct {
        char const *path, *made;
    } const cases[] = {
        {"a/b//c", "a/b"},  // "b/" was made as "b"
        {"a/./b", "a"},
        {"a/b/../c", "a/b"},
        {"a/b//", "a/b"},  // one separator is taken off
    };
    for (auto const& c : cases) {
        EXPECT_FALSE(CreateDirRecursive(Path(c.path))) << c.path;
        EXPECT_TRUE(IsFolder(c.made)) << c.path;
        if (std::string(c.made) != "a") directory_.Remove(c.made);
        directory_.Remove("a");
    }
    EXPECT_FALSE(CreateDirRecursive(L"/"));
}

TEST_F(DirTreesAtWork, CreateDirRecursiveStartsFromTheWorkingDirectory) {
    EXPECT_TRUE(CreateDirRecursive(L"a/b"));
    EXPECT_TRUE(IsFolder("a/b"));
    EXPECT_TRUE(CreateDirRecursive(L""));
    EXPECT_TRUE(CreateDirRecursive(L"."));
    EXPECT_TRUE(CreateDirRecursive(L".."));
    EXPECT_FALSE(CreateDirRecursive(L"file"));
    directory_.Remove("a/b");
    directory_.Remove("a");
}

TEST_F(DirTreesAtWork, CreateDirRecursiveMakesNoPathThatCannotBeNarrowed) {
    ForPathsThatCannotBeNarrowed(
        Path("new"), [](WideString const& path) { EXPECT_FALSE(CreateDirRecursive(path)); });
}

TEST_F(DirTreesNowhere, CreateDirRecursiveFails) {
    EXPECT_FALSE(CreateDirRecursive(L"a"));
    EXPECT_FALSE(CreateDirRecursive(L""));
}

// ---- CreateDirectoryTree ----

TEST_F(DirTrees, CreateDirectoryTreeMakesWhatIsMissing) {
    directory_.MakeFolder("a");
    struct {
        char const *path, *made;
    } const cases[] = {
        {"a/b/c", "a/b/c"},   {"a/b/d/", "a/b/d"}, {"a\\b\\e", "a/b/e"}, {"a\\b/f\\", "a/b/f"},
        {"a/b//g", "a/b/g"},  {"a/h//i", "a/h/i"}, {"a/./j", "a/j"},     {"a/k/./l", "a/k/l"},
        {"a/b/m//", "a/b/m"}, {"a/n/../o", "a/o"},
    };
    for (auto const& c : cases) {
        EXPECT_TRUE(CreateDirectoryTree(Path(c.path))) << c.path;
        EXPECT_TRUE(IsFolder(c.made)) << c.path;
    }
    for (auto const& c : cases) directory_.Remove(c.made);
    for (char const* const made : {"a/b", "a/h", "a/k", "a/n"}) directory_.Remove(made);
}

TEST_F(DirTrees, CreateDirectoryTreeIsContentWithWhatIsThere) {
    directory_.MakeFolder("a");
    directory_.MakeLink("link", "a");
    for (char const* const path : {"a", "a/", "a\\", "a//", "./a", "a/.", "a/..", "link"})
        EXPECT_TRUE(CreateDirectoryTree(Path(path))) << path;
    EXPECT_TRUE(CreateDirectoryTree(L"/"));
}

TEST_F(DirTrees, CreateDirectoryTreeFailsAtAFileAndMakesNothingBelowIt) {
    directory_.MakeFile("file", "x");
    directory_.MakeLink("dangling", "missing");
    for (char const* const path : {"file", "file/", "file/a", "file\\a\\b", "dangling/a"})
        EXPECT_FALSE(CreateDirectoryTree(Path(path))) << path;
    EXPECT_EQ("x", directory_.Content("file"));
}

TEST_F(DirTreesAtWork, CreateDirectoryTreeStartsFromTheWorkingDirectory) {
    EXPECT_TRUE(CreateDirectoryTree(L"a\\b"));
    EXPECT_TRUE(IsFolder("a/b"));
    EXPECT_TRUE(CreateDirectoryTree(L""));
    EXPECT_TRUE(CreateDirectoryTree(nullptr));
    EXPECT_FALSE(CreateDirectoryTree(L"file"));
    directory_.Remove("a/b");
    directory_.Remove("a");
}

TEST_F(DirTreesAtWork, CreateDirectoryTreeMakesNoPathThatCannotBeNarrowed) {
    ForPathsThatCannotBeNarrowed(
        Path("new"), [](WideString const& path) { EXPECT_FALSE(CreateDirectoryTree(path)); });
}

TEST_F(DirTreesNowhere, CreateDirectoryTreeFails) {
    EXPECT_FALSE(CreateDirectoryTree(L"a"));
    EXPECT_FALSE(CreateDirectoryTree(L""));
}

TEST_F(DirTrees, CreatesNamesBeyondAscii) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_TRUE(CreateDirRecursive(Path("") + L"\u20AC/\u00E4"));
    EXPECT_TRUE(CreateDirectoryTree(Path("") + L"\u20AC/\U0001F600"));
    directory_.Remove("\xE2\x82\xAC/\xC3\xA4");
    directory_.Remove("\xE2\x82\xAC/\xF0\x9F\x98\x80");
    directory_.Remove("\xE2\x82\xAC");
}

// ---- RemoveDirectoryTree ----

TEST_F(DirTrees, RemoveDirectoryTreeRemovesAllThatIsThere) {
    directory_.MakeFolder("a");
    directory_.MakeFolder("a/b");
    directory_.MakeFolder("a/b/c");
    directory_.MakeFile("a/b/c/file", "x");
    directory_.MakeFile("a/read only", "x");
    ASSERT_EQ(0, chmod(directory_.Path("a/read only").c_str(), 0400));
    directory_.MakeFile("a/\xFF", "x");
    directory_.MakeFile("a/back\\slash", "x");
    ASSERT_EQ(0, mkfifo(directory_.Path("a/fifo").c_str(), 0600));
    EXPECT_TRUE(RemoveDirectoryTree(Path("a\\")));
    EXPECT_FALSE(directory_.Has("a"));
}

TEST_F(DirTrees, RemoveDirectoryTreeDoesNotFollowLinks) {
    directory_.MakeFolder("kept");
    directory_.MakeFile("kept/file", "x");
    directory_.MakeFolder("a");
    directory_.MakeLink("a/link", "../kept");
    directory_.MakeLink("a/loop", ".");
    directory_.MakeLink("a/dangling", "missing");
    directory_.MakeLink("link", "kept");
    EXPECT_TRUE(RemoveDirectoryTree(Path("a")));
    EXPECT_FALSE(directory_.Has("a"));
    EXPECT_TRUE(RemoveDirectoryTree(Path("link")));
    EXPECT_FALSE(directory_.Has("link"));
    EXPECT_EQ("x", directory_.Content("kept/file"));
}

TEST_F(DirTrees, RemoveDirectoryTreeEmptiesWhatItCannotRemoveByThatName) {
    directory_.MakeFolder("a");
    directory_.MakeLink("link", "a");
    for (char const* const path : {"link/", "link\\", "a/."}) {
        directory_.MakeFile("a/file", "x");
        EXPECT_FALSE(RemoveDirectoryTree(Path(path))) << path;
        EXPECT_EQ(0u, CountFiles(Path("a"))) << path;
    }
    EXPECT_TRUE(directory_.Has("link"));
}

TEST_F(DirTrees, RemoveDirectoryTreeIsContentWithoutAFolder) {
    directory_.MakeFile("file", "x");
    EXPECT_TRUE(RemoveDirectoryTree(Path("missing")));
    EXPECT_TRUE(RemoveDirectoryTree(Path("missing/missing")));
    EXPECT_TRUE(RemoveDirectoryTree(Path("file/missing")));
    EXPECT_TRUE(directory_.Has("file"));
    EXPECT_TRUE(RemoveDirectoryTree(Path("file")));  // a file goes, too
    EXPECT_FALSE(directory_.Has("file"));
}

TEST_F(DirTreesAtWork, RemoveDirectoryTreeStartsFromTheWorkingDirectory) {
    directory_.MakeFolder("a");
    EXPECT_TRUE(RemoveDirectoryTree(L"a"));
    EXPECT_FALSE(directory_.Has("a"));
}

TEST_F(DirTreesAtWork, RemoveDirectoryTreeSparesTheWorkingDirectory) {
    EXPECT_FALSE(RemoveDirectoryTree(L""));
    EXPECT_FALSE(RemoveDirectoryTree(nullptr));
    ForPathsThatCannotBeNarrowed(
        Path("new"), [](WideString const& path) { EXPECT_FALSE(RemoveDirectoryTree(path)); });
    EXPECT_TRUE(directory_.Has("file"));
}

TEST_F(DirTreesNowhere, RemoveDirectoryTreeFails) {
    EXPECT_FALSE(RemoveDirectoryTree(L"a"));
}

// ---- EmptyFolder ----

TEST_F(DirTrees, EmptyFolderRemovesFilesAndFolders) {
    directory_.MakeFolder("a");
    directory_.MakeFile("a/file", "x");
    directory_.MakeFile("a/read only", "x");
    ASSERT_EQ(0, chmod(directory_.Path("a/read only").c_str(), 0400));
    directory_.MakeFolder("a/b");
    directory_.MakeFolder("a/b/c");
    directory_.MakeFile("a/b/c/\xFF", "x");
    directory_.MakeLink("a/b/link", "..");
    EXPECT_TRUE(EmptyFolder(Path("a")));
    EXPECT_TRUE(IsFolder("a"));
    EXPECT_EQ(0u, CountFiles(Path("a")));
}

TEST_F(DirTrees, EmptyFolderMakesReadOnlyFilesWritableUnderAllTheirNames) {
    directory_.MakeFolder("a");
    directory_.MakeFile("a/file", "x");
    ASSERT_EQ(0, link(directory_.Path("a/file").c_str(), directory_.Path("other").c_str()));
    ASSERT_EQ(0, chmod(directory_.Path("other").c_str(), 0400));
    EXPECT_TRUE(EmptyFolder(Path("a")));
    struct stat64 status = {};
    ASSERT_EQ(0, stat64(directory_.Path("other").c_str(), &status));
    EXPECT_EQ(0622u, status.st_mode & 07777);
    directory_.Remove("other");
}

TEST_F(DirTrees, OnPurposeEmptyFolderIsFalseWithNothingToRemove) {
    directory_.MakeFolder("a");
    directory_.MakeFile("file", "x");
    EXPECT_FALSE(EmptyFolder(Path("a")));
    EXPECT_FALSE(EmptyFolder(Path("missing")));
    EXPECT_FALSE(EmptyFolder(Path("file")));
    EXPECT_TRUE(directory_.Has("file"));
}

TEST_F(DirTrees, OnPurposeEmptyFolderStopsAtLinksAndSpecialFiles) {
    directory_.MakeFolder("kept");
    directory_.MakeFile("kept/file", "x");
    for (char const* const target : {"../kept", "../kept/file", "missing", "."}) {
        directory_.MakeFolder("a");
        directory_.MakeLink("a/link", target);
        EXPECT_FALSE(EmptyFolder(Path("a"))) << target;
        EXPECT_TRUE(directory_.Has("a/link")) << target;
        directory_.Remove("a/link");
        directory_.Remove("a");
    }
    directory_.MakeFolder("a");
    ASSERT_EQ(0, mkfifo(directory_.Path("a/fifo").c_str(), 0600));
    EXPECT_FALSE(EmptyFolder(Path("a")));
    directory_.Remove("a/fifo");
    EXPECT_EQ("x", directory_.Content("kept/file"));
}

// Cut or split, such a name would be that of another file.
TEST_F(DirTrees, EmptyFolderStopsAtNamesThatNoWidePathSpells) {
    ScopedLocale const locale("C.UTF-8");
    directory_.MakeFolder("kept");
    directory_.MakeFile("kept/file", "x");
    for (char const* const name : {"a/\xFF", "a/..\\kept", "a/..\\kept\\file"}) {
        directory_.MakeFolder("a");
        directory_.MakeFolder(name);
        EXPECT_FALSE(EmptyFolder(Path("a"))) << name;
        EXPECT_TRUE(directory_.Has(name)) << name;
        directory_.Remove(name);
        directory_.MakeFile(name, "x");
        EXPECT_FALSE(EmptyFolder(Path("a"))) << name;
        directory_.Remove(name);
        directory_.Remove("a");
    }
    EXPECT_EQ("x", directory_.Content("kept/file"));
}

TEST_F(DirTreesAtWork, EmptyFolderSparesTheWorkingDirectory) {
    EXPECT_FALSE(EmptyFolder(L""));
    EXPECT_FALSE(EmptyFolder(WideString(L"\0file", 5)));
    ForPathsThatCannotBeNarrowed(Path("new"),
                                 [](WideString const& path) { EXPECT_FALSE(EmptyFolder(path)); });
    EXPECT_TRUE(directory_.Has("file"));
}

TEST_F(DirTreesAtWork, EmptyFolderStartsFromTheWorkingDirectory) {
    directory_.MakeFolder("a");
    directory_.MakeFile("a/file", "x");
    EXPECT_TRUE(EmptyFolder(L".\\a"));
    EXPECT_FALSE(directory_.Has("a/file"));
    EXPECT_TRUE(directory_.Has("file"));
}

// ---- CountFiles ----

TEST_F(DirTrees, CountFilesCountsEntriesOfEveryKindInOneFolder) {
    directory_.MakeFolder("a");
    EXPECT_EQ(0u, CountFiles(Path("a")));
    directory_.MakeFile("a/1", "");
    directory_.MakeFile("a/2", "");
    directory_.MakeFolder("a/b");
    directory_.MakeFile("a/b/not counted", "");
    EXPECT_EQ(3u, CountFiles(Path("a")));
    directory_.MakeLink("a/dangling", "missing");
    directory_.MakeFile("a/.hidden", "");
    directory_.MakeFile("a/\xFF", "");
    EXPECT_EQ(6u, CountFiles(Path("a")));
    EXPECT_EQ(1u, CountFiles(Path("a\\b\\")));
}

TEST_F(DirTreesAtWork, CountFilesIsZeroForWhatIsNoFolder) {
    EXPECT_EQ(0u, CountFiles(Path("missing")));
    EXPECT_EQ(0u, CountFiles(Path("file")));
    EXPECT_EQ(0u, CountFiles(L""));
    EXPECT_EQ(1u, CountFiles(L"."));
    ForPathsThatCannotBeNarrowed(Path("new"),
                                 [](WideString const& path) { EXPECT_EQ(0u, CountFiles(path)); });
}

}  // namespace
