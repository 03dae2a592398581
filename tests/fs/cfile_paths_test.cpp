#include <qorutils/fs/cfile.h>

#include <string>

#include <gtest/gtest.h>

#include "support/cfile_fixture.h"
#include "support/scoped_locale.h"
#include "support/scoped_variable.h"
#include "support/temporary_directory.h"
#include "support/text_literal.h"

namespace {

using base::CFile;
using WideString = qor_text::CQorStringT<wchar_t>;

// ---- Splitting ----

struct Pieces {
    WideString drive = L"before", dir = L"before", fname = L"before", ext = L"before";
};

Pieces Split(wchar_t const* path) {
    Pieces pieces;
    CFile::SplitPath(path, pieces.drive, pieces.dir, pieces.fname, pieces.ext);
    return pieces;
}

TEST(CFileSplitPath, TakesAPathApart) {
    struct {
        wchar_t const *path, *drive, *dir, *fname, *ext;
    } const cases[] = {
        {L"C:/a/b/name.tar.gz", L"C:", L"\\a\\b\\", L"name.tar", L".gz"},
        {L"a.b\\c", L"", L"a.b\\", L"c", L""},  // the dot is before the last separator
        {L"a.b/c", L"", L"a.b\\", L"c", L""},
        {L"a.b\\c.d", L"", L"a.b\\", L"c", L".d"},
        {L"", L"", L"", L"", L""},
        {L"name", L"", L"", L"name", L""},
        {L"name.", L"", L"", L"name", L"."},
        {L".hidden", L"", L"", L"", L".hidden"},
        {L"dir\\.hidden", L"", L"dir\\", L"", L".hidden"},
        {L"dir/", L"", L"dir\\", L"", L""},
        {L"/", L"", L"\\", L"", L""},
        {L"\\\\host/share/x", L"", L"\\\\host\\share\\", L"x", L""},  // nothing collapses
        {L"C:", L"C:", L"", L"", L""},
        {L":", L":", L"", L"", L""},
        {L"C:name.txt", L"C:", L"", L"name", L".txt"},
        {L"a.b:c", L"a.b:", L"", L"c", L""},                  // the dot goes with the drive
        {L"/dir/x:y:z.t", L"\\dir\\x:", L"", L"y:z", L".t"},  // the first colon, anywhere
        {L"..", L"", L"", L".", L"."},
        {L"../..", L"", L"..\\", L".", L"."},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(c.path)));
        Pieces const pieces = Split(c.path);
        EXPECT_EQ(c.drive, pieces.drive);
        EXPECT_EQ(c.dir, pieces.dir);
        EXPECT_EQ(c.fname, pieces.fname);
        EXPECT_EQ(c.ext, pieces.ext);
    }
}

TEST(CFileSplitPath, TakesNullForAnEmptyPath) {
    Pieces const pieces = Split(nullptr);
    EXPECT_TRUE(pieces.drive.IsEmpty());
    EXPECT_TRUE(pieces.dir.IsEmpty());
    EXPECT_TRUE(pieces.fname.IsEmpty());
    EXPECT_TRUE(pieces.ext.IsEmpty());
}

TEST(CFileSplitPath, TakesItsInputFromAnOutput) {
    for (int output = 0; output < 4; ++output) {
        SCOPED_TRACE(output);
        WideString pieces[4];
        pieces[output] = L"C:/a/name.ext";
        CFile::SplitPath(pieces[output].c_str(), pieces[0], pieces[1], pieces[2], pieces[3]);
        EXPECT_EQ(L"C:", pieces[0]);
        EXPECT_EQ(L"\\a\\", pieces[1]);
        EXPECT_EQ(L"name", pieces[2]);
        EXPECT_EQ(L".ext", pieces[3]);
    }
}

// ---- Joining ----

TEST(CFileMakePath, JoinsWhatIsGiven) {
    struct {
        wchar_t const *drive, *dir, *fname, *ext, *path;
    } const cases[] = {
        {L"C:", L"\\x\\", L"f", L"txt", L"C:\\x\\f.txt"},
        {L"C:", L"\\x\\", L"f", L".txt", L"C:\\x\\f.txt"},
        {nullptr, nullptr, nullptr, nullptr, L""},
        {L"", L"", L"", L"", L""},
        {nullptr, nullptr, L"f", nullptr, L"f"},
        {nullptr, nullptr, nullptr, L"txt", L".txt"},
        {nullptr, nullptr, L"f", L"", L"f"},  // an empty extension is none
        {nullptr, nullptr, L"f", L".", L"f."},
        {nullptr, nullptr, L"f", L"..", L"f.."},
        {L"C:", nullptr, L"f", nullptr, L"C:\\f"},
        {L"C:", L"", L"", nullptr, L"C:\\"},  // empty pieces get their separator
        {L"C:", nullptr, L"", nullptr, L"C:\\"},
        {L"C:", nullptr, nullptr, L"t", L"C:.t"},
        {nullptr, L"", L"f", nullptr, L"f"},
        {nullptr, L"x", L"f", nullptr, L"x\\f"},
        {nullptr, L"x/", L"/f", nullptr, L"x\\f"},
        {nullptr, L"/", nullptr, nullptr, L"\\"},
        {nullptr, L"\\\\host\\share", L"f", nullptr, L"\\host\\share\\f"},  // no network names
        {nullptr, L"/\\/\\/\\/a//////b", L"f", nullptr, L"\\a\\b\\f"},
        {nullptr, L"../.", L"f", nullptr, L"..\\.\\f"},
    };
    for (auto const& c : cases) {
        WideString path = L"before";
        CFile::MakePath(path, c.drive, c.dir, c.fname, c.ext);
        EXPECT_EQ(c.path, path);
    }
}

