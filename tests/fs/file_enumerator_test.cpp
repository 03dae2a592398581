#include <qorutils/fs/file_enumerator.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/text_literal.h"
#include "support/working_directory.h"

namespace {

using namespace base;
using WideString = qor_text::CQorStringT<wchar_t>;
using NarrowString = qor_text::CQorStringT<char>;
using Names = std::multiset<std::wstring>;

constexpr int kAll = kEnumFiles | kEnumDirectories | kEnumAllTypes;

static_assert(kEnumFiles == 0x1 && kEnumDirectories == 0x2, "");
static_assert(kEnumIncludeDotDot == 0x4 && kEnumAllTypes == 0x10, "");
static_assert(sizeof(_TFindInfo::filename) == 260, "");
static_assert(std::is_same<decltype(_TFindInfo::stat), struct ::stat>::value, "");

Names Rest(TFileEnumerator& enumerator) {
    Names names;
    for (WideString name = enumerator.Next(); !name.IsEmpty(); name = enumerator.Next())
        names.insert(name.c_str());
    return names;
}

Names List(std::wstring const& root, int fileType, wchar_t const* pattern = L"") {
    TFileEnumerator enumerator(root.c_str(), false, fileType, pattern);
    return Rest(enumerator);
}

// The record of the only entry.
_TFindInfo OnlyEntry(std::wstring const& root, wchar_t const* name) {
    TFileEnumerator enumerator(root.c_str(), false, kAll, name);
    _TFindInfo info = {};
    EXPECT_STREQ(name, enumerator.Next().c_str());
    enumerator.GetFindInfo(&info);
    EXPECT_TRUE(enumerator.Next().IsEmpty());
    return info;
}

class FileEnumerator : public testing::Test {
  protected:
    void MakeSocket(std::string const& name) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, directory_.Path(name).c_str(), sizeof address.sun_path - 1);
        int const file = socket(AF_UNIX, SOCK_STREAM, 0);
        void const* const plain = &address;
        if (bind(file, static_cast<sockaddr const*>(plain), sizeof address) != 0)
            throw std::runtime_error("no socket");
        close(file);
    }

    // One entry of every kind that needs no privilege.
    void MakeEveryKind() {
        directory_.MakeFile("file", "abc");
        directory_.MakeFolder("folder");
        directory_.MakeLink("linkToFile", "file");
        directory_.MakeLink("linkToFolder", "folder");
        directory_.MakeLink("linkToDevice", "/dev/null");
        directory_.MakeLink("linkToNothing", "nothing");
        if (mkfifo(directory_.Path("fifo").c_str(), 0600) != 0) throw std::runtime_error("no fifo");
        MakeSocket("socket");
    }
    void RemoveEveryKind() {
        directory_.Remove("fifo");
        directory_.Remove("socket");
    }

    std::wstring Root() const {
        std::wstring root = directory_.WidePath("");
        root.pop_back();
        return root;
    }

    TemporaryDirectory directory_;
};

// ---- What is returned ----

TEST_F(FileEnumerator, ReturnsNothingForAnEmptyDirectory) {
    TFileEnumerator enumerator(Root().c_str(), false, 0x13);
    EXPECT_EQ(WideString(), enumerator.Next());
    EXPECT_EQ(WideString(), enumerator.Next());
}

TEST_F(FileEnumerator, ReturnsTheKindsThatAreAskedFor) {
    MakeEveryKind();
    Names const files = {L"fifo", L"file", L"linkToDevice", L"linkToFile", L"socket"};
    Names const folders = {L"folder", L"linkToFolder"};
    Names all = files;
    all.insert(folders.begin(), folders.end());
    EXPECT_EQ(files, List(Root(), 0x11));
    EXPECT_EQ(folders, List(Root(), 0x12));
    EXPECT_EQ(all, List(Root(), 0x13));
    EXPECT_EQ(Names(), List(Root(), 0x10));
    EXPECT_EQ(Names(), List(Root(), 0x14));
    EXPECT_EQ(files, List(Root(), 0x11 | 0x8 | 0x20 | 0x100));
    RemoveEveryKind();
}

TEST_F(FileEnumerator, LeavesOnlyDirectoriesAndFifosWithoutAllTypes) {
    MakeEveryKind();
    EXPECT_EQ(Names({L"fifo"}), List(Root(), 0x1));
    EXPECT_EQ(Names({L"folder", L"linkToFolder"}), List(Root(), 0x2));
    EXPECT_EQ(Names({L"fifo", L"folder", L"linkToFolder"}), List(Root(), 0x3));
    EXPECT_EQ(Names(), List(Root(), 0));
    RemoveEveryKind();
}

