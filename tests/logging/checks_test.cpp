#include <qorutils/logging/checks.h>

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/check_reports.h"

namespace {

using qor_logging::qor_enforce;
using qor_logging::qor_err_log;

TEST(QorErrLog, WritesExpressionFileAndLine) {
    EXPECT_EQ("DBGCHK size > 0 fs/a.cpp @ 12\n",
              CheckReports([] { qor_err_log("fs/a.cpp", 12, "size > 0"); }));
}

TEST(QorErrLog, KeepsTheBlanksAroundAnEmptyExpression) {
    EXPECT_EQ("DBGCHK  qorutils/fs/platform_file @ -1\n",
              CheckReports([] { qor_err_log("qorutils/fs/platform_file", -1, ""); }));
}

TEST(QorErrLog, WritesPercentSignsAsTheyStand) {
    EXPECT_EQ("DBGCHK a %d b%s @ 0\n", CheckReports([] { qor_err_log("b%s", 0, "a %d"); }));
}

std::string Thrown(char const* file, int line, char const* expression) {
    try {
        qor_enforce(file, line, expression);
    } catch (std::runtime_error const& error) {
        return error.what();
    }
}

TEST(QorEnforce, ReportsAndThrowsTheSame) {
    std::string thrown;
    std::string const reported =
        CheckReports([&] { thrown = Thrown("fs/a.cpp", 2147483647, "x%n"); });
    EXPECT_EQ("DBGCHK x%n fs/a.cpp @ 2147483647\n", reported);
    EXPECT_EQ("Error x%n\nfs/a.cpp\n@2147483647", thrown);
}

TEST(QorEnforce, LeavesTheFirstLineWithABlankForAnEmptyExpression) {
    std::string thrown;
    CheckReports([&] { thrown = Thrown("f", 1, ""); });
    EXPECT_EQ("Error \nf\n@1", thrown);
}

TEST(QorEnforce, TakesTextsOfAnyLength) {
    std::string const expression(5000, 'e');
    std::string thrown;
    EXPECT_EQ("DBGCHK " + expression + " f @ 1\n",
              CheckReports([&] { thrown = Thrown("f", 1, expression.c_str()); }));
    EXPECT_EQ("Error " + expression + "\nf\n@1", thrown);
}

}  // namespace
