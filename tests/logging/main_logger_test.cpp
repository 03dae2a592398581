// How the log comes into being. A process does that once, so that every test runs in one of its
// own, and the program starts without a log.

#include <qorutils/appdirs/app_dirs.h>
#include <qorutils/logging/main_logger.h>
#include <qorutils/logging/trace.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <clocale>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/main_log.h"
#include "support/module_name.h"
#include "support/own_process.h"
#include "support/temporary_directory.h"

namespace {

using namespace qor_logging;  // NOLINT(google-build-using-namespace): a user's program

using Messages = std::vector<std::string>;

// In a process whose temporary directory and module file name are these.
template <typename Action>
std::string InProgram(std::string const& temporary, std::wstring const& module, Action action) {
    return InOwnProcess([&](std::ostream& say) {
        setenv("TMPDIR", temporary.c_str(), 1);
        NameModule(module);
        action(say);
    });
}

void SayName(std::ostream& say) {
    auto const name = getQorMainLogFileName();
    say << std::string(name.begin(), name.end());
}

// The banner's text without its time, which must look like one.
std::string WithoutTime(std::string const& banner) {
    static std::regex const time(
        " started on [0-9]{4}/[01][0-9]/[0-3][0-9] [0-2][0-9]:[0-5][0-9]:[0-6][0-9] UTC$");
    EXPECT_TRUE(std::regex_search(banner, time)) << banner;
    return std::regex_replace(banner, time, "");
}

// What a log must hold whose program logged nothing more than this.
void ExpectLog(std::string const& path, std::string const& program, Messages const& lines) {
    Messages messages = MessagesOfFile(path);
    ASSERT_EQ(lines.size() + 2, messages.size()) << path;
    EXPECT_EQ("Program " + program, WithoutTime(messages.front()));
    EXPECT_EQ("Logging finished", messages.back());
    EXPECT_EQ(lines, Messages(messages.begin() + 1, messages.end() - 1));
}

class MainLog : public testing::Test {
  protected:
    void RemoveLog(std::string const& name) const {
        directory_.Remove(name + "1.log.txt");
        directory_.Remove(name + ".seq.ini");
    }