TEST_F(FileEnumerator, ReturnsNoRegularFilesWithoutAllTypes) {
    directory_.MakeFile("a", "");
    directory_.MakeFile("b", "b");
    EXPECT_EQ(Names(), List(Root(), 0x1));
}

TEST_F(FileEnumerator, ReturnsDotDotOnlyWhenAskedAndDotNever) {
    directory_.MakeFile("file", "");
    EXPECT_EQ(Names({L"..", L"file"}), List(Root(), kAll | kEnumIncludeDotDot));
    EXPECT_EQ(Names({L".."}), List(Root(), kEnumDirectories | kEnumIncludeDotDot));
    EXPECT_EQ(Names({L"file"}), List(Root(), kEnumFiles | kEnumAllTypes | kEnumIncludeDotDot));
    EXPECT_EQ(Names({L".."}), List(Root(), kAll | kEnumIncludeDotDot, L"??"));
    EXPECT_EQ(Names(), List(Root(), kAll | kEnumIncludeDotDot, L"*.txt"));
    EXPECT_EQ(Names(), List(Root(), kAll | kEnumIncludeDotDot, L"."));
}

TEST_F(FileEnumerator, TakesBackslashesInTheRootForSeparators) {
    directory_.MakeFolder("sub");
    directory_.MakeFile("sub/file", "");
    std::wstring root = directory_.WidePath("sub");
    std::replace(root.begin(), root.end(), L'/', L'\\');
    EXPECT_EQ(Names({L"file"}), List(root, kAll));
    EXPECT_EQ(Names({L"file"}), List(root + L"\\", kAll));
}

TEST_F(FileEnumerator, IsEmptyForWhatCannotBeOpened) {
    directory_.MakeFile("file", "");
    std::wstring const roots[] = {directory_.WidePath("missing"), directory_.WidePath("file"),
                                  std::wstring(5000, L'x'), L""};
    for (std::wstring const& root : roots) {
        EXPECT_EQ("", CheckReports([&] { EXPECT_EQ(Names(), List(root, 0x17)); }));
    }
}

TEST_F(FileEnumerator, IsEmptyForARootThatTheLocaleCannotEncode) {
    ScopedLocale const locale("C");
    WorkingDirectory const here(directory_.Path(""));
    directory_.MakeFile("file", "");
    EXPECT_EQ(Names(), List(L"\u4E2D", kAll));
    EXPECT_EQ(Names(), List(Root() + L"/\u4E2D", kAll));
}

TEST_F(FileEnumerator, ReadsNothingBeforeTheFirstNext) {
    TFileEnumerator enumerator(Root().c_str(), false, kAll);
    directory_.MakeFile("late", "");
    EXPECT_EQ(Names({L"late"}), Rest(enumerator));
}

TEST_F(FileEnumerator, ReadsTheDirectoryOnce) {
    directory_.MakeFile("a", "");
    TFileEnumerator enumerator(Root().c_str(), false, kAll);
    EXPECT_EQ(WideString(L"a"), enumerator.Next());
    directory_.MakeFile("b", "");
    EXPECT_EQ(WideString(), enumerator.Next());
}

// ---- Sizes, times, numbers ----

TEST_F(FileEnumerator, DropsEntriesOf2GiBAndMore) {
    directory_.MakeSparseFile("largest", 2147483647);
    directory_.MakeSparseFile("tooLarge", 2147483648);
    directory_.MakeSparseFile("muchTooLarge", 5368709120);
    EXPECT_EQ(Names({L"largest"}), List(Root(), kAll));
    EXPECT_EQ(2147483647, TFileEnumerator::GetFilesize(OnlyEntry(Root(), L"largest")));
}

void SetModified(std::string const& path, long long seconds) {
    struct timespec times[2] = {};
    times[0].tv_sec = times[1].tv_sec = static_cast<time_t>(seconds);
    ASSERT_EQ(0, utimensat(AT_FDCWD, path.c_str(), times, 0));
}

TEST_F(FileEnumerator, GivesTheModificationTimeAsTicksSince1601) {
    directory_.MakeFile("file", "");
    struct {
        long seconds;
        long long result;
    } const cases[] = {
        {0, -11644473600},          {1, -11644473599},  // rounded towards 1970
        {10000000, -11644473599},   {1700000000, -11644473430},
        {2147483647, -11644473385}, {-1, -11644473170},  // the low 32 bits, unsigned
    };
    for (auto const& c : cases) {
        SetModified(directory_.Path("file"), c.seconds);
        _TFindInfo const info = OnlyEntry(Root(), L"file");
        EXPECT_EQ(c.seconds, info.stat.st_mtime);
        EXPECT_EQ(c.result, TFileEnumerator::GetLastModifiedTime(info)) << c.seconds;
    }
}

