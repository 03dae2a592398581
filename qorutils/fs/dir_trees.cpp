#include "qorutils/fs/dir_trees.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <string>
#include <vector>

#include "qorutils/fs/boost_paths.h"
#include "qorutils/fs/cfile.h"
#include "qorutils/fs/file_enumerator.h"
#include "qorutils/fs/file_funcs.h"

namespace FileFuncs {

namespace {

using boost::filesystem::directory_entry;
using boost::filesystem::directory_iterator;

// False when the folder was there already.
bool MakeFolder(BoostPath const& folder) {
    BoostError error;
    return boost::filesystem::create_directory(folder, error) && !error;
}

// Empty when no wide path leads there, as the locale cannot decode it, or '\', which would
// separate, is part of a name.
WideString WidePathTo(BoostPath const& path) {
    bool const isSplit = path.native().find('\\') != std::string::npos;
    return isSplit ? WideString() : WidenWhole(path.native());
}

// Empty for an empty path, which would otherwise be the working directory.
BoostPath AbsolutePathOfSome(WideString const& path) {
    return *path.c_str() == L'\0' ? BoostPath() : AbsolutePath(path);
}

bool RemoveEntry(directory_entry const& entry) {
    WideString const path = WidePathTo(entry.path());
    if (path.IsEmpty()) return false;
    BoostError error;
    switch (entry.symlink_status(error).type()) {
        case boost::filesystem::directory_file:
            return RemoveDirectoryTree(path);
        case boost::filesystem::regular_file:
            return DelFile(path, true);
        default:
            return false;
    }
}

// The name as the system has it: a name that the locale cannot decode is none that it encodes.
bool FindFile(BoostPath const& folder, std::string const& name, WideString& found) {
    BoostError error;
    for (directory_iterator entry(folder, error), end; entry != end; ++entry) {
        BoostPath const& path = entry->path();
        std::string const entryName = path.filename().native();
        if (entry->status(error).type() == boost::filesystem::directory_file) {
            if (!WidenWhole(entryName).IsEmpty() && FindFile(path, name, found)) return true;
        } else if (entryName == name) {
            found = path.c_str();
            return true;
        }
    }
    return false;
}

int const kEveryEntry = base::kEnumFiles | base::kEnumDirectories | base::kEnumAllTypes;

bool CopyEntry(BoostPath const& from, BoostPath const& to, bool isFolder, bool passThrough) {
    WideString const source = WidePathTo(from);
    WideString const target = WidePathTo(to);
    if (source.IsEmpty() || target.IsEmpty()) return false;
    return isFolder ? CopyDirectory(source, target, true, passThrough)
                    : CopyFromTo(source, target, true);
}

}  // namespace

bool CreateDirRecursive(WideString const& path) {
    std::string folder = AbsolutePath(path).native();
    if (!folder.empty() && folder.back() == '/') folder.pop_back();
    std::vector<std::string> missing;  // with their slashes, the last of the path first
    while (!IsDirectory(folder) && !MakeFolder(folder)) {
        std::string::size_type const slash = folder.rfind('/');
        if (slash == std::string::npos) return false;
        missing.push_back(folder.substr(slash));
        folder.erase(slash);
    }
    for (auto name = missing.rbegin(); name != missing.rend(); ++name) {
        folder += *name;
        if (!MakeFolder(folder)) return false;
    }
    return true;
}

bool CreateDirectoryTree(wchar_t const* path) {
    std::string const whole = AbsolutePath(path).native();
    if (MakeFolder(whole)) return true;  // mostly only the last is missing
    std::string folder;
    std::string::size_type slash = 0;
    do {
        slash = whole.find('/', slash + 1);
        folder = whole.substr(0, slash);
    } while ((Exists(folder) || MakeFolder(folder)) && slash != std::string::npos);
    return IsDirectory(folder);
}

bool RemoveDirectoryTree(wchar_t const* path) {
    BoostPath const folder = AbsolutePathOfSome(path);
    if (folder.empty()) return false;
    BoostError error;
    boost::filesystem::remove_all(folder, error);
    return !IsDirectory(folder);
}

bool EmptyFolder(WideString const& folder) {
    bool isRemoved = false;
    BoostError error;
    for (directory_iterator entry(AbsolutePathOfSome(folder), error), end; entry != end; ++entry) {
        isRemoved = RemoveEntry(*entry);
        if (!isRemoved) break;
    }
    return isRemoved;
}

bool CopyDirectory(WideString const& from, WideString const& to, bool recursive, bool passThrough) {
    if (from == to || !CanBeNarrowed(from) || !CanBeNarrowed(to)) return false;
    BoostError error;
    BoostPath const workingDirectory = boost::filesystem::current_path(error);
    BoostPath const source = AbsolutePath(from, workingDirectory);
    BoostPath const target = AbsolutePath(to, workingDirectory);
    WideString const wideSource = WidePathTo(source);
    WideString const wideTarget = WidePathTo(target);
    if (wideSource.IsEmpty() || wideTarget.IsEmpty()) return false;

    if (!IsDirectory(target)) CreateDirectoryTree(wideTarget);
    bool isCopied = true;
    base::TFileEnumerator entries(wideSource, true, kEveryEntry);
    while (!entries.Next().IsEmpty()) {
        base::_TFindInfo entry;
        entries.GetFindInfo(&entry);
        bool const isFolder = base::TFileEnumerator::IsDirectory(entry);
        if (isFolder && !recursive) continue;
        isCopied =
            CopyEntry(source / entry.filename, target / entry.filename, isFolder, passThrough);
    }
    return isCopied;
}

unsigned int CountFiles(WideString const& folder) {
    unsigned int count = 0;
    BoostError error;
    for (directory_iterator entry(CanonicalPath(folder), error), end; entry != end;
         entry.increment(error))
        ++count;
    return count;
}

bool FindFileInDirTree(wchar_t const* folder, wchar_t const* name, WideString& found) {
    return FindFile(NarrowPath(folder), NarrowPath(name).native(), found);
}

WideString GetTempDirWithoutSlash() {
    BoostError error;
    WideString folder(boost::filesystem::temp_directory_path(error).c_str());
    if (error) return {};
    if (folder.Right(1) == L"/") folder.Delete(folder.GetLength() - 1);
    return folder;
}

WideString GetUniqueTempDir() {
    WideString parent;
    base::CFile::GetTempPath(parent);
    BoostPath folder;
    do {
        CreateDirRecursive(parent);
        BoostError error;
        folder = CanonicalPath(parent) / boost::filesystem::unique_path("tvl%%%%%%%%%%%%", error);
    } while (!MakeFolder(folder));
    return WideString(folder.c_str()) + L'\\';
}

}  // namespace FileFuncs
