#include <qorutils/fs/dir_trees.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace {

using FileFuncs::CopyDirectory;
using FileFuncs::CountFiles;
using FileFuncs::RemoveDirectoryTree;
using WideString = qor_text::CQorStringT<wchar_t>;

// A folder "from", and "work", the working directory, which is empty.
class CopyDirectoryTest : public testing::Test {
  protected:
    CopyDirectoryTest() : working_(MakeFolders()) {}
    ~CopyDirectoryTest() { RemoveDirectoryTree(Path("to")); }

    std::string MakeFolders() {
        directory_.MakeFolder("from");
        directory_.MakeFolder("work");
        return directory_.Path("work");
    }

    WideString Path(std::string const& name) const { return directory_.WidePath(name).c_str(); }

    bool Copy(bool recursive = true, bool passThrough = false) const {
        return CopyDirectory(Path("from"), Path("to"), recursive, passThrough);
    }

    TemporaryDirectory directory_;
    WorkingDirectory working_;
};

// The names in the folder in the order in which the system lists them.
std::vector<std::string> Listing(std::string const& folder) {
    std::vector<std::string> names;
    DIR* const directory = opendir(folder.c_str());
    while (dirent64 const* const entry = readdir64(directory))
        if (entry->d_name[0] != '.') names.push_back(entry->d_name);
    closedir(directory);
    return names;
}

TEST_F(CopyDirectoryTest, CopiesFilesAndFolders) {
    directory_.MakeFile("from/file", "content");
    directory_.MakeFile("from/empty", "");
    directory_.MakeFolder("from/a");
    directory_.MakeFolder("from/a/b");
    directory_.MakeFile("from/a/b/deep", "deep content");
    EXPECT_TRUE(Copy());
    EXPECT_EQ("content", directory_.Content("to/file"));
    EXPECT_EQ("", directory_.Content("to/empty"));
    EXPECT_EQ("deep content", directory_.Content("to/a/b/deep"));
    EXPECT_EQ(3u, CountFiles(Path("to")));
    EXPECT_EQ(1u, CountFiles(Path("to/a")));
    EXPECT_EQ(1u, CountFiles(Path("to/a/b")));
    EXPECT_EQ(0u, CountFiles(L"."));
}

TEST_F(CopyDirectoryTest, PassesFoldersOverUnlessRecursive) {
    directory_.MakeFolder("from/a");
    EXPECT_TRUE(Copy(false));
    EXPECT_EQ(0u, CountFiles(Path("to")));
    directory_.MakeFile("from/file", "content");
    EXPECT_TRUE(Copy(false));
    EXPECT_EQ("content", directory_.Content("to/file"));
    EXPECT_EQ(1u, CountFiles(Path("to")));
}

TEST_F(CopyDirectoryTest, MakesTheTargetAlsoOfAnEmptyFolder) {
    EXPECT_TRUE(CopyDirectory(Path("from"), Path("to/deep\\er"), true, false));
    EXPECT_TRUE(directory_.Has("to/deep/er"));
    EXPECT_TRUE(CopyDirectory(Path("missing"), Path("to/other"), true, false));
    EXPECT_EQ(0u, CountFiles(Path("to/other")));
    EXPECT_TRUE(directory_.Has("to/other"));
}

TEST_F(CopyDirectoryTest, ReplacesFilesAndLeavesOthers) {
    directory_.MakeFile("from/file", "new");
    directory_.MakeFolder("to");
    directory_.MakeFile("to/file", "older and longer");
    directory_.MakeFile("to/other", "other");
    ASSERT_EQ(0, chmod(directory_.Path("to/file").c_str(), 0400));
    EXPECT_TRUE(Copy());
    EXPECT_EQ("new", directory_.Content("to/file"));
    EXPECT_EQ("other", directory_.Content("to/other"));
}

TEST_F(CopyDirectoryTest, DoesTheSameWhateverPassThroughSays) {
    directory_.MakeFolder("from/a");
    directory_.MakeFile("from/a/file", "content");
    EXPECT_TRUE(Copy(true, true));
    EXPECT_EQ("content", directory_.Content("to/a/file"));
}

TEST_F(CopyDirectoryTest, FollowsLinks) {
    directory_.MakeFile("file", "content");
    directory_.MakeFolder("folder");
    directory_.MakeFile("folder/in", "inner");
    directory_.MakeLink("from/link to file", "../file");
    directory_.MakeLink("from/link to folder", "../folder");
    directory_.MakeLink("from/dangling", "missing");
    EXPECT_TRUE(Copy());
    EXPECT_EQ("content", directory_.Content("to/link to file"));
    EXPECT_EQ("inner", directory_.Content("to/link to folder/in"));
    EXPECT_EQ(2u, CountFiles(Path("to")));
    struct stat64 status = {};
    ASSERT_EQ(0, lstat64(directory_.Path("to/link to file").c_str(), &status));
    EXPECT_TRUE(S_ISREG(status.st_mode));
}

