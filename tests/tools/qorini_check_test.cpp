#include "support/ini_settings.h"
#include "tools/qorini_fixture.h"

namespace {

class QoriniCheck : public Qorini {
  protected:
    // The findings are lines without the file's name, each with its end.
    void ExpectFindings(std::string const& findings, std::string const& content,
                        std::vector<std::string> arguments = {"check"}) {
        directory_.MakeFile("f.ini", content);
        arguments.push_back(Path("f.ini"));
        Outcome const outcome = Run(arguments);
        EXPECT_EQ(findings.empty() ? 0 : 1, outcome.status) << content;
        EXPECT_EQ(WithName(findings), outcome.out);
        EXPECT_EQ("", outcome.complaints);
        directory_.Remove("f.ini");
    }

  private:
    std::string WithName(std::string const& findings) const {
        std::string named;
        for (std::size_t begin = 0; begin < findings.size();) {
            std::size_t const next = findings.find('\n', begin) + 1;
            named += Path("f.ini") + ":" + findings.substr(begin, next - begin);
            begin = next;
        }
        return named;
    }
};

TEST_F(QoriniCheck, SaysNothingOfAGoodFile) {
    ExpectFindings("", "# c\r\n; c\r\n/ c\r\n[B]\r\nk=1 \r\n\r\n[A]\r\nk= 1\r\nj=\r\n");
    ExpectFindings("", "\xEF\xBB\xBF[A]\n\u03B1=\u20AC\n");
    ExpectFindings("", WideBytes(L"[A]\n\u03B1=\u20AC\n"));
}

TEST_F(QoriniCheck, FindsEveryLineThatIsRefused) {
    ExpectFindings(
        "1: refused: the line is indented\n"
        "3: refused: there is no ] at the end\n"
        "4: refused: the section has no name\n"
        "5: refused: there is no = behind the key\n"
        "6: refused: a key begins with a letter or a digit\n",
        "\tk=1\r\n# c\r\n[A] x\r\n[]\r\nkey\r\n=1\r\n");
}

TEST_F(QoriniCheck, FindsWhatIsOverwrittenAndMerged) {
    ExpectFindings(
        "2: 'k' is overwritten by line 5\n"
        "4: [A] continues the section of line 1\n",
        "[A]\nk=1\n\n[A]\nk=2\n[B]\nk=3\n");
}

TEST_F(QoriniCheck, FindsKeysOutsideTheirSection) {
    ExpectFindings(
        "1: 'q' stands in no section: a program that writes the file makes it unreadable\n"
        "3: blanks end the section [A]\n"
        "4: 'k' stands in no section: a program that writes the file makes it unreadable\n"
        "5: [A] continues the section of line 2\n",
        "q=1\n[A]\n \t\nk=1\n[A]\nk=1\n");
}

TEST_F(QoriniCheck, FindsWhatIsDroppedOrEasilyMissed) {
    ExpectFindings(
        "1: the blanks behind ] are dropped\n"
        "2: 'k ' ends in a blank, which belongs to the key\n"
        "3: [B] has no keys: it is not stored\n",
        "[A]  \nk = 1\n[B]\n");
}

TEST_F(QoriniCheck, FindsWhatIsNoText) {
    std::string const notText = "not text in the locale's encoding, UTF-8";
    ExpectFindings("2: the line is cut where it is " + notText + "\n", "[A]\nk=v\xFFw\n");
    ExpectFindings("2: the line is cut where it is " + notText + "\n",
                   std::string("[A]\nk=v\0w\n", 10));
    ExpectFindings("1: the line is cut where it is " + notText +
                       "\n4: blanks end the section [A]\n" + "4: the line is cut where it is " +
                       notText + "\n",
                   std::string(" \0k=1\n[A]\nk=1\n \0k=1\n", 20));
    ExpectFindings("3: the line is " + notText + ", and ends the section\n", "[A]\nk=1\n\xFFk=2\n");
    ExpectFindings("3: a zero character ends the text: nothing from here on is read\n",
                   std::string("[A]\nk=1\n\0[B]\n", 13));
    ExpectFindings("1: a program cannot read an empty file\n", "");
}

TEST_F(QoriniCheck, FindsWhatIsNoWideText) {
    std::wstring const surrogate{L'k', L'=', static_cast<wchar_t>(0xD800), L'\n'};
    ExpectFindings("2: not all of the line is text\n", WideBytes(L"[A]\n" + surrogate));
    ExpectFindings("3: the bytes at the end are less than a character\n",
                   WideBytes(L"[A]\nk=1\n") + "xy");
    ExpectFindings("1: refused: the file is marked as text of an encoding that is not read\n",
                   "\xFE\xFF");
}

TEST_F(QoriniCheck, KnowsWhatTheLocaleMakesOfAFile) {
    ScopedVariable const locale("LC_ALL", "C");
    std::string const notText = "not text in the locale's encoding, ASCII\n";
    ExpectFindings(
        "2: the line is cut where it is " + notText + "4: refused: the line is " + notText,
        "[A]\nk=\u20AC\n# \u20AC\nk\u20AC=1\n");
    ExpectFindings("1: the file is marked as UTF-8, but read in the locale's encoding, ASCII\n",
                   "\xEF\xBB\xBF[A]\nk=1\n");
}

TEST_F(QoriniCheck, FindsWhatAWritingProgramLosesAndMoves) {
    ExpectFindings(
        "1: the comment is lost\n"
        "4: 'a' moves up\n"
        "6: [A] moves up\n",
        "# c\n[B]\nb=1\na=2\n\n[A]\na=1\nb=2\n", {"check", "--rewrite"});
    ExpectFindings("1: the byte-order mark is lost\n", "\xEF\xBB\xBF[A]\nk=1\n",
                   {"check", "--rewrite"});
}

TEST_F(QoriniCheck, FindsThatWideTextWouldNotBeRecognisedAgain) {
    ExpectFindings(
        "1: a program that writes the file makes it unreadable: wide text cannot begin with "
        "[\u20AC]\n"
        "1: the comment is lost\n",
        WideBytes(L"# c\n[\u20AC]\nk=1\n"), {"check", "--rewrite"});
    ExpectFindings("", "[\u20AC]\nk=1\n", {"check", "--rewrite"});
}

TEST_F(QoriniCheck, KeepsTerminalCodesOutOfItsFindings) {
    ExpectFindings("1: [?[31m] has no keys: it is not stored\n", "[\x1B[31m]\n");
}

TEST_F(QoriniCheck, GoesOnBehindAFileThatItCannotRead) {
    directory_.MakeFile("f.ini", "key\n");
    Outcome const outcome = Run({"check", Path("missing"), Path("f.ini")});
    EXPECT_EQ(3, outcome.status);
    EXPECT_EQ(Path("f.ini") + ":1: refused: there is no = behind the key\n", outcome.out);
    EXPECT_EQ("qorini: " + Path("missing") + ": No such file or directory\n", outcome.complaints);
}

}  // namespace
