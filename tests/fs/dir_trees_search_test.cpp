#include <qorutils/fs/dir_trees.h>

#include <sys/stat.h>

#include <string>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/scoped_variable.h"
#include "support/temporary_directory.h"
#include "support/text_literal.h"
#include "support/working_directory.h"

namespace {

using FileFuncs::FindFileInDirTree;
using FileFuncs::GetTempDirWithoutSlash;
using FileFuncs::GetUniqueTempDir;
using WideString = qor_text::CQorStringT<wchar_t>;

// ---- FindFileInDirTree ----

// A folder "root" with a/b/deep, b/other, Upper and a folder called "folder" in it.
class FindFileInDirTreeTest : public testing::Test {
  protected:
    FindFileInDirTreeTest() {
        for (char const* const folder : {"root", "root/a", "root/a/b", "root/b", "root/folder"})
            directory_.MakeFolder(folder);
        for (char const* const file : {"root/a/b/deep", "root/b/other", "root/Upper"})
            directory_.MakeFile(file, "");
    }

    WideString Path(std::string const& name) const { return directory_.WidePath(name).c_str(); }

    void ExpectFound(WideString const& path, wchar_t const* name) const {
        WideString found = L"before";
        EXPECT_TRUE(FindFileInDirTree(Path("root"), name, found));
        EXPECT_EQ(path, found);
    }

    void ExpectNotFound(wchar_t const* folder, wchar_t const* name) const {
        WideString found = L"before";
        EXPECT_FALSE(FindFileInDirTree(folder, name, found));
        EXPECT_EQ(L"before", found);
    }

    TemporaryDirectory directory_;
};

TEST_F(FindFileInDirTreeTest, GivesThePathOfAFileAtAnyDepth) {
    ExpectFound(Path("root/Upper"), L"Upper");
    ExpectFound(Path("root/b/other"), L"other");
    ExpectFound(Path("root/a/b/deep"), L"deep");
}

TEST_F(FindFileInDirTreeTest, BeginsThePathWithTheFolderAsGiven) {
    WorkingDirectory const working(directory_.Path("root"));
    struct {
        wchar_t const *folder, *found;
    } const cases[] = {
        {L".", L"./b/other"},
        {L"b", L"b/other"},
        {L"b/", L"b/other"},
        {L"../root/b", L"../root/b/other"},
    };
    for (auto const& c : cases) {
        WideString found;
        EXPECT_TRUE(FindFileInDirTree(c.folder, L"other", found));
        EXPECT_EQ(c.found, found);
    }
}

TEST_F(FindFileInDirTreeTest, FindsWholeNamesOfFilesOnlyAndTellsUpperFromLower) {
    for (wchar_t const* const name :
         {L"missing", L"upper", L"Uppe", L"UpperX", L"folder", L"a", L"b/other", L".", L"..", L""})
        ExpectNotFound(Path("root"), name);
    ExpectNotFound(Path("root"), nullptr);
    directory_.MakeFile("root/folder/a", "");
    ExpectFound(Path("root/folder/a"), L"a");  // whose name folders have, too
}

TEST_F(FindFileInDirTreeTest, FindsEveryKindOfEntryThatIsNoFolder) {
    directory_.MakeLink("root/dangling", "missing");
    directory_.MakeLink("root/b/link", "other");
    ASSERT_EQ(0, mkfifo(directory_.Path("root/fifo").c_str(), 0600));
    ExpectFound(Path("root/dangling"), L"dangling");
    ExpectFound(Path("root/b/link"), L"link");
    ExpectFound(Path("root/fifo"), L"fifo");
    directory_.Remove("root/fifo");
}

TEST_F(FindFileInDirTreeTest, FindsFilesOfAnySize) {
    directory_.MakeSparseFile("root/b/large", 0x140000000);
    ExpectFound(Path("root/b/large"), L"large");
}

TEST_F(FindFileInDirTreeTest, LooksIntoNothingButFolders) {
    ExpectNotFound(Path("missing"), L"Upper");
    ExpectNotFound(Path("root/Upper"), L"Upper");
    ExpectNotFound(L"", L"Upper");
    ExpectNotFound(nullptr, L"Upper");
    ExpectNotFound(Path("root\\a"), L"deep");  // no separator here
}

TEST_F(FindFileInDirTreeTest, TakesBackslashesForLettersOfAName) {
    directory_.MakeFile("root/x\\y", "");
    ExpectFound(Path("root/x\\y"), L"x\\y");
    ExpectNotFound(Path("root"), L"y");
}

TEST_F(FindFileInDirTreeTest, FollowsLinksToFolders) {
    directory_.MakeFolder("elsewhere");
    directory_.MakeFile("elsewhere/file", "");
    directory_.MakeLink("root/link", "../elsewhere");
    ExpectFound(Path("root/link/file"), L"file");
    ExpectNotFound(Path("root"), L"link");
}

TEST_F(FindFileInDirTreeTest, EndsWhereTheSystemFollowsALoopNoLonger) {
    directory_.MakeFolder("loops");
    directory_.MakeLink("loops/loop", ".");
    ExpectNotFound(Path("loops"), L"missing");
    WideString found;
    EXPECT_TRUE(FindFileInDirTree(Path("loops"), L"loop", found));  // the one that is no folder
    WideString path = Path("loops");
    for (int links = 0; links < 41; ++links) path += L"/loop";
    EXPECT_EQ(path, found);
}

TEST_F(FindFileInDirTreeTest, PassesUnreadableNamesOver) {
    ScopedLocale const locale("C.UTF-8");
    directory_.MakeFolder("odd");
    directory_.MakeFile("odd/name\xFF", "");
    directory_.MakeFile("odd/\xFF", "");
    directory_.MakeFolder("odd/folder\xFF");
    directory_.MakeFile("odd/folder\xFF/inner", "");
    for (wchar_t const* const name : {L"name", L"", L"inner"}) ExpectNotFound(Path("odd"), name);
    directory_.MakeFile("odd/\xE2\x82\xAC", "");
    directory_.MakeFolder("odd/\xC3\xA4");
    directory_.MakeFile("odd/\xC3\xA4/readable", "");
    WideString found;
    EXPECT_TRUE(FindFileInDirTree(Path("odd"), L"\u20AC", found));
    EXPECT_EQ(Path("odd/") + L"\u20AC", found);
    EXPECT_TRUE(FindFileInDirTree(Path("odd"), L"readable", found));
    EXPECT_EQ(Path("odd/") + L"\u00E4/readable", found);
}

TEST_F(FindFileInDirTreeTest, FindsNothingByTextsThatCannotBeNarrowed) {
    WorkingDirectory const working(directory_.Path("root"));
    ScopedLocale const locale("C");
    ExpectNotFound(L"\u20AC", L"Upper");
    ExpectNotFound(L"\u20AC/root", L"Upper");
    ExpectNotFound(L".", L"Upper\u20AC");
    ExpectNotFound(L".", L"\u20AC");
}

TEST_F(FindFileInDirTreeTest, TakesItsInputsFromTheOutput) {
    WideString text = Path("root");
    EXPECT_TRUE(FindFileInDirTree(text, L"other", text));
    EXPECT_EQ(Path("root/b/other"), text);
    text = L"deep";
    EXPECT_TRUE(FindFileInDirTree(Path("root"), text, text));
    EXPECT_EQ(Path("root/a/b/deep"), text);
}

// ---- Temporary folders ----

TEST(GetTempDirWithoutSlash, IsTheVariableLessOneSlash) {
    TemporaryDirectory directory;
    directory.MakeFolder("t");
    for (char const* const name : {"t", "t/"}) {
        ScopedVariable const variable("TMPDIR", directory.Path(name).c_str());
        EXPECT_EQ(WideString(directory.WidePath("t").c_str()), GetTempDirWithoutSlash());
    }
}

TEST(GetTempDirWithoutSlash, IsEmptyForTheRootAndForWhatIsNoFolder) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "");
    for (std::string const& path :
         {std::string("/"), directory.Path("missing"), directory.Path("file")}) {
        ScopedVariable const variable("TMPDIR", path.c_str());
        EXPECT_TRUE(GetTempDirWithoutSlash().IsEmpty()) << path;
    }
}