TEST_F(CopyDirectoryTest, EndsWhereTheSystemFollowsALoopNoLonger) {
    directory_.MakeFile("from/file", "x");
    directory_.MakeLink("from/loop", ".");
    Copy();
    std::string folder = "to";
    for (int links = 0; links <= 40; ++links) {
        EXPECT_EQ("x", directory_.Content(folder + "/file"));
        folder += "/loop";
    }
    EXPECT_FALSE(directory_.Has(folder + "/file"));
}

TEST_F(CopyDirectoryTest, CopiesAFolderIntoItselfUntilThePathIsTooLong) {
    std::string const name(200, 't');
    directory_.MakeFile("from/file", "x");
    CopyDirectory(Path("from"), Path("from/" + name), true, false);
    EXPECT_EQ("x", directory_.Content("from/" + name + "/file"));
    EXPECT_TRUE(directory_.Has("from/" + name + "/" + name));
    EXPECT_TRUE(RemoveDirectoryTree(Path("from/" + name)));
    EXPECT_EQ("x", directory_.Content("from/file"));
}

TEST_F(CopyDirectoryTest, CopiesTheFilesOfAFolderIntoAFolderInIt) {
    directory_.MakeFile("from/file", "x");
    EXPECT_TRUE(CopyDirectory(Path("from"), Path("from/in"), false, false));
    EXPECT_EQ("x", directory_.Content("from/in/file"));
    EXPECT_EQ(1u, CountFiles(Path("from/in")));
    directory_.Remove("from/in/file");
    directory_.Remove("from/in");
}

TEST_F(CopyDirectoryTest, PassesFilesOfTwoGibibytesOver) {
    directory_.MakeSparseFile("from/large", 0x80000000);
    directory_.MakeSparseFile("from/5 GiB", 0x140000000);
    EXPECT_TRUE(Copy());
    EXPECT_EQ(0u, CountFiles(Path("to")));
}

// Opens the FIFO for writing as soon as someone reads from it, and writes nothing.
pid_t StartWriter(std::string const& fifo) {
    pid_t const writer = fork();
    if (writer == 0) {
        alarm(10);
        _exit(open(fifo.c_str(), O_WRONLY) == -1);
    }
    return writer;
}

TEST_F(CopyDirectoryTest, WaitsForTheWriterOfAFifo) {
    ASSERT_EQ(0, mkfifo(directory_.Path("from/fifo").c_str(), 0600));
    pid_t const writer = StartWriter(directory_.Path("from/fifo"));
    bool const isCopied = Copy();
    EXPECT_EQ(isCopied, directory_.Has("to/fifo"));
    int status = -1;
    EXPECT_EQ(writer, waitpid(writer, &status, 0));
    EXPECT_EQ(0, status);
    directory_.Remove("from/fifo");
}

TEST_F(CopyDirectoryTest, ReturnsTheResultOfTheLastEntry) {
    directory_.MakeFile("from/1", "x");
    directory_.MakeFile("from/2", "x");
    std::vector<std::string> const names = Listing(directory_.Path("from"));
    ASSERT_EQ(2u, names.size());
    for (bool const lastSucceeds : {false, true}) {
        directory_.MakeFolder("to");
        std::string const failing = "to/" + names[lastSucceeds ? 0 : 1];
        directory_.MakeLink(failing, "missing/x");  // cannot be copied to
        EXPECT_EQ(lastSucceeds, Copy());
        EXPECT_EQ("x", directory_.Content("to/" + names[lastSucceeds ? 1 : 0]));
        RemoveDirectoryTree(Path("to"));
    }
}

TEST_F(CopyDirectoryTest, FailsWhereTheTargetIsAFile) {
    directory_.MakeFile("from/file", "x");
    directory_.MakeFile("to", "y");
    EXPECT_FALSE(Copy());
    EXPECT_EQ("y", directory_.Content("to"));
}

TEST_F(CopyDirectoryTest, CopiesNothingToTheSameText) {
    directory_.MakeFile("from/file", "x");
    EXPECT_FALSE(CopyDirectory(Path("from"), Path("from"), true, false));
    EXPECT_FALSE(CopyDirectory(Path("to"), Path("to"), true, false));
    EXPECT_FALSE(CopyDirectory(L"", L"", true, false));
    EXPECT_EQ("x", directory_.Content("from/file"));
    EXPECT_FALSE(directory_.Has("to"));
}

TEST_F(CopyDirectoryTest, OnPurposeAFolderCopiedToAnotherOfItsNamesLosesItsFiles) {
    directory_.MakeFile("from/file", "x");
    EXPECT_FALSE(CopyDirectory(Path("from"), Path("from/"), true, false));
    EXPECT_FALSE(directory_.Has("from/file"));
}

