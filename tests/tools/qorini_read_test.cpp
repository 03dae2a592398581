#include <qorutils/export.h>

#include "support/ini_settings.h"
#include "tools/qorini_fixture.h"

namespace {

constexpr char kReceiver[] =
    "# Settings of a receiver.\n"
    "[Receiver]\n"
    "Model=QR-8\n"
    "\n"
    "[Display]\n"
    "Language=el\n"
    "Greeting=\u039A\u03B1\u03BB\u03B7\u03BC\u03AD\u03C1\u03B1 \n"
    "Formula=k0 = 1\n"
    "[ A ]\n"
    "k =\n";

TEST_F(Qorini, PrintsAValueAsItStandsInTheFile) {
    directory_.MakeFile("r.ini", kReceiver);
    ExpectOut("QR-8\n", {"get", Path("r.ini"), "Receiver", "Model"});
    ExpectOut("\u039A\u03B1\u03BB\u03B7\u03BC\u03AD\u03C1\u03B1 \n",
              {"get", Path("r.ini"), "Display", "Greeting"});
    ExpectOut("k0 = 1\n", {"get", Path("r.ini"), "Display", "Formula"});
    ExpectOut("\n", {"get", Path("r.ini"), " A ", "k "});
}

TEST_F(Qorini, ListsSectionsAndKeysInTheOrderOfTheStore) {
    directory_.MakeFile("r.ini", kReceiver);
    ExpectOut(" A \nDisplay\nReceiver\n", {"sections", Path("r.ini")});
    ExpectOut("Formula\nGreeting\nLanguage\n", {"keys", Path("r.ini"), "Display"});
}

TEST_F(Qorini, CallsKeysOutsideAnySectionThoseOfTheEmptyOne) {
    directory_.MakeFile("r.ini", "k=1\n[A]\nk=2\n");
    ExpectOut("\nA\n", {"sections", Path("r.ini")});
    ExpectOut("1\n", {"get", Path("r.ini"), "", "k"});
}

TEST_F(Qorini, SaysWhatItDoesNotFind) {
    directory_.MakeFile("r.ini", kReceiver);
    std::string const path = Path("r.ini");
    ExpectComplaint(1, path + ": no section [receiver]", {"get", path, "receiver", "Model"});
    ExpectComplaint(1, path + ": no key 'model' in [Receiver]", {"get", path, "Receiver", "model"});
    ExpectComplaint(1, path + ": no section [X]", {"keys", path, "X"});
    ExpectComplaint(1, path + ": no keys outside a section", {"keys", path, ""});
}

TEST_F(Qorini, TakesAnEmptyFileForOneWithoutSettings) {
    directory_.MakeFile("empty", "");
    ExpectOut("", {"sections", Path("empty")});
    ExpectComplaint(1, Path("empty") + ": no section [A]", {"get", Path("empty"), "A", "k"});
}

TEST_F(Qorini, ReadsWideText) {
    directory_.MakeFile("wide", WideBytes(L"[A]\r\nk=\u20AC\r\n"));
    ExpectOut("\u20AC\n", {"get", Path("wide"), "A", "k"});
    directory_.MakeFile("marked", "\xFF\xFE" + WideBytes(L"[A]\r\nk=\u20AC\r\n"));
    ExpectOut("\u20AC\n", {"get", Path("marked"), "A", "k"});
}

TEST_F(Qorini, ReadsAFileThatMayNotBeWritten) {
    directory_.MakeFile("r.ini", "[A]\nk=1\n");
    ASSERT_EQ(0, chmod(Path("r.ini").c_str(), 0444));
    ExpectOut("1\n", {"get", Path("r.ini"), "A", "k"});
}

TEST_F(Qorini, SaysWhichLineKeepsAFileFromBeingRead) {
    ExpectRefused("[A]\n  k=1\n", ":2: the line is indented", "sections", {});
    ExpectRefused("\r\n[A\r\n", ":2: there is no ] at the end", "sections", {});
    ExpectRefused("[A]\r[]\r", ":2: the section has no name", "sections", {});
    ExpectRefused("[A]\n\nkey\n", ":3: there is no = behind the key", "keys", {"A"});
    ExpectRefused("[A]\nk=1\n_k=1\n", ":3: a key begins with a letter or a digit", "get",
                  {"A", "k"});
    ExpectRefused(std::string("\xFF\xFE[\0A\0]\0\n\0", 10),
                  ":1: no text: wide text has 32 bits a character here, UTF-16 has 16", "sections",
                  {});
    ExpectRefused(std::string("\xFE\xFF\0[\0A\0]\0\n", 10),
                  ":1: the file is marked as text of an encoding that is not read", "sections", {});
}

TEST_F(Qorini, LeavesNoLogNorTemporaryFile) {
    directory_.MakeFolder("tmp");
    std::string const temporary = Path("tmp");
    ScopedVariable const variable("TMPDIR", temporary.c_str());
    ExpectRefused("key\n", ":1: there is no = behind the key", "sections", {});
    EXPECT_EQ("[A]\nk=2\n", Changed("[A]\nk=1\n", "set", {"A", "k", "2"}));
}

TEST_F(Qorini, ReadsRegularFilesOnly) {
    ExpectComplaint(3, Path("missing") + ": No such file or directory",
                    {"sections", Path("missing")});
    ExpectComplaint(3, Path("") + ": Is a directory", {"sections", Path("")});
    ExpectComplaint(3, "/dev/full: not a regular file", {"sections", "/dev/full"});
    ASSERT_EQ(0, mkfifo(Path("fifo").c_str(), 0600));
    ExpectComplaint(3, Path("fifo") + ": not a regular file", {"sections", Path("fifo")});
    directory_.Remove("fifo");
    directory_.MakeSparseFile("large", 1LL << 31);
    ExpectComplaint(3, Path("large") + ": 2 GiB or more", {"sections", Path("large")});
}

// ---- Locales ----

TEST_F(Qorini, ReadsAsciiInALocaleThatIsNotInstalled) {
    directory_.MakeFile("r.ini", kReceiver);
    for (char const* const name : {"C", "xx_XX.UTF-8"}) {
        ScopedVariable const locale("LC_ALL", name);
        ExpectOut("QR-8\n", {"get", Path("r.ini"), "Receiver", "Model"});
    }
}

TEST_F(Qorini, RefusesTextThatTheLocaleDoesNotHave) {
    for (char const* const name : {"C", "xx_XX.UTF-8"}) {
        ScopedVariable const locale("LC_ALL", name);
        std::string const notText = " is not text in the locale's encoding, ASCII";
        ExpectRefused("[A]\nk=\u20AC\n",
                      ":2: not all of it is text in the locale's encoding, ASCII", "get",
                      {"A", "k"});
        ExpectRefused("[A]\n\u03B1=1\n", ":2: the line" + notText, "get", {"A", "k"});
        ExpectRefused("[A\u03B1]\nk=1\n", ":1: the line" + notText, "sections", {});
        ExpectRefused(WideBytes(L"[A]\nk=\u20AC\n"), ": '?'" + notText, "get", {"A", "k"});
        ExpectComplaint(3, "'a?\?\?'" + notText, {"get", Path("f.ini"), "A", "a\u20AC"});
    }
}

// ---- Words and status ----

TEST_F(Qorini, ExplainsItself) {
    Outcome const help = Run({"--help"});
    EXPECT_EQ(0, help.status);
    EXPECT_EQ(0u, help.out.find("usage: qorini COMMAND ...\n")) << help.out;
    for (std::string const command :
         {"get", "set", "unset", "sections", "keys", "check", "convert"}) {
        Outcome const outcome = Run({command, "--help"});
        EXPECT_EQ(0, outcome.status);
        EXPECT_EQ(0u, outcome.out.find("usage: qorini " + command + " ")) << outcome.out;
        ExpectOut(outcome.out, {"help", command});
        EXPECT_NE(std::string::npos, help.out.find("\n  " + command + " ")) << help.out;
    }
    ExpectComplaint(2, "'help' is not a command; see 'qorini --help'", {"help", "help"});
    ExpectComplaint(2, "'--help' is not a command; see 'qorini --help'", {"--help", "--help"});
    ExpectOut("qorini " QORUTILS_VERSION_STRING "\n", {"--version"});
}

TEST_F(Qorini, RefusesWrongUsage) {
    ExpectComplaint(2, "there is no command; see 'qorini --help'", {});
    ExpectComplaint(2, "'sit' is not a command; see 'qorini --help'", {"sit"});
    ExpectComplaint(2, "get takes FILE SECTION KEY; see 'qorini get --help'", {"get", "f", "A"});
    ExpectComplaint(2, "set takes FILE SECTION KEY VALUE; see 'qorini set --help'",
                    {"set", "f", "A", "k", "v", "w"});
    EXPECT_EQ(2, Run({"get", "--wrong", "f", "A", "k"}).status);
    EXPECT_EQ(2, Run({"convert", "f", "-o"}).status);
    EXPECT_EQ(2, Run({"check", "--operand", "f"}).status);
}

TEST_F(Qorini, KeepsTerminalCodesOutOfItsComplaints) {
    std::string const missing = ": No such file or directory";
    ExpectComplaint(3, Path("?[31m\u20AC") + missing, {"sections", Path("\x1B[31m\u20AC")});
    ExpectComplaint(3, Path("??") + missing, {"sections", Path("\x1B\xFF")});
    ExpectComplaint(2, "'?[31m' is not a command; see 'qorini --help'", {"\x1B[31m"});
}

TEST_F(Qorini, FailsWhenItsOutputIsNotTaken) {
    std::string const command =
        Started(QORINI_PATH) + " --help 2>" + Quoted(Path("complaints")) + " >/dev/full";
    int const status = std::system(command.c_str());
    EXPECT_EQ(3, WEXITSTATUS(status));
    EXPECT_EQ("qorini: standard output: No space left on device\n",
              directory_.Content("complaints"));
    directory_.Remove("complaints");
}

TEST_F(Qorini, FailsWhenNobodyReadsItsOutput) {
    int ends[2];
    ASSERT_EQ(0, pipe2(ends, O_CLOEXEC));
    close(ends[0]);
    std::string const command = Started(QORINI_PATH) + " --help 2>" + Quoted(Path("complaints"));
    std::fflush(stdout);
    int const before = dup(STDOUT_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    int const status = std::system(command.c_str());
    dup2(before, STDOUT_FILENO);
    close(before);
    close(ends[1]);
    EXPECT_EQ(3, WEXITSTATUS(status));
    EXPECT_EQ("qorini: standard output: Broken pipe\n", directory_.Content("complaints"));
    directory_.Remove("complaints");
}

}  // namespace
