#include <qorutils/formats/text_lines.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/byte_file.h"
#include "support/scoped_locale.h"
#include "support/text_literal.h"

namespace {

using namespace qor_formats;
using Wide = qor_text::CQorStringT<wchar_t>;

std::wstring NextLine(int fd) {
    Wide line(L"from before");
    ReadLine(fd, line);
    EXPECT_TRUE(IsTerminated(line));
    return Content(line);
}

std::vector<std::wstring> FirstLines(int fd, std::size_t count) {
    std::vector<std::wstring> lines(count);
    for (std::wstring& line : lines) line = NextLine(fd);
    return lines;
}

using Lines = std::vector<std::wstring>;

// ---- ReadLine ----

TEST(ReadLine, TakesAnyRunOfLineEndsForOne) {
    struct {
        char const* bytes;
        Lines lines;
    } const cases[] = {
        {"a\r\n\r\nb", {L"a", L"b", L""}},
        {"a\nb\n", {L"a", L"b", L""}},
        {"a\rb\r", {L"a", L"b", L""}},
        {"a\n\r\r\n\n\n\rb\n\n\n", {L"a", L"b", L""}},
        {"", {L"", L""}},
        {"\n", {L"", L""}},
        {"\r\n\r\na", {L"", L"a"}},  // the start of the file is a line of its own
        {"a", {L"a", L"", L""}},
    };
    for (auto const& c : cases) {
        ByteFile const file(c.bytes);
        EXPECT_EQ(c.lines, FirstLines(file.descriptor(), c.lines.size())) << c.bytes;
    }
}

TEST(ReadLine, LeavesThePositionAtTheNextLine) {
    ByteFile const file("one\r\n\r\ntwo\nthree");
    EXPECT_EQ(L"one", NextLine(file.descriptor()));
    EXPECT_EQ(7, file.Position());
    EXPECT_EQ(L"two", NextLine(file.descriptor()));
    EXPECT_EQ(11, file.Position());
    EXPECT_EQ(L"three", NextLine(file.descriptor()));
    EXPECT_EQ(16, file.Position());
    EXPECT_EQ(L"", NextLine(file.descriptor()));
    EXPECT_EQ(16, file.Position());
}

TEST(ReadLine, StartsAtThePosition) {
    ByteFile file("one\ntwo");
    file.Seek(2);
    EXPECT_EQ(L"e", NextLine(file.descriptor()));
    file.Seek(3);
    EXPECT_EQ(L"", NextLine(file.descriptor()));  // the line end of a line without text
    EXPECT_EQ(4, file.Position());
    file.Seek(100);
    EXPECT_EQ(L"", NextLine(file.descriptor()));
    EXPECT_EQ(100, file.Position());
}

TEST(ReadLine, ReturnsLinesOfAnyLengthWhole) {
    for (std::size_t const length : {126u, 127u, 128u, 129u, 255u, 256u, 257u, 300u, 1023u, 1024u,
                                     1025u, 2048u, 3071u, 3072u, 3073u, 7168u, 100000u}) {
        std::wstring const line(length, L'x');
        std::string const bytes(length, 'x');
        for (char const* const end : {"", "\n", "\r\n", "\n\n\n"}) {
            ByteFile const file(bytes + end);
            EXPECT_EQ(line, NextLine(file.descriptor())) << length;
            EXPECT_EQ(L"", NextLine(file.descriptor()));
        }
        ByteFile const file(bytes + "\r\n" + bytes + "\nend");
        EXPECT_EQ(Lines({line, line, L"end"}), FirstLines(file.descriptor(), 3)) << length;
    }
}

TEST(ReadLine, TakesEveryByteAsOneCharacter) {
    std::string bytes;
    std::wstring line;
    for (int code = 1; code < 256; ++code) {
        if (code == '\r' || code == '\n') continue;
        bytes += static_cast<char>(code);
        line += static_cast<wchar_t>(code);
    }
    for (char const* locale : {"C", "C.UTF-8"}) {
        ScopedLocale const scope(locale);
        ByteFile const file(bytes + "\n\xE9\n\xC3\xA9");
        EXPECT_EQ(Lines({line, L"\u00E9", L"\u00C3\u00A9"}), FirstLines(file.descriptor(), 3));
    }
}

TEST(ReadLine, EmptiesALineOfWhiteSpaceOnly) {
    for (char const* locale : {"C", "C.UTF-8"}) {
        ScopedLocale const scope(locale);
        ByteFile const file(" \t \n\v\f\n" + std::string(500, ' ') + "\n" + std::string(128, '\t') +
                            "\na");
        EXPECT_EQ(Lines({L"", L"", L"", L"", L"a"}), FirstLines(file.descriptor(), 5));
        ByteFile const blanks(std::string(128, ' '));
        EXPECT_EQ(L"", NextLine(blanks.descriptor()));
        EXPECT_EQ(128, blanks.Position());
    }
}

TEST(ReadLine, KeepsWhiteSpaceAroundText) {
    ByteFile const file("  a \t\n\tb" + std::string(300, ' '));
    EXPECT_EQ(Lines({L"  a \t", L"\tb" + std::wstring(300, L' ')}),
              FirstLines(file.descriptor(), 2));
}

// The C library counts neither as white space, in any of its locales: one must not break a line,
// the other is a control of old terminals.
TEST(ReadLine, DoesNotCountNoBreakSpaceAndNextLineAsWhiteSpace) {
    for (char const* locale : {"C", "C.UTF-8"}) {
        ScopedLocale const scope(locale);
        ByteFile const file("\xA0\n\x85\n \x1C\n\x1F");
        EXPECT_EQ(Lines({L"\u00A0", L"\u0085", L" \x1C", L"\x1F"}),
                  FirstLines(file.descriptor(), 4));
    }
}

TEST(ReadLine, CutsTheLineAtAZeroByte) {
    ByteFile const file(std::string("ab\0cd\nef\n\0\ng", 12));
    EXPECT_EQ(Lines({L"ab", L"ef", L"", L"g"}), FirstLines(file.descriptor(), 4));
}

TEST(ReadLine, LeavesWhatFollowsTheChunkOfAZeroByte) {
    std::string bytes(300, 'x');
    bytes[5] = '\0';
    ByteFile file(bytes + "\ny");
    EXPECT_EQ(L"xxxxx", NextLine(file.descriptor()));
    EXPECT_EQ(128, file.Position());
    EXPECT_EQ(std::wstring(172, L'x'), NextLine(file.descriptor()));
    EXPECT_EQ(L"y", NextLine(file.descriptor()));
}

struct ZeroCase {
    std::size_t zero;     // where the zero byte is
    std::size_t lineEnd;  // where the line feed is, and a 'y' behind it
    std::size_t length;   // of the line
    long long position;   // behind it
};

TEST(ReadLine, CountsChunksFromTheStartOfTheLine) {
    ZeroCase const cases[] = {
        {0, 126, 0, 127},      // within the first chunk with its line end
        {126, 127, 126, 128},  //
        {127, 128, 127, 128},  // the line end is behind the chunk: an empty line comes next
        {0, 128, 0, 128},      //
        {0, 127, 0, 128},      // the line end is the last character of the chunk
        {127, 200, 127, 128},  //
        {128, 129, 128, 130},  // the second chunk
        {128, 256, 128, 256},  //
        {255, 300, 255, 256},     {128, 255, 128, 256},
        {1000, 1024, 1000, 1024},  // across the blocks that are read
        {1023, 1030, 1023, 1024}, {1024, 1030, 1024, 1031},
        {1024, 1152, 1024, 1152}, {1100, 5000, 1100, 1152},
        {3050, 3072, 3050, 3072}, {3071, 3080, 3071, 3072},
        {3072, 3080, 3072, 3081}, {7168, 7296, 7168, 7296},
    };
    for (ZeroCase const& c : cases) {
        std::string bytes(c.lineEnd, 'x');
        bytes[c.zero] = '\0';
        ByteFile const file(bytes + "\ny");
        EXPECT_EQ(std::wstring(c.length, L'x'), NextLine(file.descriptor())) << c.zero;
        EXPECT_EQ(c.position, file.Position()) << c.zero << ", " << c.lineEnd;
    }
}

TEST(ReadLine, ReadsOverAFileOfZerosInChunks) {
    ByteFile const file(std::string(300, '\0'));
    for (long long const position : {128, 256, 300, 300}) {
        EXPECT_EQ(L"", NextLine(file.descriptor()));
        EXPECT_EQ(position, file.Position());
    }
}

TEST(ReadLine, WorksBeyondTwoGigabytes) {
    long long const start = (1LL << 31) - 3;
    ByteFile file;
    file.WriteAt(start, "abcdefgh\nnext\n");
    file.Seek(start);
    EXPECT_EQ(L"abcdefgh", NextLine(file.descriptor()));
    EXPECT_EQ(start + 9, file.Position());
    EXPECT_EQ(L"next", NextLine(file.descriptor()));
    EXPECT_EQ(start + 14, file.Position());
    file.WriteAt(1LL << 33, "far");
    file.Seek(1LL << 33);
    EXPECT_EQ(L"far", NextLine(file.descriptor()));
}

TEST(ReadLine, LeavesTheLineEmptyWhenItCannotRead) {
    EXPECT_EQ(L"", NextLine(-1));
    int const directory = open("/", O_RDONLY | O_DIRECTORY);
    EXPECT_EQ(L"", NextLine(directory));
    close(directory);
    int const writeOnly = open("/dev/null", O_WRONLY);
    EXPECT_EQ(L"", NextLine(writeOnly));
    close(writeOnly);
}

TEST(ReadLine, LeavesCopiesOfTheLineAlone) {
    ByteFile const file("one\ntwo\n\n");
    Wide line;
    ReadLine(file.descriptor(), line);
    Wide const copy = line;
    ReadLine(file.descriptor(), line);
    EXPECT_TRUE(copy == L"one");
    EXPECT_TRUE(line == L"two");
}

TEST(ReadLine, UsesTheBufferAgain) {
    ByteFile const file(std::string(100, 'a') + "\n" + std::string(120, 'b') + "\n\n");
    Wide line;
    ReadLine(file.descriptor(), line);
    wchar_t const* const buffer = line.c_str();
    ReadLine(file.descriptor(), line);
    EXPECT_EQ(buffer, line.c_str());
    EXPECT_EQ(120, line.GetLength());
}

TEST(ReadLine, KeepsALockedLineLocked) {
    ByteFile const file("one\n");
    Wide line(L"x", 200);
    line.LockBuffer();
    ReadLine(file.descriptor(), line);
    EXPECT_TRUE(line == L"one");
    EXPECT_TRUE(line.GetData()->IsLocked());
    line.UnlockBuffer();
}

// ---- ReadLine from what cannot seek ----

TEST(ReadLineFromAPipe, ReadsTheSameLines) {
    BytePipe pipe(std::string("one\r\n\r\n two\n  \n") + std::string(300, 'x') + "\rend");
    pipe.CloseWriting();
    EXPECT_EQ(Lines({L"one", L" two", L"", std::wstring(300, L'x'), L"end", L"", L""}),
              FirstLines(pipe.descriptor(), 7));
}

TEST(ReadLineFromAPipe, TakesNothingOfWhatFollowsTheLineEnd) {
    BytePipe const pipe("one\r\ntwo");
    EXPECT_EQ(L"one", NextLine(pipe.descriptor()));
    char rest[8] = {};
    EXPECT_EQ(4, read(pipe.descriptor(), rest, sizeof rest));
    EXPECT_STREQ("\ntwo", rest);
}

// The writing end stays open: a line must be there as soon as its line end is.
TEST(ReadLineFromAPipe, DoesNotWaitForWhatFollows) {
    BytePipe pipe("one\n");
    EXPECT_EQ(L"one", NextLine(pipe.descriptor()));
    pipe.Write("\r\ntwo\r");
    EXPECT_EQ(L"two", NextLine(pipe.descriptor()));
}

TEST(ReadLineFromAPipe, PassesOverLineEndsInFront) {
    BytePipe pipe("\n\r\none\n");
    pipe.CloseWriting();
    EXPECT_EQ(Lines({L"one", L""}), FirstLines(pipe.descriptor(), 2));
}

TEST(ReadLineFromAPipe, CutsTheLineAtAZeroByte) {
    std::string bytes(200, 'x');
    bytes[5] = '\0';
    BytePipe pipe(bytes + std::string("\n\0y\nz", 5));
    pipe.CloseWriting();
    EXPECT_EQ(Lines({L"xxxxx", std::wstring(72, L'x'), L"", L"z"}),
              FirstLines(pipe.descriptor(), 4));
}

int pipeToFill = -1;

void FillPipe(int) {
    if (write(pipeToFill, "text\n", 5) != 5) _exit(1);
}

// The signal that interrupts the read is also what puts the line into the pipe.
TEST(ReadLineFromAPipe, RepeatsAnInterruptedRead) {
    BytePipe const pipe("");
    pipeToFill = pipe.writingEnd();
    struct sigaction action = {};
    struct sigaction previous;
    action.sa_handler = FillPipe;
    sigaction(SIGALRM, &action, &previous);
    itimerval timer = {};
    timer.it_value.tv_usec = 20000;
    setitimer(ITIMER_REAL, &timer, nullptr);
    EXPECT_EQ(L"text", NextLine(pipe.descriptor()));
    sigaction(SIGALRM, &previous, nullptr);
}

}  // namespace
