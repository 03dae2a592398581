// Listing, copying and removing folders.
//
// Boost has every copied file written through: on a disk, copying is mostly waiting for it.

#include <qorutils/fs/dir_trees.h>
#include <qorutils/fs/file_enumerator.h>
#include <qorutils/fs/file_funcs.h>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <boost/filesystem.hpp>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "cases.h"

#ifdef QORUTILS_BENCH_QT
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QString>
#endif

namespace {

using WideString = qor_text::CQorStringT<wchar_t>;

constexpr int kSmallFolder = 10000;
constexpr int kLargeFolder = 100000;
constexpr int kFolders = 100;
constexpr int kFilesPerFolder = 100;

// All folders of a run; they go with it.
class Workspace {
  public:
    Workspace() {
        path_ = FolderForFiles() + "/files_bench_XXXXXX";
        if (mkdtemp(&path_[0]) == nullptr) throw std::runtime_error("no temporary directory");
    }
    ~Workspace() { std::filesystem::remove_all(path_); }
    Workspace(Workspace const&) = delete;
    Workspace& operator=(Workspace const&) = delete;

    std::string Path(char const* name) const { return path_ + '/' + name; }

  private:
    std::string path_;
};

void MakeFile(std::string const& path, std::string const& content) {
    std::ofstream file(path);
    file << content;
    file.close();
    if (!file) throw std::runtime_error("cannot make " + path);
}

void MakeFiles(std::string const& folder, int count, std::string const& content) {
    std::filesystem::create_directory(folder);
    for (int i = 0; i < count; ++i)
        MakeFile(folder + "/record_" + std::to_string(i) + ".dat", content);
}

void MakeTree(std::string const& folder) {
    std::filesystem::create_directory(folder);
    for (int i = 0; i < kFolders; ++i)
        MakeFiles(folder + "/bench_day_" + std::to_string(i), kFilesPerFolder,
                  std::string(200, 'x'));
}

void Require(bool condition) {
    if (!condition) std::abort();
}

// A case in which each run needs something made before it.
template <typename Prepare, typename Body>
void PreparedCase(std::string const& group, char const* subject, Prepare prepare, Body body) {
    benchmark::RegisterBenchmark((group + "|" + subject).c_str(), [=](benchmark::State& state) {
        for (auto _ : state) {
            state.PauseTiming();
            prepare();
            state.ResumeTiming();
            benchmark::DoNotOptimize(body());
        }
    });
}

// ---- Listings: each gives the bytes that the files of a folder take ----

long long SumOfEnumerator(std::string const& folder) {
    using namespace base;
    TFileEnumerator files(folder.c_str(), false, kEnumFiles | kEnumAllTypes);
    long long sum = 0;
    while (!files.Next().IsEmpty()) {
        _TFindInfo info;
        files.GetFindInfo(&info);
        sum += TFileEnumerator::GetFilesize(info);
    }
    return sum;
}

long long SumOfEntries(std::string const& folder) {
    qor_vector<base::_TFindInfo> entries;
    FileFuncs::GetFileEntriesInFolder(entries, FileFuncs::eFindFiles, folder.c_str(), nullptr);
    long long sum = 0;
    for (base::_TFindInfo const& entry : entries) sum += base::TFileEnumerator::GetFilesize(entry);
    return sum;
}

// file_size, as status has no size: either is one question to the system.
long long SumOfStandard(std::string const& folder) {
    long long sum = 0;
    for (std::filesystem::directory_iterator entry(folder), end; entry != end; ++entry)
        sum += static_cast<long long>(std::filesystem::file_size(entry->path()));
    return sum;
}

long long SumOfBoost(std::string const& folder) {
    long long sum = 0;
    for (boost::filesystem::directory_iterator entry(folder), end; entry != end; ++entry)
        sum += static_cast<long long>(boost::filesystem::file_size(entry->path()));
    return sum;
}

#ifdef QORUTILS_BENCH_QT
long long SumOfQt(std::string const& folder) {
    long long sum = 0;
    QDirIterator entries(QString::fromStdString(folder), QDir::Files);
    while (entries.hasNext()) {
        entries.next();
        sum += entries.fileInfo().size();
    }
    return sum;
}
#endif

// What getdents64 writes.
struct KernelEntry {
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length;
    std::uint8_t type;
    char name[1];
};

// Calls visit for every name with the status of what it names.
template <typename Visit>
void ReadWithStatus(std::string const& folder, Visit visit) {
    int const directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    alignas(KernelEntry) static char block[32768];
    long filled;
    while ((filled = syscall(SYS_getdents64, directory, block, sizeof block)) > 0) {
        for (long position = 0; position < filled;) {
            void const* const place = block + position;
            auto const entry = static_cast<KernelEntry const*>(place);
            struct stat status;
            Require(fstatat(directory, entry->name, &status, 0) == 0);
            visit(entry->name, status);
            position += entry->length;
        }
    }
    close(directory);
}

long long SumOfSystemCalls(std::string const& folder) {
    long long sum = 0;
    ReadWithStatus(folder, [&](char const*, struct stat const& status) {
        if (S_ISREG(status.st_mode)) sum += status.st_size;
    });
    return sum;
}

// As GetFileEntriesInFolder must, but it does not know how many there will be.
long long SumOfKeptRecords(std::string const& folder) {
    std::vector<base::_TFindInfo> entries;
    entries.reserve(kLargeFolder);
    ReadWithStatus(folder, [&](char const* name, struct stat const& status) {
        if (!S_ISREG(status.st_mode)) return;
        entries.emplace_back();
        entries.back().stat = status;
        std::strcpy(entries.back().filename, name);
    });
    long long sum = 0;
    for (base::_TFindInfo const& entry : entries) sum += entry.stat.st_size;
    return sum;
}

void RegisterListing(std::string const& size, std::string const& folder) {
    long long const sum = SumOfSystemCalls(folder);
    auto const checked = [=](long long (*list)(std::string const&)) {
        return [=] {
            Require(list(folder) == sum);
            return 0;
        };
    };
    for (auto const function : {SumOfEnumerator, SumOfEntries}) {
        std::string const group =
            function == SumOfEntries ? "list, GetFileEntriesInFolder/" : "list, TFileEnumerator/";
        Case(group + size, "qorutils", checked(function));
        Case(group + size, "std::filesystem", checked(SumOfStandard));
        Case(group + size, "Boost.Filesystem", checked(SumOfBoost));
#ifdef QORUTILS_BENCH_QT
        Case(group + size, "QDirIterator", checked(SumOfQt));
#endif
    }
    Case("list, TFileEnumerator/" + size, "floor: getdents64, stat", checked(SumOfSystemCalls));
    Case("list, GetFileEntriesInFolder/" + size, "floor: the same, records kept",
         checked(SumOfKeptRecords));
}

// Whether the cost of an entry grows with the folder.
void RegisterProportion(std::string const& small, std::string const& large) {
    Case("list, in proportion/100,000 entries", "qorutils", [=] { return SumOfEnumerator(large); });
    Case("list, in proportion/100,000 entries", "floor: ten times 10,000", [=] {
        long long sum = 0;
        for (int i = 0; i < 10; ++i) sum += SumOfEnumerator(small);
        return sum;
    });
}

// ---- Trees ----

long CountOf(std::string const& folder) {
    using Iterator = std::filesystem::recursive_directory_iterator;
    return std::distance(Iterator(folder), Iterator());
}

bool CopyByBoost(std::string const& from, std::string const& to) {
    namespace fs = boost::filesystem;
    fs::path const target(to);
    fs::create_directory(target);
    for (fs::recursive_directory_iterator entry(from), end; entry != end; ++entry) {
        fs::path const copy = target / entry->path().lexically_relative(from);
        if (entry->status().type() == fs::directory_file)
            fs::create_directory(copy);
        else
            fs::copy_file(entry->path(), copy);
    }
    return true;
}

// Names are known, and nothing is asked.
bool CopyKnownFiles(std::string const& from, std::string const& to) {
    boost::filesystem::create_directory(to);
    for (int i = 0; i < kFolders; ++i) {
        std::string const folder = "/bench_day_" + std::to_string(i);
        boost::filesystem::create_directory(to + folder);
        for (int k = 0; k < kFilesPerFolder; ++k) {
            std::string const file = folder + "/record_" + std::to_string(k) + ".dat";
            boost::filesystem::copy_file(from + file, to + file);
        }
    }
    return true;
}

bool CopyByStandard(std::string const& from, std::string const& to) {
    std::filesystem::copy(from, to, std::filesystem::copy_options::recursive);
    return true;
}

bool CopyByQorutils(std::string const& from, std::string const& to) {
    return FileFuncs::CopyDirectory(from.c_str(), to.c_str(), true, false);
}

void RegisterCopying(std::string const& tree, std::string const& copy) {
    std::string const group = "copy a tree/10,000 files";
    auto const add = [&](char const* subject,
                         bool (*copyTree)(std::string const&, std::string const&)) {
        PreparedCase(
            group, subject, [=] { std::filesystem::remove_all(copy); },
            [=] { return copyTree(tree, copy); });
        std::filesystem::remove_all(copy);
        Require(copyTree(tree, copy) && CountOf(copy) == CountOf(tree));
    };
    add("qorutils", CopyByQorutils);
    add("std::filesystem", CopyByStandard);
    add("Boost.Filesystem", CopyByBoost);
    add("floor Boost copy_file", CopyKnownFiles);
}

void RegisterRemoval(std::string const& tree, std::string const& copy) {
    std::string const group = "remove a tree/10,000 files";
    auto const add = [&](char const* subject, auto remove) {
        PreparedCase(
            group, subject,
            [=] {
                std::filesystem::remove_all(copy);
                CopyByStandard(tree, copy);
            },
            [=] { return remove(copy); });
    };
    add("qorutils", [](std::string const& folder) {
        return FileFuncs::RemoveDirectoryTree(WideString(folder.c_str()));
    });
    add("std::filesystem",
        [](std::string const& folder) { return std::filesystem::remove_all(folder); });
    add("Boost.Filesystem",
        [](std::string const& folder) { return boost::filesystem::remove_all(folder); });
#ifdef QORUTILS_BENCH_QT
    add("QDir", [](std::string const& folder) {
        return QDir(QString::fromStdString(folder)).removeRecursively();
    });
#endif
}

}  // namespace

int main(int argc, char** argv) {
    Workspace const workspace;
    std::string const small = workspace.Path("10000");
    std::string const large = workspace.Path("100000");
    std::string const tree = workspace.Path("tree");
    MakeFiles(small, kSmallFolder, "x");
    MakeFiles(large, kLargeFolder, "x");
    MakeTree(tree);
    RegisterListing("10,000 entries", small);
    RegisterListing("100,000 entries", large);
    RegisterProportion(small, large);
    RegisterCopying(tree, workspace.Path("copy"));
    RegisterRemoval(tree, workspace.Path("copy"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
