#include "support/ini_settings.h"
#include "tools/qorini_fixture.h"

namespace {

// ---- set ----

TEST_F(Qorini, ChangesOneLineAndLeavesAllOthersAsTheyAre) {
    EXPECT_EQ("# c\r\n[B]\nz=1 \n\n;\r[A]\r\nk=-5\n[C]\nx=",
              Changed("# c\r\n[B]\nz=1 \n\n;\r[A]\r\nk=1\n[C]\nx=", "set", {"A", "k", "-5"}));
}

TEST_F(Qorini, ChangesTheLastOfSeveralLinesWithTheKey) {
    EXPECT_EQ("[A]\nk=1\nk=3\n[B]\nk=0\n",
              Changed("[A]\nk=1\nk=2\n[B]\nk=0\n", "set", {"A", "k", "3"}));
}

TEST_F(Qorini, AddsAKeyBehindTheLastOfItsSection) {
    EXPECT_EQ("[A]\r\nk=1\r\nl=\r\n\r\n[B]\r\nk=2\r\n",
              Changed("[A]\r\nk=1\r\n\r\n[B]\r\nk=2\r\n", "set", {"A", "l", ""}));
    EXPECT_EQ("[A]\n# no keys yet\n[B]\nk=2\nl=3",
              Changed("[A]\n# no keys yet\n[B]\nk=2", "set", {"B", "l", "3"}));
    EXPECT_EQ("[A]\nl=3\n# no keys yet\n[B]\nk=2",
              Changed("[A]\n# no keys yet\n[B]\nk=2", "set", {"A", "l", "3"}));
}

TEST_F(Qorini, AddsASectionInTheMannerOfTheFile) {
    EXPECT_EQ("[B]\nk=1\n\n[A]\nk=2\n", Changed("[B]\nk=1\n", "set", {"A", "k", "2"}));
    EXPECT_EQ("[B]\nk=1\n\n[A]\nk=2\n", Changed("[B]\nk=1", "set", {"A", "k", "2"})) << "no end";
    EXPECT_EQ("[B]\r\nk=1\r\n\r\n[A]\r\nk=2\r\n\r\n",
              Changed("[B]\r\nk=1\r\n\r\n", "set", {"A", "k", "2"}));
    std::string const unread("\0rest", 5);
    EXPECT_EQ("[B]\nk=1\n\n[A]\nk=2\n" + unread,
              Changed("[B]\nk=1\n" + unread, "set", {"A", "k", "2"}))
        << "the text ends at a line that begins with a zero";
}

TEST_F(Qorini, MakesAFileAsTheStoreWritesIt) {
    ExpectOut("", {"set", Path("new"), "A", "k", "1"});
    EXPECT_EQ("[A]\r\nk=1\r\n\r\n", directory_.Content("new"));
    directory_.Remove("new");
    EXPECT_EQ("[A]\r\nk=1\r\n\r\n", Changed("", "set", {"A", "k", "1"}));
}

TEST_F(Qorini, KeepsTheEncoding) {
    EXPECT_EQ(WideBytes(L"[A]\r\nk=\u20AC\r\n"),
              Changed(WideBytes(L"[A]\r\nk=1\r\n"), "set", {"A", "k", "\u20AC"}));
    EXPECT_EQ("\xEF\xBB\xBF[A]\nk=\u20AC\n",
              Changed("\xEF\xBB\xBF[A]\nk=1\n", "set", {"A", "k", "\u20AC"}));
}

TEST_F(Qorini, TakesEveryNameThatComesBack) {
    struct {
        char const *section, *key, *value;
    } const kCases[] = {
        {" A ", "k ", " v "},  // blanks belong to all three
        {"]", "k", "]"},       // the last bracket closes
        {"[A]", "k[", "[A]"},  // brackets within
        {"#", "0", "# no comment"},
        {"A=B", "k", "=v="},  // the first = of the line divides
        {"\u20AC", "\u03B1", "\u20AC"},
        {"-x", "k", "--help"},  // words that look like options
    };
    for (auto const& c : kCases) {
        std::string const path = Path("f.ini");
        ExpectOut("", {"set", path, c.section, c.key, c.value});
        ExpectOut(std::string(c.value) + "\n", {"get", path, c.section, c.key});
        ExpectOut(std::string(c.section) + "\n", {"sections", path});
        ExpectOut(std::string(c.key) + "\n", {"keys", path, c.section});
        directory_.Remove("f.ini");
    }
}

TEST_F(Qorini, RefusesWhatTheFormatCannotHold) {
    struct {
        char const *section, *key, *value, *complaint;
    } const kCases[] = {
        {"A", "_k", "v", "a key begins with a letter or a digit"},
        {"A", " k", "v", "a key begins with a letter or a digit"},
        {"A", "[k", "v", "a key begins with a letter or a digit"},
        {"A", "#k", "v", "a key begins with a letter or a digit"},
        {"A", "", "v", "the key is empty"},
        {"A", "k=l", "v", "a key ends at its first ="},
        {"A", "k\nl", "v", "a key is one line"},
        {"A", "k", "v\rw", "a value is one line"},
        {"A\n", "k", "v", "a section's name is one line"},
        {"", "k", "v", "keys outside a section make a file that programs cannot write again"},
    };
    for (auto const& c : kCases)
        ExpectRefused("[A]\nk=1\n", std::string(": ") + c.complaint, "set",
                      {c.section, c.key, c.value});
}

TEST_F(Qorini, RefusesToWriteTextThatTheLocaleDoesNotHave) {
    std::string const notText = "is not text in the locale's encoding, ";
    ExpectComplaint(3, "'?' " + notText + "UTF-8", {"set", Path("f.ini"), "A", "k", "\xFF"});
    ScopedVariable const locale("LC_ALL", "xx_XX.UTF-8");
    ExpectComplaint(3, "'?\?\?' " + notText + "ASCII", {"set", Path("f.ini"), "A", "k", "\u20AC"});
    EXPECT_FALSE(directory_.Has("f.ini"));
}

TEST_F(Qorini, KeepsTextOfAnotherEncodingInOtherLines) {
    ScopedVariable const locale("LC_ALL", "C");
    EXPECT_EQ("# \u20AC\n[A]\nk=\u20AC\nl=2\n",
              Changed("# \u20AC\n[A]\nk=\u20AC\nl=1\n", "set", {"A", "l", "2"}));
}

TEST_F(Qorini, ChangesNoFileThatAProgramCannotRead) {
    ExpectRefused("[A]\nk=1\nkey\n", ":3: there is no = behind the key", "set", {"A", "k", "2"});
    ExpectRefused("[A]\nk=1\nkey\n", ":3: there is no = behind the key", "unset", {"A", "k"});
}

// ---- unset ----

TEST_F(Qorini, RemovesAKeyWithAllItsLines) {
    EXPECT_EQ("[A]\n# c\nl=2\n[B]\nk=4\n",
              Changed("[A]\nk=1\n# c\nl=2\nk=3\n[B]\nk=4\n", "unset", {"A", "k"}));
    EXPECT_EQ("[A]\nk=1\n", Changed("q=0\n[A]\nk=1\n", "unset", {"", "q"}));
}

TEST_F(Qorini, RemovesASectionButItsComments) {
    EXPECT_EQ("# of A\n# of B\n[B]\nk=4\n",
              Changed("[A]\nk=1\n# of A\n\n# of B\n[B]\nk=4\n[A]\nl=3\n", "unset", {"A"}));
    EXPECT_EQ("[B]\r\nk=4\r\n\r\n",
              Changed("[A]\r\nk=1\r\n\r\n[B]\r\nk=4\r\n\r\n", "unset", {"A", "k"}))
        << "a section goes with its last key";
    EXPECT_EQ("[B]\nk=4\n", Changed("[A]\n\n[B]\nk=4\n", "unset", {"A"})) << "or without any";
}

TEST_F(Qorini, LeavesAFileThatCanBeReadWhenAllIsRemoved) {
    EXPECT_EQ("\n", Changed("[A]\nk=1\n", "unset", {"A"}));
    EXPECT_EQ(WideBytes(L"\r\n\r\n"), Changed(WideBytes(L"[A]\r\nk=1\r\n"), "unset", {"A", "k"}))
        << "wide text is recognised by more than 8 bytes";
    EXPECT_EQ(WideBytes(L"\n\n\n"), Changed(WideBytes(L"[A]\nk=1\n"), "unset", {"A", "k"}));
    EXPECT_EQ(WideBytes(L" \n\n"), Changed(WideBytes(L"[A]\nk=1\n \n"), "unset", {"A", "k"}));
    EXPECT_EQ("[B]\nl=2\n\n", Changed("\n\n", "set", {"B", "l", "2"}));
}

TEST_F(Qorini, SaysWhatItDoesNotFindToRemove) {
    directory_.MakeFile("f.ini", "[A]\nk=1\n");
    std::string const path = Path("f.ini");
    ExpectComplaint(1, path + ": no section [B]", {"unset", path, "B"});
    ExpectComplaint(1, path + ": no key 'l' in [A]", {"unset", path, "A", "l"});
    ExpectComplaint(3, Path("missing") + ": there is no such file",
                    {"unset", Path("missing"), "A"});
}

// ---- convert ----

TEST_F(Qorini, ConvertsThereAndBackCommentsAndAll) {
    std::string const narrow = "# \u20AC\n\n[A]\r\nk=\u20AC\rl=2";
    std::string const wide = WideBytes(L"# \u20AC\n\n[A]\r\nk=\u20AC\rl=2");
    EXPECT_EQ(wide, Changed(narrow, "convert", {}));
    EXPECT_EQ(narrow, Changed(wide, "convert", {}));
    EXPECT_EQ(wide, Changed(narrow, "convert", {"--to", "utf16"}));
    EXPECT_EQ(narrow, Changed(narrow, "convert", {"--to", "8bit"}));
    EXPECT_EQ(wide, Changed("\xEF\xBB\xBF" + narrow, "convert", {})) << "the mark is dropped";
}

TEST_F(Qorini, ConvertsIntoAnotherFile) {
    directory_.MakeFile("narrow", "[A]\nk=1\n");
    ASSERT_EQ(0, chmod(Path("narrow").c_str(), 0600));
    ExpectOut("", {"convert", Path("narrow"), "-o", Path("wide")});
    EXPECT_EQ("[A]\nk=1\n", directory_.Content("narrow"));
    EXPECT_EQ(WideBytes(L"[A]\nk=1\n"), directory_.Content("wide"));
    struct stat64 status {};
    EXPECT_EQ(0, stat64(Path("wide").c_str(), &status));
    EXPECT_EQ(S_IFREG | 0600u, status.st_mode);
    directory_.Remove("wide");
}

TEST_F(Qorini, RefusesToConvertWhatWouldBeLost) {
    ExpectRefused("[\u20AC]\nk=1\n", ": not written, as a program would mistake its encoding",
                  "convert", {});
    ExpectRefused("", ": not written, as a program would mistake its encoding", "convert",
                  {"--to", "utf16"});
    ExpectRefused(std::string("[A]\nk=1\n\0rest", 13),
                  ": what stands behind the end of the text cannot be converted", "convert", {});
    ExpectRefused(std::string("[A]\nk=1\0rest\n", 13),
                  ": line 2 is not text in the locale's encoding, UTF-8", "convert", {});
    ScopedVariable const locale("LC_ALL", "C");
    ExpectRefused("[A]\n# \u20AC\n", ": line 2 is not text in the locale's encoding, ASCII",
                  "convert", {});
    ExpectRefused(WideBytes(L"[A]\nk=\u20AC\n"),
                  ": line 2 is not text in the locale's encoding, ASCII", "convert", {});
}

TEST_F(Qorini, TakesAnEmptyWordForNoOption) {
    for (char const* const option : {"-o", "--output", "--to"}) {
        directory_.MakeFile("f.ini", "[A]\nk=1\n");
        EXPECT_EQ(2, Run({"convert", Path("f.ini"), option, ""}).status) << option;
        EXPECT_EQ("[A]\nk=1\n", directory_.Content("f.ini")) << option;
    }
}

TEST_F(Qorini, KnowsTwoEncodings) {
    directory_.MakeFile("f.ini", "[A]\nk=1\n");
    ExpectComplaint(2, "--to takes utf16 or 8bit, not 'utf8'",
                    {"convert", Path("f.ini"), "--to", "utf8"});
    ExpectComplaint(3, Path("missing") + ": No such file or directory",
                    {"convert", Path("missing")});
}

}  // namespace
