#include <qorutils/fs/qor_ini_file.h>

#include <sys/stat.h>
#include <unistd.h>

#include <clocale>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/ini_settings.h"
#include "support/made_locale.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"

namespace {

using qor::text_utils::eTextEncodingAnsi;
using qor::text_utils::eTextEncodingUnknown;
using qor::text_utils::eTextEncodingUtf16LE;
using qor_settings::CThreeTupleStore;

using namespace std::string_literals;

using String = qor_text::CQorStringT<wchar_t>;
static_assert(std::is_same<CThreeTupleStore::key_type, String>::value, "");
static_assert(std::is_same<CThreeTupleStore::mapped_type, CThreeTupleStore::TQorIniSection>::value,
              "");
static_assert(std::is_same<decltype(CThreeTupleStore::TQorIniSection::name), String>::value, "");
static_assert(std::is_same<CThreeTupleStore::key_compare, std::less<String>>::value, "");
static_assert(std::is_same<CThreeTupleStore::allocator_type,
                           qor_mem::qor_dl_allocator<CThreeTupleStore::value_type>>::value,
              "");

// ---- Lines ----

struct GoodText {
    char const* text;
    SettingsMap settings;
};

TEST(ReadSettingsAsIni, TakesLinesByTheirFirstCharacter) {
    std::vector<GoodText> const cases = {
        {"[A]\r\nx=1\r\n", {{L"A", {{L"x", L"1"}}}}},
        {"[A]\r\nx=1\r\n\r\ny=2\r\n", {{L"A", {{L"x", L"1"}, {L"y", L"2"}}}}},
        // a line of blanks closes the section
        {"[A]\r\nx=1\r\n   \r\ny=2\r\n", {{L"", {{L"y", L"2"}}}, {L"A", {{L"x", L"1"}}}}},
        {"[A]\nx=1\n\t \v\f\ny=2\n", {{L"", {{L"y", L"2"}}}, {L"A", {{L"x", L"1"}}}}},
        {"x=1", {{L"", {{L"x", L"1"}}}}},
        {"[A]\r\nx=1\r\nx=2\r\n", {{L"A", {{L"x", L"2"}}}}},
        {"[A]\nx=1\n[B]\nx=2\n[A]\ny=3\nx=4",
         {{L"A", {{L"x", L"4"}, {L"y", L"3"}}}, {L"B", {{L"x", L"2"}}}}},
        {"k==v", {{L"", {{L"k", L"=v"}}}}},
        {"k=", {{L"", {{L"k", L""}}}}},
        {"a = 1 ", {{L"", {{L"a ", L" 1 "}}}}},
        {"a\t=\t", {{L"", {{L"a\t", L"\t"}}}}},
        // comments, of any content; the section stays
        {"[A]\n# [\n;x\n/ =\n//\n#\nx=1", {{L"A", {{L"x", L"1"}}}}},
        {"k=1;2#3", {{L"", {{L"k", L"1;2#3"}}}}},
        // names
        {"[ A ]\nx=1", {{L" A ", {{L"x", L"1"}}}}},
        {"[A] \t \nx=1", {{L"A", {{L"x", L"1"}}}}},
        {"[[A]]\nx=1", {{L"[A]", {{L"x", L"1"}}}}},
        {"[A]]\nx=1", {{L"A]", {{L"x", L"1"}}}}},
        {"[ ]\nx=1", {{L" ", {{L"x", L"1"}}}}},
        {"[a]\nx=1\n[A]\nX=2\nx=3", {{L"A", {{L"X", L"2"}, {L"x", L"3"}}}, {L"a", {{L"x", L"1"}}}}},
        {"[A]\n[B]\nx=1\n[C]", {{L"B", {{L"x", L"1"}}}}},  // sections without keys are none
        // first characters of keys
        {"0=a\n9=b\nA=c\nz=d", {{L"", {{L"0", L"a"}, {L"9", L"b"}, {L"A", L"c"}, {L"z", L"d"}}}}},
        {"k.l_m-n=[x]", {{L"", {{L"k.l_m-n", L"[x]"}}}}},
        // line ends
        {"a=1\rb=2\nc=3\r\n\n\r\rd=4\n\r",
         {{L"", {{L"a", L"1"}, {L"b", L"2"}, {L"c", L"3"}, {L"d", L"4"}}}}},
        {"\r\n\n\ra=1", {{L"", {{L"a", L"1"}}}}},
        {"\n", {}},
        {"\r\n\r\n", {}},
        {"[A]", {}},
        {"#", {}},
        {" ", {}},
    };
    for (GoodText const& c : cases) {
        SCOPED_TRACE(c.text);
        std::string reports;
        reports = CheckReports([&] {
            IniRead const read = ReadIniText(c.text);
            EXPECT_TRUE(read.succeeded);
            EXPECT_EQ(c.settings, read.settings);
        });
        EXPECT_EQ("", reports);
    }
}

TEST(ReadSettingsAsIni, ReportsTheFirstBadLineAndKeepsWhatStandsAboveIt) {
    struct {
        char const* line;
        char const* number;
    } const cases[] = {
        {"  [A]", "214"},   {" x", "214"},    {"\tx=1", "214"}, {" #", "214"},
        {"[A", "223"},      {"[]", "223"},    {"[", "223"},     {"[A]x", "223"},
        {"[A] ;", "223"},   {"[] ", "223"},   {"[x", "223"},    {"[\t", "223"},
        {"keyonly", "237"}, {"0", "237"},     {"a b", "237"},   {"_k=1", "245"},
        {".k=1", "245"},    {"=1", "245"},    {"]", "245"},     {"\"k\"=1", "245"},
        {"-k=1", "245"},    {"\\k=1", "245"}, {"\vk=1", "245"}, {"\x7Fk=1", "245"},
        {"@k=1", "245"},    {"`k=1", "245"},  {"{k=1", "245"},  {":k=1", "245"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.line);
        std::string const report = CheckReports([&] {
            IniRead const read = ReadIniText("[S]\na=1\n" + std::string(c.line) + "\n_\nb=2\n");
            EXPECT_FALSE(read.succeeded);
            EXPECT_EQ(kNoEncoding, read.encoding);
            EXPECT_EQ((SettingsMap{{L"S", {{L"a", L"1"}}}}), read.settings);
        });
        EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ " + std::string(c.number) + "\n", report);
    }
}

TEST(ReadSettingsAsIni, EndsTheTextAtALineThatBeginsWithZero) {
    IniRead const read = ReadIniText("a=1\n\0_\nb=2"s);
    EXPECT_TRUE(read.succeeded);
    EXPECT_EQ((SettingsMap{{L"", {{L"a", L"1"}}}}), read.settings);
    EXPECT_EQ(SettingsMap{}, ReadIniText("\0a=1"s).settings);
}

TEST(ReadSettingsAsIni, EndsEightBitLinesAtAZeroInThem) {
    IniRead const read = ReadIniText("a=1\0002\nb=3\0\nc=4"s);
    EXPECT_TRUE(read.succeeded);
    EXPECT_EQ((SettingsMap{{L"", {{L"a", L"1"}, {L"b", L"3"}, {L"c", L"4"}}}}), read.settings);
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 237\n",
              CheckReports([] { ReadIniText("ab\0c=1"s); }));
}

