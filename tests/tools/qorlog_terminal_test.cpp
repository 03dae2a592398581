// What qorlog sends to a terminal.

#include <cstdlib>
#include <string>
#include <vector>

#include "support/pseudo_terminal.h"
#include "support/scoped_variable.h"
#include "tools/qorlog_program.h"

namespace {

class QorLogOnTerminal : public QorLog {
  protected:
    std::string Shown(std::vector<std::string> const& arguments) const {
        std::string command = Started(QORLOG_PATH) + " " + Path();
        for (std::string const& argument : arguments) command += " " + argument;
        TerminalOutput const terminal;
        int const status = std::system(command.c_str());
        EXPECT_EQ(0, status);
        return terminal.Read();
    }

    ScopedVariable const noColor_{"NO_COLOR", nullptr};
    ScopedVariable const terminal_{"TERM", "xterm"};
};

TEST_F(QorLogOnTerminal, ColoursTimesChecksAndTheBeginning) {
    MakeLog(
        U"00001.000 ; 7 ; x\r\n"
        U"00001.000 ; 7 ; DBGCHK a b @ 1\r\n");
    EXPECT_EQ(
        "\x1B[2m00000.000 ; 7 ; \x1B[m"
        "\x1B[1mProgram /opt/survey started on 2026/11/22 10:00:00 UTC\x1B[m\n"
        "\x1B[2m00001.000 ; 7 ; \x1B[mx\n"
        "\x1B[2m00001.000 ; 7 ; \x1B[m\x1B[31mDBGCHK a b @ 1\x1B[m\n",
        Shown({}));
}

TEST_F(QorLogOnTerminal, IsPlainWhereColourIsNotWanted) {
    MakeLog(U"");
    EXPECT_EQ(kShownBanner, Shown({"--color", "never"}));
    {
        ScopedVariable const noColor("NO_COLOR", "1");
        EXPECT_EQ(kShownBanner, Shown({}));
    }
    ScopedVariable const terminal("TERM", "dumb");
    EXPECT_EQ(kShownBanner, Shown({}));
}

TEST_F(QorLogOnTerminal, ColoursAPipeOnlyWhenTold) {
    MakeLog(U"00001.000 ; 7 ; a\x1B[2Jb\r\n");
    EXPECT_EQ(std::string::npos, RunOnLog({}).out.find("\x1B[2m"));
    std::string const shown = RunOnLog({"--color", "always"}).out;
    EXPECT_NE(std::string::npos, shown.find("\x1B[2m00001.000 ; 7 ; \x1B[ma\\x1B[2Jb\n")) << shown;
}

TEST_F(QorLogOnTerminal, ShowsControlCharactersInsteadOfSendingThem) {
    directory_.MakeFile("survey1.log.txt",
                        LogBytes(std::u32string(U"00001.000 ; 7 ; a\x1B]0;title\x07\tb\r") + U'\0' +
                                 U"\u009B\x7F\u202E\u20AC\r\n"));
    EXPECT_EQ("00001.000 ; 7 ; a\\x1B]0;title\\x07\tb\\x0D\\x00\\x9B\\x7F\\u202E\xE2\x82\xAC\n",
              Shown({"--color", "never"}));
}

// A message cannot pass itself off as a line of the log.
TEST_F(QorLogOnTerminal, SetsTheLaterLinesOfAMessageIn) {
    directory_.MakeFile("survey1.log.txt",
                        LogBytes(U"00001.000 ; 7 ; a\n00009.000 ; 7 ; no line\r\nb\r\n"));
    EXPECT_EQ("00001.000 ; 7 ; a\n    00009.000 ; 7 ; no line\n    b\n",
              Shown({"--color", "never"}));
}

}  // namespace
