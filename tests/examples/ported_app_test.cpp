// PORTED_APP_PATH is the built program; the build defines it.

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/main_log.h"
#include "support/run_program.h"
#include "support/scoped_variable.h"
#include "support/temporary_directory.h"

namespace {

// Runs the program with its settings and its log in a directory of the test's own.
class PortedApp : public testing::Test {
  protected:
    ~PortedApp() override {
        for (char const* const name : {"ported_app1.log.txt", "ported_app.seq.ini", "map.json"})
            if (directory_.Has(name)) directory_.Remove(name);
    }

    Outcome Run(std::vector<std::string> const& arguments) {
        return RunProgram(PORTED_APP_PATH, arguments, directory_.Path("complaints"));
    }

    Outcome RunOn(std::string const& points) {
        directory_.MakeFile("points.csv", points);
        return Run({directory_.Path("points.csv"), directory_.Path("map.json")});
    }

    // The program must say exactly this, and make no map.
    void ExpectRefused(Outcome const& outcome, std::string const& name, std::string const& reason) {
        EXPECT_EQ(1, outcome.status);
        EXPECT_EQ("", outcome.out);
        EXPECT_EQ("ported_app: " + directory_.Path(name) + ": " + reason + "\n",
                  outcome.complaints);
        EXPECT_FALSE(directory_.Has("map.json"));
    }

    TemporaryDirectory directory_;

