// ReadLine on files and pipes whose system calls are cut short, interrupted or fail.

#include <qorutils/formats/text_lines.h>

#include <cerrno>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include "support/byte_file.h"
#include "support/random_text.h"
#include "support/reference_lines.h"
#include "support/system_call_faults.h"
#include "support/text_literal.h"

namespace {

using reference_lines::Line;
using Wide = qor_text::CQorStringT<wchar_t>;

std::wstring NextLine(int fd) {
    Wide line(L"from before");
    qor_formats::ReadLine(fd, line);
    EXPECT_TRUE(IsTerminated(line));
    return Content(line);
}

// Lines and positions, to the end of the file and once more.
void ExpectAsReference(std::string const& bytes, std::size_t transferSize) {
    ByteFile const file(bytes);
    ShortTransfers const transfers(transferSize);
    std::size_t position = 0;
    for (int atEnd = 0; atEnd < 2; atEnd += position == bytes.size() ? 1 : 0) {
        Line const expected = reference_lines::LineAt(bytes, position);
        EXPECT_EQ(expected.text, NextLine(file.descriptor())) << "at " << position;
        ASSERT_EQ(static_cast<long long>(expected.next), file.Position()) << "from " << position;
        position = expected.next;
    }
}

void ExpectAsReferenceFromAPipe(std::string const& bytes, std::size_t transferSize) {
    BytePipe pipe(bytes);
    pipe.CloseWriting();
    ShortTransfers const transfers(transferSize);
    for (std::wstring const& expected : reference_lines::LinesOf(bytes, false))
        ASSERT_EQ(expected, NextLine(pipe.descriptor()));
    EXPECT_EQ(L"", NextLine(pipe.descriptor()));
}

// Lines of all lengths and ends, some of them cut by zeros.
std::string MixedLines() {
    RandomText random(4);
    std::string bytes;
    for (int length = 0; length < 300; length += 7) {
        bytes += random.Of(std::string("xyz \t"), length);
        if (length % 3 == 0) bytes += '\0';
        bytes += random.Of(std::string("xy\0", 3), length);
        bytes += random.Of(std::string("\r\n"), random.Below(6));
    }
    return bytes;
}

// ---- The system calls of a line ----

TEST(ReadLineCalls, AreOneReadBetweenTwoSeeks) {
    ByteFile const file("one\ntwo\n");
    SystemCallFault const seeks(SystemCall::kLseek, EIO, 0);
    SystemCallFault const blocks(SystemCall::kPread, EIO, 0);
    SystemCallFault const bytes(SystemCall::kRead, EIO, 0);
    EXPECT_EQ(L"one", NextLine(file.descriptor()));
    EXPECT_EQ(2, seeks.Calls());
    EXPECT_EQ(1, blocks.Calls());
    EXPECT_EQ(0, bytes.Calls());
}

TEST(ReadLineCalls, AreFewForALongLine) {
    ByteFile const file(std::string(100000, 'x') + "\ny");
    SystemCallFault const seeks(SystemCall::kLseek, EIO, 0);
    SystemCallFault const blocks(SystemCall::kPread, EIO, 0);
    EXPECT_EQ(std::wstring(100000, L'x'), NextLine(file.descriptor()));
    EXPECT_EQ(2, seeks.Calls());
    EXPECT_LE(blocks.Calls(), 16);
}

TEST(ReadLineCalls, MoveNothingAtTheEndOfTheFile) {
    ByteFile const file("");
    SystemCallFault const seeks(SystemCall::kLseek, EIO, 0);
    EXPECT_EQ(L"", NextLine(file.descriptor()));
    EXPECT_EQ(1, seeks.Calls());
}

TEST(ReadLineCalls, TakeAPipeByteByByte) {
    BytePipe const pipe("one\ntwo");
    SystemCallFault const bytes(SystemCall::kRead, EIO, 0);
    EXPECT_EQ(L"one", NextLine(pipe.descriptor()));
    EXPECT_EQ(4, bytes.Calls());
}

// ---- Short reads ----

TEST(ReadLineShortReads, GiveTheSameLinesAndPositions) {
    std::string const bytes = MixedLines();
    for (std::size_t const size : {1u, 2u, 3u, 127u, 128u, 129u, 1000u}) {
        ExpectAsReference(bytes, size);
        ExpectAsReferenceFromAPipe(bytes, size);
    }
}

TEST(ReadLineShortReads, OfNothingAreTheEnd) {
    ByteFile const file("one\n");
    {
        ShortTransfers const transfers(0);
        EXPECT_EQ(L"", NextLine(file.descriptor()));
    }
    EXPECT_EQ(0, file.Position());
    EXPECT_EQ(L"one", NextLine(file.descriptor()));
}

// ---- Interrupted reads ----

TEST(ReadLineInterruptions, AreRepeatedAHundredTimes) {
    for (int const interruptions : {1, 100}) {
        ByteFile const file("one\ntwo\n");
        {
            SystemCallFault const fault(SystemCall::kPread, EINTR, interruptions);
            EXPECT_EQ(L"one", NextLine(file.descriptor()));
            EXPECT_EQ(interruptions + 1, fault.Calls());
        }
        EXPECT_EQ(4, file.Position());
        BytePipe const pipe("one\ntwo\n");
        SystemCallFault const fault(SystemCall::kRead, EINTR, interruptions, 2);
        EXPECT_EQ(L"one", NextLine(pipe.descriptor()));
        EXPECT_EQ(interruptions + 4, fault.Calls());
    }
}

TEST(ReadLineInterruptions, AreCountedAnewForEachBlock) {
    ByteFile const file(std::string(5000, 'x') + "\n");
    ShortTransfers const transfers(4000);
    SystemCallFault const fault(SystemCall::kPread, EINTR, 100, 1);
    EXPECT_EQ(std::wstring(5000, L'x'), NextLine(file.descriptor()));
}

TEST(ReadLineInterruptions, EndTheLineAtTheHundredAndFirst) {
    ByteFile const file("one\n");
    {
        SystemCallFault const fault(SystemCall::kPread, EINTR);
        EXPECT_EQ(L"", NextLine(file.descriptor()));
        EXPECT_EQ(101, fault.Calls());
    }
    EXPECT_EQ(0, file.Position());
    BytePipe const pipe("one\n");
    {
        SystemCallFault const fault(SystemCall::kRead, EINTR, SystemCallFault::kAlways, 2);
        EXPECT_EQ(L"on", NextLine(pipe.descriptor()));
        EXPECT_EQ(103, fault.Calls());
    }
    EXPECT_EQ(L"e", NextLine(pipe.descriptor()));
}

// ---- Failures ----

TEST(ReadLineFailures, EndTheLineAsTheEndOfTheFileDoes) {
    ByteFile const file(std::string(500, 'x') + "\nnext\n");
    ShortTransfers const transfers(300);
    {
        SystemCallFault const fault(SystemCall::kPread, EIO, 1, 1);
        EXPECT_EQ(std::wstring(300, L'x'), NextLine(file.descriptor()));
    }
    EXPECT_EQ(300, file.Position());
    EXPECT_EQ(std::wstring(200, L'x'), NextLine(file.descriptor()));
    EXPECT_EQ(L"next", NextLine(file.descriptor()));
}

TEST(ReadLineFailures, WithinARunOfLineEndsLeaveTheRestOfItForTheNextCall) {
    ByteFile const file("one\n\n\ntwo");
    ShortTransfers const transfers(4);
    {
        SystemCallFault const fault(SystemCall::kPread, EIO, 1, 1);
        EXPECT_EQ(L"one", NextLine(file.descriptor()));
    }
    EXPECT_EQ(4, file.Position());
    EXPECT_EQ(L"", NextLine(file.descriptor()));
    EXPECT_EQ(L"two", NextLine(file.descriptor()));
}

TEST(ReadLineFailures, OfAPipeEndTheLine) {
    BytePipe const pipe("one\n");
    {
        SystemCallFault const fault(SystemCall::kRead, EAGAIN, 1, 2);
        EXPECT_EQ(L"on", NextLine(pipe.descriptor()));
    }
    EXPECT_EQ(L"e", NextLine(pipe.descriptor()));
}

TEST(ReadLineFailures, ToTellThePositionLoseNoByte) {
    ByteFile const file("one\r\n\ntwo\n");
    {
        SystemCallFault const fault(SystemCall::kLseek, EIO);
        EXPECT_EQ(L"one", NextLine(file.descriptor()));
    }
    EXPECT_EQ(4, file.Position());
    SystemCallFault const fault(SystemCall::kLseek, EIO);
    EXPECT_EQ(L"two", NextLine(file.descriptor()));
}

// The line is there again for the next call.
TEST(ReadLineFailures, ToMoveThePositionLeaveIt) {
    ByteFile const file("one\ntwo\n");
    {
        SystemCallFault const fault(SystemCall::kLseek, EIO, 1, 1);
        EXPECT_EQ(L"one", NextLine(file.descriptor()));
        EXPECT_EQ(2, fault.Calls());
    }
    EXPECT_EQ(0, file.Position());
    EXPECT_EQ(L"one", NextLine(file.descriptor()));
}

}  // namespace
