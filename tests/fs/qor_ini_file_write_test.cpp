#include <qorutils/fs/qor_ini_file.h>

#include <string>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/ini_settings.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"

namespace {

using qor::text_utils::EQorTextEncoding;
using qor::text_utils::eTextEncodingAnsi;
using qor::text_utils::eTextEncodingUnknown;
using qor::text_utils::eTextEncodingUtf16LE;
using qor_settings::CThreeTupleStore;
using qor_settings::writeSettingsAsIni;

// The bytes that writing the store gives.
std::string Written(CThreeTupleStore const& store, EQorTextEncoding encoding = eTextEncodingAnsi) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "what was there before");
    EXPECT_TRUE(writeSettingsAsIni(directory.WidePath("file").c_str(), store, encoding));
    return directory.Content("file");
}

std::string Written(SettingsMap const& settings, EQorTextEncoding encoding = eTextEncodingAnsi) {
    return Written(ToStore(settings), encoding);
}

TEST(WriteSettingsAsIni, WritesSectionsAndKeysInTheirOrder) {
    EXPECT_EQ(
        "[A]\r\nx=1\r\ny=\r\n\r\n[B]\r\na b= = \r\n\r\n[a]\r\n\r\n",
        Written({{L"a", {}}, {L"B", {{L"a b", L" = "}}}, {L"A", {{L"y", L""}, {L"x", L"1"}}}}));
}

TEST(WriteSettingsAsIni, WritesTheSameWithAnyEncodingButTheWideOne) {
    for (unsigned const encoding : {0u, 1u, 3u, 77u})
        EXPECT_EQ("[A]\r\nx=1\r\n\r\n",
                  Written({{L"A", {{L"x", L"1"}}}}, static_cast<EQorTextEncoding>(encoding)));
}

TEST(WriteSettingsAsIni, WritesUnitsOf32BitsWithoutAMarkOnPurpose) {
    EXPECT_EQ(WideBytes(L"[A\u20AC]\r\nx=\U0001F600\r\n\r\n"),
              Written({{L"A\u20AC", {{L"x", L"\U0001F600"}}}}, eTextEncodingUtf16LE));
}

TEST(WriteSettingsAsIni, WritesTheNameThatTheSectionHoldsOnPurpose) {
    CThreeTupleStore store;
    store[L"key"].name = L"Name";
    store[L"none"].values[L"k"] = L"v";
    EXPECT_EQ("[Name]\r\n\r\n[]\r\nk=v\r\n\r\n", Written(store));
}

TEST(WriteSettingsAsIni, LeavesAnEmptyFileForAnEmptyStore) {
    for (EQorTextEncoding const encoding : {eTextEncodingAnsi, eTextEncodingUtf16LE})
        EXPECT_EQ("", Written(CThreeTupleStore(), encoding));
}

TEST(WriteSettingsAsIni, CreatesTheFile) {
    TemporaryDirectory const directory;
    EXPECT_TRUE(writeSettingsAsIni(directory.WidePath("new").c_str(),
                                   ToStore({{L"A", {{L"x", L"1"}}}}), eTextEncodingUnknown));
    EXPECT_EQ("[A]\r\nx=1\r\n\r\n", directory.Content("new"));
    directory.Remove("new");
}

TEST(WriteSettingsAsIni, EncodesEachPieceAsTheLocaleSays) {
    SettingsMap const settings = {
        {L"\u00E9", {{L"k", L"a\u20ACb"}, {L"k\u0416", L"ascii"}, {L"l", L"1"}}}};
    {
        ScopedLocale const locale("C.UTF-8");
        EXPECT_EQ(
            "[\xC3\xA9]\r\nk=a\xE2\x82\xAC"
            "b\r\nk\xD0\x96=ascii\r\nl=1\r\n\r\n",
            Written(settings));
    }
    // A piece that cannot be encoded is empty; those beside it are written.
    ScopedLocale const locale("C");
    EXPECT_EQ("[]\r\nk=\r\n=ascii\r\nl=1\r\n\r\n", Written(settings));
}

TEST(WriteSettingsAsIni, EndsEightBitPiecesAtAZeroAndKeepsItInWideOnes) {
    using namespace std::string_literals;
    CThreeTupleStore store;
    store[L"A"].name = Whole(L"A\0B"s);
    store[L"A"].values[Whole(L"k\0l"s)] = Whole(L"1\0002"s);
    store[L"A"].values[L"z"] = Whole(L"\0x"s);
    EXPECT_EQ("[A]\r\nk=1\r\nz=\r\n\r\n", Written(store));
    EXPECT_EQ(WideBytes(L"[A\0B]\r\nk\0l=1\0002\r\nz=\0x\r\n\r\n"s),
              Written(store, eTextEncodingUtf16LE));
}

// Pieces are gathered in blocks of 16384 bytes: lengths around that, and around what is left of it.
TEST(WriteSettingsAsIni, WritesPiecesOfAnyLength) {
    ScopedLocale const locale("C.UTF-8");
    for (std::size_t const length : {4087u, 4088u, 4089u, 4090u, 4096u, 4097u, 16368u, 16375u,
                                     16376u, 16377u, 16378u, 16384u, 16385u, 200000u}) {
        for (wchar_t const ch : {L'v', L'\u20AC'}) {
            std::string const narrow = ch == L'v' ? "v" : "\xE2\x82\xAC";
            std::wstring const value(length, ch);
            std::string expected = "[A]\r\nk=";
            for (std::size_t i = 0; i < length; ++i) expected += narrow;
            expected += "\r\nl=1\r\n\r\n";
            SettingsMap const settings = {{L"A", {{L"k", value}, {L"l", L"1"}}}};
            EXPECT_TRUE(expected == Written(settings)) << length;
            EXPECT_TRUE(WideBytes(L"[A]\r\nk=" + value + L"\r\nl=1\r\n\r\n") ==
                        Written(settings, eTextEncodingUtf16LE))
                << length;
        }
    }
}

