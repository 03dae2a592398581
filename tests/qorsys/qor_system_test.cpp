#include <qorutils/qorsys/qor_system.h>

#include <time.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/pseudo_terminal.h"
#include "support/scoped_locale.h"

namespace {

double MillisecondsOf(void (*action)()) {
    timespec before;
    timespec after;
    clock_gettime(CLOCK_MONOTONIC, &before);
    action();
    clock_gettime(CLOCK_MONOTONIC, &after);
    return static_cast<double>(after.tv_sec - before.tv_sec) * 1e3 +
           static_cast<double>(after.tv_nsec - before.tv_nsec) / 1e6;
}

TEST(Sleep, LastsAtLeastAsLongAsAsked) {
    EXPECT_GE(MillisecondsOf([] { Sleep(30); }), 30.0);
}

TEST(OutputDebugString, PrintsOnATerminal) {
    TerminalOutput const terminal;
    OutputDebugString(L"x\n");
    std::string const printed = terminal.Read();
    EXPECT_EQ("x\n", printed);
}

TEST(OutputDebugString, AddsNoLineEnd) {
    std::string printed;
    {
        TerminalOutput const terminal;
        OutputDebugString(L"a");
        OutputDebugString(L"");
        OutputDebugString(L"b");
        printed = terminal.Read();
    }
    EXPECT_EQ("ab", printed);
}

TEST(OutputDebugString, OnPurposeTakesTheTextForAFormat) {
    std::string printed;
    {
        TerminalOutput const terminal;
        OutputDebugString(L"100%%\n");
        printed = terminal.Read();
    }
    EXPECT_EQ("100%\n", printed);
}

TEST(OutputDebugString, EncodesTheTextAsTheLocaleSays) {
    ScopedLocale const utf8("C.UTF-8");
    std::string printed;
    {
        TerminalOutput const terminal;
        OutputDebugString(L"\u20AC\n");
        printed = terminal.Read();
    }
    EXPECT_EQ("\xE2\x82\xAC\n", printed);
}

TEST(OutputDebugString, PrintsNothingOfATextThatCannotBeEncoded) {
    ScopedLocale const ascii("C");
    std::string printed;
    {
        TerminalOutput const terminal;
        OutputDebugString(L"cost: \u20AC\n");
        printed = terminal.Read();
    }
    EXPECT_EQ("", printed);
}

// Standard output is a file while the object lives.
class FileOutput {
  public:
    FileOutput() : file_(std::tmpfile()), output_(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        dup2(fileno(file_), STDOUT_FILENO);
    }
    ~FileOutput() {
        dup2(output_, STDOUT_FILENO);
        close(output_);
        std::fclose(file_);
    }
    FileOutput(FileOutput const&) = delete;
    FileOutput& operator=(FileOutput const&) = delete;

    long Size() const {
        std::fflush(stdout);
        return static_cast<long>(lseek(fileno(file_), 0, SEEK_END));
    }

  private:
    std::FILE* file_;
    int output_;
};

TEST(OutputDebugString, PrintsNothingIntoAFile) {
    long size = -1;
    {
        FileOutput const file;
        OutputDebugString(L"x\n");
        OutputDebugString(L"%s%n");  // nor is it a format then
        size = file.Size();
    }
    EXPECT_EQ(0, size);
}

TEST(InterlockedIncrement, OnPurposeCopiesTheNumberToTheOneBehindIt) {
    int a[3] = {1, 2, 3};
    EXPECT_EQ(2, InterlockedIncrement(&a[1]));
    EXPECT_EQ(1, a[0]);
    EXPECT_EQ(2, a[1]);
    EXPECT_EQ(2, a[2]);
}

TEST(InterlockedDecrement, OnPurposeCopiesTheNumberToTheOneBeforeIt) {
    int a[3] = {1, 2, 3};
    EXPECT_EQ(2, InterlockedDecrement(&a[1]));
    EXPECT_EQ(2, a[0]);
    EXPECT_EQ(2, a[1]);
    EXPECT_EQ(3, a[2]);
}

TEST(NextAfter, StepsToTheNeighbour) {
    EXPECT_EQ(1.0 + std::numeric_limits<double>::epsilon(), _nextafter(1.0, 2.0));
    EXPECT_EQ(1.0 - std::numeric_limits<double>::epsilon() / 2, _nextafter(1.0, 0.0));
    EXPECT_EQ(std::numeric_limits<double>::denorm_min(), _nextafter(0.0, 1.0));
    EXPECT_EQ(1.0, _nextafter(1.0, 1.0));
    EXPECT_TRUE(std::isnan(_nextafter(1.0, std::nan(""))));
}

TEST(MemoryFuncs, MeasureNothing) {
    EXPECT_EQ(0u, MemoryFuncs::GetFreeSliderMemory());
    EXPECT_EQ(0u, MemoryFuncs::GetFreeVirtMemory());
}

}  // namespace
