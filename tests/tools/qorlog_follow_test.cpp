// Logs that grow while qorlog shows them.

#include <qorutils/fs/generated_names.h>

#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "tools/qorlog_program.h"

namespace {

class QorLogFollowing : public QorLog {
  protected:
    static std::string Line(std::string const& message) {
        return EncodeUtf32Le(U"00001.000 ; 7 ; " + std::u32string(message.begin(), message.end()) +
                             U"\r\n");
    }

    void AddLine(std::string const& message) const { AppendTo(Path(), Line(message)); }

    // When the log is a pipe.
    void WaitUntilRead() const {
        int const pipe = open(Path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        for (int waiting = 1; waiting != 0;) {
            poll(nullptr, 0, 1);
            ASSERT_EQ(0, ioctl(pipe, FIONREAD, &waiting));
        }
        close(pipe);
    }

    // Begins the program's next log, as the library does, and returns its path.
    std::string BeginNextLog() const {
        auto const name =
            SeqFileNames(directory_.WidePath("").c_str(), L"survey", L".log.txt", 10).getNext();
        std::string const path(name.begin(), name.end());
        std::ofstream(path, std::ios::binary) << LogBytes(kBanner);
        return path;
    }

    void RemoveLogs(int count) const {
        for (int i = 1; i <= count; ++i)
            directory_.Remove("survey" + std::to_string(i) + ".log.txt");
        directory_.Remove("survey.seq.ini");
    }
};

TEST_F(QorLogFollowing, ShowsLinesAsTheyCome) {
    MakeLog(U"");
    RunningProgram program({"--follow", Path()});
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    AddLine("one");
    EXPECT_EQ("00001.000 ; 7 ; one\n", program.OutputUpTo("one\n"));
    AddLine("two\r\nof two");
    EXPECT_EQ("00001.000 ; 7 ; two\nof two\n", program.OutputUpTo("of two\n"));
    program.Send(SIGINT);
    EXPECT_EQ(SIGINT, program.EndingSignal());
}

TEST_F(QorLogFollowing, WaitsForTheRestOfALine) {
    ASSERT_EQ(0, mkfifo(Path().c_str(), 0600));
    RunningProgram program({"-f", Path()});
    std::ofstream writer(Path(), std::ios::binary);
    writer << LogBytes(kBanner) << std::flush;
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    std::string const line = Line("one");
    writer << line.substr(0, 30) << std::flush;
    WaitUntilRead();
    writer << line.substr(30) << std::flush;
    EXPECT_EQ("00001.000 ; 7 ; one\n", program.OutputUpTo("one\n"));
    unlink(Path().c_str());
}

TEST_F(QorLogFollowing, SelectsLines) {
    MakeLog(U"");
    RunningProgram program({"-f", "--grep", "good", Path()});
    AddLine("bad");
    AddLine("good");
    EXPECT_EQ("00001.000 ; 7 ; good\n", program.OutputUpTo("good\n"));
}

TEST_F(QorLogFollowing, GoesOverToTheNextLog) {
    std::string const first = BeginNextLog();
    RunningProgram program({"-f", "--dir", directory_.Path(""), "--program", "survey"});
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    AppendTo(first, Line("last words"));
    std::string const second = BeginNextLog();
    EXPECT_EQ("00001.000 ; 7 ; last words\n" + std::string(kShownBanner),
              program.OutputUpTo(kShownBanner));
    std::string const path = directory_.Path("survey2.log.txt");
    EXPECT_EQ("qorlog: " + path + ": the next log\n", program.ComplaintsUpTo("log\n"));
    AppendTo(second, Line("more"));
    EXPECT_EQ("00001.000 ; 7 ; more\n", program.OutputUpTo("more\n"));
    BeginNextLog();
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    RemoveLogs(3);
}

// A program that crashes at its start may be started several times between two looks.
TEST_F(QorLogFollowing, LeavesOutNoLogOfSeveralStarts) {
    BeginNextLog();
    RunningProgram program({"-f", directory_.Path("survey1.log.txt")});
    std::string expected = program.OutputUpTo(kShownBanner);
    for (char const* const message : {"two", "three", "four"}) {
        AppendTo(BeginNextLog(), Line(message));
        expected += kShownBanner + ("00001.000 ; 7 ; " + std::string(message) + "\n");
    }
    EXPECT_EQ(expected, kShownBanner + program.OutputUpTo("four\n"));
    RemoveLogs(4);
}

TEST_F(QorLogFollowing, GoesFromANamedLogToTheNext) {
    BeginNextLog();
    RunningProgram program({"-f", directory_.Path("survey1.log.txt")});
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    BeginNextLog();
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    RemoveLogs(2);
}

// The counter is written before the log is emptied.
TEST_F(QorLogFollowing, DoesNotShowAnOldLogThatIsAboutToBeEmptied) {
    BeginNextLog();
    std::string const old = directory_.Path("survey2.log.txt");
    directory_.MakeFile("survey2.log.txt", LogBytes(U"00000.000 ; 7 ; old\r\n"));
    timespec const times[] = {{1577836800, 0}, {1577836800, 0}};
    ASSERT_EQ(0, utimensat(AT_FDCWD, old.c_str(), times, 0));
    RunningProgram program({"-f", directory_.Path("survey1.log.txt")});
    program.OutputUpTo(kShownBanner);
    std::ofstream(directory_.Path("survey.seq.ini")) << "2";
    AppendTo(directory_.Path("survey1.log.txt"), Line("still here"));
    EXPECT_EQ("00001.000 ; 7 ; still here\n", program.OutputUpTo("here\n"));
    std::ofstream(old, std::ios::binary) << LogBytes(kBanner);
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    RemoveLogs(2);
}

TEST_F(QorLogFollowing, BeginsAgainWithALogThatIsEmptied) {
    MakeLog(U"00001.000 ; 7 ; long\r\n");
    RunningProgram program({"-f", Path()});
    program.OutputUpTo("long\n");
    std::ofstream(Path(), std::ios::binary) << LogBytes(kBanner);
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    EXPECT_EQ(Complaint("begun anew"), program.ComplaintsUpTo("anew\n"));
}

TEST_F(QorLogFollowing, BeginsAgainWithAnotherFileOfTheName) {
    MakeLog(U"");
    RunningProgram program({"-f", Path()});
    program.OutputUpTo(kShownBanner);
    AddLine("last words");
    directory_.MakeFile("new", LogBytes(U"00000.000 ; 7 ; new\r\n"));
    ASSERT_EQ(0, rename(directory_.Path("new").c_str(), Path().c_str()));
    EXPECT_EQ("00001.000 ; 7 ; last words\n00000.000 ; 7 ; new\n", program.OutputUpTo("new\n"));
}

TEST_F(QorLogFollowing, WaitsForTheFirstLog) {
    std::string const folder = directory_.Path("");
    RunningProgram program({"-f", "--dir", folder});
    EXPECT_EQ("qorlog: " + folder + ": no log yet; waiting for it\n",
              program.ComplaintsUpTo("it\n"));
    BeginNextLog();
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
    RemoveLogs(1);
}

TEST_F(QorLogFollowing, WaitsForTheFirstLineOfAnEmptyLog) {
    directory_.MakeFile("survey1.log.txt", "");
    RunningProgram program({"-f", Path()});
    AppendTo(Path(), "\xFF\xFE");
    AppendTo(Path(), EncodeUtf32Le(kBanner));
    EXPECT_EQ(kShownBanner, program.OutputUpTo(kShownBanner));
}

TEST_F(QorLogFollowing, ShowsWhatIsThereOfALineWhenItIsEnded) {
    MakeLog(U"00001.000 ; 7 ; not yet who");
    RunningProgram program({"-f", Path()});
    program.OutputUpTo(kShownBanner);
    program.Send(SIGTERM);
    EXPECT_EQ("00001.000 ; 7 ; not yet who\n", program.OutputUpTo("who\n"));
    EXPECT_EQ(SIGTERM, program.EndingSignal());
}

TEST_F(QorLogFollowing, ShowsWhatIsThereOfTheFirstLineWhenItIsEnded) {
    ASSERT_EQ(0, mkfifo(Path().c_str(), 0600));
    RunningProgram program({"-f", Path()});
    {
        std::ofstream writer(Path(), std::ios::binary);
        writer << LogBytes(U"00000.000 ; 7 ; Program") << std::flush;
        WaitUntilRead();
        program.Send(SIGTERM);
    }
    EXPECT_EQ("00000.000 ; 7 ; Program\n", program.OutputUpTo("Program\n"));
    EXPECT_EQ(SIGTERM, program.EndingSignal());
    unlink(Path().c_str());
}

// Who ends it behind a program that has ended finds all that this one logged.
TEST_F(QorLogFollowing, ShowsWhatWasLoggedJustBeforeItIsEnded) {
    MakeLog(U"");
    RunningProgram program({"-f", Path()});
    program.OutputUpTo(kShownBanner);
    program.Send(SIGSTOP);
    AddLine("last words");
    program.Send(SIGTERM);
    program.Send(SIGCONT);
    EXPECT_EQ("00001.000 ; 7 ; last words\n", program.OutputUpTo("words\n"));
    EXPECT_EQ(SIGTERM, program.EndingSignal());
}

TEST_F(QorLogFollowing, EndsByTheSignalThatInterruptsItsWaitForAWriter) {
    RunningProgram program({"-f", Path()});
    program.ComplaintsUpTo("no log yet; waiting for it\n");
    ASSERT_EQ(0, mkfifo(Path().c_str(), 0600));
    poll(nullptr, 0, 200);  // so that it has opened the pipe; were it slower, it would end as well
    program.Send(SIGINT);
    EXPECT_EQ(SIGINT, program.EndingSignal());
    unlink(Path().c_str());
}

TEST_F(QorLogFollowing, EndsQuietlyWhenNobodyReadsIt) {
    MakeLog(U"");
    RunningProgram program({"-f", Path()});
    program.OutputUpTo(kShownBanner);
    program.CloseOutput();
    EXPECT_EQ(SIGPIPE, program.EndingSignal());
}

TEST_F(QorLogFollowing, RefusesAFileThatIsNoLog) {
    directory_.MakeFile("survey1.log.txt", "just text");
    Outcome const outcome = RunOnLog({"--follow"});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(Complaint("text of 8-bit characters, not a log"), outcome.complaints);
}

}  // namespace
