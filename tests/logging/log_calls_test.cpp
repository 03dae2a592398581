// What the log asks of the system. The program stands before the C library in these calls.

#include <qorutils/logging/main_logger.h>
#include <qorutils/logging/trace.h>
#include <qorutils/qorsys/qor_system.h>

#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "qorutils/logging/main_logger_impl.h"
#include "support/main_log.h"
#include "support/next_in_line.h"
#include "support/temporary_directory.h"

namespace {

// What is written down while `active`; otherwise the calls are those of the C library.
struct Calls {
    bool active = false;
    std::vector<std::string> written;
    std::vector<std::string> printed;
    std::vector<timespec> slept;
    int clocks = 0;
    int terminalTests = 0;
    int syncs = 0;

    // What the calls answer.
    bool isTerminal = false;
    bool clockFails = false;
    std::int64_t milliseconds = -1;  // -1: what the real clock says
    int writeError = 0;
} calls;

// Notes the calls in its scope.
class Noted {
  public:
    explicit Noted(Calls const& answers = Calls()) {
        calls = answers;
        calls.active = true;
    }
    ~Noted() { calls.active = false; }
    Noted(Noted const&) = delete;
    Noted& operator=(Noted const&) = delete;
};

}  // namespace

extern "C" {

__attribute__((visibility("default"))) ssize_t write(int file, void const* data, size_t size) {
    if (!calls.active) return NextInLine(write, "write")(file, data, size);
    calls.written.emplace_back(static_cast<char const*>(data), size);
    if (calls.writeError == 0) return static_cast<ssize_t>(size);
    errno = calls.writeError;
    return -1;
}

__attribute__((visibility("default"))) int fsync(int file) {
    if (!calls.active) return NextInLine(fsync, "fsync")(file);
    ++calls.syncs;
    return 0;
}

__attribute__((visibility("default"))) int isatty(int file) noexcept {
    if (!calls.active) return NextInLine(isatty, "isatty")(file);
    EXPECT_EQ(STDOUT_FILENO, file);
    ++calls.terminalTests;
    if (!calls.isTerminal) errno = ENOTTY;
    return calls.isTerminal;
}

__attribute__((visibility("default"))) int clock_gettime(clockid_t clock, timespec* now) noexcept {
    if (!calls.active) return NextInLine(clock_gettime, "clock_gettime")(clock, now);
    EXPECT_EQ(CLOCK_MONOTONIC, clock);
    ++calls.clocks;
    if (calls.milliseconds < 0) return NextInLine(clock_gettime, "clock_gettime")(clock, now);
    now->tv_sec = static_cast<time_t>(calls.milliseconds / 1000);
    now->tv_nsec = static_cast<long>(calls.milliseconds % 1000 * 1000000);
    return calls.clockFails ? -1 : 0;
}

__attribute__((visibility("default"))) int nanosleep(timespec const* time, timespec* rest) {
    if (!calls.active) return NextInLine(nanosleep, "nanosleep")(time, rest);
    calls.slept.push_back(*time);
    return 0;
}

__attribute__((visibility("default"), format(printf, 1, 2))) int printf(char const* format, ...) {
    if (calls.active) {
        calls.printed.emplace_back(format);
        return 0;
    }
    va_list args;
    va_start(args, format);
    int const length = std::vprintf(format, args);
    va_end(args);
    return length;
}

}  // extern "C"