    TemporaryDirectory directory_;
    std::string const path_ = directory_.Path("");
    std::string const folder_ = path_.substr(0, path_.size() - 1);
    std::wstring const wideFolder_ = std::wstring(folder_.begin(), folder_.end());
};

TEST_F(MainLog, IsMadeInTheTemporaryDirectoryForAProgramWithoutName) {
    std::string const name = InProgram(folder_, L"", [](std::ostream& say) {
        QOR_TRACE_ALWAYS("hello");
        SayName(say);
    });
    EXPECT_EQ(folder_ + "//qor1.log.txt", name);
    ExpectLog(directory_.Path("qor1.log.txt"), "", {"hello"});
    RemoveLog("qor");
}

TEST_F(MainLog, BeginsWithTheMarkAndTheBannersFirstCharacter) {
    InProgram(folder_, L"", [](std::ostream&) { getMainLogger(); });
    std::string const bytes = directory_.Content("qor1.log.txt");
    EXPECT_EQ(std::string("\xFF\xFE"
                          "0\0\0\0",
                          6),
              bytes.substr(0, 6));
    EXPECT_EQ("Program ", Shown(DecodeUtf32Le(bytes.substr(2))).substr(16, 8));
    RemoveLog("qor");
}

TEST_F(MainLog, TellsTheTimeOfTheStart) {
    time_t const before = time(nullptr);
    InProgram(folder_, L"", [](std::ostream&) { getMainLogger(); });
    time_t const after = time(nullptr);
    std::string const banner = MessagesOfFile(directory_.Path("qor1.log.txt")).at(0);
    bool found = false;
    for (time_t moment = before; moment <= after; ++moment) {
        char expected[64];
        strftime(expected, sizeof expected, "Program  started on %Y/%m/%d %H:%M:%S UTC",
                 gmtime(&moment));
        found = found || banner == expected;
    }
    EXPECT_TRUE(found) << banner;
    RemoveLog("qor");
}

TEST_F(MainLog, IsNotMadeBeforeTheFirstCall) {
    InProgram(folder_, L"", [](std::ostream&) { GetRootDir(); });
    EXPECT_FALSE(directory_.Has("qor1.log.txt"));
    EXPECT_FALSE(directory_.Has("qor.seq.ini"));
}

TEST_F(MainLog, IsMadeOnce) {
    InProgram(folder_, L"", [](std::ostream&) {
        CQorLogger* const logger = getMainLogger();
        EXPECT_NE(nullptr, logger);
        QOR_TRACE_ALWAYS("line");
        EXPECT_EQ(logger, getMainLogger());
    });
    EXPECT_FALSE(directory_.Has("qor2.log.txt"));
    RemoveLog("qor");
}

TEST_F(MainLog, IsMadeByARejectedLineToo) {
    InProgram(folder_, L"", [](std::ostream&) { QOR_TRACE_DEBUG("rejected"); });
    ExpectLog(directory_.Path("qor1.log.txt"), "", {});
    RemoveLog("qor");
}

TEST_F(MainLog, TakesTheFirstNameAgainAtTheEleventhStart) {
    for (int start = 1; start <= 11; ++start) {
        std::string const name = InProgram(folder_, L"", [start](std::ostream& say) {
            QOR_TRACE_ALWAYS("start %d", start);
            SayName(say);
        });
        EXPECT_EQ(
            folder_ + "//qor" + std::to_string(start % 10 == 0 ? 10 : start % 10) + ".log.txt",
            name);
    }
    ExpectLog(directory_.Path("qor1.log.txt"), "", {"start 11"});
    ExpectLog(directory_.Path("qor2.log.txt"), "", {"start 2"});
    ExpectLog(directory_.Path("qor10.log.txt"), "", {"start 10"});
    for (int number = 2; number <= 10; ++number)
        directory_.Remove("qor" + std::to_string(number) + ".log.txt");
    RemoveLog("qor");
}

TEST_F(MainLog, IsMadeInTheRootDirectoryAndNamedAfterTheProgram) {
    directory_.MakeFolder("root");
    std::string const name =
        InProgram("/no/such/directory", wideFolder_ + L"/root\\survey.exe", SayName);
    EXPECT_EQ(folder_ + "/root//survey1.log.txt", name);
    ExpectLog(directory_.Path("root/survey1.log.txt"), folder_ + "/root\\survey.exe", {});
    RemoveLog("root/survey");
}

TEST_F(MainLog, MakesARootDirectoryThatIsMissing) {
    InProgram("/no/such/directory", wideFolder_ + L"/made/deep\\survey.exe", SayName);
    ExpectLog(directory_.Path("made/deep/survey1.log.txt"), folder_ + "/made/deep\\survey.exe", {});
    RemoveLog("made/deep/survey");
    directory_.Remove("made/deep");
    directory_.Remove("made");
}

TEST_F(MainLog, GoesToTheTemporaryDirectoryWhereThereCanBeNoRootDirectory) {
    directory_.MakeFile("file", "in the way");
    std::string const name = InProgram(folder_, wideFolder_ + L"/file/root\\survey.exe", SayName);
    EXPECT_EQ(folder_ + "//survey1.log.txt", name);
    RemoveLog("survey");
}

TEST_F(MainLog, NamesTheFileWithoutTheProgramsLastSuffix) {
    struct {
        wchar_t const* program;
        char const* name;
    } const cases[] = {
        {L"survey", "survey"},
        {L"survey.1.2.exe", "survey.1.2"},
        {L".exe", "qor"},  // nothing in front of the suffix
        {L"", "qor"},
    };
    for (auto const& c : cases) {
        InProgram("/no/such/directory", wideFolder_ + L"\\" + c.program, SayName);
        EXPECT_TRUE(directory_.Has(std::string(c.name) + "1.log.txt")) << c.name;
        RemoveLog(c.name);
    }
}

TEST_F(MainLog, GoesToTheTemporaryDirectoryWhenTheLocaleCannotEncodeTheRoot) {
    std::string const name =
        InProgram(folder_, wideFolder_ + L"/\u20AC\\survey.exe", [](std::ostream& say) {
            std::setlocale(LC_ALL, "C");
            SayName(say);
        });
    EXPECT_EQ(folder_ + "//survey1.log.txt", name);
    RemoveLog("survey");
}

// What works without a file, too; says the log's name.
void LogNowhere(std::ostream& say) {
    QOR_TRACE_ALWAYS("nowhere");
    qor_err_log("file", 1, "check");
    qor_flush_log();
    EXPECT_NE(nullptr, getMainLogger());
    SayName(say);
}

TEST(MainLogWithoutFile, WorksWhereNothingCanBeCreated) {
    EXPECT_EQ("", InProgram("/proc", L"", LogNowhere));
}

// The log would go to "/", where the superuser could make it: he becomes another user or, on a
// system without any, has a "/" in which nobody can make anything.
class WithoutRoot {
  public:
    WithoutRoot() : root_(open("/", O_RDONLY | O_DIRECTORY)) {
        constexpr uid_t kNobody = 65534;
        if (geteuid() == 0 && setuid(kNobody) != 0) {
            EXPECT_EQ(0, chroot("/proc"));
        }
    }
    // As the process ends, sanitizers look for what they know.
    ~WithoutRoot() {
        if (geteuid() == 0) {
            EXPECT_EQ(0, fchdir(root_));
            EXPECT_EQ(0, chroot("."));
        }
        close(root_);
    }
    WithoutRoot(WithoutRoot const&) = delete;
    WithoutRoot& operator=(WithoutRoot const&) = delete;

