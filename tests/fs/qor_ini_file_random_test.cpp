// Reading and writing random settings, beside the format taken one character after another; and
// reading while the file changes.

#include <qorutils/fs/qor_ini_file.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/ini_settings.h"
#include "support/random_text.h"
#include "support/reference_ini.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"

namespace {

using namespace std::string_literals;

using qor::text_utils::EQorTextEncoding;
using qor::text_utils::eTextEncodingAnsi;
using qor::text_utils::eTextEncodingUtf16LE;
using qor_settings::CThreeTupleStore;

char const* const kLocales[] = {"C", "C.UTF-8"};

// Pieces of lines. Most of them keep a file good, so that much of it is read.
std::string RandomFile(RandomText& random) {
    static std::string const pieces[] = {
        "[A]\n",    "\n[b]\n",  "\r[A ]\r\n", "\n",       "\r\n",     "\n  \r",
        "\n#[=\n",  "\nk=",     "\nk=v\n",    "\n9 =a\n", "\nl==",    "\nl=\n",
        "v",        "=",        " ",          "x\t",      "k",        "]",
        "\xC3\xA9", "\xE2\x82", "\xD0\x96k=", "\xFF",     "k=\0v\n"s, "\n[\xC3\xA9]\n"};
    std::string text;
    for (int i = random.Below(30); i >= 0; --i)
        text += pieces[random.Below(static_cast<int>(sizeof pieces / sizeof pieces[0]))];
    return text;
}

std::string Widened(std::string const& bytes) {
    std::wstring text;
    for (char const byte : bytes) text += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    return WideBytes(L"[W]\n" + text);
}

TEST(ReadSettingsAsIni, ReadsRandomFilesAsTheFormatSays) {
    RandomText random(20261);
    int good = 0;
    for (int i = 0; i < 1500; ++i) {
        ScopedLocale const locale(kLocales[i % 2]);
        bool const isWide = i % 3 == 0;
        std::string const narrow = "[S]\n" + RandomFile(random) + "\n#";
        std::string const bytes = isWide ? Widened(narrow) : narrow;
        reference_ini::Settings expected;
        bool const isGood = reference_ini::Parse(bytes, isWide, expected);
        IniRead const read = ReadIniText(bytes);
        ASSERT_EQ(isGood, read.succeeded) << testing::PrintToString(bytes);
        ASSERT_TRUE(reference_ini::IsSame(expected, read.store)) << testing::PrintToString(bytes);
        good += isGood ? 1 : 0;
    }
    EXPECT_GT(good, 100);
    EXPECT_LT(good, 1400);
}

TEST(WriteSettingsAsIni, WritesRandomSettingsAsTheFormatSays) {
    RandomText random(20262);
    std::wstring const alphabet = L"ab9 =[]\u00E9\u0416\u20AC\0"s;
    TemporaryDirectory directory;
    directory.MakeFile("file", "");
    std::wstring const path = directory.WidePath("file");
    for (int i = 0; i < 500; ++i) {
        ScopedLocale const locale(kLocales[i % 2]);
        CThreeTupleStore store;
        for (int section = random.Below(4); section > 0; --section) {
            auto& added = store[Whole(random.Of(alphabet, random.Below(4)))];
            added.name = Whole(random.Of(alphabet, random.Below(4)));
            for (int key = random.Below(5); key > 0; --key)
                added.values[Whole(random.Of(alphabet, random.Below(4)))] =
                    Whole(random.Of(alphabet, random.Below(i % 10 == 0 ? 20000 : 8)));
        }
        bool const isWide = i % 3 == 0;
        auto const sections = reference_ini::SectionsOf(store);
        ASSERT_TRUE(qor_settings::writeSettingsAsIni(
            path.c_str(), store, isWide ? eTextEncodingUtf16LE : eTextEncodingAnsi));
        ASSERT_TRUE(reference_ini::Compose(sections, isWide) == directory.Content("file")) << i;
    }
}

// ---- Threads ----

std::size_t CharactersOf(SettingsMap const& settings) {
    std::size_t count = 0;
    for (auto const& section : settings)
        for (auto const& setting : section.second)
            count += setting.first.size() + setting.second.size();
    return count;
}

TEST(ReadSettingsAsIni, ReadsAFileInTwoThreadsWhileItChanges) {
    constexpr int kUnits = 2048;
    TemporaryDirectory directory;
    directory.MakeFile("file", std::string(4 * kUnits, '\n'));
    std::wstring const path = directory.WidePath("file");

    std::atomic<int> readers{2};
    std::size_t longest[2] = {};
    std::vector<std::thread> threads;
    for (std::size_t& characters : longest)
        threads.emplace_back([&] {
            for (int i = 0; i < 100; ++i) {
                CThreeTupleStore store;
                EQorTextEncoding encoding;
                qor_settings::readSettingsAsIni(path.c_str(), store, encoding);
                characters = std::max(characters, CharactersOf(FromStore(store)));
            }
            --readers;
        });
    int const file = open(directory.Path("file").c_str(), O_WRONLY);
    for (int i = 0; readers > 0; ++i) {
        static char const* const units[] = {"b=1=", "a=2\n", "c\xC3\xA9=", "\n\n\n\n"};
        std::string content;
        for (int unit = 0; unit < kUnits; ++unit) content += units[i % 4];
        EXPECT_EQ(static_cast<ssize_t>(content.size()),
                  pwrite(file, content.data(), content.size(), 0));
    }
    close(file);
    for (std::thread& thread : threads) thread.join();
    for (std::size_t const characters : longest) EXPECT_LT(characters, 4u * kUnits);
}

}  // namespace
