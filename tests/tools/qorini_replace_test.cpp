#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdlib>

#include "support/ini_settings.h"
#include "tools/qorini_fixture.h"

namespace {

// What this process starts meanwhile may not write files larger than that.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim64_t bytes) {
        if (getrlimit64(RLIMIT_FSIZE, &before_) != 0) throw std::runtime_error("no limits");
        rlimit64 const limit{bytes, before_.rlim_max};
        if (setrlimit64(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("no such limit");
    }
    ~FileSizeLimit() { setrlimit64(RLIMIT_FSIZE, &before_); }
    FileSizeLimit(FileSizeLimit const&) = delete;
    FileSizeLimit& operator=(FileSizeLimit const&) = delete;

  private:
    rlimit64 before_;
};

class QoriniReplace : public Qorini {
  protected:
    struct stat64 Status(std::string const& name) const {
        struct stat64 status {};
        EXPECT_EQ(0, lstat64(Path(name).c_str(), &status)) << name;
        return status;
    }

    // The shell runs each in the background, and waits for all.
    void RunAtOnce(std::vector<std::vector<std::string>> const& runs) const {
        std::string script;
        for (auto const& arguments : runs) {
            script += Started(QORINI_PATH);
            for (std::string const& argument : arguments) script += " " + Quoted(argument);
            script += " & ";
        }
        EXPECT_EQ(0, std::system((script + "wait").c_str()));
    }
};

TEST_F(QoriniReplace, KeepsTheMode) {
    directory_.MakeFile("f.ini", "[A]\nk=1\n");
    for (mode_t const mode : {0600u, 0664u, 0777u}) {
        ASSERT_EQ(0, chmod(Path("f.ini").c_str(), mode));
        ExpectOut("", {"set", Path("f.ini"), "A", "k", std::to_string(mode)});
        EXPECT_EQ(S_IFREG | mode, Status("f.ini").st_mode);
    }
}

TEST_F(QoriniReplace, MakesANewFileAsTheMaskSays) {
    mode_t const before = umask(027);
    ExpectOut("", {"set", Path("new"), "A", "k", "1"});
    umask(before);
    EXPECT_EQ(S_IFREG | 0640u, Status("new").st_mode);
    directory_.Remove("new");
}

TEST_F(QoriniReplace, FollowsALinkToItsFile) {
    directory_.MakeFolder("folder");
    directory_.MakeFile("folder/f.ini", "[A]\nk=1\n");
    directory_.MakeLink("link", "folder/f.ini");
    ExpectOut("", {"set", Path("link"), "A", "k", "2"});
    EXPECT_TRUE(S_ISLNK(Status("link").st_mode));
    EXPECT_EQ("[A]\nk=2\n", directory_.Content("folder/f.ini"));
}

TEST_F(QoriniReplace, RefusesALinkThatLeadsNowhere) {
    directory_.MakeLink("link", "missing");
    ExpectComplaint(3, Path("link") + ": a symbolic link that leads nowhere",
                    {"set", Path("link"), "A", "k", "2"});
}

TEST_F(QoriniReplace, RefusesAFileWithASecondName) {
    directory_.MakeFile("f.ini", "[A]\nk=1\n");
    ASSERT_EQ(0, link(Path("f.ini").c_str(), Path("second").c_str()));
    ExpectComplaint(
        3, Path("f.ini") + ": has another name, a hard link, that would keep the old content",
        {"set", Path("f.ini"), "A", "k", "2"});
    EXPECT_EQ("[A]\nk=1\n", directory_.Content("second"));
    directory_.Remove("second");
}

TEST_F(QoriniReplace, LeavesAFileAloneThatHoldsTheValueAlready) {
    directory_.MakeFile("f.ini", "[A]\nk=1\n");
    auto const before = Status("f.ini").st_ino;
    ExpectOut("", {"set", Path("f.ini"), "A", "k", "1"});
    EXPECT_EQ(before, Status("f.ini").st_ino);
    ExpectOut("", {"set", Path("f.ini"), "A", "k", "2"});
    EXPECT_NE(before, Status("f.ini").st_ino);
}

TEST_F(QoriniReplace, LeavesTheOldFileWhenThereIsNoRoom) {
    directory_.MakeFile("f.ini", "[A]\nk=1\n");
    std::string const large(5000, 'x');
    FileSizeLimit const limit(4096);
    ExpectComplaint(3, Path("f.ini") + ": File too large", {"set", Path("f.ini"), "A", "k", large});
    EXPECT_EQ("[A]\nk=1\n", directory_.Content("f.ini"));
}

TEST_F(QoriniReplace, RemovesWhatAKilledProcessLeft) {
    directory_.MakeFile("f.ini", "[A]\nk=1\n");
    directory_.MakeFile(".qorini.new", "[A]\nk=half");
    ExpectOut("", {"set", Path("f.ini"), "A", "k", "2"});
    EXPECT_EQ("[A]\nk=2\n", directory_.Content("f.ini"));
    EXPECT_FALSE(directory_.Has(".qorini.new"));
}

TEST_F(QoriniReplace, ChangesNoFileThatIsCalledAsItsNewOnes) {
    directory_.MakeFile(".qorini.new", "[A]\nk=1\n");
    std::string const path = Path(".qorini.new");
    ExpectComplaint(3, path + ": the name is kept for new files that are being written",
                    {"set", path, "A", "k", "2"});
    EXPECT_EQ("[A]\nk=1\n", directory_.Content(".qorini.new"));
}

TEST_F(QoriniReplace, LeavesAloneWhereALinkInTheWayLeads) {
    directory_.MakeFile("f.ini", "[A]\nk=1\n");
    directory_.MakeFile("victim", "precious");
    directory_.MakeLink(".qorini.new", "victim");
    ExpectOut("", {"set", Path("f.ini"), "A", "k", "2"});
    EXPECT_EQ("[A]\nk=2\n", directory_.Content("f.ini"));
    EXPECT_TRUE(S_ISREG(Status("f.ini").st_mode));
    EXPECT_EQ("precious", directory_.Content("victim"));
    EXPECT_FALSE(directory_.Has(".qorini.new"));
}

TEST_F(QoriniReplace, WritesRegularFilesOnly) {
    directory_.MakeFolder("folder");
    ExpectComplaint(3, Path("folder") + ": Is a directory", {"set", Path("folder"), "A", "k", "1"});
    ExpectComplaint(3, "/: Is a directory", {"set", "/", "A", "k", "1"});
    ASSERT_EQ(0, mkfifo(Path("fifo").c_str(), 0600));
    ExpectComplaint(3, Path("fifo") + ": not a regular file", {"set", Path("fifo"), "A", "k", "1"});
    directory_.Remove("fifo");
    ExpectComplaint(3, Path("no/f.ini") + ": No such file or directory",
                    {"set", Path("no/f.ini"), "A", "k", "1"});
}

TEST_F(QoriniReplace, LosesNoKeyWhenSeveralAreSetAtOnce) {
    std::vector<std::vector<std::string>> runs;
    std::string keys;
    for (char letter = 'a'; letter < 'm'; ++letter) {
        runs.push_back({"set", Path("f.ini"), "A", std::string(1, letter), "1"});
        keys += std::string(1, letter) + "\n";
    }
    RunAtOnce(runs);
    ExpectOut(keys, {"keys", Path("f.ini"), "A"});
    directory_.Remove("f.ini");
}

}  // namespace