TEST(GetTempDirWithoutSlash, IsTmpWithoutAVariable) {
    ScopedVariable const variables[] = {
        {"TMPDIR", nullptr}, {"TMP", nullptr}, {"TEMP", nullptr}, {"TEMPDIR", nullptr}};
    EXPECT_EQ(L"/tmp", GetTempDirWithoutSlash());
}

// The folder's name within the directory; checks the path around it.
std::string UniqueName(TemporaryDirectory const& directory, std::string const& parent) {
    WideString const path = GetUniqueTempDir();
    std::string const narrow(path.begin(), path.end());
    std::string const start = directory.Path(parent) + "/tvl";
    EXPECT_EQ(start, narrow.substr(0, start.size()));
    EXPECT_EQ('\\', narrow.back());
    std::string const name = narrow.substr(start.size() - 3, narrow.size() - start.size() + 2);
    EXPECT_EQ(std::string::npos, name.find_first_of("/\\"));
    struct stat64 status = {};
    EXPECT_EQ(0, stat64(narrow.substr(0, narrow.size() - 1).c_str(), &status));
    EXPECT_TRUE(S_ISDIR(status.st_mode));
    return parent + "/" + name;
}

TEST(GetUniqueTempDir, MakesAnotherFolderEachTime) {
    TemporaryDirectory directory;
    directory.MakeFolder("t");
    for (char const* const name : {"t", "t/"}) {
        ScopedVariable const variable("TMPDIR", directory.Path(name).c_str());
        std::string const first = UniqueName(directory, "t");
        std::string const second = UniqueName(directory, "t");
        EXPECT_NE(first, second);
        directory.Remove(first);
        directory.Remove(second);
    }
}

TEST(GetUniqueTempDir, MakesTheFolderForTemporaryFilesToo) {
    TemporaryDirectory directory;
    for (char const* const name : {"a/b", "a\\b"}) {
        ScopedVariable const variable("TMPDIR", directory.Path(name).c_str());
        directory.Remove(UniqueName(directory, "a/b"));
        directory.Remove("a/b");
        directory.Remove("a");
    }
}

}  // namespace