TEST(ReadSettingsAsIni, KeepsAZeroInAWideValue) {
    IniRead const read = ReadIniText(WideBytes(L"[A]\nk=1\0002=\n"s));
    EXPECT_TRUE(read.succeeded);
    EXPECT_EQ((SettingsMap{{L"A", {{L"k", L"1\0002="s}}}}), read.settings);
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 237\n",
              CheckReports([] { ReadIniText(WideBytes(L"[A]\nk\0=1"s)); }));
}

TEST(ReadSettingsAsIni, TakesManyKeysInAnyOrder) {
    std::string text = "[A]\n";
    SettingsMap expected;
    for (unsigned i = 0; i < 2000; ++i) {
        std::string const number = std::to_string(i * 7919 % 1000);
        text += "key" + number + "=" + std::to_string(i) + "\n";
        expected[L"A"][L"key" + std::wstring(number.begin(), number.end())] = std::to_wstring(i);
    }
    EXPECT_EQ(expected, ReadIniText(text).settings);
}

TEST(ReadSettingsAsIni, TakesALineOfAnyLength) {
    std::string const value(300000, 'v');
    EXPECT_EQ((SettingsMap{{L"", {{L"k", std::wstring(300000, L'v')}, {L"l", L"1"}}}}),
              ReadIniText("k=" + value + "\nl=1").settings);
}

// ---- Encodings ----