  private:
    ScopedVariable const home_{"PORTED_APP_HOME", directory_.Path(".").c_str()};
};

bool Contains(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

char const* const kThreePoints =
    "A1, 2015-06-01 05:58:12, 38.44230, 27.14300, 3.0\r\n"
    "\r\n"
    ", 2015-06-01 05:58:28, 38.4424, 27.14299, 3.5\r\n"
    "A3, 2015-06-02 06:00:00, -38.5, -27.123456, -1\n";

TEST_F(PortedApp, MakesAMapOfAPointFile) {
    directory_.MakeFile("ported_app.ini", "[Map]\nTitle=By \"sea\" \\ land\nInterval=16\n");
    Outcome const outcome = RunOn(kThreePoints);
    EXPECT_EQ(0, outcome.status);
    EXPECT_EQ(
        directory_.Path("points.csv") +
            "\n"
            "  3 points, 2015-06-01 05:58:12 to 2015-06-02 06:00:00 UTC, 24:01:48 on the way\n" +
            directory_.Path("map.json") +
            "\n"
            "  3 points, 16 s or more apart, in 267 bytes\n",
        outcome.out);
    EXPECT_EQ("", outcome.complaints);
    EXPECT_EQ(
        "{\"type\": \"Feature\",\n"
        "\"properties\": {\"name\": \"By \\\"sea\\\" \\\\ land\", "
        "\"from\": \"2015-06-01T05:58:12Z\", \"to\": \"2015-06-02T06:00:00Z\"},\n"
        "\"geometry\": {\"type\": \"LineString\", \"coordinates\": [\n"
        "[27.14300, 38.44230, 3.0],\n"
        "[27.14299, 38.44240, 3.5],\n"
        "[-27.12346, -38.50000, -1.0]\n"
        "]}}\n",
        directory_.Content("map.json"));
}

TEST_F(PortedApp, LeavesOutPointsThatComeTooSoonButNotTheLast) {
    directory_.MakeFile("ported_app.ini", "[Map]\nInterval=17\n");
    EXPECT_TRUE(Contains(RunOn(kThreePoints).out, "\n  2 points, 17 s or more apart, "));
}

TEST_F(PortedApp, NeedsNoSettings) {
    EXPECT_TRUE(Contains(RunOn(kThreePoints).out, ", 60 s or more apart, "));
    EXPECT_TRUE(Contains(directory_.Content("map.json"), "{\"name\": \"A walk\", "));
}

TEST_F(PortedApp, KeepsItsLogInTheApplicationsFolder) {
    RunOn(kThreePoints);
    std::vector<std::string> const messages =
        MessagesOfFile(directory_.Path("ported_app1.log.txt"));
    ASSERT_EQ(5u, messages.size());
    EXPECT_EQ(0u, messages[0].find("Program " + directory_.Path(".") + "\\ported_app started on "));
    EXPECT_EQ("3 points read, 0 lines refused", messages[1]);
    EXPECT_EQ("DBGCHK  qorutils/qorsys/qor_com @ 101", messages[2]);  // the BSTR
    EXPECT_EQ("2 points written", messages[3]);
    EXPECT_EQ("Logging finished", messages[4]);
}

TEST_F(PortedApp, NamesTheLinesThatAreNoPointsAndUsesTheOthers) {
    std::string const good = "A, 2015-06-01 05:58:12, 38, 27, 3\n";
    char const* const bad[] = {
        "no point",                              // one field
        "A, 2015-06-31 05:58:12, 38, 27, 3",     // no such day
        "A, 2015-06-01 05:58, 38, 27, 3",        // no seconds
        "A, 2015-06-01 05:58:12 h, 38, 27, 3",   // something behind the time
        "A, 2015-06-01 05:58:12, 91, 27, 3",     // no such latitude
        "A, 2015-06-01 05:58:12, nan, 27, 3",    // no number
        "A, 2015-06-01 05:58:12, 38, -181, 3",   // no such longitude
        "A, 2015-06-01 05:58:12, 38, 27, 3 m",   // something behind the altitude
        "A, 2015-06-01 05:58:12, 38, 27",        // a field is missing
        "A, 2015-06-01 05:58:12, 38, 27, 3, 1",  // one too many
    };
    std::string points = good;
    std::string complaints;
    for (std::size_t i = 0; i < sizeof bad / sizeof *bad; ++i) {
        points += bad[i] + std::string("\n");
        complaints += "ported_app: " + directory_.Path("points.csv") + ": line " +
                      std::to_string(i + 2) + " is no point\n";
    }
    Outcome const outcome = RunOn(points + good);
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(complaints, outcome.complaints);
    EXPECT_TRUE(Contains(outcome.out, "map.json\n  2 points, ")) << outcome.out;
}

TEST_F(PortedApp, RefusesAFileWithoutTwoPoints) {
    ExpectRefused(RunOn("A, 2015-06-01 05:58:12, 38, 27, 3\n"), "points.csv", "has no two points");
}

TEST_F(PortedApp, RefusesWhatIsNoUtf8) {
    ExpectRefused(RunOn("\xC3("), "points.csv", "is not UTF-8");
}

TEST_F(PortedApp, RefusesAZeroByteInsteadOfEndingThere) {
    ExpectRefused(RunOn(std::string("a\0b", 3)), "points.csv", "is not UTF-8");
}

TEST_F(PortedApp, SaysWhichFileCannotBeOpened) {
    ExpectRefused(Run({directory_.Path("missing"), directory_.Path("map.json")}), "missing",
                  "cannot be opened");
}

TEST_F(PortedApp, SaysWhichFileCannotBeMade) {
    directory_.MakeFile("points.csv", kThreePoints);
    std::string const map = directory_.Path("missing/map.json");
    Outcome const outcome = Run({directory_.Path("points.csv"), map});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("ported_app: " + map + ": cannot be created\n", outcome.complaints);
}

TEST_F(PortedApp, SaysThatTheDiskIsFull) {
    directory_.MakeFile("points.csv", kThreePoints);
    Outcome const outcome = Run({directory_.Path("points.csv"), "/dev/full"});
    EXPECT_EQ(1, outcome.status);
    EXPECT_TRUE(Contains(outcome.complaints, "/dev/full: [")) << outcome.complaints;
    EXPECT_TRUE(Contains(outcome.complaints, "] Write: 28\n")) << outcome.complaints;
}

TEST_F(PortedApp, FailsWhenItsOutputCannotBeWritten) {
    directory_.MakeFile("points.csv", kThreePoints);
    std::string const command = Started(PORTED_APP_PATH) + " " +
                                Quoted(directory_.Path("points.csv")) + " " +
                                Quoted(directory_.Path("map.json"));
    EXPECT_EQ(0, std::system((command + " >/dev/null").c_str()));
    int const status = std::system((command + " >/dev/full 2>/dev/null").c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(1, WEXITSTATUS(status));
    directory_.Remove("ported_app2.log.txt");
}

TEST_F(PortedApp, SaysThatItsSettingsAreMalformed) {
    directory_.MakeFile("ported_app.ini", "[Map\n");
    ExpectRefused(RunOn(kThreePoints), "./ported_app.ini", "cannot be read");
}

TEST_F(PortedApp, RefusesANameThatTheLocaleCannotDecode) {
    Outcome const outcome = Run({"points\xFF", directory_.Path("map.json")});
    EXPECT_EQ(2, outcome.status);
    EXPECT_EQ("ported_app: an argument is no text in this locale\n", outcome.complaints);
}

TEST_F(PortedApp, WantsTwoFiles) {
    EXPECT_EQ(2, Run({"one"}).status);
    EXPECT_EQ("usage: ported_app POINTS MAP\n", Run({}).complaints);
}

}  // namespace
