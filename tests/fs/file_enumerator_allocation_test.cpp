// Listings when memory runs out. Replaces the global operator new: a program of its own.

#include <qorutils/fs/file_enumerator.h>

#include <new>
#include <string>

#include <gtest/gtest.h>
#include <qorutils/fs/file_funcs.h>

#include "support/refusing_heap.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"
#include "support/working_directory.h"

namespace {

using namespace base;
using WideString = qor_text::CQorStringT<wchar_t>;

constexpr int kAll = kEnumFiles | kEnumDirectories | kEnumAllTypes;

// Two folders and 30 files, one of them with a name that is not ASCII. It is the working directory.
class ListingWithoutMemory : public testing::Test {
  protected:
    ListingWithoutMemory() {
        for (int i = 0; i < 29; ++i) directory_.MakeFile("file" + std::to_string(i), "");
        directory_.MakeFile("\u4E2D", "");
        for (char const* folder : {"one", "two"}) {
            directory_.MakeFolder(folder);
            directory_.MakeFile(std::string(folder) + "/inside", "");
        }
    }

    ScopedLocale locale_{"C.UTF-8"};
    TemporaryDirectory directory_;
    WorkingDirectory here_{directory_.Path("")};
};

TEST_F(ListingWithoutMemory, GivesAllBackFromReadDirectory) {
    WideString const folder(L".");
    int const needed = RefuseOneAfterTheOther([&] {
        qor_vector<_TFindInfo> entries;
        TFileEnumerator::readDirectory(entries, folder, true);
        EXPECT_EQ(34u, entries.size());
    });
    EXPECT_GT(needed, 2);
}

TEST_F(ListingWithoutMemory, GivesAllBackFromAWalk) {
    WideString const root(L".");
    WideString const pattern(L"*");
    int const needed = RefuseOneAfterTheOther([&] {
        TFileEnumerator enumerator(root, true, kAll, pattern);
        int count = 0;
        while (!enumerator.Next().IsEmpty()) ++count;
        EXPECT_EQ(34, count);
    });
    EXPECT_GT(needed, 34);
}

TEST_F(ListingWithoutMemory, GivesAllBackFromGetFileEntriesInFolder) {
    WideString const folder(L".");
    int const needed = RefuseOneAfterTheOther([&] {
        qor_vector<_TFindInfo> entries;
        FileFuncs::GetFileEntriesInFolder(entries, FileFuncs::eFindFiles, folder, L"*");
        EXPECT_EQ(30u, entries.size());
    });
    EXPECT_GT(needed, 4);
}

// An entry that there was no memory for may be missing.
TEST_F(ListingWithoutMemory, LeavesTheEnumeratorUsable) {
    WideString const root(L".");
    TFileEnumerator enumerator(root, true, kAll);
    EXPECT_FALSE(enumerator.Next().IsEmpty());
    refusingHeap.untilRefusal = 0;
    EXPECT_THROW(enumerator.Next(), std::bad_alloc);
    refusingHeap.untilRefusal = -1;
    int count = 0;
    while (!enumerator.Next().IsEmpty()) ++count;
    EXPECT_GE(count, 30);
}

}  // namespace