TEST(WriteSettingsAsIni, ReadsBackWhatItWrote) {
    ScopedLocale const locale("C.UTF-8");
    SettingsMap settings;
    for (int section = 0; section < 30; ++section)
        for (int key = 0; key < 300; ++key)
            settings[L"Section " + std::to_wstring(section)][L"key" + std::to_wstring(key)] =
                L" = [\u20AC\u0416] " + std::to_wstring(section * key);
    TemporaryDirectory const directory;
    std::wstring const path = directory.WidePath("file");
    for (EQorTextEncoding const encoding : {eTextEncodingAnsi, eTextEncodingUtf16LE}) {
        ASSERT_TRUE(writeSettingsAsIni(path.c_str(), ToStore(settings), encoding));
        IniRead const read(path);
        EXPECT_TRUE(read.succeeded);
        EXPECT_EQ(encoding, read.encoding);
        EXPECT_TRUE(settings == read.settings);
    }
    directory.Remove("file");
}

TEST(WriteSettingsAsIni, PutsAFileInOrderThatWasReadAndLeavesCommentsOut) {
    struct {
        char const* reason;
        char const* read;
        char const* written;
    } const cases[] = {
        {"as it is written",
         "[Net]\r\nAddress=10.0.0.1\r\nPort=80\r\n\r\n[Screen]\r\nDim=1\r\n\r\n",
         "[Net]\r\nAddress=10.0.0.1\r\nPort=80\r\n\r\n[Screen]\r\nDim=1\r\n\r\n"},
        {"by hand, on Linux",
         "# The device.\n\n[Screen]\nDim=1\n; [Old]\n// Dim=2\n\n[Net]  "
         "\nPort=80\nAddress=10.0.0.1",
         "[Net]\r\nAddress=10.0.0.1\r\nPort=80\r\n\r\n[Screen]\r\nDim=1\r\n\r\n"},
        {"a section in two places, a key set again, an empty section",
         "[B]\rk=1\rm=3\r[A]\r[B]\rk=2\rl=\r", "[B]\r\nk=2\r\nl=\r\nm=3\r\n\r\n"},
        {"blanks that belong to names and values", "[ A ]\n9 b = = c \n",
         "[ A ]\r\n9 b = = c \r\n\r\n"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.reason);
        IniRead const read = ReadIniText(c.read);
        EXPECT_TRUE(read.succeeded);
        EXPECT_EQ(c.written, Written(read.store, read.encoding));
    }
}

TEST(WriteSettingsAsIni, WritesANamelessSectionThatTheReaderRefusesOnPurpose) {
    std::string const text = Written({{L"", {{L"k", L"1"}}}});
    EXPECT_EQ("[]\r\nk=1\r\n\r\n", text);
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 223\n",
              CheckReports([&] { EXPECT_FALSE(ReadIniText(text).succeeded); }));
}

TEST(WriteSettingsAsIni, FailsWhereNoFileCanBeCreated) {
    TemporaryDirectory directory;
    directory.MakeFolder("folder");
    CThreeTupleStore const store = ToStore({{L"A", {{L"x", L"1"}}}});
    for (char const* name : {"a..b", "folder/../new", "folder", "missing/new", ".."})
        EXPECT_FALSE(writeSettingsAsIni(directory.WidePath(name).c_str(), store, eTextEncodingAnsi))
            << name;
    EXPECT_FALSE(writeSettingsAsIni(nullptr, store, eTextEncodingAnsi));
    EXPECT_FALSE(writeSettingsAsIni(L"", store, eTextEncodingAnsi));
    EXPECT_FALSE(directory.Has("a..b"));
    EXPECT_FALSE(directory.Has("new"));

    ScopedLocale const locale("C");
    std::wstring const path = directory.WidePath("") + L"\u0416";
    EXPECT_FALSE(writeSettingsAsIni(path.c_str(), store, eTextEncodingAnsi));
}

TEST(WriteSettingsAsIni, TakesABackslashForALetterOfTheNameAsTheReaderDoes) {
    TemporaryDirectory directory;
    directory.MakeFolder("a");
    std::wstring const path = directory.WidePath("a\\b.ini");
    CThreeTupleStore const store = ToStore({{L"A", {{L"x", L"1"}}}});
    EXPECT_TRUE(writeSettingsAsIni(path.c_str(), store, eTextEncodingAnsi));
    EXPECT_EQ(FromStore(store), IniRead(path).settings);
    directory.Remove("a\\b.ini");
}

TEST(WriteSettingsAsIni, SucceedsOnAFullDeviceOnPurpose) {
    CThreeTupleStore const small = ToStore({{L"A", {{L"x", L"1"}}}});
    CThreeTupleStore const large = ToStore({{L"A", {{L"x", std::wstring(100000, L'v')}}}});
    for (EQorTextEncoding const encoding : {eTextEncodingAnsi, eTextEncodingUtf16LE}) {
        EXPECT_TRUE(writeSettingsAsIni(L"/dev/full", small, encoding));
        EXPECT_TRUE(writeSettingsAsIni(L"/dev/full", large, encoding));
    }
}

}  // namespace
