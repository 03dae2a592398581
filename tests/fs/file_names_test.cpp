#include <qorutils/fs/file_names.h>

#include <unistd.h>

#include <climits>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/scoped_locale.h"
#include "support/scoped_variable.h"
#include "support/temporary_directory.h"
#include "support/text_literal.h"
#include "support/working_directory.h"

namespace {

using namespace qor::file_names;
using String = qor_text::CQorStringT<wchar_t>;

struct PathCase {
    wchar_t const* path;
    int nameStart;
    int extStart;
    wchar_t const* nameWithExt;
    wchar_t const* ext;
    wchar_t const* nameWithoutExt;
    wchar_t const* pathWithoutExt;
    wchar_t const* dirWithoutSlash;
    wchar_t const* dirWithSlash;
};

PathCase const kPaths[] = {
    {L"/usr/lib/libx.so.1", 9, 16, L"libx.so.1", L"1", L"libx.so", L"/usr/lib/libx.so", L"/usr/lib",
     L"/usr/lib/"},
    {L"C:\\dir\\file.txt", 7, 11, L"file.txt", L"txt", L"file", L"C:\\dir\\file", L"C:\\dir",
     L"C:\\dir\\"},
    // the later separator wins, whichever it is
    {L"mixed\\a/b.c", 8, 9, L"b.c", L"c", L"b", L"mixed\\a/b", L"mixed\\a", L"mixed\\a/"},
    {L"mixed/a\\b.c", 8, 9, L"b.c", L"c", L"b", L"mixed/a\\b", L"mixed/a", L"mixed/a\\"},
    {L"noext", 0, 5, L"noext", L"", L"noext", L"noext", L"", L""},
    {L"file.", 0, 4, L"file.", L"", L"file", L"file", L"", L""},
    {L".hidden", 0, 0, L".hidden", L"hidden", L"", L"", L"", L""},
    // on purpose: a dot in a directory name counts
    {L"a.b/c", 4, 1, L"c", L"b/c", L"c", L"a", L"a.b", L"a.b/"},
    {L"a.b/c.d", 4, 5, L"c.d", L"d", L"c", L"a.b/c", L"a.b", L"a.b/"},
    {L"./c", 2, 0, L"c", L"/c", L"c", L"", L".", L"./"},
    {L"a/.b", 2, 2, L".b", L"b", L"", L"a/", L"a", L"a/"},
    {L"a/..", 2, 3, L"..", L"", L".", L"a/.", L"a", L"a/"},
    {L"", 0, 0, L"", L"", L"", L"", L"", L""},
    {L".", 0, 0, L".", L"", L"", L"", L"", L""},
    {L"..", 0, 1, L"..", L"", L".", L".", L"", L""},
    {L"a", 0, 1, L"a", L"", L"a", L"a", L"", L""},
    {L"a.b", 0, 1, L"a.b", L"b", L"a", L"a", L"", L""},
    {L"/", 1, 1, L"", L"", L"", L"/", L"", L"/"},
    {L"\\", 1, 1, L"", L"", L"", L"\\", L"", L"\\"},
    {L"/file", 1, 5, L"file", L"", L"file", L"/file", L"", L"/"},
    {L"dir/", 4, 4, L"", L"", L"", L"dir/", L"dir", L"dir/"},
    {L"dir.d/", 6, 3, L"", L"d/", L"", L"dir", L"dir.d", L"dir.d/"},
    {L"//host//x", 8, 9, L"x", L"", L"x", L"//host//x", L"//host/", L"//host//"},
    {L"C:file", 0, 6, L"C:file", L"", L"C:file", L"C:file", L"", L""},
    {L"\u00FC\u4E2D/\U0001F600.\u00E9", 3, 4, L"\U0001F600.\u00E9", L"\u00E9", L"\U0001F600",
     L"\u00FC\u4E2D/\U0001F600", L"\u00FC\u4E2D", L"\u00FC\u4E2D/"},
};

TEST(FileNames, FindTheStartsOfNameAndExtension) {
    for (PathCase const& c : kPaths) {
        EXPECT_EQ(c.nameStart, GetFileNameStart(c.path)) << c.path;
        EXPECT_EQ(c.extStart, GetFileExtStart(c.path)) << c.path;
    }
}

TEST(FileNames, TakePathsApart) {
    for (PathCase const& c : kPaths) {
        EXPECT_EQ(c.nameWithExt, Content(ExtractFileNameWithExtFromPathName(c.path))) << c.path;
        EXPECT_EQ(c.ext, Content(ExtractFileNameExtFromPathName(c.path))) << c.path;
        EXPECT_EQ(c.nameWithoutExt, Content(ExtractFileNameWithoutExtFromPathName(c.path)))
            << c.path;
        EXPECT_EQ(c.pathWithoutExt, Content(ExtractPathNameWithoutExtFromPathName(c.path)))
            << c.path;
        EXPECT_EQ(c.dirWithoutSlash, Content(ExtractDirNameWithoutSlashFromPathName(c.path)))
            << c.path;
        EXPECT_EQ(c.dirWithSlash, Content(ExtractDirNameWithSlashFromPathName(c.path))) << c.path;
    }
}

TEST(FileNames, LeaveThePathAsItIs) {
    String const path(L"C:\\dir\\file.txt");
    GetCanonicalFileName(path);
    ExtractFileNameWithExtFromPathName(path);
    EXPECT_EQ(L"C:\\dir\\file.txt", Content(path));
}

TEST(FileNames, LookForSeparatorsUpToTheFirstZeroOnly) {
    String const path(L"d/n.e\0x/y.z", 11);
    EXPECT_EQ(2, GetFileNameStart(path));
    EXPECT_EQ(3, GetFileExtStart(path));
    EXPECT_EQ(std::wstring(L"n.e\0x/y.z", 9), Content(ExtractFileNameWithExtFromPathName(path)));
    EXPECT_EQ(std::wstring(L"e\0x/y.z", 7), Content(ExtractFileNameExtFromPathName(path)));
    EXPECT_EQ(L"n", Content(ExtractFileNameWithoutExtFromPathName(path)));
    EXPECT_EQ(L"d/n", Content(ExtractPathNameWithoutExtFromPathName(path)));
    EXPECT_EQ(L"d", Content(ExtractDirNameWithoutSlashFromPathName(path)));
    EXPECT_EQ(L"d/", Content(ExtractDirNameWithSlashFromPathName(path)));
}

TEST(FileNames, CountWhatLiesBehindAZeroAsPartOfTheLastPiece) {
    String const path(L"name\0.x", 7);
    EXPECT_EQ(0, GetFileNameStart(path));
    EXPECT_EQ(7, GetFileExtStart(path));
    EXPECT_EQ(std::wstring(L"name\0.x", 7), Content(ExtractFileNameWithoutExtFromPathName(path)));
    EXPECT_EQ(L"", Content(ExtractFileNameExtFromPathName(path)));
}

TEST(GetCanonicalFileName, TurnsBackslashesAndNothingElse) {
    struct {
        wchar_t const* path;
        wchar_t const* canonical;
    } const cases[] = {
        {L"a\\\\b", L"a//b"},
        {L"C:\\dir\\file.txt", L"C:/dir/file.txt"},
        {L"\\", L"/"},
        {L"a/b", L"a/b"},
        {L"a//b/./../c/", L"a//b/./../c/"},
        {L"a\\.\\..\\c\\", L"a/./../c/"},
        {L"", L""},
    };
    for (auto const& c : cases) EXPECT_EQ(c.canonical, Content(GetCanonicalFileName(c.path)));
}

TEST(GetCanonicalFileName, TurnsBackslashesBehindAZeroToo) {
    EXPECT_EQ(std::wstring(L"a/\0/b", 5), Content(GetCanonicalFileName(String(L"a\\\0\\b", 5))));
}

struct Pieces {
    String nameWithExt = L"old";
    String nameWithoutExt = L"old";
    String ext = L"old";
    String parentDirName = L"old";
    String parentPath = L"old";
    bool hasExt = false;

