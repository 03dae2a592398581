// Which log qorlog shows when none is named.

#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "support/scoped_variable.h"
#include "tools/qorlog_program.h"

namespace {

class QorLogChoosing : public QorLog {
  protected:
    // A log whose only message is its name, written so many seconds after 2020.
    void MakeNamedLog(std::string const& name, int seconds) {
        std::string const file = name + ".log.txt";
        std::u32string const message(name.begin(), name.end());
        directory_.MakeFile(file, LogBytes(U"00000.000 ; 7 ; " + message + U"\r\n"));
        timespec const times[] = {{1577836800 + seconds, 0}, {1577836800 + seconds, 0}};
        ASSERT_EQ(0, utimensat(AT_FDCWD, directory_.Path(file).c_str(), times, 0));
    }

    std::string Chosen(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"--dir", directory_.Path("")});
        Outcome const outcome = Run(arguments);
        EXPECT_EQ(0, outcome.status) << outcome.complaints;
        std::string const before = "00000.000 ; 7 ; ";
        if (outcome.out.compare(0, before.size(), before) != 0) return outcome.out;
        return outcome.out.substr(before.size(), outcome.out.size() - before.size() - 1);
    }
};

TEST_F(QorLogChoosing, TakesTheLogThatTheCounterNames) {
    MakeNamedLog("survey1", 30);
    MakeNamedLog("survey2", 20);
    MakeNamedLog("survey10", 10);
    directory_.MakeFile("survey.seq.ini", "2");
    EXPECT_EQ("survey2", Chosen({"--program", "survey"}));
    EXPECT_EQ("survey2", Chosen({}));
    directory_.MakeFile("survey.seq.ini", "10");
    EXPECT_EQ("survey10", Chosen({"-p", "survey"}));
}

TEST_F(QorLogChoosing, TakesTheLogWrittenLastWithoutAnAnswerOfTheCounter) {
    MakeNamedLog("survey1", 10);
    MakeNamedLog("survey3", 30);
    MakeNamedLog("survey10", 20);
    EXPECT_EQ("survey3", Chosen({"--program", "survey"}));
    for (char const* const counter : {"", "x", "0", "2", "11", "99999999999"}) {
        directory_.MakeFile("survey.seq.ini", counter);
        EXPECT_EQ("survey3", Chosen({"--program", "survey"})) << counter;
    }
}

TEST_F(QorLogChoosing, TakesTheProgramThatLoggedLast) {
    MakeNamedLog("survey1", 10);
    MakeNamedLog("qor7", 30);
    MakeNamedLog("other9", 20);
    EXPECT_EQ("qor7", Chosen({}));
    EXPECT_EQ("survey1", Chosen({"--program", "survey"}));
}

// survey110: the tenth of survey1, as no program counts to 110.
TEST_F(QorLogChoosing, KnowsTheNamesOfLogs) {
    MakeNamedLog("survey110", 10);
    MakeNamedLog("survey0", 20);
    MakeNamedLog("survey", 20);
    MakeNamedLog("5", 20);
    directory_.MakeFile("survey1.log.txt.old", "");
    directory_.MakeFile("survey1.txt", "");
    EXPECT_EQ("survey110", Chosen({}));
    EXPECT_EQ("survey110", Chosen({"--program", "survey1"}));
    EXPECT_EQ(1, Run({"--dir", directory_.Path(""), "--program", "survey"}).status);
}

TEST_F(QorLogChoosing, TakesNothingButFiles) {
    MakeNamedLog("survey1", 10);
    std::string const folders[] = {directory_.Path("survey2.log.txt"),
                                   directory_.Path("other1.log.txt")};
    for (std::string const& folder : folders) ASSERT_EQ(0, mkdir(folder.c_str(), 0700));
    EXPECT_EQ("survey1", Chosen({}));
    EXPECT_EQ("survey1", Chosen({"--program", "survey"}));
    for (std::string const& folder : folders) rmdir(folder.c_str());
}

TEST_F(QorLogChoosing, LooksIntoTheTemporaryDirectory) {
    MakeNamedLog("survey1", 10);
    ScopedVariable const temporary("TMPDIR", directory_.Path("").c_str());
    EXPECT_EQ("00000.000 ; 7 ; survey1\n", Run({}).out);
}

TEST_F(QorLogChoosing, SaysWhereThereIsNoLog) {
    std::string const folder = directory_.Path("");
    Outcome const any = Run({"--dir", folder});
    EXPECT_EQ(1, any.status);
    EXPECT_EQ("qorlog: " + folder + ": no log\n", any.complaints);
    Outcome const program = Run({"--dir", folder, "--program", "survey"});
    EXPECT_EQ(1, program.status);
    EXPECT_EQ("qorlog: " + folder + ": no log of survey\n", program.complaints);
    Outcome const missing = Run({"--dir", directory_.Path("missing")});
    EXPECT_EQ(1, missing.status);
    EXPECT_EQ("qorlog: " + directory_.Path("missing") + ": No such file or directory\n",
              missing.complaints);
}

}  // namespace
