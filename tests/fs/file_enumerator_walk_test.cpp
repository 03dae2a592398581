#include <qorutils/fs/file_enumerator.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace {

using namespace base;
using Names = std::vector<std::wstring>;

constexpr int kAll = kEnumFiles | kEnumDirectories | kEnumAllTypes;

// In the order in which they come.
Names Walk(std::wstring const& root, bool recursive, int fileType, wchar_t const* pattern = L"") {
    TFileEnumerator enumerator(root.c_str(), recursive, fileType, pattern);
    Names names;
    for (auto name = enumerator.Next(); !name.IsEmpty(); name = enumerator.Next())
        names.push_back(name.c_str());
    EXPECT_TRUE(enumerator.Next().IsEmpty());
    return names;
}

Names Sorted(Names names) {
    std::sort(names.begin(), names.end());
    return names;
}

// The working directory is the root of a small tree.
class FileEnumeratorWalk : public testing::Test {
  protected:
    FileEnumeratorWalk() {
        directory_.MakeFile("a.txt", "");
        directory_.MakeFile("b.Txt", "");
        directory_.MakeFile("c.doc", "");
        directory_.MakeFolder("one");
        directory_.MakeFile("one/in1.doc", "");
        directory_.MakeFolder("two");
        directory_.MakeFile("two/in2.doc", "");
    }

    TemporaryDirectory directory_;
    WorkingDirectory here_{directory_.Path("")};
};

TEST_F(FileEnumeratorWalk, StaysInTheRootUnlessRecursive) {
    EXPECT_EQ(Names({L"a.txt", L"b.Txt", L"c.doc", L"one", L"two"}),
              Sorted(Walk(L".", false, kAll)));
}

TEST_F(FileEnumeratorWalk, GoesThroughTheDirectoriesOfTheRoot) {
    EXPECT_EQ(Names({L"a.txt", L"b.Txt", L"c.doc", L"in1.doc", L"in2.doc", L"one", L"two"}),
              Sorted(Walk(L".", true, kAll)));
}

TEST_F(FileEnumeratorWalk, WalksDirectoriesThatItDoesNotReturn) {
    EXPECT_EQ(Names({L"a.txt", L"b.Txt", L"c.doc", L"in1.doc", L"in2.doc"}),
              Sorted(Walk(L".", true, kEnumFiles | kEnumAllTypes)));
    EXPECT_EQ(Names({L"one", L"two"}), Sorted(Walk(L".", true, kEnumDirectories)));
    EXPECT_EQ(Names(), Walk(L".", true, kEnumAllTypes));
}

TEST_F(FileEnumeratorWalk, FinishesAListingAndThenTakesItsLastDirectoryFirst) {
    Names const names = Walk(L".", true, kAll);
    ASSERT_EQ(7u, names.size());
    std::size_t const one =
        static_cast<std::size_t>(std::find(names.begin(), names.end(), L"one") - names.begin());
    std::size_t const two =
        static_cast<std::size_t>(std::find(names.begin(), names.end(), L"two") - names.begin());
    ASSERT_LT(one, 5u);
    ASSERT_LT(two, 5u);
    EXPECT_EQ(one > two ? L"in1.doc" : L"in2.doc", names[5]);
    EXPECT_EQ(one > two ? L"in2.doc" : L"in1.doc", names[6]);
}

// On purpose: the directories are looked for by their bare names in the working directory.
TEST_F(FileEnumeratorWalk, FindsNoDirectoriesOfARootElsewhere) {
    Names const root = {L"a.txt", L"b.Txt", L"c.doc", L"one", L"two"};
    WorkingDirectory const elsewhere("/");
    EXPECT_EQ(root, Sorted(Walk(directory_.WidePath(""), true, kAll)));
}

TEST_F(FileEnumeratorWalk, ListsADirectoryOfTheSameNameInTheWorkingDirectory) {
    directory_.MakeFolder("root");
    directory_.MakeFolder("root/one");
    directory_.MakeFile("root/one/unseen", "");
    EXPECT_EQ(Names({L"in1.doc", L"one"}), Sorted(Walk(L"root", true, kAll)));
}

