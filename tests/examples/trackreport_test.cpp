// TRACKREPORT_PATH is the built program; the build defines it.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/run_program.h"
#include "support/temporary_directory.h"

namespace {

class TrackReport : public testing::Test {
  protected:
    Outcome Run(std::vector<std::string> const& arguments) {
        return RunProgram(TRACKREPORT_PATH, arguments, directory_.Path("complaints"));
    }

    // The whole report, which the program also writes to `written` in the folder.
    void ExpectReport(std::string const& report, std::string const& written) {
        Outcome const outcome = Run({directory_.Path("")});
        EXPECT_EQ(0, outcome.status) << outcome.complaints;
        EXPECT_EQ(report + "written to " + written + "\n", outcome.out);
        EXPECT_EQ(report, directory_.Content(written));
    }

    TemporaryDirectory directory_;
};

TEST_F(TrackReport, SumsUpEveryFileByName) {
    directory_.MakeFile("b.csv",
                        "P8, 2015-06-01 10:00:00, 46.0, 7.7, 100\r\n"
                        "\r\n"
                        ", 2015-06-01 10:00:30, -46.0, -7.7, 101.5\r\n"
                        ", 2015-06-02 12:01:00, 46, 7, 99.5\r\n");
    directory_.MakeFile("a.csv", "X, 2016-02-29 23:59:59, 0, 0, 0\n");
    directory_.MakeFile("other.txt", "not a point file");
    std::string const report =
        "a.csv\n"
        "  1 points, X to X, in 00:00:00\n"
        "  altitude: 0.00 m on average, 0.0 m at X\n"
        "b.csv\n"
        "  3 points, P8 to P10, in 26:01:00\n"
        "  altitude: 100.33 m on average, 101.5 m at P9\n";
    ExpectReport(report, "report1.txt");
    ExpectReport(report, "report2.txt");
    directory_.Remove("report1.txt");
    directory_.Remove("report2.txt");
}

TEST_F(TrackReport, RejectsBadLinesByNumberAndReason) {
    directory_.MakeFile("d.csv",
                        ", 2015-06-01 10:00:00, 46, 7, 1\n"
                        "D-1, 2015-06-01 10:00:00, 46, 7, 1\n"
                        "D1, 2015-06-01 10:00:00, 46, 7\n"
                        "D1, 2015-06-31 10:00:00, 46, 7, 1\n"
                        "D1, 2015-06-O1 10:00:00, 46, 7, 1\n"
                        "D1, 2015-06-01 10:00:00, 90.1, 7, 1\n"
                        "D1, 2015-06-01 10:00:00, 46, , 1\n"
                        "D1, 2015-06-01 10:00:00, 46, 7, 1e3\n"
                        "\"D1\", 2015-06-01 10:00:00, 46, 7, 1\n");
    ExpectReport(
        "d.csv\n"
        "  no points\n"
        "  line 1: there is no name before it to count on from\n"
        "  line 2: a name has 1 to 40 letters, digits and '_'\n"
        "  line 3: a point has five fields\n"
        "  line 4: no date and time\n"
        "  line 5: no date and time\n"
        "  line 6: no latitude\n"
        "  line 7: no longitude\n"
        "  line 8: no altitude\n"
        "  line 9: quotes and tabs have no place\n",
        "report1.txt");
    directory_.Remove("report1.txt");
}

TEST_F(TrackReport, SaysThatThereIsNoFolder) {
    Outcome const outcome = Run({directory_.Path("missing")});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("trackreport: " + directory_.Path("missing") + ": no such folder\n",
              outcome.complaints);
}

TEST_F(TrackReport, WantsAFolder) {
    EXPECT_EQ(2, Run({}).status);
}

}  // namespace