namespace {

using qor_logging::CQorLogger;
using namespace qor_logging;  // NOLINT(google-build-using-namespace): a user's program

std::string Text(std::string const& bytes) {
    return Shown(DecodeUtf32Le(bytes));
}

std::string Bytes(std::string const& ascii) {
    return EncodeUtf32Le(std::u32string(ascii.begin(), ascii.end()));
}

TEST(ALine, IsWrittenWithOneCall) {
    std::string const text(5000, 'x');
    Noted const noted;
    QOR_TRACE_ALWAYS(L"first");
    QOR_TRACE_ALWAYS("%s", text.c_str());
    ASSERT_EQ(2u, calls.written.size());
    EXPECT_EQ(Bytes(" ; 7 ; first\r\n"), calls.written[0].substr(4 * 9));
    EXPECT_EQ(Bytes(" ; 7 ; " + text + "\r\n"), calls.written[1].substr(4 * 9));
}

TEST(ALine, TakesTheTimeOnceAndLooksForATerminalOnce) {
    Noted const noted;
    QOR_TRACE_ALWAYS("%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(1, calls.clocks);
    EXPECT_EQ(1, calls.terminalTests);
    EXPECT_EQ(0, calls.syncs);
    EXPECT_TRUE(calls.printed.empty());
}

TEST(ARejectedLine, AsksNothingOfTheSystem) {
    Noted const noted;
    QOR_TRACE_DEBUG(L"debug");
    QOR_TRACE_DEBUG("debug");
    LOGMESSAGE(5, "debug");
    EXPECT_EQ(0, calls.clocks);
    EXPECT_EQ(0, calls.terminalTests);
    EXPECT_TRUE(calls.written.empty());
}

TEST(ALine, IsLostWhenItCannotBeWritten) {
    {
        Calls full;
        full.writeError = ENOSPC;
        Noted const noted(full);
        QOR_TRACE_ALWAYS("lost");
        EXPECT_EQ(1u, calls.written.size());
    }
    Noted const noted;
    QOR_TRACE_ALWAYS("kept");
    ASSERT_EQ(1u, calls.written.size());
    EXPECT_EQ("kept\r\n", Text(calls.written[0]).substr(16));
}

TEST(ALine, IsShownInPiecesThatAreFormats) {
    std::string const message = std::string(234, 'a') + std::string(250, 'b') + "100%d";
    Calls terminal;
    terminal.isTerminal = true;
    Noted const noted(terminal);
    QOR_TRACE_ALWAYS("%s", message.c_str());
    ASSERT_EQ(3u, calls.printed.size());
    EXPECT_EQ(std::string(234, 'a'), calls.printed[0].substr(16));
    EXPECT_EQ(std::string(250, 'b'), calls.printed[1]);
    EXPECT_EQ("100%d\r\n", calls.printed[2]);
}

TEST(ALine, IsShownInPiecesOf250ForEachLength) {
    struct {
        std::size_t message;  // 16 characters stand in front of it and 2 behind
        std::vector<std::size_t> pieces;
    } const cases[] = {
        {0, {18}},         {231, {249}},
        {232, {250}},      {233, {250, 1}},  // the line feed alone
        {482, {250, 250}}, {582, {250, 250, 100}},
    };
    for (auto const& c : cases) {
        std::string const message(c.message, 'x');
        Calls terminal;
        terminal.isTerminal = true;
        Noted const noted(terminal);
        QOR_TRACE_ALWAYS("%s", message.c_str());
        std::vector<std::size_t> pieces;
        for (std::string const& piece : calls.printed) pieces.push_back(piece.size());
        EXPECT_EQ(c.pieces, pieces) << c.message;
    }
}

TEST(AFailedCheck, IsWrittenAndFlushed) {
    Noted const noted;
    qor_err_log("file", 1, "check");
    EXPECT_EQ(1u, calls.written.size());
    EXPECT_EQ(1, calls.syncs);
}

TEST(AnEnforcedCheck, IsFlushedTwice) {
    Noted const noted;
    EXPECT_THROW(qor_enforce("file", 1, "check"), std::runtime_error);
    EXPECT_EQ(1u, calls.written.size());
    EXPECT_EQ(2, calls.syncs);
}

TEST(FlushLog, WritesNothingWhenNothingIsPending) {
    Noted const noted;
    qor_flush_log();
    EXPECT_TRUE(calls.written.empty());
    EXPECT_EQ(1, calls.syncs);
}

// --- The clock ----------------------------------------------------------------------------------

// The times of the lines that a logger writes at these milliseconds; it is opened at the first.
std::vector<std::string> TimesAt(std::vector<std::int64_t> const& milliseconds) {
    Noted const noted;
    CQorLogger logger;
    calls.milliseconds = milliseconds.at(0);
    logger.Open(L"/dev/null");
    for (std::int64_t time : milliseconds) {
        calls.milliseconds = time;
        logger.WriteLine(7, L"");
    }
    std::vector<std::string> times;
    for (std::string const& line : calls.written) {
        std::string const text = Text(line);
        if (line.size() > 2) times.push_back(text.substr(0, text.find(' ')));
    }
    return times;
}

TEST(TheTimeOfALine, CountsFromTheOpeningOfTheFile) {
    EXPECT_EQ((std::vector<std::string>{"00000.000", "00000.001", "00012.345", "100000.000"}),
              TimesAt({777000, 777001, 789345, 100777000}));
}

TEST(TheTimeOfALine, StartsAgainBehind32Bits) {
    constexpr std::int64_t kRound = 4294967296;
    EXPECT_EQ((std::vector<std::string>{"00000.000", "4294967.295", "00000.000", "00001.234"}),
              TimesAt({5000, 5000 + kRound - 1, 5000 + kRound, 6234 + kRound}));
}

TEST(TheTimeOfALine, PassesTheEndOf32BitsOnTheClock) {
    constexpr std::int64_t kRound = 4294967296;
    EXPECT_EQ((std::vector<std::string>{"00000.000", "00000.010", "00001.000"}),
              TimesAt({kRound - 5, kRound + 5, kRound + 995}));
}

TEST(TheTimeOfALine, CountsFromZeroWhenTheClockFails) {
    Noted const noted;
    CQorLogger logger;
    calls.milliseconds = 7000;
    logger.Open(L"/dev/null");
    calls.clockFails = true;
    logger.WriteLine(7, L"");
    EXPECT_EQ(0u, logger.lastTicks);
    EXPECT_EQ("4294960.296", Text(calls.written.back()).substr(0, 11));  // 0 less 7000
}

// --- Sleep --------------------------------------------------------------------------------------

TEST(Sleep, AsksForSecondsAndNanoseconds) {
    Noted const noted;
    Sleep(1500);
    Sleep(2147483647);
    ASSERT_EQ(2u, calls.slept.size());
    EXPECT_EQ(1, calls.slept[0].tv_sec);
    EXPECT_EQ(500000000, calls.slept[0].tv_nsec);
    EXPECT_EQ(2147483, calls.slept[1].tv_sec);
    EXPECT_EQ(647000000, calls.slept[1].tv_nsec);
}

TEST(Sleep, ReturnsAtOnceForZeroAndLess) {
    Noted const noted;
    for (int milliseconds : {0, -5, -2147483647}) Sleep(milliseconds);
    EXPECT_TRUE(calls.slept.empty());
}

}  // namespace