    explicit Pieces(String const& path) {
        hasExt = ExtractFileNameAndExtAndParentDirFromPathName(path, nameWithExt, nameWithoutExt,
                                                               ext, parentDirName, parentPath);
    }
};

TEST(ExtractFileNameAndExtAndParentDir, FillsAllPieces) {
    struct {
        wchar_t const* path;
        wchar_t const* nameWithExt;
        wchar_t const* nameWithoutExt;
        wchar_t const* ext;
        wchar_t const* parentDirName;
        wchar_t const* parentPath;
        bool hasExt;
    } const cases[] = {
        {L"/x/y/z.txt", L"z.txt", L"z", L"txt", L"y", L"/x", true},
        {L"C:\\x\\y\\z.txt", L"z.txt", L"z", L"txt", L"y", L"C:\\x", true},
        {L"y/z.txt", L"z.txt", L"z", L"txt", L"y", L"", true},
        {L"/y/z", L"z", L"z", L"", L"y", L"", false},
        {L"/z.txt", L"z.txt", L"z", L"txt", L"", L"", true},
        {L"z.", L"z.", L"z", L"", L"", L"", false},
        {L"a.b/c", L"c", L"c", L"b/c", L"a.b", L"", true},
        {L"/w/x/y/", L"", L"", L"", L"y", L"/w/x", false},
        {L"x//z.t", L"z.t", L"z", L"t", L"", L"x", true},
        {L"", L"", L"", L"", L"", L"", false},
    };
    for (auto const& c : cases) {
        Pieces const pieces(c.path);
        EXPECT_EQ(c.nameWithExt, Content(pieces.nameWithExt)) << c.path;
        EXPECT_EQ(c.nameWithoutExt, Content(pieces.nameWithoutExt)) << c.path;
        EXPECT_EQ(c.ext, Content(pieces.ext)) << c.path;
        EXPECT_EQ(c.parentDirName, Content(pieces.parentDirName)) << c.path;
        EXPECT_EQ(c.parentPath, Content(pieces.parentPath)) << c.path;
        EXPECT_EQ(c.hasExt, pieces.hasExt) << c.path;
    }
}

TEST(ExtractFileNameAndExtAndParentDir, TakesThePathAsAnyOfItsOutputs) {
    for (int output = 0; output != 5; ++output) {
        String strings[5];
        strings[output] = L"/x/y/z.txt";
        EXPECT_TRUE(ExtractFileNameAndExtAndParentDirFromPathName(
            strings[output], strings[0], strings[1], strings[2], strings[3], strings[4]));
        EXPECT_EQ(L"z.txt", Content(strings[0])) << output;
        EXPECT_EQ(L"z", Content(strings[1])) << output;
        EXPECT_EQ(L"txt", Content(strings[2])) << output;
        EXPECT_EQ(L"y", Content(strings[3])) << output;
        EXPECT_EQ(L"/x", Content(strings[4])) << output;
    }
}

TEST(ExtractFileNameAndExtAndParentDir, LeavesTheLastPieceInAStringThatServesForSeveral) {
    String path(L"/x/y/z.txt");
    String other;
    EXPECT_TRUE(
        ExtractFileNameAndExtAndParentDirFromPathName(path, other, other, other, path, path));
    EXPECT_EQ(L"txt", Content(other));
    EXPECT_EQ(L"/x", Content(path));
    EXPECT_TRUE(
        ExtractFileNameAndExtAndParentDirFromPathName(L"n.e", path, path, path, path, path));
    EXPECT_EQ(L"", Content(path));
}

TEST(ExtractFileNameAndExtAndParentDir, FillsOutputsThatShareABuffer) {
    String path(L"/x/y/z.txt");
    String a(path), b(path), c(path), d(path), e(path);
    EXPECT_TRUE(ExtractFileNameAndExtAndParentDirFromPathName(path, a, b, c, d, e));
    EXPECT_EQ(L"z.txt z txt y /x", Content(a + L" " + b + L" " + c + L" " + d + L" " + e));
    EXPECT_EQ(L"/x/y/z.txt", Content(path));
}

// A fresh directory as the working directory, for one scope.
class FreshWorkingDirectory {
  public:
    void MakeAndEnter(char const* name) {
        directory_.MakeFolder(name);
        if (chdir(directory_.Path(name).c_str()) != 0) throw std::runtime_error("chdir");
    }
    void Remove() const { directory_.Remove(""); }

