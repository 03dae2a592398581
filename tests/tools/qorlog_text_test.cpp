// How qorlog shows logs as text, and what it says about those that are not in order.

#include <qorutils/export.h>

#include <string>
#include <vector>

#include "tools/qorlog_program.h"

namespace {

TEST_F(QorLog, ShowsLinesAsUtf8) {
    MakeLog(
        U"00000.001 ; 7 ; plain\r\n"
        U"00012.345 ; 7 ; \u00E9\u20AC\U0001F600 \u4E2D\r\n"
        U"00012.346 ; 7 ; Logging finished\r\n");
    Outcome const outcome = RunOnLog({});
    EXPECT_EQ(0, outcome.status);
    EXPECT_EQ(kShownBanner +
                  std::string("00000.001 ; 7 ; plain\n"
                              "00012.345 ; 7 ; \xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80 \xE4\xB8\xAD\n"
                              "00012.346 ; 7 ; Logging finished\n"),
              outcome.out);
    EXPECT_EQ("", outcome.complaints);
}

// Blocks of the file, of the output and of the decoder end everywhere within these lines.
TEST_F(QorLog, ShowsEveryLineOfALogOfManyBlocks) {
    std::u32string text;
    std::string shown = kShownBanner;
    for (int i = 0; i < 10000; ++i) {
        std::string const number = std::to_string(100000 + i);
        text += U"00001.000 ; 7 ; " + std::u32string(number.begin(), number.end()) + U" \u20AC\r\n";
        shown += "00001.000 ; 7 ; " + number + " \xE2\x82\xAC\n";
    }
    MakeLog(text);
    Outcome const outcome = RunOnLog({});
    EXPECT_EQ(0, outcome.status);
    EXPECT_TRUE(shown == outcome.out);
}

TEST_F(QorLog, ShowsALineOfMoreThanAMegabyte) {
    MakeLog(U"00001.000 ; 7 ; " + std::u32string(1200000, U'x') + U"\r\n00002.000 ; 7 ; next\r\n");
    Outcome const outcome = RunOnLog({});
    EXPECT_EQ(0, outcome.status);
    EXPECT_TRUE(kShownBanner + ("00001.000 ; 7 ; " + std::string(1200000, 'x')) +
                    "\n00002.000 ; 7 ; next\n" ==
                outcome.out);
}

TEST_F(QorLog, PassesControlCharactersOnThroughAPipe) {
    MakeLog(std::u32string(U"00001.000 ; 7 ; a\x1B[31mb\tc\r") + U'\0' + U"d\r\n");
    EXPECT_EQ(kShownBanner + std::string("00001.000 ; 7 ; a\x1B[31mb\tc\r") + '\0' + "d\n",
              RunOnLog({}).out);
}

TEST_F(QorLog, ShowsOneLogAfterAnother) {
    directory_.MakeFile("a", LogBytes(U"00000.000 ; 7 ; one\r\n"));
    directory_.MakeFile("b", LogBytes(U"00000.000 ; 7 ; two\r\n"));
    Outcome const outcome = Run({directory_.Path("a"), directory_.Path("b")});
    EXPECT_EQ(0, outcome.status);
    EXPECT_EQ("00000.000 ; 7 ; one\n00000.000 ; 7 ; two\n", outcome.out);
}

TEST_F(QorLog, ReadsStandardInput) {
    MakeLog(U"00001.000 ; 7 ; x\r\n");
    Outcome const outcome = RunByShell("cat " + Path() + " | ", "-");
    EXPECT_EQ(0, outcome.status) << outcome.complaints;
    EXPECT_EQ(kShownBanner + std::string("00001.000 ; 7 ; x\n"), outcome.out);
}

TEST_F(QorLog, WaitsForStandardInputThatDoesNotBlock) {
    int ends[2];
    ASSERT_EQ(0, pipe2(ends, O_NONBLOCK | O_CLOEXEC));
    RunningProgram program({"-"}, ends[0]);
    for (std::string const& bytes : {LogBytes(kBanner), EncodeUtf32Le(kBanner)}) {
        poll(nullptr, 0, 50);  // so that it finds nothing at first
        ASSERT_EQ(static_cast<ssize_t>(bytes.size()), write(ends[1], bytes.data(), bytes.size()));
        EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    }
    close(ends[1]);
    EXPECT_EQ(0, program.EndingSignal());
    close(ends[0]);
}

TEST_F(QorLog, NamesStandardInputInComplaints) {
    EXPECT_EQ("qorlog: standard input: empty, not a log\n",
              RunByShell("", "- </dev/null").complaints);
}

TEST_F(QorLog, EndsQuietlyWhenNobodyReadsIt) {
    MakeLog(std::u32string(200000, U'x'));
    Outcome const outcome = RunByShell("", Path() + " | head -c 5");
    EXPECT_EQ("00000", outcome.out);
    EXPECT_EQ("", outcome.complaints);
}

TEST_F(QorLog, ShowsTheTimeOfDay) {
    MakeLog(
        U"00012.345 ; 7 ; x\r\n"
        U"50400.000 ; 7 ; next day\r\n");
    EXPECT_EQ(
        "2026-11-22 10:00:00.000 ; 7 ; Program /opt/survey started on 2026/11/22 10:00:00 UTC\n"
        "2026-11-22 10:00:12.345 ; 7 ; x\n"
        "2026-11-23 00:00:00.000 ; 7 ; next day\n",
        RunOnLog({"--wall"}).out);
}

// The milliseconds of a log start again behind 4294967.295.
TEST_F(QorLog, CountsTheTimeOfDayOnWhereTheLogsTimeStartsAgain) {
    MakeLog(
        U"4294967.295 ; 7 ; before\r\n"
        U"00000.000 ; 7 ; again\r\n"
        U"4294967.295 ; 7 ; before\r\n"
        U"00001.000 ; 7 ; and again\r\n");
    std::string const shown = RunOnLog({"-w"}).out;
    EXPECT_EQ(
        "2027-01-11 03:02:47.295 ; 7 ; before\n"
        "2027-01-11 03:02:47.296 ; 7 ; again\n"
        "2027-03-01 20:05:34.591 ; 7 ; before\n"
        "2027-03-01 20:05:35.592 ; 7 ; and again\n",
        shown.substr(shown.find('\n') + 1));
}

TEST_F(QorLog, KeepsTheTimesOfALogWithoutBanner) {
    directory_.MakeFile("survey1.log.txt", LogBytes(U"00001.000 ; 7 ; x\r\n"));
    Outcome const outcome = RunOnLog({"--wall"});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("00001.000 ; 7 ; x\n", outcome.out);
    EXPECT_EQ(Complaint("does not begin with the time of its start: times are those since then"),
              outcome.complaints);
}

// Bytes behind the banner, which are wrong in one way each.
TEST_F(QorLog, ShowsADamagedLogAndTellsWhatIsWrong) {
    std::string const line = EncodeUtf32Le(U"00001.000 ; 7 ; x\r\n");
    std::string const later = EncodeUtf32Le(U"00002.000 ; 7 ; y\r\n");
    struct {
        std::string bytes;
        std::string shown;
        std::string complaints;
    } const cases[] = {
        // No line end.
        {line.substr(0, line.size() - 8), "00001.000 ; 7 ; x\n", Complaint("the last line is cut")},
        // Half a line end.
        {line.substr(0, line.size() - 4), "00001.000 ; 7 ; x\r\n",
         Complaint("the last line is cut")},
        // Half a character.
        {line.substr(0, line.size() - 10), "00001.000 ; 7 ; \xEF\xBF\xBD\n",
         Complaint("the last line is cut, and 2 bytes of a character left") +
             Complaint("1 invalid character, shown as U+FFFD")},
        // The disk was full within a character, and had room again for the next line.
        {line.substr(0, line.size() - 10) + later,
         "00001.000 ; 7 ; \xEF\xBF\xBD\n00002.000 ; 7 ; y\n",
         Complaint("1 invalid character, shown as U+FFFD")},
        // The same with one byte left less.
        {line.substr(0, line.size() - 9) + later,
         "00001.000 ; 7 ; \xEF\xBF\xBD\n00002.000 ; 7 ; y\n",
         Complaint("1 invalid character, shown as U+FFFD")},
        // A surrogate, and the first number that is no character.
        {EncodeUtf32Le(U"00001.000 ; 7 ; ") + std::string("\0\xD8\0\0\0\0\x11\0", 8) +
             EncodeUtf32Le(U"z\r\n"),
         "00001.000 ; 7 ; \xEF\xBF\xBD\xEF\xBF\xBDz\n",
         Complaint("2 invalid characters, shown as U+FFFD")},
    };
    for (auto const& c : cases) {
        directory_.MakeFile("survey1.log.txt", LogBytes(kBanner) + c.bytes);
        Outcome const outcome = RunOnLog({});
        EXPECT_EQ(1, outcome.status);
        EXPECT_EQ(kShownBanner + c.shown, outcome.out);
        EXPECT_EQ(c.complaints, outcome.complaints);
    }
}

TEST_F(QorLog, ReadsALogWithoutItsMark) {
    directory_.MakeFile("survey1.log.txt", EncodeUtf32Le(kBanner));
    Outcome const outcome = RunOnLog({});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(kShownBanner, outcome.out);
    EXPECT_EQ(Complaint("lacks its mark, and is read all the same"), outcome.complaints);
}

TEST_F(QorLog, RefusesWhatIsNoLog) {
    struct {
        std::string bytes;
        char const* refusal;
    } const cases[] = {
        {"", "empty, not a log"},
        {"\xFF\xFE", "the log ends before its first line"},
        {"00000.000 ; 7 ; Program\r\n", "text of 8-bit characters, not a log"},
        {"\xEF\xBB\xBF\xC3\xA9\xC3\xA9", "text of 8-bit characters, not a log"},
        {std::string("\xFF\xFE"
                     "P\0r\0o\0g\0r\0a\0m\0",
                     16),
         "UTF-16, not a log"},
        {std::string("\xFF\xFE\0\0P\0\0\0", 8), "UTF-32 with a mark of four bytes, not a log"},
        {std::string("\xFE\xFF\0P", 4), "UTF-16 with the high byte first, not a log"},
        {std::string("\0\0\xFE\xFF", 4), "UTF-32 with the high byte first, not a log"},
        {"\x7F"
         "ELF\x01\x01\x01",
         "a program (ELF), not a log"},
        {"\x1F\x8B\x08", "compressed (gzip), not a log"},
        {std::string(100, '\0'), "not a log"},
    };
    for (auto const& c : cases) {
        directory_.MakeFile("survey1.log.txt", c.bytes);
        Outcome const outcome = RunOnLog({});
        EXPECT_EQ(1, outcome.status) << c.refusal;
        EXPECT_EQ("", outcome.out) << c.refusal;
        EXPECT_EQ(Complaint(c.refusal), outcome.complaints);
    }
}

TEST_F(QorLog, GoesOnAfterAFileThatCannotBeRead) {
    MakeLog(U"");
    std::string const missing = directory_.Path("missing");
    std::string const folder = directory_.Path("");
    Outcome const outcome = Run({missing, folder, "/dev/null", Path()});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(kShownBanner, outcome.out);
    EXPECT_EQ("qorlog: " + missing + ": No such file or directory\nqorlog: " + folder +
                  ": Is a directory\nqorlog: /dev/null: empty, not a log\n",
              outcome.complaints);
}

TEST_F(QorLog, SaysWhenTheOutputCannotBeWritten) {
    MakeLog(U"");
    Outcome const outcome = RunByShell("", Path() + " >/dev/full");
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("qorlog: standard output: No space left on device\n", outcome.complaints);
}

// A deep one would end the C library's compiler of patterns.
TEST_F(QorLog, RefusesAPatternOfMoreThan4096Bytes) {
    MakeLog(U"");
    Outcome const longest = RunOnLog({"--grep", std::string(4096, '(')});
    EXPECT_EQ(2, longest.status);
    EXPECT_NE(std::string::npos, longest.complaints.find("Unmatched ( or \\("));
    Outcome const tooLong = RunOnLog({"--grep", std::string(4097, '(')});
    EXPECT_EQ(2, tooLong.status);
    EXPECT_NE(std::string::npos, tooLong.complaints.find("longer than 4096 bytes"));
}

TEST_F(QorLog, RefusesArgumentsThatItDoesNotKnow) {
    struct {
        std::vector<std::string> arguments;
        char const* complaint;
    } const cases[] = {
        {{"--fol"}, "unrecognised option '--fol'"},
        {{"--\x1B[2J"}, "unrecognised option '--\\x1B[2J'"},
        {{"-e", "a", "-e", "b"}, "option '--grep' cannot be specified more than once"},
        {{"--color", "blue", "x"}, "'blue' is no colour: auto, always or never"},
        {{"--grep", "(", "x"}, "'(': Unmatched ( or \\("},
        {{"--since", "noon", "x"},
         "'noon' is no time: it is written as 12.5, 1:02:03 or 2026-11-22 10:00:00"},
        {{"--program", "a", "x"}, "--program and --dir are for when no file is named"},
        {{"--program", "a/b"}, "'a/b' is no name of a program: use --dir, too"},
        {{"--program", ""}, "'' is no name of a program"},
        {{"--follow", "x", "y"}, "--follow goes with one file"},
    };
    for (auto const& c : cases) {
        Outcome const outcome = Run(c.arguments);
        EXPECT_EQ(2, outcome.status) << c.complaint;
        EXPECT_EQ("", outcome.out) << c.complaint;
        EXPECT_EQ("qorlog: " + std::string(c.complaint) + "\nqorlog --help tells more.\n",
                  outcome.complaints);
    }
}

TEST_F(QorLog, TellsAboutItself) {
    Outcome const help = Run({"--help"});
    EXPECT_EQ(0, help.status);
    EXPECT_EQ("usage: qorlog [OPTION]... [FILE]...\n", help.out.substr(0, 36));
    Outcome const version = Run({"--version"});
    EXPECT_EQ(0, version.status);
    EXPECT_EQ("qorlog " QORUTILS_VERSION_STRING "\n", version.out);
}

}  // namespace
