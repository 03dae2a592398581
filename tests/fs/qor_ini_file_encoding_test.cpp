// INI files in encodings unlike ASCII and UTF-8. Links made_encoding.cpp.

#include <qorutils/fs/qor_ini_file.h>

#include <string>

#include <gtest/gtest.h>

#include "support/check_reports.h"
#include "support/ini_settings.h"
#include "support/made_encoding.h"
#include "support/temporary_directory.h"

namespace {

class IniEncoding : public testing::TestWithParam<bool> {
  protected:
    MadeEncoding const encoding_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(KeepsAscii, IniEncoding, testing::Bool());

std::string Repeated(std::string const& text, int count) {
    std::string repeated;
    for (int i = 0; i < count; ++i) repeated += text;
    return repeated;
}

std::string Written(SettingsMap const& settings) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "");
    EXPECT_TRUE(qor_settings::writeSettingsAsIni(
        directory.WidePath("file").c_str(), ToStore(settings), qor::text_utils::eTextEncodingAnsi));
    return directory.Content("file");
}

TEST_P(IniEncoding, DividesLinesAtCharactersNotAtBytesThatLookLikeThem) {
    SettingsMap const settings = {{L"\u4E5D", {{L"k\u4E3D", L"\u4E5B \u4E3D"}, {L"l", L"1"}}}};
    IniRead const read = ReadIniText("[\x81]]\r\nk\x81==\x81[ \x81=\r\nl=1\r\n");
    EXPECT_TRUE(read.succeeded);
    EXPECT_EQ(settings, read.settings);
    EXPECT_EQ("[\x81]]\r\nk\x81==\x81[ \x81=\r\nl=1\r\n\r\n", Written(settings));
}

TEST_P(IniEncoding, RefusesBytesThatOnlyLookLikeTheCharactersOfALine) {
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 223\n",
              CheckReports([] { EXPECT_FALSE(ReadIniText("[A\x81]\n").succeeded); }));
    EXPECT_EQ("DBGCHK  qorutils/fs/qor_ini_file @ 237\n",
              CheckReports([] { EXPECT_FALSE(ReadIniText("k\x81=1\n").succeeded); }));
}

TEST_P(IniEncoding, HasRoomForMoreCharactersThanBytes) {
    for (int const count : {1, 3, 127, 128, 129, 300, 20000}) {
        std::wstring value;
        for (int i = 0; i < count; ++i) value += L"\u0BB8\u0BCD";
        SettingsMap const settings = {{L"A", {{L"k", value}, {L"l", L"1"}}}};
        std::string const lines = "[A]\r\nk=" + Repeated("\xA0", count) + "\r\nl=1\r\n";
        EXPECT_TRUE(settings == ReadIniText(lines).settings) << count;
        EXPECT_TRUE(lines + "\r\n" == Written(settings)) << count;
    }
}

TEST_P(IniEncoding, JoinsAnAsciiLetterWithTheByteBehindIt) {
    SettingsMap const settings = {{L"caf\u00E9", {{L"k\u00E9", L"ee\u00E9 e"}}}};
    IniRead const read = ReadIniText("[cafe\xB3]\r\nke\xB3=eee\xB3 e");
    EXPECT_TRUE(read.succeeded);
    EXPECT_EQ(settings, read.settings);
    EXPECT_EQ("[cafe\xB3]\r\nke\xB3=eee\xB3 e\r\n\r\n", Written(settings));
}

TEST(IniEncodingWithAscii, KeepsTheBackslash) {
    MadeEncoding const encoding(true);
    SettingsMap const settings = {{L"A", {{L"dir", L"C:\\a"}}}};
    EXPECT_EQ(settings, ReadIniText("[A]\r\ndir=C:\\a").settings);
    EXPECT_EQ("[A]\r\ndir=C:\\a\r\n\r\n", Written(settings));
}

TEST(IniEncodingWithoutAscii, HasAYenSignForTheBackslash) {
    MadeEncoding const encoding(false);
    SettingsMap const settings = {{L"A", {{L"dir", L"C:\u00A5"}, {L"x", L"plain"}}}};
    EXPECT_EQ(settings, ReadIniText("[A]\r\ndir=C:\\\r\nx=plain").settings);
    EXPECT_EQ("[A]\r\ndir=C:\\\r\nx=plain\r\n\r\n", Written(settings));
    // There are no bytes for a backslash.
    EXPECT_EQ("[A]\r\ndir=\r\n\r\n", Written({{L"A", {{L"dir", L"C:\\"}}}}));
}

}  // namespace
