// Logs that the library writes.

#include <qorutils/logging/checks.h>
#include <qorutils/logging/trace.h>

#include <string>

#include "support/own_process.h"
#include "tools/qorlog_program.h"

namespace {

using namespace qor_logging;  // NOLINT(google-build-using-namespace): a user's program

// What stands behind `before`, to the end.
std::string Behind(std::string const& before, std::string const& text) {
    std::size_t const found = text.rfind(before);
    EXPECT_NE(std::string::npos, found) << text;
    return found == std::string::npos ? text : text.substr(found + before.size());
}

// The messages without their times.
std::string Messages(std::string const& lines) {
    std::string messages;
    for (std::size_t from = 0, end; (end = lines.find('\n', from)) != std::string::npos;
         from = end + 1)
        messages += MessageOf(lines.substr(from, end - from)) + "\n";
    return messages;
}

TEST_F(QorLog, ShowsALogOfTheLibrarys) {
    QOR_TRACE_ALWAYS(L"begin of %d wide lines: \u00E9\u20AC", 2);
    QOR_TRACE_ALWAYS("narrow");
    qor_err_log("fs/a.cpp", 12, "size > 0");
    Outcome const outcome = Run({MainLogPath()});
    EXPECT_EQ(0, outcome.status) << outcome.complaints;
    EXPECT_EQ("Program ", MessageOf(outcome.out.substr(0, outcome.out.find('\n'))).substr(0, 8));
    EXPECT_EQ("narrow\nDBGCHK size > 0 fs/a.cpp @ 12\n",
              Messages(Behind("begin of 2 wide lines: \xC3\xA9\xE2\x82\xAC\n", outcome.out)));
    std::string const checks = Run({"--checks", MainLogPath()}).out;
    EXPECT_EQ("size > 0 fs/a.cpp @ 12\n", Behind(" ; 7 ; DBGCHK ", checks));
}

TEST_F(QorLog, FollowsAProgramThatLogs) {
    QOR_TRACE_ALWAYS("the mark");
    RunningProgram program({"--follow", MainLogPath()});
    program.OutputUpTo("the mark\n");
    InOwnProcess([](std::ostream&) { QOR_TRACE_ALWAYS("from a child"); });
    EXPECT_EQ("from a child\nLogging finished\n", Messages(program.OutputUpTo("finished\n")));
}

}  // namespace