TEST_F(CopyDirectoryTest, OnPurposeLooksForFoldersAgainInTheWorkingDirectory) {
    directory_.MakeFolder("from/a");
    EXPECT_TRUE(Copy());
    directory_.MakeFolder("work/a");
    directory_.MakeFile("work/a/stray", "x");
    for (bool const recursive : {false, true}) {
        directory_.MakeFile("to/stray", "y");
        EXPECT_FALSE(Copy(recursive));  // there is no from/stray
        EXPECT_FALSE(directory_.Has("to/stray"));
    }
    directory_.MakeFile("from/stray", "z");
    EXPECT_TRUE(Copy());
    EXPECT_EQ("z", directory_.Content("to/stray"));
    EXPECT_EQ(0u, CountFiles(Path("to/a")));
}

TEST_F(CopyDirectoryTest, TakesRelativePathsFromTheWorkingDirectory) {
    directory_.MakeFile("from/file", "x");
    EXPECT_TRUE(CopyDirectory(L"..\\from", L"../to", true, false));
    EXPECT_EQ("x", directory_.Content("to/file"));
    EXPECT_TRUE(CopyDirectory(L"../from", L"", true, false));
    EXPECT_EQ("x", directory_.Content("work/file"));
    directory_.Remove("work/file");
}

TEST_F(CopyDirectoryTest, CopiesNothingByPathsThatCannotBeNarrowed) {
    ScopedLocale const locale("C");
    directory_.MakeFile("from/file", "x");
    directory_.MakeFile("work/file", "y");
    for (wchar_t const* const path : {L"\u20AC", L"x/\u20AC"}) {
        EXPECT_FALSE(CopyDirectory(path, Path("to"), true, false));
        EXPECT_FALSE(CopyDirectory(Path("from"), path, true, false));
        EXPECT_FALSE(CopyDirectory(Path("from"), Path("to/") + path, true, false));
    }
    EXPECT_FALSE(directory_.Has("to"));
    EXPECT_EQ("y", directory_.Content("work/file"));
    EXPECT_EQ(1u, CountFiles(L"."));
}

TEST_F(CopyDirectoryTest, CopiesNamesBeyondAsciiAndPassesUnreadableOnesOver) {
    ScopedLocale const locale("C.UTF-8");
    directory_.MakeFolder("from/\xE2\x82\xAC");
    directory_.MakeFile("from/\xE2\x82\xAC/\xC3\xA4", "x");
    directory_.MakeFile("from/a\xFF", "unreadable");
    directory_.MakeFolder("from/b\xFF");
    directory_.MakeFile("from/b\xFF/file", "unreadable");
    EXPECT_TRUE(Copy());
    EXPECT_EQ("x", directory_.Content("to/\xE2\x82\xAC/\xC3\xA4"));
    EXPECT_EQ(1u, CountFiles(Path("to")));
}

// Split at it, the name would lead out of the target.
TEST_F(CopyDirectoryTest, FailsToCopyANameWithABackslash) {
    directory_.MakeFile("file", "x");
    directory_.MakeFolder("to");
    for (char const* const name : {"from/..\\file", "from/..\\from"}) {
        directory_.MakeFile(name, "y");
        EXPECT_FALSE(Copy());
        directory_.Remove(name);
        directory_.MakeFolder(name);
        EXPECT_FALSE(Copy());
        directory_.Remove(name);
    }
    EXPECT_EQ("x", directory_.Content("file"));
    EXPECT_EQ(0u, CountFiles(Path("to")));
}

TEST_F(CopyDirectoryTest, CopiesOnlyByAbsolutePathsWithoutAWorkingDirectory) {
    directory_.MakeFile("from/file", "x");
    directory_.MakeFolder("gone");
    WorkingDirectory const gone(directory_.Path("gone"));
    directory_.Remove("gone");
    EXPECT_FALSE(CopyDirectory(L"from", Path("to"), true, false));
    EXPECT_FALSE(CopyDirectory(Path("from"), L"to", true, false));
    EXPECT_FALSE(directory_.Has("to"));
    EXPECT_TRUE(Copy());
    EXPECT_EQ("x", directory_.Content("to/file"));
}

// Cut or split, it would be another directory.
TEST_F(CopyDirectoryTest, CopiesNothingInAWorkingDirectoryThatNoWidePathSpells) {
    ScopedLocale const locale("C.UTF-8");
    directory_.MakeFile("from/file", "x");
    for (char const* const name : {"work/\xFF", "work/a\\b"}) {
        directory_.MakeFolder(name);
        WorkingDirectory const unspelled(directory_.Path(name));
        EXPECT_FALSE(CopyDirectory(Path("from"), L"to", true, false));
        EXPECT_FALSE(CopyDirectory(L"../../from", Path("to"), true, false));
    }
    EXPECT_FALSE(directory_.Has("to"));
    EXPECT_EQ(2u, CountFiles(L"."));
}

}  // namespace
