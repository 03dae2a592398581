#include <qorutils/fs/cfile.h>

#include <cerrno>
#include <string>

#include <gtest/gtest.h>

#include "support/cfile_fixture.h"
#include "support/scoped_locale.h"

namespace {

using namespace base;

TEST_F(CFileTest, RenamesAFile) {
    EXPECT_TRUE(CFile::Rename(Path("old").c_str(), Path("new").c_str()));
    EXPECT_FALSE(directory_.Has("old"));
    EXPECT_EQ("0123456789", directory_.Content("new"));
    directory_.Remove("new");
}

TEST_F(CFileTest, ThrowsWhenItCannotRename) {
    directory_.MakeFile("other", "x");
    directory_.MakeFolder("folder");
    struct {
        char const *from, *to;
    } const cases[] = {
        {"old", "other"},                                               // there is one
        {"old", "folder"},      {"missing", "new"}, {"folder", "new"},  // files only
        {"old", "missing/new"},
    };
    for (auto const& c : cases) {
        EXPECT_EQ("MoveFile",
                  FailedOperation([&] { CFile::Rename(Path(c.from).c_str(), Path(c.to).c_str()); }))
            << c.from << " to " << c.to;
    }
    EXPECT_EQ("MoveFile", FailedOperation([] { CFile::Rename(nullptr, nullptr); }));
    EXPECT_EQ("0123456789", directory_.Content("old"));
    EXPECT_EQ("x", directory_.Content("other"));
}

TEST_F(CFileTest, RenamesToALetterBackslashUnlessThatPathIsTakenWithASeparator) {
    EXPECT_TRUE(CFile::Rename(Path("old").c_str(), Path("folder\\new").c_str()));
    EXPECT_EQ("0123456789", directory_.Content("folder\\new"));
    directory_.Remove("folder\\new");
    directory_.MakeFile("other", "x");
    directory_.MakeFolder("folder");
    directory_.MakeFile("folder/new", "y");
    EXPECT_EQ("MoveFile", FailedOperation([&] {
                  CFile::Rename(Path("other").c_str(), Path("folder\\new").c_str());
              }));
    EXPECT_EQ("x", directory_.Content("other"));
}

TEST_F(CFileTest, RemovesFilesAndLinks) {
    directory_.MakeLink("link", "old");
    CFile::Remove(Path("link").c_str());
    EXPECT_FALSE(directory_.Has("link"));
    EXPECT_TRUE(directory_.Has("old"));
    CFile::Remove(Path("old").c_str());
    EXPECT_FALSE(directory_.Has("old"));
}

TEST_F(CFileTest, ThrowsWhenItCannotRemove) {
    directory_.MakeFolder("folder");
    EXPECT_EQ(With("DeleteFile", ENOENT), Failure([&] { CFile::Remove(Path("missing").c_str()); }));
    EXPECT_EQ(With("DeleteFile", ENOENT), Failure([] { CFile::Remove(L""); }));
    EXPECT_EQ(With("DeleteFile", ENOENT), Failure([] { CFile::Remove(nullptr); }));
    EXPECT_EQ(With("DeleteFile", ENOTDIR), Failure([&] { CFile::Remove(Path("old/x").c_str()); }));
    EXPECT_EQ("DeleteFile", FailedOperation([&] { CFile::Remove(Path("folder").c_str()); }));
    EXPECT_TRUE(directory_.Has("folder"));
}

TEST_F(CFileTest, TellsFilesFromDirectoriesAndFromNothing) {
    directory_.MakeFolder("folder");
    directory_.MakeLink("link", "folder");
    directory_.MakeLink("dangling", "missing");
    struct {
        char const* name;
        bool exists, isDirectory;
    } const cases[] = {
        {"old", true, false},      {"folder", true, true},
        {"folder\\", true, true},  // separates, too
        {"link", true, true},      {"dangling", false, false},
        {"missing", false, false},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.name);
        bool isDirectory = !c.isDirectory;
        EXPECT_EQ(c.exists, CFile::FileExists(Path(c.name).c_str(), isDirectory));
        EXPECT_EQ(c.isDirectory, isDirectory);
        EXPECT_EQ(c.exists, CFile::FileExists(Path(c.name).c_str()));
    }
    bool isDirectory = true;
    EXPECT_FALSE(CFile::FileExists(L"", isDirectory));
    EXPECT_FALSE(isDirectory);
    EXPECT_FALSE(CFile::FileExists(L""));
}

TEST_F(CFileTest, MeasuresFilesOfAnySizeByName) {
    directory_.MakeFile("empty", "");
    directory_.MakeSparseFile("large", 0x140000000);
    directory_.MakeFolder("folder");
    EXPECT_EQ(10, CFile::GetLength(Path("old").c_str()));
    EXPECT_EQ(0, CFile::GetLength(Path("empty").c_str()));
    EXPECT_EQ(0x140000000, CFile::GetLength(Path("large").c_str()));
    EXPECT_EQ(-1, CFile::GetLength(Path("folder").c_str()));
    EXPECT_EQ(-1, CFile::GetLength(Path("missing").c_str()));
    EXPECT_EQ(-1, CFile::GetLength(L""));
}

TEST_F(CFileTest, FindsAndTouchesNothingByAPathThatCannotBeNarrowed) {
    ScopedLocale const locale("C");
    std::wstring const path = Path("old") + L"\u20AC";
    CFile file;
    PlatformFileError error = kFileOk;
    EXPECT_FALSE(file.Open(path.c_str(), kFileOpenOrCreate, nullptr, &error));
    EXPECT_EQ(kFileErrorNotFound, error);
    EXPECT_FALSE(file.OpenForWriting(path.c_str()));
    EXPECT_FALSE(CFile::FileExists(path.c_str()));
    EXPECT_EQ(-1, CFile::GetLength(path.c_str()));
    EXPECT_EQ(With("DeleteFile", ENOENT), Failure([&] { CFile::Remove(path.c_str()); }));
    EXPECT_EQ("MoveFile",
              FailedOperation([&] { CFile::Rename(Path("old").c_str(), path.c_str()); }));
    EXPECT_EQ("0123456789", directory_.Content("old"));
}

TEST_F(CFileTest, WritesAndFindsNamesBeyondAscii) {
    ScopedLocale const locale("C.UTF-8");
    std::wstring const path = Path("") + L"\u20AC";
    CFile file;
    ASSERT_TRUE(file.OpenForWriting(path.c_str()));
    file.Write("abc", 3);
    file.Close();
    EXPECT_EQ("abc", directory_.Content("\xE2\x82\xAC"));
    EXPECT_EQ(3, CFile::GetLength(path.c_str()));
    CFile::Remove(path.c_str());
    EXPECT_FALSE(CFile::FileExists(path.c_str()));
}

}  // namespace
