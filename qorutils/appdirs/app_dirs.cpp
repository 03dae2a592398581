#include "qorutils/appdirs/app_dirs.h"

#include <atomic>
#include <mutex>
#include <new>

#include "qorutils/appdirs/module_file_query.h"
#include "qorutils/fs/file_funcs.h"
#include "qorutils/fs/qor_ini_file.h"

using qor_text::CQorStringT;

namespace {

enum Entry {
    kApplicationPath,
    kExeDir,
    kRootDir,
    kAppDataDir,
    kDocsDir,
    kGeoidsDir,
    kGeoDataDir,
};

struct Override {
    wchar_t const* key;
    Entry entry;
};

constexpr Override kOverrides[] = {
    {L"User", kRootDir},
    {L"Documents", kDocsDir},
    {L"Geoids", kGeoidsDir},
    {L"Geo", kGeoDataDir},
};

// The part behind the last separator; a text without one has none.
CQorStringT<wchar_t> FileNameOf(CQorStringT<wchar_t> const& module) {
    int const separator = module.ReverseFind(L'\\');
    return separator < 0 ? CQorStringT<wchar_t>() : module.Mid(separator + 1);
}

CQorStringT<wchar_t> FindGeoDataDir(CQorStringT<wchar_t> const& parent) {
    CQorStringT<wchar_t> const unversioned = parent + L"\\Geo";
    CQorStringT<wchar_t> const versioned = unversioned + L"\\3.0";
    return FileFuncs::IsDirExist(versioned) ? versioned : unversioned;
}

void ApplyOverrides(CApplicationDirectories& table) {
    qor_settings::CThreeTupleStore store;
    auto encoding = qor::text_utils::eTextEncodingUnknown;
    CQorStringT<wchar_t> const file = table[kExeDir] + L"\\qor_dir.ini";
    if (!qor_settings::readSettingsAsIni(file, store, encoding)) return;
    auto const section = store.find(L"Directories");
    if (section == store.end()) return;
    for (Override const& each : kOverrides) {
        auto const found = section->second.values.find(each.key);
        if (found != section->second.values.end()) table[each.entry] = found->second;
    }
}

CApplicationDirectories BuildTable() {
    CApplicationDirectories table;
    CQorStringT<wchar_t> const module = qor_appdirs::QueryModuleFileName();
    int const separator = module.ReverseFind(L'\\');
    if (separator < 0) return table;
    CQorStringT<wchar_t> const exeDir = module.Left(separator);
    table[kApplicationPath] = exeDir + L"\\" + FileNameOf(qor_appdirs::QueryModuleFileName());
    table[kExeDir] = table[kRootDir] = table[kAppDataDir] = table[kDocsDir] = exeDir;
    table[kGeoidsDir] = exeDir + L"\\Geoids";
    table[kGeoDataDir] = FindGeoDataDir(exeDir);
    ApplyOverrides(table);
    return table;
}

// Never destroyed, for what runs late as the process exits.
CApplicationDirectories const& EmptyTable() {
    alignas(CApplicationDirectories) static unsigned char memory[sizeof(CApplicationDirectories)];
    static CApplicationDirectories const& table = *new (memory) CApplicationDirectories();
    return table;
}

// What the getters read; null as long as the table is to be built.
std::atomic<CApplicationDirectories const*> currentTable{nullptr};

// Makes currentTable. Not a static table that is built as it is initialised: such must not be
// entered again from within, as by the log that goes to the root directory.
class TableBuilder {
  public:
    TableBuilder() = default;
    ~TableBuilder() { currentTable = &EmptyTable(); }
    TableBuilder(TableBuilder const&) = delete;
    TableBuilder& operator=(TableBuilder const&) = delete;

    CApplicationDirectories const& Build() {
        std::lock_guard<std::recursive_mutex> const lock(mutex_);
        if (isBuilding_) return EmptyTable();
        if (currentTable == nullptr) {
            Flag const building(isBuilding_);
            table_ = BuildTable();
            currentTable = &table_;
        }
        return *currentTable;
    }

  private:
    // True for one scope, however that is left.
    class Flag {
      public:
        explicit Flag(bool& flag) : flag_(flag) { flag_ = true; }
        ~Flag() { flag_ = false; }
        Flag(Flag const&) = delete;
        Flag& operator=(Flag const&) = delete;

      private:
        bool& flag_;
    };

    std::recursive_mutex mutex_;
    bool isBuilding_ = false;
    CApplicationDirectories table_;
};

CQorStringT<wchar_t> WithSeparator(Entry entry) {
    return GetApplicationFileName()[entry] + L"\\";
}

}  // namespace

CApplicationDirectories const& GetApplicationFileName() {
    CApplicationDirectories const* const table = currentTable.load(std::memory_order_acquire);
    if (table != nullptr) return *table;
    static TableBuilder builder;
    return builder.Build();
}

CQorStringT<wchar_t> GetApplicationPath() {
    return GetApplicationFileName()[kApplicationPath];
}

CQorStringT<wchar_t> GetExeDir() {
    return GetApplicationFileName()[kExeDir];
}

CQorStringT<wchar_t> GetRootDir() {
    return GetApplicationFileName()[kRootDir];
}

CQorStringT<wchar_t> GetTavrelAppDataDir() {
    return GetApplicationFileName()[kAppDataDir];
}

CQorStringT<wchar_t> GetDocsDir() {
    return GetApplicationFileName()[kDocsDir];
}

CQorStringT<wchar_t> GetTavrelAppGeoidsDataDir() {
    return WithSeparator(kGeoidsDir);
}

CQorStringT<wchar_t> GetTavrelAppGeoDataDir() {
    return WithSeparator(kGeoDataDir);
}