TEST(ReadSettingsAsIni, TellsTheEncoding) {
    struct {
        char const* reason;
        std::string text;
        int encoding;
        SettingsMap settings;
    } const cases[] = {
        {"8-bit", "[Section]\nk=1", eTextEncodingAnsi, {{L"Section", {{L"k", L"1"}}}}},
        {"8 bytes or less", "kk=1", eTextEncodingAnsi, {{L"", {{L"kk", L"1"}}}}},
        {"one byte is unknown", "\n", eTextEncodingUnknown, {}},
        {"marked UTF-8", "\xEF\xBB\xBFk=1", eTextEncodingUnknown, {{L"", {{L"k", L"1"}}}}},
        {"only a mark", "\xEF\xBB\xBF", eTextEncodingUnknown, {}},
        {"32-bit units", WideBytes(L"[A]\nk=1"), eTextEncodingUtf16LE, {{L"A", {{L"k", L"1"}}}}},
        {"a unit cut off",
         WideBytes(L"[A]\nk=1") + "2\0"s,
         eTextEncodingUtf16LE,
         {{L"A", {{L"k", L"1"}}}}},
        {"two bytes of mark before 32-bit units",
         "\xFF\xFE" + WideBytes(L"[A]\r\nk=1\r\n"),
         eTextEncodingUtf16LE,
         {{L"A", {{L"k", L"1"}}}}},
        {"the mark and less than a unit", "\xFF\xFEk", eTextEncodingUtf16LE, {}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.reason);
        IniRead const read = ReadIniText(c.text);
        EXPECT_TRUE(read.succeeded);
        EXPECT_EQ(c.encoding, static_cast<int>(read.encoding));
        EXPECT_EQ(c.settings, read.settings);
    }
}

TEST(ReadSettingsAsIni, ReadsMarkedUtf16InUnitsOf32BitsOnPurpose) {
    std::string const utf16 =
        "\xFF\xFE"
        "k\0=\0001\0"
        "\n\0"s;
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 245\n", CheckReports([&] {
                  IniRead const read = ReadIniText(utf16);
                  EXPECT_FALSE(read.succeeded);
                  EXPECT_EQ(SettingsMap{}, read.settings);
              }));
}

TEST(ReadSettingsAsIni, ReadsWideTextThatUtf32MarksAs8BitOnPurpose) {
    std::string const text = WideBytes(L"\xFEFF[A]\nk=1");
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 223\n", CheckReports([&] { ReadIniText(text); }));
}

TEST(ReadSettingsAsIni, DecodesWholeMultibyteCharacters) {
    ScopedLocale const locale("C.UTF-8");
    IniRead const read = ReadIniText("[\xC3\xA9]\n\xD0\x96k=\xE2\x82\xAC\xF0\x9F\x98\x80 x\nl=a");
    EXPECT_TRUE(read.succeeded);
    EXPECT_EQ((SettingsMap{{L"\u00E9", {{L"\u0416k", L"\u20AC\U0001F600 x"}, {L"l", L"a"}}}}),
              read.settings);
}

TEST(ReadSettingsAsIni, EndsALineBeforeWhatTheLocaleCannotDecode) {
    ScopedLocale const locale("C.UTF-8");
    IniRead const read = ReadIniText(
        "[A]\na=1\xFF"
        "2\nb=\xE2\x82\nc=3\xC3\nd=4\n\xFFz\ne=5");
    EXPECT_TRUE(read.succeeded);
    // The line of which nothing is left closes the section.
    EXPECT_EQ((SettingsMap{{L"", {{L"e", L"5"}}},
                           {L"A", {{L"a", L"1"}, {L"b", L""}, {L"c", L"3"}, {L"d", L"4"}}}}),
              read.settings);
}

// As many wide characters as the line has bytes would reach into the next lines.
TEST(ReadSettingsAsIni, DecodesNothingBehindALine) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_EQ((SettingsMap{{L"", {{L"k", L"\u20AC"}, {L"l", L"\u20AC"}}}}),
              ReadIniText("k=\xE2\x82\xAC\r\nl=\xE2\x82\xAC\r\n").settings);
}

TEST(ReadSettingsAsIni, ReadsNothingBehindAFileThatFillsItsPages) {
    ScopedLocale const locale("C.UTF-8");
    auto const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    for (std::string const end : {"z", "\xE2\x82\xAC", "\xE2\x82", "\xE2", "\n", " "}) {
        std::string const text = "k=" + std::string(2 * page - 2 - end.size(), 'v') + end;
        ASSERT_EQ(2 * page, text.size());
        std::wstring value(text.size() - 2 - end.size(), L'v');
        if (end == "z") value += L'z';
        if (end == " ") value += L' ';
        if (end.size() == 3) value += L'\u20AC';
        EXPECT_EQ((SettingsMap{{L"", {{L"k", value}}}}), ReadIniText(text).settings);
    }
    std::wstring const wide = L"[A]\nk=" + std::wstring(page / 4 - 6, L'v');
    EXPECT_EQ((SettingsMap{{L"A", {{L"k", std::wstring(page / 4 - 6, L'v')}}}}),
              ReadIniText(WideBytes(wide)).settings);
}