    // As the system names it, widened as ASCII.
    static std::wstring Name() {
        char name[PATH_MAX];
        if (getcwd(name, sizeof name) == nullptr) throw std::runtime_error("getcwd");
        return std::wstring(name, name + std::char_traits<char>::length(name));
    }

  private:
    TemporaryDirectory directory_;
    WorkingDirectory const here_{directory_.Path("")};
};

TEST(GetAbsoluteFileName, PutsTheWorkingDirectoryInFrontOfRelativePaths) {
    FreshWorkingDirectory directory;
    EXPECT_EQ(directory.Name() + L"/file.txt", Content(GetAbsoluteFileName(L"file.txt")));
    EXPECT_EQ(directory.Name() + L"/a/b", Content(GetAbsoluteFileName(L"a/b")));
    EXPECT_EQ(directory.Name() + L"/a/", Content(GetAbsoluteFileName(L"a/")));
}

TEST(GetAbsoluteFileName, KeepsAbsolutePaths) {
    for (wchar_t const* path : {L"/", L"/file", L"/a/../b/./c", L"/no/such/directory/", L"//a//b"})
        EXPECT_EQ(path, Content(GetAbsoluteFileName(path)));
}

TEST(GetAbsoluteFileName, KeepsDots) {
    FreshWorkingDirectory directory;
    EXPECT_EQ(directory.Name() + L"/.", Content(GetAbsoluteFileName(L".")));
    EXPECT_EQ(directory.Name() + L"/..", Content(GetAbsoluteFileName(L"..")));
    EXPECT_EQ(directory.Name() + L"/./a/../b", Content(GetAbsoluteFileName(L"./a/../b")));
}

TEST(GetAbsoluteFileName, GivesTheWorkingDirectoryForAnEmptyPath) {
    FreshWorkingDirectory directory;
    EXPECT_EQ(directory.Name(), Content(GetAbsoluteFileName(L"")));
    EXPECT_EQ(directory.Name(), Content(GetAbsoluteFileName(String(L"\0file", 5))));
}

TEST(GetAbsoluteFileName, TurnsBackslashesAfterwards) {
    FreshWorkingDirectory directory;
    EXPECT_EQ(directory.Name() + L"/a/b.c", Content(GetAbsoluteFileName(L"a\\b.c")));
    EXPECT_EQ(L"/a/b", Content(GetAbsoluteFileName(L"/a\\b")));
    // On purpose: only '/' makes a path absolute.
    EXPECT_EQ(directory.Name() + L"//a", Content(GetAbsoluteFileName(L"\\a")));
    EXPECT_EQ(directory.Name() + L"/C:/a", Content(GetAbsoluteFileName(L"C:\\a")));
}

TEST(GetAbsoluteFileName, TurnsBackslashesOfTheWorkingDirectoryToo) {
    FreshWorkingDirectory directory;
    std::wstring const parent = directory.Name();
    directory.MakeAndEnter("back\\slash");
    EXPECT_EQ(parent + L"/back/slash/file", Content(GetAbsoluteFileName(L"file")));
}

TEST(GetAbsoluteFileName, ReadsThePathUpToItsFirstZero) {
    FreshWorkingDirectory directory;
    EXPECT_EQ(directory.Name() + L"/a", Content(GetAbsoluteFileName(String(L"a\0b", 3))));
    EXPECT_EQ(L"/a", Content(GetAbsoluteFileName(String(L"/a\0b", 4))));
}

TEST(GetAbsoluteFileName, KeepsCharactersThatTheLocaleEncodes) {
    ScopedLocale locale("C.UTF-8");
    FreshWorkingDirectory directory;
    std::wstring const parent = directory.Name();
    EXPECT_EQ(parent + L"/caf\u00E9/\u4E2D\U0001F600",
              Content(GetAbsoluteFileName(L"caf\u00E9/\u4E2D\U0001F600")));
    EXPECT_EQ(L"/\u00FC", Content(GetAbsoluteFileName(L"/\u00FC")));
    directory.MakeAndEnter("caf\xC3\xA9");
    EXPECT_EQ(parent + L"/caf\u00E9/\u00FC", Content(GetAbsoluteFileName(L"\u00FC")));
    EXPECT_EQ(parent + L"/caf\u00E9", Content(GetAbsoluteFileName(L"")));
}

TEST(GetAbsoluteFileName, IsEmptyForAPathThatTheLocaleCannotEncode) {
    {
        ScopedLocale locale("C");
        EXPECT_EQ(L"", Content(GetAbsoluteFileName(L"caf\u00E9")));
        EXPECT_EQ(L"", Content(GetAbsoluteFileName(L"/caf\u00E9/file")));
        EXPECT_EQ(L"", Content(GetAbsoluteFileName(L"\u4E2D")));
    }
    {
        ScopedLocale locale("C.UTF-8");
        wchar_t const noCharacter[] = {L'/', static_cast<wchar_t>(0xD800), 0};
        EXPECT_EQ(L"", Content(GetAbsoluteFileName(noCharacter)));
    }
}

// Cut before what cannot be decoded, it would be the name of something else.
TEST(GetAbsoluteFileName, IsEmptyInAWorkingDirectoryThatTheLocaleCannotDecode) {
    struct {
        char const* locale;
        char const* directory;
    } const cases[] = {
        {"C.UTF-8", "caf\xE9"},       // ends within a character
        {"C.UTF-8", "caf\xE9!"},      // is no UTF-8 in the middle
        {"C.UTF-8", "\xED\xA0\x80"},  // is a surrogate
        {"C", "caf\xC3\xA9"},
    };
    for (auto const& c : cases) {
        FreshWorkingDirectory directory;
        directory.MakeAndEnter(c.directory);
        ScopedLocale const locale(c.locale);
        for (wchar_t const* path : {L"file", L".", L"..", L"a\\b", L""})
            EXPECT_EQ(L"", Content(GetAbsoluteFileName(path))) << c.directory << " and " << path;
        EXPECT_EQ(L"/a/b", Content(GetAbsoluteFileName(L"/a\\b")));
    }
}

TEST(GetAbsoluteFileName, DoesNotCareForAMissingLocaleInTheEnvironment) {
    ScopedVariable variable("LC_ALL", "xx_XX.UTF-8");
    ScopedLocale locale("C.UTF-8");
    FreshWorkingDirectory directory;
    EXPECT_EQ(directory.Name() + L"/caf\u00E9", Content(GetAbsoluteFileName(L"caf\u00E9")));
    EXPECT_EQ(L"/caf\u00E9", Content(GetAbsoluteFileName(L"/caf\u00E9")));
}

TEST(GetAbsoluteFileName, IsEmptyWithoutAWorkingDirectoryUnlessNoneIsNeeded) {
    FreshWorkingDirectory directory;
    directory.Remove();
    EXPECT_EQ(L"", Content(GetAbsoluteFileName(L"file")));
    EXPECT_EQ(L"", Content(GetAbsoluteFileName(L".")));
    EXPECT_EQ(L"", Content(GetAbsoluteFileName(L"")));
    EXPECT_EQ(L"/a/b", Content(GetAbsoluteFileName(L"/a\\b")));
}

}  // namespace
