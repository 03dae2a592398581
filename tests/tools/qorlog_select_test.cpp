// Which lines qorlog selects.

#include <string>
#include <vector>

#include "tools/qorlog_program.h"

namespace {

class QorLogSelecting : public QorLog {
  protected:
    QorLogSelecting() {
        MakeLog(
            U"00001.000 ; 7 ; alpha\r\n"
            U"00002.500 ; 7 ; DBGCHK size > 0 qorutils/fs/a.cpp @ 12\r\n"
            U"00060.000 ; 7 ; Beta\nof two lines\r\nand a third\r\n"
            U"03600.000 ; 7 ; \u00C9t\u00E9\r\n"
            U"03723.250 ; 7 ; Logging finished\r\n");
    }

    // The first letters of the messages shown: P(rogram) a D B e-acute L, as "PaDBEL".
    std::string Selected(std::vector<std::string> const& arguments) const {
        Outcome const outcome = RunOnLog(arguments);
        EXPECT_EQ(0, outcome.status) << outcome.complaints;
        EXPECT_EQ("", outcome.complaints);
        std::string letters;
        for (std::size_t at = 0; (at = outcome.out.find(" ; 7 ; ", at)) != std::string::npos;) {
            char const c = outcome.out[at += 7];
            letters += c == '\xC3' ? 'E' : c;
        }
        return letters;
    }
};

TEST_F(QorLogSelecting, GoesByTheTimeSinceTheStart) {
    struct {
        char const* option;
        char const* time;
        char const* selected;
    } const cases[] = {
        {"--since", "0", "PaDBEL"},
        {"--since", "1", "aDBEL"},  // both bounds include their time
        {"--since", "1.001", "DBEL"},
        {"--since", "2.5", "DBEL"},
        {"--since", "2.5009", "DBEL"},  // less than a millisecond does not count
        {"--since", "1:00", "BEL"},
        {"--since", "60", "BEL"},
        {"--since", "1:02:03.250", "L"},
        {"--since", "1:02:03.251", ""},
        {"--since", "62:03", "L"},
        {"--until", "0", "P"},
        {"--until", "2.499", "Pa"},
        {"--until", "1:00:00", "PaDBE"},
        {"--until", "999999999", "PaDBEL"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.selected, Selected({c.option, c.time})) << c.option << " " << c.time;
    EXPECT_EQ("DB", Selected({"-s", "2", "-u", "60"}));
}

TEST_F(QorLogSelecting, GoesByTheTimeOfDay) {
    struct {
        char const* option;
        char const* time;
        char const* selected;
    } const cases[] = {
        {"--since", "2026-11-22", "PaDBEL"},
        {"--since", "2026-11-22 10:00", "PaDBEL"},
        {"--since", "2026-11-22 10:00:01", "aDBEL"},
        {"--since", "2026-11-22T10:00:02.501Z", "BEL"},
        {"--since", "2026-11-23", ""},
        {"--until", "2026-11-22 10:01", "PaDB"},
        {"--until", "2026-11-22 09:59:59.999", ""},
        {"--until", "2026-12-01", "PaDBEL"},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.selected, Selected({c.option, c.time})) << c.option << " " << c.time;
}

TEST_F(QorLogSelecting, RefusesWhatIsNoTime) {
    char const* const times[] = {
        "",
        "x",
        "-1",
        "1:2",
        "1:60",
        "1:00:60",
        "1:1:1:1",
        "1.",
        ".5",
        "1e3",
        "2026-2-1",
        "2026-13-01",
        "2026-02-29",
        "2026-11-22 ",
        "2026-11-22 10",
        "2026-11-22 24:00",
        "1600-01-01",
        "2026-11-22 10:00:00 UTC",
        "1000000000",
    };
    for (char const* const time : times)
        EXPECT_EQ(2, RunOnLog({std::string("--since=") + time}).status) << time;
    EXPECT_EQ(0, RunOnLog({"--since=2028-02-29"}).status);
}

TEST_F(QorLogSelecting, RefusesDatesForALogWithoutBanner) {
    std::string const path = directory_.Path("b");
    directory_.MakeFile("b", LogBytes(U"00001.000 ; 7 ; x\r\n"));
    Outcome const outcome = Run({"--since", "2026-11-22", path});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("", outcome.out);
    EXPECT_EQ("qorlog: " + path +
                  ": does not begin with the time of its start, so dates select nothing\n",
              outcome.complaints);
}

TEST_F(QorLogSelecting, SearchesMessages) {
    struct {
        char const* pattern;
        char const* selected;
    } const cases[] = {
        {"alpha", "a"},     {"ALPHA", ""},
        {"^alpha$", "a"},  // a message, without the time before it
        {"7 ; ", ""},       {"^(alpha|Logging)", "aL"},
        {"@ [0-9]+$", "D"}, {"^of two lines$", "B"},  // each line of a message
        {"third", "B"},     {"two.*third", ""},
        {"^.t.$", "E"},  // characters, not bytes
        {"\xC3\x89", "E"},  {"", "PaDBEL"},
    };
    for (auto const& c : cases) EXPECT_EQ(c.selected, Selected({"--grep", c.pattern})) << c.pattern;
    EXPECT_EQ("a", Selected({"-i", "-e", "ALPHA"}));
}

TEST_F(QorLogSelecting, ShowsAllLinesOfAMessage) {
    EXPECT_EQ("00060.000 ; 7 ; Beta\nof two lines\nand a third\n",
              RunOnLog({"--grep", "third"}).out);
    EXPECT_EQ("03600.000 ; 7 ; \xC3\x89t\xC3\xA9\n03723.250 ; 7 ; Logging finished\n",
              RunOnLog({"--since", "61"}).out);
}

TEST_F(QorLogSelecting, SelectsFailedChecks) {
    EXPECT_EQ("D", Selected({"--checks"}));
    EXPECT_EQ("", Selected({"--checks", "--grep", "alpha"}));
    EXPECT_EQ("", Selected({"--checks", "--since", "3"}));
}

TEST_F(QorLog, SelectsALineThatIsTooLongByItsBeginningAndSaysSo) {
    MakeLog(U"00001.000 ; 7 ; begin" + std::u32string(1200000, U'x') +
            U"end\r\n00002.000 ; 7 ; next\r\n");
    std::string const told =
        Complaint("line 2 is longer than 1 MiB: --grep looks at the beginning of such lines only");
    Outcome const begin = RunOnLog({"--grep", "begin"});
    EXPECT_EQ(1, begin.status);
    EXPECT_TRUE("00001.000 ; 7 ; begin" + std::string(1200000, 'x') + "end\n" == begin.out);
    EXPECT_EQ(told, begin.complaints);
    Outcome const end = RunOnLog({"--grep", "end|next"});
    EXPECT_EQ("00002.000 ; 7 ; next\n", end.out);
    EXPECT_EQ(told, end.complaints);
}

TEST_F(QorLog, FindsTextBehindAZeroCharacter) {
    MakeLog(std::u32string(U"00001.000 ; 7 ; a") + U'\0' + U"b\r\n");
    EXPECT_EQ(std::string("00001.000 ; 7 ; a\0b\n", 20), RunOnLog({"--grep", "b$"}).out);
}

}  // namespace
