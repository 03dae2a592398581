#include <qorutils/qorsys/qor_com.h>
#include <qorutils/text/qor_string.h>

#include <new>

#include <gtest/gtest.h>

#include "support/counted_heap.h"

namespace {

using qor_text::CQorStringT;

// Refuses arrays as large as a BSTR for this many characters, but no smaller ones: the report that
// goes in front of an allocation needs memory as well.
constexpr unsigned int kTooMany = 0x10000000;  // 1 GiB, four times what the heap gives

CQorStringT<char> LongText() {
    return CQorStringT<char>('x', 0x4000000);  // its BSTR would take 256 MiB and four bytes
}

TEST(SysAllocStringLen, ReturnsNullWithoutMemory) {
    EXPECT_EQ(nullptr, SysAllocStringLen(nullptr, kTooMany));
}

TEST(SysAllocStringLen, AsksForEveryLengthBelowTheLimit) {
    EXPECT_EQ(nullptr, SysAllocStringLen(nullptr, 0x1FBFFFFF));
    EXPECT_EQ(0x7F000000u, arrayHeap.lastSize);
}

TEST(SysAllocStringLen, TakesFourBytesForEachCharacterAndTheTerminator) {
    wchar_t* const bstr = SysAllocStringLen(L"abc", 3);
    EXPECT_EQ(16u, arrayHeap.lastSize);
    SysFreeString(bstr);
}

TEST(SysFreeString, GivesTheArrayBack) {
    wchar_t* const bstr = SysAllocStringLen(L"abc", 3);
    int const blocks = arrayHeap.blocks;
    SysFreeString(bstr);
    EXPECT_EQ(blocks - 1, arrayHeap.blocks);
    EXPECT_EQ(0, arrayHeap.damaged);
}

TEST(SysReAllocStringLen, FreesTheOldStringFirst) {
    wchar_t* bstr = SysAllocStringLen(L"abc", 3);
    int const blocks = arrayHeap.blocks;
    EXPECT_EQ(0, SysReAllocStringLen(&bstr, nullptr, kTooMany));
    EXPECT_EQ(nullptr, bstr);
    EXPECT_EQ(blocks - 1, arrayHeap.blocks);
    EXPECT_EQ(0, arrayHeap.damaged);
}

TEST(AllocSysString, ThrowsWithoutMemory) {
    CQorStringT<char> const text = LongText();
    EXPECT_THROW(text.AllocSysString(), std::bad_alloc);
}

TEST(SetSysString, ThrowsWithoutMemoryAndHasFreedTheOldString) {
    CQorStringT<char> const text = LongText();
    wchar_t* bstr = SysAllocStringLen(L"abc", 3);
    int const blocks = arrayHeap.blocks;
    EXPECT_THROW(text.SetSysString(&bstr), std::bad_alloc);
    EXPECT_EQ(nullptr, bstr);
    EXPECT_EQ(blocks - 1, arrayHeap.blocks);
}

}  // namespace
