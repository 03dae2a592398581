// Names longer than this machine's file systems allow: the program stands before the C library and
// adds one entry to every directory.
#include <qorutils/fs/file_enumerator.h>

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/next_in_line.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"

namespace {

std::string longName;
bool isDelivered = false;

}  // namespace

extern "C" __attribute__((visibility("default"))) dirent64* readdir64(DIR* directory) {
    static auto const next = NextInLine(static_cast<decltype(&readdir64)>(nullptr), "readdir64");
    alignas(dirent64) static char entry[sizeof(dirent64) + 1024];
    dirent64* const found = next(directory);
    if (found != nullptr || isDelivered || longName.empty()) return found;
    isDelivered = true;
    std::copy_n(longName.c_str(), longName.size() + 1, entry + offsetof(dirent64, d_name));
    void* const added = entry;
    return static_cast<dirent64*>(added);
}

extern "C" __attribute__((visibility("default"))) int statx(int directory, char const* name,
                                                            int flags, unsigned int mask,
                                                            struct statx* status) noexcept {
    static auto const next = NextInLine(static_cast<decltype(&statx)>(nullptr), "statx");
    return next(directory, longName == name ? "file" : name, flags, mask, status);
}

namespace {

using namespace base;

// Adds the name to the next listing.
class AddedName {
  public:
    explicit AddedName(std::string const& name) {
        longName = name;
        isDelivered = false;
    }
    ~AddedName() { longName.clear(); }
};

class LongName : public testing::Test {
  protected:
    LongName() { directory_.MakeFile("file", "abc"); }

    // What remains of it in a listing by the pattern, and what is reported.
    std::wstring Listed(std::string const& name, wchar_t const* pattern = L"n*") {
        AddedName const added(name);
        std::wstring listed;
        reports_ = CheckReports([&] {
            TFileEnumerator enumerator(directory_.WidePath("").c_str(), false, 0x13, pattern);
            listed = enumerator.Next().c_str();
            EXPECT_TRUE(enumerator.Next().IsEmpty());
        });
        return listed;
    }

    void ExpectOneReport() const {
        EXPECT_EQ(0u, reports_.find("DBGCHK  qorutils/fs/platform_file @ ")) << reports_;
        EXPECT_EQ(reports_.size() - 1, reports_.find('\n')) << reports_;
    }

    TemporaryDirectory directory_;
    std::string reports_;
};

TEST_F(LongName, IsWholeUpTo259Characters) {
    EXPECT_EQ(std::wstring(259, L'n'), Listed(std::string(259, 'n')));
    EXPECT_EQ("", reports_);
}

TEST_F(LongName, IsCutTo259CharactersAndReported) {
    for (std::size_t const length : {260, 300, 1000}) {
        EXPECT_EQ(std::wstring(259, L'n'), Listed(std::string(length, 'n')));
        ExpectOneReport();
    }
}

TEST_F(LongName, IsSelectedAsItWasCut) {
    EXPECT_EQ(std::wstring(259, L'n'), Listed(std::string(259, 'n') + "x", L"*n"));
    EXPECT_EQ(L"", Listed(std::string(259, 'n') + "x", L"*x"));
    ExpectOneReport();
}

TEST_F(LongName, EndsBeforeACharacterThatTheCutDivides) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_EQ(std::wstring(258, L'n'), Listed(std::string(258, 'n') + "\u00FCn"));
    ExpectOneReport();
}

TEST_F(LongName, LeavesTheRecordTerminated) {
    AddedName const added(std::string(300, 'n'));
    qor_vector<_TFindInfo> entries;
    CheckReports(
        [&] { TFileEnumerator::readDirectory(entries, directory_.WidePath("").c_str(), true); });
    ASSERT_EQ(4u, entries.size());
    EXPECT_EQ(259u, std::strlen(entries[3].filename));
    EXPECT_EQ(3, TFileEnumerator::GetFilesize(entries[3]));
}

}  // namespace
