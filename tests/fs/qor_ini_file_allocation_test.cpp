// INI files when memory runs out. Replaces the global operator new: a program of its own.

#include <qorutils/fs/qor_ini_file.h>

#include <fstream>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include "support/ini_settings.h"
#include "support/refusing_heap.h"
#include "support/scoped_locale.h"
#include "support/temporary_directory.h"

namespace {

using qor::text_utils::EQorTextEncoding;
using qor::text_utils::eTextEncodingAnsi;
using qor::text_utils::eTextEncodingUtf16LE;
using qor_settings::CThreeTupleStore;

int CountMappings(std::string const& path) {
    std::ifstream maps("/proc/self/maps");
    int count = 0;
    for (std::string line; std::getline(maps, line);) count += line.find(path) != std::string::npos;
    return count;
}

TEST(ReadSettingsAsIni, GivesAllBackWhenMemoryRunsOut) {
    ScopedLocale const locale("C.UTF-8");
    TemporaryDirectory directory;
    directory.MakeFile("8-bit", "x=0\n[A \xC3\xA9]\nk=1\nl=2\n[B] \nk=1\n\t \nk=2\n");
    directory.MakeFile("wide", WideBytes(L"x=0\n[A]\nk=1\nl=2\n[B] \nk=1\n\t \nk=2\n"));
    for (char const* name : {"8-bit", "wide"}) {
        std::wstring const path = directory.WidePath(name);
        int const needed = RefuseOneAfterTheOther(
            [&] {
                CThreeTupleStore store;
                EQorTextEncoding encoding;
                EXPECT_TRUE(qor_settings::readSettingsAsIni(path.c_str(), store, encoding));
                EXPECT_EQ(3u, store.size());
            },
            [&] { EXPECT_EQ(0, CountMappings(directory.Path(name))); });
        EXPECT_GT(needed, 10);
    }
}

TEST(WriteSettingsAsIni, GivesAllBackWhenMemoryRunsOut) {
    ScopedLocale const locale("C.UTF-8");
    TemporaryDirectory directory;
    directory.MakeFile("file", "");
    CThreeTupleStore const store =
        ToStore({{L"A", {{L"k", std::wstring(70000, L'\u20AC')}, {L"l", L"1"}}}});
    std::wstring const path = directory.WidePath("file");
    for (EQorTextEncoding const encoding : {eTextEncodingAnsi, eTextEncodingUtf16LE}) {
        int const needed = RefuseOneAfterTheOther([&] {
            // Without memory for the name there is no file; that is no exception.
            if (!qor_settings::writeSettingsAsIni(path.c_str(), store, encoding))
                throw std::bad_alloc();
        });
        EXPECT_GT(needed, 3);
    }
}

// Keys in order, in falling order, and each of them twice.
std::string ManyKeys(int count) {
    std::string text = "[A]\n";
    for (int i = 0; i < count; ++i) text += "a" + std::to_string(1000000 + i) + "=value\n";
    for (int i = 0; i < count; ++i) text += "b" + std::to_string(2000000 - i) + "=value\n";
    for (int i = 0; i < count; ++i) text += "b" + std::to_string(2000000 - i) + "=other value\n";
    return text;
}

int AllocationsToRead(std::wstring const& path) {
    CThreeTupleStore store;
    EQorTextEncoding encoding;
    int const before = refusingHeap.taken;
    EXPECT_TRUE(qor_settings::readSettingsAsIni(path.c_str(), store, encoding));
    return refusingHeap.taken - before;
}

TEST(ReadSettingsAsIni, TakesThreeBlocksALine) {
    TemporaryDirectory directory;
    directory.MakeFile("few", ManyKeys(100));
    directory.MakeFile("many", ManyKeys(30100));
    int const few = AllocationsToRead(directory.WidePath("few"));
    int const many = AllocationsToRead(directory.WidePath("many"));
    EXPECT_EQ(3 * 3 * 30000, many - few);  // key, value, and a node of the map
}

TEST(WriteSettingsAsIni, TakesAsManyBlocksForManyKeysAsForFew) {
    TemporaryDirectory directory;
    directory.MakeFile("file", "");
    std::wstring const path = directory.WidePath("file");
    for (EQorTextEncoding const encoding : {eTextEncodingAnsi, eTextEncodingUtf16LE}) {
        int needed[2] = {};
        for (int const isMany : {0, 1}) {
            SettingsMap settings;
            for (int i = 0; i < (isMany != 0 ? 20000 : 10); ++i)
                settings[L"A"][std::to_wstring(1000000 + i)] = L"value";
            CThreeTupleStore const store = ToStore(settings);
            int const before = refusingHeap.taken;
            EXPECT_TRUE(qor_settings::writeSettingsAsIni(path.c_str(), store, encoding));
            needed[isMany] = refusingHeap.taken - before;
        }
        EXPECT_EQ(needed[0], needed[1]);
    }
}

}  // namespace