  private:
    int root_;
};

TEST_F(MainLog, WorksWithoutATemporaryDirectory) {
    directory_.MakeFile("file", "no directory");
    for (std::string const& temporary : {std::string("/no/such/directory"), folder_ + "/file"}) {
        EXPECT_EQ("", InProgram(temporary, L"", [](std::ostream& say) {
                      WithoutRoot const withoutRoot;
                      LogNowhere(say);
                  }));
    }
}

TEST_F(MainLog, WorksWithoutAFileWhenADirectoryHasItsName) {
    directory_.MakeFolder("qor1.log.txt");
    EXPECT_EQ("", InProgram(folder_, L"", SayName));
    directory_.Remove("qor.seq.ini");
}

TEST_F(MainLog, WorksWithoutAFileWhenTheRootDirectoryHasTwoDots) {
    directory_.MakeFolder("a..b");
    EXPECT_EQ("", InProgram("/no/such/directory", wideFolder_ + L"/a..b\\survey.exe", SayName));
    directory_.Remove("a..b/survey.seq.ini");
}

TEST_F(MainLog, LosesItsLinesOnAFullDevice) {
    directory_.MakeLink("qor1.log.txt", "/dev/full");
    EXPECT_EQ(folder_ + "//qor1.log.txt", InProgram(folder_, L"", [](std::ostream& say) {
                  QOR_TRACE_ALWAYS("lost");
                  qor_err_log("file", 1, "lost, too");
                  SayName(say);
              }));
    directory_.Remove("qor.seq.ini");
}

TEST_F(MainLog, LosesTheLinesBehindALimitOfItsSize) {
    constexpr rlim_t kMost = 1000;
    InProgram(folder_, L"", [](std::ostream&) {
        signal(SIGXFSZ, SIG_IGN);
        rlimit const limit = {kMost, kMost};
        ASSERT_EQ(0, setrlimit(RLIMIT_FSIZE, &limit));
        for (int number = 1; number <= 20; ++number) QOR_TRACE_ALWAYS("line %d", number);
        qor_err_log("file", 1, "lost, too");
    });
    EXPECT_EQ(kMost, directory_.Content("qor1.log.txt").size());
    Messages messages = MessagesOfFile(directory_.Path("qor1.log.txt"));
    messages.erase(messages.begin());
    EXPECT_EQ((Messages{"line 1", "line 2", "line 3", "line 4", "line 5", "line 6", "line 7"}),
              messages);  // the eighth is cut
    RemoveLog("qor");
}

// The overrides file has a line that is none; its report asks for the log, which asks for the
// directories that are just being read. That log is ended when the real one is made.
TEST_F(MainLog, IsMadeInTwoStepsWhenTheOverridesFileIsMalformed) {
    directory_.MakeFolder("root");
    directory_.MakeFile("root\\qor_dir.ini", "[Directories\r\n");
    std::string const name =
        InProgram(folder_, wideFolder_ + L"/root\\survey.exe", [](std::ostream& say) {
            QOR_TRACE_ALWAYS("hello");
            SayName(say);
        });
    EXPECT_EQ(folder_ + "/root//survey1.log.txt", name);
    ExpectLog(directory_.Path("root/survey1.log.txt"), folder_ + "/root\\survey.exe", {"hello"});
    ExpectLog(directory_.Path("qor1.log.txt"), "", {"DBGCHK  qorutils/fs/qor_ini_file @ 223"});
    RemoveLog("root/survey");
    RemoveLog("qor");
}

TEST_F(MainLog, IsSharedWithAChildOfTheProcess) {
    InProgram(folder_, L"", [](std::ostream&) {
        QOR_TRACE_ALWAYS("parent, before");
        InOwnProcess([](std::ostream&) { QOR_TRACE_ALWAYS("child"); });
        QOR_TRACE_ALWAYS("parent, afterwards");
    });
    // The child's end is the end of its log, which has the same file.
    ExpectLog(directory_.Path("qor1.log.txt"), "",
              {"parent, before", "child", "Logging finished", "parent, afterwards"});
    RemoveLog("qor");
}

TEST_F(MainLog, IsNotEndedByAChildThatLeavesAtOnce) {
    InProgram(folder_, L"", [](std::ostream&) {
        QOR_TRACE_ALWAYS("parent, before");
        pid_t const child = fork();
        if (child == 0) {
            QOR_TRACE_ALWAYS("child");
            _exit(0);
        }
        waitpid(child, nullptr, 0);
        QOR_TRACE_ALWAYS("parent, afterwards");
    });
    ExpectLog(directory_.Path("qor1.log.txt"), "",
              {"parent, before", "child", "parent, afterwards"});
    RemoveLog("qor");
}

// --- The end ------------------------------------------------------------------------------------

bool speaks = false;

// Logs when it is destroyed, in those processes that set `speaks`.
class LastWord {
  public:
    explicit LastWord(char const* text) : text_(text) {}
    ~LastWord() {
        if (speaks) QOR_TRACE_ALWAYS("%s", text_);
    }
    LastWord(LastWord const&) = delete;
    LastWord& operator=(LastWord const&) = delete;