// A 32-bit process cannot name such a date; touch can.
TEST_F(FileEnumerator, KeepsEntriesWithADateThatDoesNotFit) {
    directory_.MakeFile("file", "abc");
    std::string const command = "touch -d '2100-01-01 UTC' " + directory_.Path("file");
    ASSERT_EQ(0, std::system(command.c_str()));
    _TFindInfo const info = OnlyEntry(Root(), L"file");
    EXPECT_EQ(3, TFileEnumerator::GetFilesize(info));
    // 4102444800 seconds are below 2^32
    EXPECT_EQ(-11644473189, TFileEnumerator::GetLastModifiedTime(info));
}

TEST_F(FileEnumerator, FillsTheWholeStatus) {
    directory_.MakeFile("file", std::string(5000, 'x'));
    ASSERT_EQ(0, chmod(directory_.Path("file").c_str(), 0640));
    ASSERT_EQ(0, link(directory_.Path("file").c_str(), directory_.Path("second").c_str()));
    SetModified(directory_.Path("file"), 1234567);
    struct stat64 expected = {};
    ASSERT_EQ(0, stat64(directory_.Path("file").c_str(), &expected));
    struct ::stat const found = OnlyEntry(Root(), L"file").stat;
    directory_.Remove("second");
    EXPECT_EQ(expected.st_dev, found.st_dev);
    EXPECT_EQ(static_cast<ino_t>(expected.st_ino), found.st_ino);
    EXPECT_EQ(static_cast<mode_t>(S_IFREG | 0640), found.st_mode);
    EXPECT_EQ(2u, found.st_nlink);
    EXPECT_EQ(expected.st_uid, found.st_uid);
    EXPECT_EQ(expected.st_gid, found.st_gid);
    EXPECT_EQ(expected.st_rdev, found.st_rdev);
    EXPECT_EQ(5000, found.st_size);
    EXPECT_EQ(expected.st_blksize, found.st_blksize);
    EXPECT_EQ(static_cast<blkcnt_t>(expected.st_blocks), found.st_blocks);
    EXPECT_EQ(1234567, found.st_mtim.tv_sec);
    EXPECT_EQ(0, found.st_mtim.tv_nsec);
    EXPECT_EQ(1234567, found.st_atim.tv_sec);
    EXPECT_EQ(expected.st_ctim.tv_sec, found.st_ctim.tv_sec);
    EXPECT_EQ(expected.st_ctim.tv_nsec, found.st_ctim.tv_nsec);
}

TEST_F(FileEnumerator, GivesTheNumbersOfADevice) {
    directory_.MakeLink("null", "/dev/null");
    struct stat64 expected = {};
    ASSERT_EQ(0, stat64("/dev/null", &expected));
    struct ::stat const found = OnlyEntry(Root(), L"null").stat;
    EXPECT_TRUE(S_ISCHR(found.st_mode));
    EXPECT_EQ(expected.st_rdev, found.st_rdev);
}

// ---- The record ----

TEST_F(FileEnumerator, GivesTheRecordOfWhatALinkPointsTo) {
    MakeEveryKind();
    EXPECT_TRUE(TFileEnumerator::IsDirectory(OnlyEntry(Root(), L"linkToFolder")));
    EXPECT_TRUE(TFileEnumerator::IsDirectory(OnlyEntry(Root(), L"folder")));
    for (wchar_t const* name : {L"linkToFile", L"file", L"fifo", L"socket", L"linkToDevice"})
        EXPECT_FALSE(TFileEnumerator::IsDirectory(OnlyEntry(Root(), name))) << name;
    EXPECT_EQ(3, TFileEnumerator::GetFilesize(OnlyEntry(Root(), L"linkToFile")));
    EXPECT_EQ(WideString(L"linkToFile"),
              TFileEnumerator::GetFilename(OnlyEntry(Root(), L"linkToFile")));
    RemoveEveryKind();
}

