// What lists of values take from the heap, and what a refusal leaves behind.

#include <qorutils/formats/value_lists.h>

#include <new>

#include <gtest/gtest.h>

#include "support/counted_heap.h"

namespace {

using namespace qor_formats;
using Wide = qor_text::CQorStringT<wchar_t>;

TEST(ValueListsAllocation, TakesOneBufferAnItem) {
    Wide const text(L" one ;\ttwo\r\n; ;three");
    Wide const forbidden(L"#");
    StringArray out;
    int const before = arrayHeap.taken;
    ParseValues(text, out, ';', forbidden);
    EXPECT_EQ(before + 4, arrayHeap.taken);
    ParseDelimitersValues(text, out, forbidden);
    EXPECT_EQ(before + 5, arrayHeap.taken);
    StringArrayToString(out, L';');
    EXPECT_EQ(before + 6, arrayHeap.taken);
}

TEST(ValueListsAllocation, KeepsTheItemsBeforeARefusal) {
    Wide const text(L"one;two;three");
    Wide const separators(L";");
    for (int allowed = 0; allowed < 3; ++allowed) {
        int const before = arrayHeap.blocks;
        {
            StringArray values;
            StringArray delimited;
            arrayHeap.untilRefusal = allowed;
            EXPECT_THROW(ParseValues(text, values, ';', L""), std::bad_alloc);
            arrayHeap.untilRefusal = allowed;
            EXPECT_THROW(ParseDelimitersValues(text, delimited, separators), std::bad_alloc);
            arrayHeap.untilRefusal = -1;
            EXPECT_EQ(allowed, values.GetSize());
            EXPECT_EQ(allowed, delimited.GetSize());
        }
        EXPECT_EQ(before, arrayHeap.blocks);
    }
}

TEST(ValueListsAllocation, LosesNothingWhenAJoinIsRefused) {
    StringArray array;
    array.Add(L"one");
    array.Add(L"two");
    int const before = arrayHeap.blocks;
    arrayHeap.untilRefusal = 0;
    EXPECT_THROW(StringArrayToString(array, L';'), std::bad_alloc);
    arrayHeap.untilRefusal = -1;
    EXPECT_EQ(before, arrayHeap.blocks);
}

}  // namespace
