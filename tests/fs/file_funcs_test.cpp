#include <qorutils/fs/file_funcs.h>

#include <sys/stat.h>
#include <unistd.h>

#include <set>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/text_literal.h"
#include "support/working_directory.h"

namespace {

using namespace FileFuncs;
using WideString = qor_text::CQorStringT<wchar_t>;

static_assert(eFindFiles == 1 && eFindFolders == 2 && eFindFilesAndFolders == 3, "");

constexpr wchar_t kNotNarrow[] = L"\u4E2D";  // not in the "C" locale

class FileFuncsTest : public testing::Test {
  protected:
    std::wstring Path(std::string const& name) const { return directory_.WidePath(name); }

    static std::wstring Backslashed(std::wstring path) {
        for (wchar_t& c : path)
            if (c == L'/') c = L'\\';
        return path;
    }

    TemporaryDirectory directory_;
};

// ---- Tests ----

TEST_F(FileFuncsTest, TellWhatExists) {
    directory_.MakeFile("file", "abc");
    directory_.MakeFolder("folder");
    directory_.MakeLink("linkToFile", "file");
    directory_.MakeLink("linkToFolder", "folder");
    directory_.MakeLink("linkToDevice", "/dev/null");
    directory_.MakeLink("linkToNothing", "nothing");
    directory_.MakeLink("linkToItself", "linkToItself");
    struct {
        char const* name;
        bool exists;
        bool isFolder;
    } const cases[] = {
        {"file", true, false},          {"folder", true, true},
        {"folder/", true, true},        {"folder/..", true, true},
        {"linkToFile", true, false},    {"linkToFolder", true, true},
        {"linkToDevice", true, false},  {"linkToNothing", false, false},
        {"linkToItself", false, false}, {"missing", false, false},
        {"file/", false, false},        {"file/x", false, false},
    };
    for (auto const& c : cases) {
        for (std::wstring const& path : {Path(c.name), Backslashed(Path(c.name))}) {
            EXPECT_EQ(c.exists, IsFileExist(path.c_str())) << path;
            EXPECT_EQ(c.exists, FileExists(path.c_str())) << path;
            EXPECT_EQ(c.isFolder, IsDirExist(path.c_str())) << path;
            EXPECT_EQ(c.isFolder, IsFolder(path.c_str())) << path;
        }
    }
}

TEST_F(FileFuncsTest, FindNothingAtNoPath) {
    WideString const cut(L"\0/", 2);
    for (WideString const& path : {WideString(), cut}) {
        EXPECT_FALSE(IsFileExist(path));
        EXPECT_FALSE(IsDirExist(path));
    }
    EXPECT_FALSE(FileExists(nullptr));
    EXPECT_FALSE(FileExists(L""));
    EXPECT_FALSE(IsFolder(nullptr));
    EXPECT_FALSE(IsFolder(L""));
}

TEST_F(FileFuncsTest, LookInTheWorkingDirectory) {
    directory_.MakeFile("file", "");
    WorkingDirectory const here(directory_.Path(""));
    EXPECT_TRUE(FileExists(L"file"));
    EXPECT_TRUE(FileExists(L".\\file"));
    EXPECT_TRUE(IsFolder(L"."));
    EXPECT_FALSE(FileExists(L"\\file"));
}

TEST_F(FileFuncsTest, FindNothingAtAPathThatTheLocaleCannotEncode) {
    ScopedLocale const locale("C");
    WorkingDirectory const here(directory_.Path(""));
    for (std::wstring const& path : {std::wstring(kNotNarrow), Path("") + kNotNarrow}) {
        EXPECT_FALSE(IsFileExist(path.c_str()));
        EXPECT_FALSE(IsDirExist(path.c_str()));
        long long size = 7;
        EXPECT_FALSE(GetFileLength(path.c_str(), size));
        EXPECT_EQ(7, size);
        EXPECT_FALSE(DelFile(path.c_str(), true));
    }
}

TEST_F(FileFuncsTest, FindNamesOfTheLocale) {
    ScopedLocale const locale("C.UTF-8");
    directory_.MakeFile("\u4E2D", "abc");
    EXPECT_TRUE(FileExists((Path("") + kNotNarrow).c_str()));
    EXPECT_FALSE(IsFolder((Path("") + kNotNarrow).c_str()));
}

// ---- Sizes ----

TEST_F(FileFuncsTest, GiveSizesOf64Bits) {
    directory_.MakeFile("empty", "");
    directory_.MakeFile("small", "abc");
    directory_.MakeLink("link", "small");
    directory_.MakeSparseFile("two", 2147483648);
    directory_.MakeSparseFile("four", 4294967295);
    directory_.MakeSparseFile("five", 5368709120);
    struct {
        char const* name;
        long long size;
        unsigned long low;
        unsigned long high;
    } const cases[] = {
        {"empty", 0, 0, 0},
        {"small", 3, 3, 0},
        {"link", 3, 3, 0},
        {"two", 2147483648, 0x80000000, 0},
        {"four", 4294967295, 0xFFFFFFFF, 0},
        {"five", 5368709120, 0x40000000, 1},
    };
    for (auto const& c : cases) {
        long long size = -7;
        EXPECT_TRUE(GetFileLength(Path(c.name).c_str(), size)) << c.name;
        EXPECT_EQ(c.size, size) << c.name;
        unsigned long low = 7;
        unsigned long high = 7;
        EXPECT_TRUE(GetPathSize(Path(c.name).c_str(), low, &high)) << c.name;
        EXPECT_EQ(c.low, low) << c.name;
        EXPECT_EQ(c.high, high) << c.name;
        low = 7;
        EXPECT_TRUE(GetPathSize(Path(c.name).c_str(), low, nullptr)) << c.name;
        EXPECT_EQ(c.low, low) << c.name;
    }
}

TEST_F(FileFuncsTest, GiveNoSizeOfAnythingElse) {
    directory_.MakeFolder("folder");
    directory_.MakeLink("linkToNothing", "nothing");
    directory_.MakeLink("device", "/dev/null");
    for (std::wstring const& path :
         {Path("folder"), Path("linkToNothing"), Path("device"), Path("missing"), std::wstring()}) {
        long long size = -7;
        EXPECT_FALSE(GetFileLength(path.c_str(), size)) << path;
        EXPECT_EQ(-7, size) << path;
        unsigned long low = 7;
        unsigned long high = 7;
        EXPECT_FALSE(GetPathSize(path.c_str(), low, &high)) << path;
        EXPECT_EQ(0u, low) << path;
        EXPECT_EQ(0u, high) << path;
        low = 7;
        EXPECT_FALSE(GetPathSize(path.c_str(), low, nullptr)) << path;
        EXPECT_EQ(0u, low) << path;
    }
}

// On purpose: only the other one takes a backslash for a separator.
TEST_F(FileFuncsTest, TakeTheLengthOfAPathAsItStands) {
    directory_.MakeFolder("a");
    directory_.MakeFile("a/b", "abc");
    directory_.MakeFile("a\\b", "abcde");
    long long size = 0;
    EXPECT_TRUE(GetFileLength((Path("") + L"a\\b").c_str(), size));
    EXPECT_EQ(5, size);
    unsigned long low = 0;
    EXPECT_TRUE(GetPathSize((Path("") + L"a\\b").c_str(), low, nullptr));
    EXPECT_EQ(3u, low);
}

// ---- Delete ----

TEST_F(FileFuncsTest, DeleteARegularFile) {
    for (bool const force : {false, true}) {
        for (mode_t const mode : {0600, 0444, 0000}) {
            directory_.MakeFile("file", "abc");
            ASSERT_EQ(0, chmod(directory_.Path("file").c_str(), mode));
            EXPECT_TRUE(DelFile(Path("file").c_str(), force));
            EXPECT_FALSE(directory_.Has("file"));
            EXPECT_FALSE(DelFile(Path("file").c_str(), force));
        }
    }
}

TEST_F(FileFuncsTest, DeleteByAnyPath) {
    WorkingDirectory const here(directory_.Path(""));
    for (wchar_t const* path : {L"sub/file", L"sub\\file", L".\\sub/./file", L"sub/../sub/file"}) {
        directory_.MakeFolder("sub");
        directory_.MakeFile("sub/file", "");
        EXPECT_TRUE(DelFile(path, false)) << path;
        EXPECT_FALSE(directory_.Has("sub/file")) << path;
        directory_.Remove("sub");
    }
}

TEST_F(FileFuncsTest, DeleteNothingButFiles) {
    directory_.MakeFolder("folder");
    directory_.MakeLink("linkToFolder", "folder");
    directory_.MakeLink("linkToNothing", "nothing");
    directory_.MakeLink("linkToDevice", "/dev/null");
    if (mkfifo(directory_.Path("fifo").c_str(), 0400) != 0) throw std::runtime_error("no fifo");
    for (char const* name :
         {"folder", "linkToFolder", "linkToNothing", "linkToDevice", "fifo", "missing", ""}) {
        EXPECT_FALSE(DelFile(Path(name).c_str(), false)) << name;
        EXPECT_FALSE(DelFile(Path(name).c_str(), true)) << name;
    }
    WorkingDirectory const here(directory_.Path("folder"));
    EXPECT_FALSE(DelFile(L"", true));
    EXPECT_FALSE(DelFile(nullptr, true));
    for (char const* name : {"folder", "linkToFolder", "linkToNothing", "linkToDevice"})
        EXPECT_TRUE(directory_.Has(name)) << name;
    struct stat64 status = {};
    EXPECT_EQ(0, stat64(directory_.Path("fifo").c_str(), &status));
    EXPECT_EQ(0400u, status.st_mode & 07777);  // nothing was added
    directory_.Remove("fifo");
}

TEST_F(FileFuncsTest, DeleteALinkAndMakeItsFileWritableByForce) {
    directory_.MakeFile("file", "abc");
    for (bool const force : {false, true}) {
        directory_.MakeLink("link", "file");
        ASSERT_EQ(0, chmod(directory_.Path("file").c_str(), 04444));
        EXPECT_TRUE(DelFile(Path("link").c_str(), force));
        EXPECT_FALSE(directory_.Has("link"));
        struct stat64 status = {};
        ASSERT_EQ(0, stat64(directory_.Path("file").c_str(), &status));
        EXPECT_EQ(force ? 04666u : 04444u, status.st_mode & 07777);
    }
}

// ---- Move ----

TEST_F(FileFuncsTest, MoveAFile) {
    directory_.MakeFile("a", "abc");
    EXPECT_TRUE(MoveFile(Path("a").c_str(), Path("b").c_str()));
    EXPECT_FALSE(directory_.Has("a"));
    EXPECT_EQ("abc", directory_.Content("b"));
    directory_.Remove("b");
}

TEST_F(FileFuncsTest, MoveOverNothingThatExists) {
    directory_.MakeFile("a", "abc");
    directory_.MakeFile("b", "old");
    directory_.MakeFolder("folder");
    EXPECT_FALSE(MoveFile(Path("a").c_str(), Path("b").c_str()));
    EXPECT_FALSE(MoveFile(Path("a").c_str(), Path("folder").c_str()));
    EXPECT_FALSE(MoveFile(Path("a").c_str(), Path("a").c_str()));
    EXPECT_EQ("abc", directory_.Content("a"));
    EXPECT_EQ("old", directory_.Content("b"));
}

TEST_F(FileFuncsTest, MoveNothingButFiles) {
    directory_.MakeFolder("folder");
    directory_.MakeLink("linkToFolder", "folder");
    for (char const* name : {"folder", "linkToFolder", "missing"}) {
        EXPECT_FALSE(MoveFile(Path(name).c_str(), Path("new").c_str())) << name;
        EXPECT_FALSE(directory_.Has("new")) << name;
    }
    EXPECT_FALSE(MoveFile(L"", Path("new").c_str()));
    EXPECT_FALSE(MoveFile(nullptr, nullptr));
}

TEST_F(FileFuncsTest, MoveToNoPlaceThatCannotBe) {
    ScopedLocale const locale("C");
    WorkingDirectory const here(directory_.Path(""));
    directory_.MakeFile("a", "abc");
    for (wchar_t const* to : {L"missing/a", L"", kNotNarrow, L"/proc/a"})
        EXPECT_FALSE(MoveFile(L"a", to)) << to;
    EXPECT_FALSE(MoveFile(kNotNarrow, L"b"));
    EXPECT_EQ("abc", directory_.Content("a"));
}

TEST_F(FileFuncsTest, MoveALinkAndReplaceADanglingOne) {
    directory_.MakeFile("file", "abc");
    directory_.MakeLink("link", "file");
    directory_.MakeLink("dangling", "nothing");
    EXPECT_TRUE(MoveFile(Path("link").c_str(), Path("dangling").c_str()));
    EXPECT_FALSE(directory_.Has("link"));
    EXPECT_EQ("abc", directory_.Content("dangling"));
    EXPECT_TRUE(directory_.Has("file"));
}

// On purpose: only the look at what exists turns backslashes.
TEST_F(FileFuncsTest, MoveByPathsAsTheyStand) {
    directory_.MakeFile("a", "abc");
    directory_.MakeFolder("dir");
    directory_.MakeFile("dir/b", "old");
    std::wstring const odd = Path("") + L"dir\\b";
    EXPECT_FALSE(MoveFile(Path("a").c_str(), odd.c_str()));
    directory_.Remove("dir/b");
    EXPECT_TRUE(MoveFile(Path("a").c_str(), odd.c_str()));
    EXPECT_EQ("abc", directory_.Content("dir\\b"));
    directory_.Remove("dir\\b");
}

// ---- Listing ----

std::multiset<std::string> NamesOf(qor_vector<base::_TFindInfo> const& entries) {
    std::multiset<std::string> names;
    for (base::_TFindInfo const& entry : entries) names.insert(entry.filename);
    return names;
}

TEST_F(FileFuncsTest, ListAFolder) {
    using Names = std::multiset<std::string>;
    directory_.MakeFile("a.txt", "abc");
    directory_.MakeFile("b.doc", "");
    directory_.MakeFolder("c.txt");
    directory_.MakeFile("c.txt/inside", "");
    directory_.MakeLink("d.txt", "c.txt");
    struct {
        int kind;
        wchar_t const* mask;
        Names names;
    } const cases[] = {
        {1, L"", {"a.txt", "b.doc"}},
        {2, L"", {"c.txt", "d.txt"}},
        {3, L"", {"a.txt", "b.doc", "c.txt", "d.txt"}},
        {3, nullptr, {"a.txt", "b.doc", "c.txt", "d.txt"}},
        {3, L"*.TXT", {"a.txt", "c.txt", "d.txt"}},
        {2, L"c*", {"c.txt"}},
        {1, L"c*", {}},
        {0, L"", {}},
        {~3, L"", {}},  // higher bits are ignored, also that of ".."
        {7, L"", {"a.txt", "b.doc", "c.txt", "d.txt"}},
        {-1, L"", {"a.txt", "b.doc", "c.txt", "d.txt"}},
    };
    qor_vector<base::_TFindInfo> entries;
    for (auto const& c : cases) {
        for (std::wstring const& folder : {Path(""), Backslashed(Path("."))}) {
            GetFileEntriesInFolder(entries, static_cast<EFindFolder>(c.kind), folder.c_str(),
                                   c.mask);
            EXPECT_EQ(c.names, NamesOf(entries)) << c.kind << " in " << folder;
        }
    }
    GetFileEntriesInFolder(entries, eFindFiles, Path("").c_str(), L"a.*");
    ASSERT_EQ(1u, entries.size());
    EXPECT_EQ(3, base::TFileEnumerator::GetFilesize(entries[0]));
}

TEST_F(FileFuncsTest, ListIntoAVectorThatKeepsItsRoom) {
    directory_.MakeFile("file", "");
    qor_vector<base::_TFindInfo> entries(100);
    for (int i = 0; i < 2; ++i) {
        GetFileEntriesInFolder(entries, eFindFilesAndFolders, Path("").c_str(), L"");
        EXPECT_EQ(1u, entries.size());
        EXPECT_EQ(100u, entries.capacity());
    }
    GetFileEntriesInFolder(entries, eFindFilesAndFolders, Path("missing").c_str(), L"");
    EXPECT_EQ(0u, entries.size());
    EXPECT_EQ(100u, entries.capacity());
}

// One by one, as the enumerator gives them: the same records in the same order.
TEST_F(FileFuncsTest, ListWhatTheEnumeratorReturns) {
    for (int i = 0; i < 30; ++i) directory_.MakeFile("file" + std::to_string(i), "");
    qor_vector<base::_TFindInfo> entries;
    GetFileEntriesInFolder(entries, eFindFiles, Path("").c_str(), L"*1*");
    base::TFileEnumerator enumerator(Path("").c_str(), false, 0x11, L"*1*");
    for (base::_TFindInfo const& entry : entries) {
        EXPECT_EQ(WideString(entry.filename), enumerator.Next());
        base::_TFindInfo info = {};
        enumerator.GetFindInfo(&info);
        EXPECT_STREQ(entry.filename, info.filename);
        EXPECT_EQ(entry.stat.st_ino, info.stat.st_ino);
    }
    EXPECT_TRUE(enumerator.Next().IsEmpty());
    EXPECT_EQ(12u, entries.size());
}

TEST_F(FileFuncsTest, ListNothingByWhatTheLocaleCannotEncode) {
    ScopedLocale const locale("C");
    WorkingDirectory const here(directory_.Path(""));
    directory_.MakeFile("file", "");
    qor_vector<base::_TFindInfo> entries(1);
    GetFileEntriesInFolder(entries, eFindFiles, kNotNarrow, L"");
    EXPECT_EQ(0u, entries.size());
    GetFileEntriesInFolder(entries, eFindFiles, L".", kNotNarrow);
    EXPECT_EQ(0u, entries.size());
}

}  // namespace