TEST_F(FileEnumeratorWalk, SelectsByPatternInTheRootOnly) {
    EXPECT_EQ(Names({L"a.txt", L"b.Txt"}), Sorted(Walk(L".", true, kAll, L"*.TXT")));
    EXPECT_EQ(Names({L"in1.doc", L"one"}), Sorted(Walk(L".", true, kAll, L"o*")));
    EXPECT_EQ(Names({L"c.doc", L"in2.doc", L"two"}), Sorted(Walk(L".", true, kAll, L"?*o*")));
}

TEST_F(FileEnumeratorWalk, ReturnsNoPartOfAPath) {
    for (std::wstring const& name : Walk(directory_.WidePath(""), true, kAll))
        EXPECT_EQ(std::wstring::npos, name.find(L'/')) << name;
}

TEST_F(FileEnumeratorWalk, GivesTheRecordOfEachEntry) {
    TFileEnumerator enumerator(L".", true, kAll);
    int count = 0;
    for (auto name = enumerator.Next(); !name.IsEmpty(); name = enumerator.Next(), ++count) {
        _TFindInfo info = {};
        enumerator.GetFindInfo(&info);
        EXPECT_EQ(name, TFileEnumerator::GetFilename(info));
        EXPECT_EQ(name.GetLength() == 3, TFileEnumerator::IsDirectory(info)) << name.c_str();
    }
    EXPECT_EQ(7, count);
}

TEST_F(FileEnumeratorWalk, GoesOnAfterADirectoryThatCannotBeOpened) {
    TFileEnumerator enumerator(L".", true, kAll);
    Names names;
    for (auto name = enumerator.Next(); !name.IsEmpty(); name = enumerator.Next()) {
        names.push_back(name.c_str());
        if (names.size() == 5) {
            ASSERT_EQ(0, rename("one", "gone"));
        }
    }
    ASSERT_EQ(0, rename("gone", "one"));
    EXPECT_EQ(Names({L"a.txt", L"b.Txt", L"c.doc", L"in2.doc", L"one", L"two"}), Sorted(names));
}

TEST_F(FileEnumeratorWalk, ContinuesInACopyWhereItIs) {
    TFileEnumerator enumerator(L".", true, kAll);
    enumerator.Next();
    TFileEnumerator copy(enumerator);
    auto name = enumerator.Next();
    for (; !name.IsEmpty(); name = enumerator.Next()) EXPECT_EQ(name, copy.Next());
    EXPECT_TRUE(copy.Next().IsEmpty());
}

TEST_F(FileEnumeratorWalk, ReportsRecursionWithDotDot) {
    auto const reports = [](bool recursive, int fileType) {
        return CheckReports([=] { TFileEnumerator(L".", recursive, fileType); });
    };
    std::string const report = reports(true, kAll | kEnumIncludeDotDot);
    EXPECT_EQ(0u, report.find("DBGCHK  qorutils/fs/platform_file @ ")) << report;
    EXPECT_EQ(report.size() - 1, report.find('\n')) << report;
    EXPECT_EQ("", reports(true, kAll));
    EXPECT_EQ("", reports(false, kAll | kEnumIncludeDotDot));
}

TEST_F(FileEnumeratorWalk, ClimbsWithDotDotAllTheSame) {
    CheckReports([] {
        TFileEnumerator enumerator(L"one", true, kAll | kEnumIncludeDotDot, L"..");
        EXPECT_STREQ(L"..", enumerator.Next().c_str());
        // From the working directory, "..": where the tree itself lies.
        bool hasClimbed = false;
        for (auto name = enumerator.Next(); !hasClimbed && !name.IsEmpty();
             name = enumerator.Next()) {
            hasClimbed = std::wcsncmp(name.c_str(), L"qorutils_test_", 14) == 0;
        }
        EXPECT_TRUE(hasClimbed);
    });
}

}  // namespace