TEST_F(FileEnumerator, LeavesTheRecordAloneWithoutACurrentEntry) {
    directory_.MakeFile("file", "");
    TFileEnumerator enumerator(Root().c_str(), false, kAll);
    _TFindInfo untouched;
    std::memset(&untouched, 0x5A, sizeof untouched);
    _TFindInfo info = untouched;
    EXPECT_EQ("", CheckReports([&] { enumerator.GetFindInfo(&info); }));
    EXPECT_EQ(0, std::memcmp(&untouched, &info, sizeof info));
    enumerator.Next();
    enumerator.GetFindInfo(&info);
    EXPECT_STREQ("file", info.filename);
    info = untouched;
    enumerator.Next();
    enumerator.GetFindInfo(&info);
    EXPECT_EQ(0, std::memcmp(&untouched, &info, sizeof info));
}

TEST_F(FileEnumerator, ReportsANullRecord) {
    TFileEnumerator enumerator(Root().c_str(), false, kAll);
    std::string const reports = CheckReports([&] { enumerator.GetFindInfo(nullptr); });
    EXPECT_EQ(0u, reports.find("DBGCHK  qorutils/fs/platform_file @ ")) << reports;
    EXPECT_EQ(reports.size() - 1, reports.find('\n')) << reports;
}

TEST_F(FileEnumerator, EndsTheProgramWhenItWritesToANullRecord) {
    directory_.MakeFile("file", "");
    TFileEnumerator enumerator(Root().c_str(), false, kAll);
    EXPECT_EQ(WideString(L"file"), enumerator.Next());
    EXPECT_DEATH(enumerator.GetFindInfo(nullptr), "");
}

// ---- readDirectory ----

Names NamesOf(qor_vector<_TFindInfo> const& entries) {
    Names names;
    for (_TFindInfo const& entry : entries)
        names.insert(TFileEnumerator::GetFilename(entry).c_str());
    return names;
}

TEST_F(FileEnumerator, ReadsADirectoryWithItsDots) {
    directory_.MakeFile("file", "");
    directory_.MakeFolder("folder");
    qor_vector<_TFindInfo> entries;
    TFileEnumerator::readDirectory(entries, Root().c_str(), true);
    EXPECT_EQ(Names({L".", L"..", L"file", L"folder"}), NamesOf(entries));
    TFileEnumerator::readDirectory(entries, Root().c_str(), false);
    EXPECT_EQ(Names({L".", L"..", L"folder"}), NamesOf(entries));
}

TEST_F(FileEnumerator, ReadsADirectoryIntoTheStorageThatThereIs) {
    qor_vector<_TFindInfo> entries(1000);
    _TFindInfo const* const storage = entries.data();
    TFileEnumerator::readDirectory(entries, Root().c_str(), true);
    EXPECT_EQ(2u, entries.size());
    EXPECT_EQ(1000u, entries.capacity());
    EXPECT_EQ(storage, entries.data());
    TFileEnumerator::readDirectory(entries, directory_.WidePath("missing").c_str(), true);
    EXPECT_EQ(0u, entries.size());
    EXPECT_EQ(1000u, entries.capacity());
}

// On purpose: readDirectory takes its path as it stands.
TEST_F(FileEnumerator, ReadsNoDirectoryByABackslash) {
    directory_.MakeFolder("sub");
    qor_vector<_TFindInfo> entries;
    TFileEnumerator::readDirectory(entries, (Root() + L"\\sub").c_str(), true);
    EXPECT_EQ(0u, entries.size());
}

// Slashes make a path as long as one likes.
TEST_F(FileEnumerator, DropsEntriesWhosePathIsTooLongForTheSystem) {
    directory_.MakeFile("1234", "");
    directory_.MakeFile("12345", "");
    std::wstring root = Root();
    root.append(4090 - root.size(), L'/');
    EXPECT_EQ(Names({L"1234"}), List(root, kAll));
}

TEST(IsDot, IsExact) {
    EXPECT_TRUE(IsDot(WideString(L".")));
    EXPECT_TRUE(IsDot(NarrowString(".")));
    for (wchar_t const* other : {L"", L"..", L"./", L".a", L"a", L" ."}) {
        EXPECT_FALSE(IsDot(WideString(other)));
        EXPECT_FALSE(IsDot(NarrowString(other)));
    }
}

TEST(IsDotDot, IsExact) {
    EXPECT_TRUE(IsDotDot(WideString(L"..")));
    EXPECT_TRUE(IsDotDot(NarrowString("..")));
    for (wchar_t const* other : {L"", L".", L"...", L"../", L"..a", L" .."}) {
        EXPECT_FALSE(IsDotDot(WideString(other)));
        EXPECT_FALSE(IsDotDot(NarrowString(other)));
    }
}

}  // namespace
