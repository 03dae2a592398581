// Reading and writing settings files, beside what other programs use.
//
// Keys stand in order ("setting_000012"), numbered without zeros ("setting12"), or shuffled. With
// --memory the program instead prints the heap that each reader's settings take.

#include <qorutils/fs/qor_ini_file.h>

#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>

#include <algorithm>
#include <boost/property_tree/ini_parser.hpp>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "cases.h"

#ifdef QORUTILS_BENCH_SIMPLEINI
#define SI_NO_CONVERSION
#include <SimpleIni.h>
#endif

#ifdef QORUTILS_BENCH_INIH
#include <ini.h>
#endif

#ifdef QORUTILS_BENCH_GLIB
#include <glib.h>
#endif

#ifdef QORUTILS_BENCH_QT
#include <QtCore/QSettings>
#include <QtCore/QString>
#endif

namespace {

constexpr int kSections = 100;

enum class Order { kSorted, kNumbered, kShuffled };

char const* NameOf(Order order) {
    return order == Order::kSorted ? "sorted" : order == Order::kNumbered ? "numbered" : "shuffled";
}

struct Setting {
    std::string section, key, value;
};

std::vector<Setting> MakeSettings(int count, Order order) {
    std::minstd_rand random(7);
    std::vector<Setting> settings;
    for (int s = 0; s < kSections; ++s) {
        std::vector<int> numbers(static_cast<std::size_t>(count / kSections));
        for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<int>(i);
        if (order == Order::kShuffled) std::shuffle(numbers.begin(), numbers.end(), random);
        for (int const number : numbers) {
            char key[32];
            std::snprintf(key, sizeof key, order == Order::kNumbered ? "setting%d" : "setting_%06d",
                          number);
            settings.push_back(
                {"Section " + std::to_string(s + 100), key, "value " + std::to_string(number * 7)});
        }
    }
    return settings;
}

// A file that lives as long as the object.
class File {
  public:
    explicit File(std::string const& name) : path_(FolderForFiles() + "/ini_file_bench_" + name) {}
    File(std::string const& name, std::vector<Setting> const& settings) : File(name) {
        std::ofstream file(path_);
        std::string section;
        for (Setting const& setting : settings) {
            if (setting.section != section) file << "\r\n[" << setting.section << "]\r\n";
            section = setting.section;
            file << setting.key << '=' << setting.value << "\r\n";
        }
    }
    ~File() { std::remove(path_.c_str()); }
    File(File const&) = delete;
    File& operator=(File const&) = delete;

    char const* narrow() const { return path_.c_str(); }
    std::wstring wide() const { return {path_.begin(), path_.end()}; }