  private:
    char const* const text_;
};

LastWord const madeBeforeTheLog("static object made before the log");

// Runs behind the exit handlers; the log has ended by then, or ends later, as the linker orders it.
__attribute__((destructor)) void Unload() {
    if (speaks) {
        QOR_TRACE_ALWAYS("unloaded");
        qor_flush_log();
        if (getMainLogger() == nullptr && !getQorMainLogFileName().IsEmpty()) _exit(1);
    }
}

TEST_F(MainLog, TakesTheLastWordsOfTheProgram) {
    InProgram(folder_, L"", [](std::ostream&) {
        speaks = true;
        std::atexit([] { QOR_TRACE_ALWAYS("exit handler set before the log"); });
        QOR_TRACE_ALWAYS("first");
        static LastWord const madeAfterTheLog("static object made after the log");
        std::atexit([] { QOR_TRACE_ALWAYS("exit handler set after the log"); });
    });
    Messages messages = MessagesOfFile(directory_.Path("qor1.log.txt"));
    ASSERT_EQ("Logging finished", messages.back());
    messages.pop_back();
    if (messages.back() == "unloaded") messages.pop_back();
    messages.erase(messages.begin());
    EXPECT_EQ(
        (Messages{"first", "exit handler set after the log", "static object made after the log",
                  "exit handler set before the log", "static object made before the log"}),
        messages);
    RemoveLog("qor");
}

TEST_F(MainLog, IsMadeForTheLastWordAlone) {
    InProgram(folder_, L"", [](std::ostream&) {
        GetRootDir();  // the directories are gone when the log asks for them
        speaks = true;
    });
    Messages const messages = MessagesOfFile(directory_.Path("qor1.log.txt"));
    ASSERT_GE(messages.size(), 3u);
    EXPECT_EQ("static object made before the log", messages.at(1));
    EXPECT_EQ("Logging finished", messages.back());
    RemoveLog("qor");
}

TEST_F(MainLog, KeepsAFailedCheckThroughAnAbruptEnd) {
    InProgram(folder_, L"", [](std::ostream&) {
        pid_t const child = fork();
        if (child == 0) {
            qor_err_log("file", 7, "check");
            _exit(0);
        }
        waitpid(child, nullptr, 0);
    });
    Messages const messages = MessagesOfFile(directory_.Path("qor1.log.txt"));
    ASSERT_EQ(2u, messages.size());  // no "Logging finished"
    EXPECT_EQ("DBGCHK check file @ 7", messages.back());
    RemoveLog("qor");
}

}  // namespace