TEST(ReadSettingsAsIni, TakesALetterOfAnyScriptForTheStartOfAKey) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_EQ((SettingsMap{{L"", {{L"\u0416", L"1"}, {L"\u03A9", L"2"}}}}),
              ReadIniText("\xD0\x96=1\n\xCE\xA9=2").settings);
    // Not letters: U+20AC, U+00D7.
    for (char const* line : {"\xE2\x82\xAC=1", "\xC3\x97=1"})
        EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 245\n",
                  CheckReports([&] { ReadIniText(line); }));
}

TEST(ReadSettingsAsIni, RefusesALatinLetterThatTheLocaleHasNoByteForOnPurpose) {
    ScopedLocale const locale("C.UTF-8");
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 245\n",
              CheckReports([] { ReadIniText("\xC3\xA9=1"); }));
}

// An 8-bit character set, where this letter has a byte.
TEST(ReadSettingsAsIni, TakesALatinLetterThatTheLocaleHasAByteFor) {
    MadeLocale const latin("latin_test", "<U00E9> /xe9 e with acute\n<U00D7> /xd7 times\n",
                           "LC_CTYPE\nupper <U0041>..<U005A>\nlower <U0061>..<U007A>;<U00E9>\n"
                           "END LC_CTYPE\n");
    ScopedLocale const restorer("C");
    ASSERT_NE(nullptr, std::setlocale(LC_CTYPE, latin.name()));
    EXPECT_EQ((SettingsMap{{L"A", {{L"\u00E9", L"1"}}}}),
              ReadIniText(WideBytes(L"[A]\n\u00E9=1\n")).settings);
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 245\n",
              CheckReports([] { ReadIniText(WideBytes(L"[A]\n\u00D7=1\n")); }));
}

TEST(ReadSettingsAsIni, RefusesWideUnitsThatAreNoCharacters) {
    for (wchar_t const unit : {wchar_t(0x110000), wchar_t(0x7FFFFFFF), wchar_t(0x80000041),
                               wchar_t(0xFFFFFFFF), wchar_t(0xFFFFFFE9)})
        EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 245\n", CheckReports([=] {
                      ReadIniText(WideBytes(std::wstring(L"[A]\n") + unit + L"=1\n"));
                  }));
}

// ---- Files ----

TEST(ReadSettingsAsIni, LeavesTheStoreAloneWithoutAFileThatCanBeMapped) {
    TemporaryDirectory directory;
    directory.MakeFolder("folder");
    directory.MakeLink("loop", "loop");
    directory.MakeLink("dangling", "missing");
    std::string const reports = CheckReports([&] {
        for (char const* name : {"missing", "folder", "loop", "dangling", "missing/x"})
            EXPECT_TRUE(IniRead(directory.WidePath(name)).IsUntouched()) << name;
        EXPECT_TRUE(IniRead(L"").IsUntouched());
    });
    EXPECT_EQ("", reports);
}

TEST(ReadSettingsAsIni, TakesNullForNoFile) {
    CThreeTupleStore store = ToStore({{L"A", {{L"k", L"1"}}}});
    auto encoding = eTextEncodingUtf16LE;
    EXPECT_FALSE(qor_settings::readSettingsAsIni(nullptr, store, encoding));
    EXPECT_EQ(1u, store.size());
    EXPECT_EQ(eTextEncodingUtf16LE, encoding);
}

TEST(ReadSettingsAsIni, FailsForAPathThatTheLocaleCannotEncode) {
    TemporaryDirectory directory;
    directory.MakeFile("\xD0\x96", "k=1");
    std::wstring const path = directory.WidePath("") + L"\u0416";
    {
        ScopedLocale const locale("C");
        EXPECT_TRUE(IniRead(path).IsUntouched());
    }
    ScopedLocale const locale("C.UTF-8");
    EXPECT_TRUE(IniRead(path).succeeded);
}

TEST(ReadSettingsAsIni, ReadsPathsWithTwoDotsUnlikeTheWriter) {
    TemporaryDirectory directory;
    directory.MakeFile("a..b", "k=1");
    EXPECT_TRUE(IniRead(directory.WidePath("a..b")).succeeded);
}

TEST(ReadSettingsAsIni, ReadsThroughALink) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "k=1");
    directory.MakeLink("link", "file");
    EXPECT_TRUE(IniRead(directory.WidePath("link")).succeeded);
}

TEST(ReadSettingsAsIni, LeavesTheFileAsItWas) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "k=1");
    EXPECT_TRUE(IniRead(directory.WidePath("file")).succeeded);
    EXPECT_EQ("k=1", directory.Content("file"));
}

}  // namespace