TEST(CFileMakePath, TakesItsInputFromTheOutput) {
    WideString path = L"dir";
    CFile::MakePath(path, L"C:", path.c_str(), path.c_str(), path.c_str());
    EXPECT_EQ(L"C:\\dir\\dir.dir", path);
    CFile::MakePath(path, path.c_str(), nullptr, L"f", nullptr);
    EXPECT_EQ(L"C:\\dir\\dir.dir\\f", path);
}

TEST(CFileMakePath, JoinsWhatWasSplit) {
    for (wchar_t const* const path :
         {L"C:\\a\\b\\name.tar.gz", L"\\x\\.hidden", L"name", L"dir\\x"}) {
        Pieces const pieces = Split(path);
        WideString joined;
        CFile::MakePath(joined, pieces.drive, pieces.dir, pieces.fname, pieces.ext);
        EXPECT_EQ(path, joined);
    }
}

// ---- Another name in the same place ----

TEST(CFileUpdateFileName, PutsANewNameInPlaceOfTheOldAndItsExtension) {
    struct {
        wchar_t const *path, *newName, *result;
    } const cases[] = {
        {L"/tmp/old.txt", L"new.log", L"\\tmp\\new.log"},
        {L"", L"new.log", L"new.log"},
        {nullptr, L"new.log", L"new.log"},
        {nullptr, L"a/b", L"a/b"},  // as it is
        {nullptr, nullptr, L""},
        {L"old", L"new.log", L"new.log"},
        {L"old", L"a/b", L"a\\b"},
        {L"C:old.txt", L"new", L"C:\\new"},
        {L"C:/dir/old", L"new", L"C:\\dir\\new"},
        {L"/dir/", L"new", L"\\dir\\new"},
        {L"//host//old", L"new", L"\\host\\new"},
        {L"/dir/old.txt", L"", L"\\dir\\"},
        {L"/dir/old.txt", nullptr, L"\\dir\\"},
    };
    for (auto const& c : cases) {
        WideString result = L"before";
        CFile::UpdateFileName(c.path, c.newName, result);
        EXPECT_EQ(c.result, result);
    }
}

TEST(CFileUpdateFileName, TakesItsInputsFromTheOutput) {
    WideString path = L"/tmp/old.txt";
    CFile::UpdateFileName(path.c_str(), L"new.log", path);
    EXPECT_EQ(L"\\tmp\\new.log", path);
    WideString name = L"new.log";
    CFile::UpdateFileName(L"/tmp/old.txt", name.c_str(), name);
    EXPECT_EQ(L"\\tmp\\new.log", name);
    CFile::UpdateFileName(L"", name.c_str() + 5, name);
    EXPECT_EQ(L"new.log", name);
}

// ---- Names of the system's ----

WideString TempPath() {
    WideString path = L"before";
    CFile::GetTempPath(path);
    return path;
}

TEST(CFileGetTempPath, IsTheVariableAsItStands) {
    for (char const* const value : {"/var/tmp/", "/var/tmp", "/no such//", "relative", "a\\b\\"}) {
        ScopedVariable const directory("TMPDIR", value);
        EXPECT_EQ(WideString(value), TempPath());
    }
    ScopedVariable const directory("TMPDIR", "");
    EXPECT_TRUE(TempPath().IsEmpty());
}

TEST(CFileGetTempPath, IsTmpWithoutTheVariable) {
    ScopedVariable const directory("TMPDIR", nullptr);
    ScopedVariable const other("TMP", "/var/tmp");
    EXPECT_EQ(L"/tmp", TempPath());
}

TEST(CFileGetTempPath, IsCutBeforeWhatTheLocaleCannotDecode) {
    ScopedLocale const locale("C.UTF-8");
    ScopedVariable const directory("TMPDIR", "/\xE2\x82\xAC/\xFF/x");
    EXPECT_EQ(L"/\u20AC/", TempPath());
}

TEST(CFileGetTempFileName, OnPurposeGivesNoNameAndMakesNoFile) {
    TemporaryDirectory const directory;  // fails on what is left in it
    ScopedVariable const variable("TMPDIR", directory.Path("").c_str());
    for (unsigned int const unique : {0u, 1u, 0xFFFFFFFFu}) {
        WideString name = L"before";
        CFile::GetTempFileName(directory.WidePath("").c_str(), L"tvl", unique, name);
        EXPECT_TRUE(name.IsEmpty());
        CFile::GetTempFileName(nullptr, nullptr, unique, name);
        EXPECT_TRUE(name.IsEmpty());
        EXPECT_EQ("DeleteFile", FailedOperation([&] { CFile::Remove(name); }));
    }
}

TEST(CFileGetModuleFileName, OnPurposeGivesNoName) {
    for (bool const flag : {false, true}) {
        WideString name = L"before";
        CFile::GetModuleFileName(0, name, flag);
        EXPECT_TRUE(name.IsEmpty());
    }
}

}  // namespace