  private:
    std::string path_;
};

// ---- Readers: each gives what it read, whole ----

std::unique_ptr<qor_settings::CThreeTupleStore> ReadQorutils(File const& file) {
    auto store = std::make_unique<qor_settings::CThreeTupleStore>();
    qor::text_utils::EQorTextEncoding encoding;
    if (!qor_settings::readSettingsAsIni(file.wide().c_str(), *store, encoding)) std::abort();
    return store;
}

std::unique_ptr<boost::property_tree::ptree> ReadBoost(File const& file) {
    auto tree = std::make_unique<boost::property_tree::ptree>();
    boost::property_tree::read_ini(file.narrow(), *tree);
    return tree;
}

#ifdef QORUTILS_BENCH_SIMPLEINI
std::unique_ptr<CSimpleIniCaseA> ReadSimpleIni(File const& file) {
    auto settings = std::make_unique<CSimpleIniCaseA>();
    if (settings->LoadFile(file.narrow()) != SI_OK) std::abort();
    return settings;
}
#endif

#ifdef QORUTILS_BENCH_INIH
using StringMaps = std::map<std::string, std::map<std::string, std::string>>;

int StoreInMap(void* maps, char const* section, char const* key, char const* value) {
    (*static_cast<StringMaps*>(maps))[section][key] = value;
    return 1;
}

std::unique_ptr<StringMaps> ReadInih(File const& file) {
    auto maps = std::make_unique<StringMaps>();
    if (ini_parse(file.narrow(), StoreInMap, maps.get()) != 0) std::abort();
    return maps;
}
#endif

#ifdef QORUTILS_BENCH_GLIB
std::unique_ptr<GKeyFile, void (*)(GKeyFile*)> ReadGlib(File const& file) {
    std::unique_ptr<GKeyFile, void (*)(GKeyFile*)> settings(g_key_file_new(), g_key_file_free);
    if (!g_key_file_load_from_file(settings.get(), file.narrow(), G_KEY_FILE_NONE, nullptr))
        std::abort();
    return settings;
}
#endif

#ifdef QORUTILS_BENCH_QT
// A file that has not changed would come from the cache of the process, and keys that nobody asks
// for are not read.
std::unique_ptr<QSettings> ReadQt(File const& file) {
    static timespec times[2] = {{1000000000, 0}, {1000000000, 0}};
    ++times[1].tv_sec;
    utimensat(AT_FDCWD, file.narrow(), times, 0);
    auto settings = std::make_unique<QSettings>(file.narrow(), QSettings::IniFormat);
    benchmark::DoNotOptimize(settings->allKeys().size());
    return settings;
}
#endif

// The same settings in a map of maps of the same strings, without a file.
using WideSettings =
    std::vector<std::pair<std::wstring, std::vector<std::pair<std::wstring, std::wstring>>>>;

WideSettings MakeWide(std::vector<Setting> const& settings) {
    WideSettings wide;
    auto const widen = [](std::string const& s) { return std::wstring(s.begin(), s.end()); };
    for (Setting const& setting : settings) {
        std::wstring const section = widen(setting.section);
        if (wide.empty() || wide.back().first != section) wide.push_back({section, {}});
        wide.back().second.emplace_back(widen(setting.key), widen(setting.value));
    }
    return wide;
}

std::unique_ptr<qor_settings::CThreeTupleStore> FillMaps(WideSettings const& settings) {
    auto store = std::make_unique<qor_settings::CThreeTupleStore>();
    for (auto const& section : settings) {
        auto& values = (*store)[section.first.c_str()].values;
        for (auto const& setting : section.second)
            values.emplace_hint(values.end(), setting.first.c_str(), setting.second.c_str());
    }
    return store;
}

// ---- Cases ----

void RegisterReading(std::string const& group, std::shared_ptr<File> file,
                     std::vector<Setting> const& settings) {
    Case(group, "qorutils", [=] { return ReadQorutils(*file); });
    Case(group, "Boost.PropertyTree", [=] { return ReadBoost(*file); });
#ifdef QORUTILS_BENCH_SIMPLEINI
    Case(group, "SimpleIni", [=] { return ReadSimpleIni(*file); });
#endif
#ifdef QORUTILS_BENCH_INIH
    Case(group, "inih, std::map", [=] { return ReadInih(*file); });
#endif
#ifdef QORUTILS_BENCH_GLIB
    Case(group, "GKeyFile", [=] { return ReadGlib(*file).get() != nullptr; });
#endif
#ifdef QORUTILS_BENCH_QT
    Case(group, "QSettings", [=] { return ReadQt(*file); });
#endif
    auto const wide = std::make_shared<WideSettings>(MakeWide(settings));
    Case(group, "floor: map of maps", [=] { return FillMaps(*wide); });
}

void RegisterWriting(std::string const& group, std::shared_ptr<File> file) {
    auto const target = std::make_shared<File>("target");
    std::shared_ptr<qor_settings::CThreeTupleStore> const store = ReadQorutils(*file);
    Case(group, "qorutils", [=] {
        return qor_settings::writeSettingsAsIni(target->wide().c_str(), *store,
                                                qor::text_utils::eTextEncodingAnsi);
    });
    std::shared_ptr<boost::property_tree::ptree> const tree = ReadBoost(*file);
    Case(group, "Boost.PropertyTree", [=] {
        boost::property_tree::write_ini(target->narrow(), *tree);
        return 0;
    });
#ifdef QORUTILS_BENCH_SIMPLEINI
    std::shared_ptr<CSimpleIniCaseA> const simple = ReadSimpleIni(*file);
    Case(group, "SimpleIni", [=] { return simple->SaveFile(target->narrow()); });
#endif
#ifdef QORUTILS_BENCH_GLIB
    std::shared_ptr<GKeyFile> const keyFile = ReadGlib(*file);
    Case(group, "GKeyFile",
         [=] { return g_key_file_save_to_file(keyFile.get(), target->narrow(), nullptr); });
#endif
}

// ---- Memory ----

template <typename Read>
void PrintMemory(char const* subject, Read read) {
    malloc_trim(0);
    std::size_t const before = mallinfo2().uordblks + mallinfo2().hblkhd;
    auto const settings = read();
    std::size_t const after = mallinfo2().uordblks + mallinfo2().hblkhd;
    std::printf("%-20s %10.1f MiB\n", subject, static_cast<double>(after - before) / (1 << 20));
}

void PrintMemoryOfEach(int count) {
    auto const settings = MakeSettings(count, Order::kShuffled);
    File const file("memory", settings);
    PrintMemory("qorutils", [&] { return ReadQorutils(file); });
    PrintMemory("Boost.PropertyTree", [&] { return ReadBoost(file); });
#ifdef QORUTILS_BENCH_SIMPLEINI
    PrintMemory("SimpleIni", [&] { return ReadSimpleIni(file); });
#endif
#ifdef QORUTILS_BENCH_INIH
    PrintMemory("inih, std::map", [&] { return ReadInih(file); });
#endif
#ifdef QORUTILS_BENCH_GLIB
    PrintMemory("GKeyFile", [&] { return ReadGlib(file); });
#endif
#ifdef QORUTILS_BENCH_QT
    PrintMemory("QSettings", [&] { return ReadQt(file); });
#endif
    auto const wide = MakeWide(settings);
    PrintMemory("floor: map of maps", [&] { return FillMaps(wide); });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::string(argv[1]) == "--memory") {
        PrintMemoryOfEach(1000000);
        return 0;
    }
    for (int const count : {10000, 1000000}) {
        std::string const size = count == 10000 ? "10,000 keys" : "1,000,000 keys";
        for (Order const order : {Order::kSorted, Order::kNumbered, Order::kShuffled}) {
            auto const settings = MakeSettings(count, order);
            auto const file =
                std::make_shared<File>(std::to_string(count) + NameOf(order), settings);
            RegisterReading("read, " + std::string(NameOf(order)) + "/" + size, file, settings);
            if (order == Order::kShuffled) RegisterWriting("write/" + size, file);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
