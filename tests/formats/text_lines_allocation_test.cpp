// What ReadLine and WriteString take from the heap, and that a refusal does no harm.

#include <qorutils/formats/text_lines.h>

#include <new>
#include <string>

#include <gtest/gtest.h>

#include "support/byte_file.h"
#include "support/counted_heap.h"

namespace {

using namespace qor_formats;
using Wide = qor_text::CQorStringT<wchar_t>;

TEST(ReadLineAllocation, TakesNothingWhenTheBufferIsLargeEnough) {
    ByteFile const file(std::string(128, 'a') + "\n" + std::string(128, 'b') + "\n \n");
    Wide line;
    int const before = arrayHeap.taken;
    for (int i = 0; i < 4; ++i) ReadLine(file.descriptor(), line);
    EXPECT_EQ(before + 1, arrayHeap.taken);
}

TEST(ReadLineAllocation, GrowsInFewSteps) {
    ByteFile const file(std::string(4 << 20, 'x'));
    Wide line;
    int const before = arrayHeap.taken;
    ReadLine(file.descriptor(), line);
    EXPECT_EQ(4 << 20, line.GetLength());
    EXPECT_LE(arrayHeap.taken - before, 16);  // from 128 characters, doubled each time
    EXPECT_LE(line.GetAllocLength(), 8 << 20);
}

TEST(ReadLineAllocation, LeavesThePositionWhenThereIsNoMemory) {
    ByteFile file("first\n" + std::string(10000, 'x') + "\n");
    for (int allowed = 0; allowed < 4; ++allowed) {
        file.Seek(6);
        int const before = arrayHeap.blocks;
        {
            Wide line;
            arrayHeap.untilRefusal = allowed;
            EXPECT_THROW(ReadLine(file.descriptor(), line), std::bad_alloc);
            arrayHeap.untilRefusal = -1;
            EXPECT_EQ(L'\0', line.c_str()[line.GetLength()]);
        }
        EXPECT_EQ(6, file.Position());
        EXPECT_EQ(before, arrayHeap.blocks);
    }
    Wide line;
    ReadLine(file.descriptor(), line);
    EXPECT_EQ(10000, line.GetLength());
}

TEST(WriteStringAllocation, WritesNothingWhenThereIsNoMemory) {
    ByteFile file;
    Wide const text(L"text");
    std::FILE* const stream = file.stream();
    arrayHeap.untilRefusal = 0;
    EXPECT_THROW(WriteString(stream, text), std::bad_alloc);
    arrayHeap.untilRefusal = -1;
    EXPECT_EQ("", file.Content());
}

}  // namespace
