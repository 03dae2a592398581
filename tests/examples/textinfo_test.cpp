// TEXTINFO_PATH is the built program; the build defines it.

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/run_program.h"

namespace {

// Each test works in a new directory of its own and leaves it empty.
class TextInfo : public testing::Test {
  protected:
    TextInfo() {
        char const* const parent = std::getenv("TMPDIR");
        directory_ = std::string(parent == nullptr ? "/tmp" : parent) + "/textinfo_test.XXXXXX";
        if (mkdtemp(&directory_[0]) == nullptr) throw std::runtime_error("no temporary directory");
    }
    ~TextInfo() override {
        for (std::string const& file : files_) std::remove(file.c_str());
        EXPECT_EQ(0, rmdir(directory_.c_str())) << directory_ << " is not empty";
    }

    std::string PathOf(std::string const& name) {
        files_.push_back(directory_ + "/" + name);
        return files_.back();
    }

    // The path of a new file.
    std::string Write(std::string const& name, std::string const& content) {
        std::string path = PathOf(name);
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    Outcome Run(std::vector<std::string> const& arguments) {
        return RunProgram(TEXTINFO_PATH, arguments, directory_ + "/complaints");
    }

    // The program must say exactly this of the file, and nothing else.
    void ExpectRefused(std::string const& path, std::string const& reason) {
        Outcome const outcome = Run({path});
        EXPECT_EQ(1, outcome.status);
        EXPECT_EQ("", outcome.out);
        EXPECT_EQ("textinfo: " + path + ": " + reason + "\n", outcome.complaints);
    }

    void ExpectTold(std::string const& path, std::string const& expected) {
        Outcome const outcome = Run({path});
        EXPECT_EQ(0, outcome.status);
        EXPECT_EQ(expected, outcome.out);
        EXPECT_EQ("", outcome.complaints);
    }

    std::string directory_;

  private:
    std::vector<std::string> files_;
};

// Bytes among which there are zeros.
template <std::size_t n>
std::string Raw(char const (&literal)[n]) {
    return std::string(literal, n - 1);
}

std::string Utf16LE(std::u16string const& text) {
    std::string bytes;
    for (char16_t const unit : text) {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

bool Contains(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

// --- What is told -------------------------------------------------------------------------------

TEST_F(TextInfo, TellsEverythingOfAnAsciiFile) {
    std::string const path =
        Write("fox.old.txt", "The quick fox.\nThe lazy dog, the cat!\n\nDon't - no, don't.\n");
    ExpectTold(path,
               "fox.old.txt\n"
               "  directory  " +
                   directory_ +
                   "/\n"
                   "  suffix     txt\n"
                   "  encoding   ASCII\n"
                   "  mark       none\n"
                   "  bytes      58\n"
                   "  lines      4\n"
                   "  longest    line 2, length 22\n"
                   "             The lazy dog, the cat!\n"
                   "  words      11, 8 different\n"
                   "                   3  the\n"
                   "                   2  don't\n"
                   "                   1  cat\n"
                   "                   1  dog\n"
                   "                   1  fox\n"
                   "                   1  lazy\n"
                   "                   1  no\n"
                   "                   1  quick\n"
                   "\n");
}

TEST_F(TextInfo, CountsCharactersNotBytesAndFoldsEveryScript) {
    std::string const out =
        Run({Write("mixed", "Äpfel, ÄPFEL, äpfel\nПорт ПОРТ — 港口。港口 😀\n")}).out;
    EXPECT_TRUE(Contains(out, "  encoding   UTF-8\n  mark       none\n  bytes      66\n")) << out;
    EXPECT_TRUE(Contains(out,
                         "  longest    line 1, length 19\n"
                         "             Äpfel, ÄPFEL, äpfel\n"))
        << out;
    EXPECT_TRUE(Contains(out,
                         "  words      8, 4 different\n"
                         "                   3  äpfel\n"
                         "                   2  порт\n"
                         "                   2  港口\n"
                         "                   1  😀\n"))
        << out;
}

TEST_F(TextInfo, ListsTheTenMostFrequentWordsAndEqualOnesByCharacterCode) {
    std::string const out = Run({Write("words", "m l k j i h g f e d c b a z z é\n")}).out;
    EXPECT_TRUE(Contains(out,
                         "  words      16, 15 different\n"
                         "                   2  z\n"
                         "                   1  a\n"
                         "                   1  b\n"
                         "                   1  c\n"
                         "                   1  d\n"
                         "                   1  e\n"
                         "                   1  f\n"
                         "                   1  g\n"
                         "                   1  h\n"
                         "                   1  i\n\n"))
        << out;
}

TEST_F(TextInfo, KeepsHyphensApostrophesAndUnderscoresInsideWordsOnly) {
    std::string const out = Run({Write("edges", "read-only -read-only- 'can’t’ _a_b_ a_b\n")}).out;
    EXPECT_TRUE(Contains(out,
                         "  words      5, 3 different\n"
                         "                   2  a_b\n"
                         "                   2  read-only\n"
                         "                   1  can’t\n\n"))
        << out;
}

TEST_F(TextInfo, SkipsTheMarkOfUtf8) {
    std::string const out = Run({Write("marked", "\xEF\xBB\xBFg\xC3\xB6nn\n")}).out;
    EXPECT_TRUE(Contains(out, "  encoding   UTF-8\n  mark       UTF-8\n  bytes      9\n")) << out;
    EXPECT_TRUE(Contains(out, "  longest    line 1, length 4\n             gönn\n")) << out;
}

TEST_F(TextInfo, ReadsUtf16WithItsMark) {
    std::string const out = Run({Write("wide", Utf16LE(u"\uFEFFgrün 😀\r\nrot\r\n"))}).out;
    EXPECT_TRUE(Contains(out, "  encoding   UTF-16LE\n  mark       UTF-16LE\n")) << out;
    EXPECT_TRUE(Contains(out,
                         "  lines      2\n"
                         "  longest    line 1, length 6\n             grün 😀\n"))
        << out;
}

TEST_F(TextInfo, ReadsUtf16WithoutAMark) {
    std::string const out = Run({Write("wide", Utf16LE(u"plain text"))}).out;
    EXPECT_TRUE(Contains(out, "  encoding   UTF-16LE\n  mark       none\n")) << out;
    EXPECT_TRUE(Contains(out, "             plain text\n")) << out;
}

TEST_F(TextInfo, CountsALastLineWithoutItsEnd) {
    EXPECT_TRUE(Contains(Run({Write("ended", "a\nb\n")}).out, "  lines      2\n"));
    EXPECT_TRUE(Contains(Run({Write("open", "a\nb")}).out, "  lines      2\n"));
    EXPECT_TRUE(Contains(Run({Write("bare", "\n")}).out, "  lines      1\n"));
}

TEST_F(TextInfo, LeavesTheEndsOfWindowsLinesOut) {
    std::string const out = Run({Write("windows", "abc\r\nabcd\r\nabcd\n")}).out;
    EXPECT_TRUE(Contains(out, "  longest    line 2, length 4\n             abcd\n")) << out;
}

TEST_F(TextInfo, CutsALongLineAndShowsNoControlCharacters) {
    std::string const out = Run({Write("long", "\x1B[31m\t" + std::string(100, 'x'))}).out;
    EXPECT_TRUE(Contains(out, "  longest    line 1, length 106\n             " +
                                  (" [31m " + std::string(59, 'x')) + "…\n"))
        << out;
}

TEST_F(TextInfo, ReadsASingleByte) {
    std::string const out = Run({Write("one", "x")}).out;
    EXPECT_TRUE(Contains(out, "  encoding   ASCII\n  mark       none\n  bytes      1\n")) << out;
}

TEST_F(TextInfo, FindsNoWordsInAFileOfSigns) {
    std::string const out = Run({Write("signs", "-- ... '\n")}).out;
    EXPECT_TRUE(Contains(out, "  words      0, 0 different\n\n")) << out;
}

TEST_F(TextInfo, TakesTheSuffixFromTheNameAlone) {
    std::string const dotted = directory_ + "/dir.d";
    ASSERT_EQ(0, mkdir(dotted.c_str(), 0700));
    std::string const file = dotted + "/Übersicht";
    std::ofstream(file) << "x";
    std::string const out = Run({file}).out;
    EXPECT_EQ(0u, out.find("Übersicht\n")) << out;
    EXPECT_TRUE(Contains(out, "  suffix     (none)\n")) << out;
    EXPECT_EQ(0, std::remove(file.c_str()));
    EXPECT_EQ(0, rmdir(dotted.c_str()));
}

TEST_F(TextInfo, ReadsAFileOfManyBlocks) {
    std::string content;
    for (int i = 0; i < 50000; ++i) content += "drop\n";
    std::string const out = Run({Write("ocean", content)}).out;
    EXPECT_TRUE(Contains(out, "  bytes      250000\n  lines      50000\n")) << out;
    EXPECT_TRUE(Contains(out,
                         "  words      50000, 1 different\n"
                         "               50000  drop\n"))
        << out;
}

// --- What is refused ----------------------------------------------------------------------------

TEST_F(TextInfo, RefusesMalformedUtf8WithTheOffsetOfTheBadByte) {
    struct {
        std::string content;
        char const* offset;
    } const cases[] = {
        {"\x80 begins with a continuation", "0"},
        {"ab\xFF"
         "cd",
         "2"},
        {"gr\xFC\xDF"
         "e, Latin-1",
         "2"},
        {"abc\xE2\x82", "3"},           // cut off by the end
        {"\xC3\xA9\xE2\x28\xA1", "2"},  // the sequence begins there
        {"overlong \xC0\x80", "9"},
        {"surrogate \xED\xA0\x80", "10"},
        {"beyond \xF4\x90\x80\x80", "7"},
        {"\xEF\xBB\xBF"
         "a\xFF",
         "4"},  // the mark counts
        {std::string(100000, 'x') + "\xFE", "100000"},
    };
    for (auto const& c : cases)
        ExpectRefused(Write("malformed", c.content),
                      std::string("malformed UTF-8 at byte offset ") + c.offset);
}

TEST_F(TextInfo, RefusesAMissingFile) {
    ExpectRefused(PathOf("missing"), "No such file or directory");
}

TEST_F(TextInfo, RefusesADirectory) {
    ExpectRefused(directory_, "Is a directory");
}

TEST_F(TextInfo, RefusesAPathThroughAFile) {
    ExpectRefused(Write("file", "x") + "/below", "Not a directory");
}

TEST_F(TextInfo, RefusesAnEmptyName) {
    ExpectRefused("", "No such file or directory");
}

TEST_F(TextInfo, RefusesANameThatIsNotUtf8) {
    ExpectRefused(Write("na\xEFve", "x"), "the file name is not UTF-8");
}

TEST_F(TextInfo, RefusesFilesWithoutText) {
    ExpectRefused(Write("empty", ""), "the file is empty");
    ExpectRefused(Write("utf-8 mark", "\xEF\xBB\xBF"), "nothing but a byte-order mark");
    ExpectRefused(Write("utf-16 mark", "\xFF\xFE"), "nothing but a byte-order mark");
}

TEST_F(TextInfo, ShowsNoControlCharactersOfAName) {
    Outcome const outcome = Run({directory_ + "/no\x1B[31mfile"});
    EXPECT_EQ("textinfo: " + directory_ + "/no [31mfile: No such file or directory\n",
              outcome.complaints);
    EXPECT_EQ(1, outcome.status);
}

TEST_F(TextInfo, RefusesBinaryFiles) {
    ExpectRefused(Write("program", Raw("\x7F"
                                       "ELF\x02\x01\x01\0\0\0\0\0\0\0\0\0\x03\0\x3E\0")),
                  "binary file (zero byte at offset 7)");
    ExpectRefused(Write("last", Raw("text, then zero\0")), "binary file (zero byte at offset 15)");
    ExpectRefused(Write("zeros", std::string(64, '\0')), "binary file (zero byte at offset 0)");
    ExpectRefused(Write("pairs", Raw("a\0b\0c\0d\0\0\0e\0")), "binary file (zero character)");
}

TEST_F(TextInfo, RefusesMalformedUtf16) {
    ExpectRefused(Write("odd", Utf16LE(u"\uFEFFtext") + "x"), "UTF-16 with an odd number of bytes");
    ExpectRefused(Write("alone", Raw("\xFF\xFE\x00\xD8\x41\x00")), "malformed UTF-16");
    ExpectRefused(Write("second alone", Raw("\xFF\xFE\x00\xDC\x41\x00")), "malformed UTF-16");
    ExpectRefused(Write("first at end", Raw("\xFF\xFE\x41\x00\x3D\xD8")), "malformed UTF-16");
}

TEST_F(TextInfo, RefusesOtherMarksByName) {
    struct {
        std::string mark;
        char const* name;
    } const cases[] = {
        {"\xFE\xFF", "UTF-16BE"},
        {Raw("\0\0\xFE\xFF"), "UTF-32BE"},
        {Raw("\xFF\xFE\0\0"), "UTF-32LE"},
        {"\x0E\xFE\xFF", "SCSU"},
        {"+/v8", "UTF-7"},
        {"\xDD\x73\x66\x73", "UTF-EBCDIC"},
        {"\xFB\xEE\x28", "BOCU-1"},
    };
    for (auto const& c : cases)
        ExpectRefused(Write("marked", c.mark + "text"),
                      std::string("marked as ") + c.name + ", which is not read");
}

// --- Several files, none ------------------------------------------------------------------------

TEST_F(TextInfo, GoesOnAfterABadFile) {
    std::string const good = Write("good", "one\n"), other = Write("other", "two\n");
    std::string const missing = PathOf("missing"), empty = Write("empty", "");
    Outcome const outcome = Run({missing, good, empty, other});
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(Run({good, other}).out, outcome.out);
    EXPECT_TRUE(Contains(outcome.out, "one\n")) << outcome.out;
    EXPECT_TRUE(Contains(outcome.out, "two\n")) << outcome.out;
    EXPECT_EQ("textinfo: " + missing + ": No such file or directory\n" + "textinfo: " + empty +
                  ": the file is empty\n",
              outcome.complaints);
}

TEST_F(TextInfo, ExplainsItsUseWithoutArguments) {
    Outcome const outcome = Run({});
    EXPECT_EQ(2, outcome.status);
    EXPECT_EQ("", outcome.out);
    EXPECT_EQ("usage: textinfo FILE...\n", outcome.complaints);
}

}  // namespace
