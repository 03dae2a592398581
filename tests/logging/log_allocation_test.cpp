#include <qorutils/logging/main_logger.h>
#include <qorutils/logging/trace.h>

#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/counted_heap.h"
#include "support/main_log.h"

namespace {

using namespace qor_logging;  // NOLINT(google-build-using-namespace): a user's program

struct Taken {
    int arrays;
    int others;
};

// By the action, once the log has made room for such a line.
template <typename Action>
Taken TakenBy(Action action) {
    action();
    Taken const before = {arrayHeap.taken, plainHeap.taken};
    action();
    return {arrayHeap.taken - before.arrays, plainHeap.taken - before.others};
}

TEST(AWideLine, TakesMemoryForItsMessageOnly) {
    Taken const taken = TakenBy([] { QOR_TRACE_ALWAYS(L"%d lines of %ls", 7, L"a text"); });
    EXPECT_EQ(1, taken.arrays);
    EXPECT_EQ(0, taken.others);
}

TEST(ANarrowLine, TakesMemoryForItsMessageAndTheWideOne) {
    Taken const taken = TakenBy([] { QOR_TRACE_ALWAYS("%d lines of %s", 7, "a text"); });
    EXPECT_EQ(2, taken.arrays);
    EXPECT_EQ(0, taken.others);
}

TEST(ARejectedLine, TakesNoMemory) {
    Taken const taken = TakenBy([] {
        QOR_TRACE_DEBUG(L"%d", 7);
        QOR_TRACE_DEBUG("%d", 7);
        LOGMESSAGE(4, "%d", 7);
    });
    EXPECT_EQ(0, taken.arrays);
    EXPECT_EQ(0, taken.others);
}

TEST(ALongerLineThanAnyBefore, MakesRoomOnceAndKeepsIt) {
    std::wstring const text(1500, L'x');
    int const before = arrayHeap.taken;
    QOR_TRACE_ALWAYS(text.c_str());
    EXPECT_EQ(before + 2, arrayHeap.taken);  // the message; the room
    QOR_TRACE_ALWAYS(L"short");
    QOR_TRACE_ALWAYS(text.c_str());
    EXPECT_EQ(before + 4, arrayHeap.taken);  // the messages
}

TEST(ALineWithoutMemory, ThrowsAndLeavesTheLogInOrder) {
    QOR_TRACE_ALWAYS("makes the log");
    std::wstring const text(1900, L'x');
    LogMark const mark;
    for (int allowed = 0; allowed < 2; ++allowed) {  // the message; the room for its line
        arrayHeap.untilRefusal = allowed;
        EXPECT_THROW(QOR_TRACE_ALWAYS(text.c_str()), std::bad_alloc) << allowed;
        arrayHeap.untilRefusal = -1;
    }
    QOR_TRACE_ALWAYS("afterwards");
    EXPECT_EQ(std::vector<std::string>{"afterwards"}, mark.Messages());
}

TEST(FlushLog, TakesNoMemory) {
    Taken const taken = TakenBy([] { qor_flush_log(); });
    EXPECT_EQ(0, taken.arrays);
    EXPECT_EQ(0, taken.others);
}

}  // namespace
