#include "qorutils/fs/file_funcs.h"

#include <fcntl.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cwchar>

#include "qorutils/appdirs/app_dirs.h"
#include "qorutils/fs/boost_paths.h"
#include "qorutils/fs/directory_entries.h"
#include "qorutils/fs/file_names.h"
#include "qorutils/fs/platform_file.h"
#include "qorutils/fs/system_calls.h"
#include "qorutils/qorsys/file_time.h"

using qor_text::CQorStringT;

namespace FileFuncs {

namespace {

// Whole seconds since 1970.
bool GetLastWriteTime(wchar_t const* path, long long& seconds) {
    _FILETIME lastWrite = {};
    bool const isKnown = qor::file_time::qorGetFileTimes(path, nullptr, nullptr, &lastWrite);
    seconds = base::to_time_t(lastWrite);
    return isKnown;
}

bool IsForbidden(wchar_t c) {
    constexpr wchar_t kForbidden[] = L"<>\\/\":?*|";
    constexpr std::size_t kCount = sizeof kForbidden / sizeof *kForbidden - 1;
    return std::wmemchr(kForbidden, c, kCount) != nullptr;
}

}  // namespace

bool IsFileExist(CQorStringT<wchar_t> const& path) {
    return !path.IsEmpty() && Exists(CanonicalPath(path));
}

bool FileExists(wchar_t const* path) {
    return IsFileExist(path);
}

bool IsDirExist(CQorStringT<wchar_t> const& path) {
    return IsDirectory(CanonicalPath(path));
}

bool IsFolder(wchar_t const* path) {
    return IsDirExist(path);
}

bool GetFileLength(CQorStringT<wchar_t> const& path, long long& size) {
    BoostPath const narrow = NarrowPath(path);
    if (!IsRegularFile(narrow)) return false;
    BoostError error;
    size = static_cast<long long>(boost::filesystem::file_size(narrow, error));
    return !error;
}

bool GetPathSize(wchar_t const* path, unsigned long& sizeLow, unsigned long* sizeHigh) {
    long long size = 0;
    bool const isKnown = GetFileLength(qor::file_names::GetCanonicalFileName(path), size);
    sizeLow = static_cast<std::uint32_t>(size);
    if (sizeHigh != nullptr) *sizeHigh = static_cast<std::uint32_t>(size >> 32);
    return isKnown;
}

bool DelFile(wchar_t const* path, bool force) {
    BoostPath const file = AbsolutePath(path);
    BoostError error;
    boost::filesystem::file_status const status = boost::filesystem::status(file, error);
    if (status.type() != boost::filesystem::regular_file) return false;
    if (force) {
        boost::filesystem::perms const added =
            boost::filesystem::add_perms | boost::filesystem::owner_write |
            boost::filesystem::group_write | boost::filesystem::others_write;
        boost::filesystem::permissions(file, status.permissions() | added, error);
    }
    return boost::filesystem::remove(file, error) && !error;
}

bool qor_CopyFile(wchar_t const* from, wchar_t const* to, bool overwrite) {
    CQorStringT<wchar_t> const exeDir = GetExeDir();
    if (!CanBeNarrowed(from) || !CanBeNarrowed(to) || !CanBeNarrowed(exeDir)) return false;
    if (overwrite && FileExists(to)) DelFile(to, true);
    BoostPath const base = NarrowPath(exeDir);
    BoostPath const source = AbsolutePath(from, base);
    BoostPath const target = AbsolutePath(to, base);
    BoostPath const parent = target.parent_path();
    BoostError error;
    if (!parent.empty() && !IsDirectory(parent))
        boost::filesystem::create_directories(parent, error);
    boost_paths::CopyFile(source, target, overwrite, error);
    return Exists(target);
}

bool CopyFromTo(wchar_t const* from, wchar_t const* to, bool overwrite) {
    if (!overwrite && CanBeNarrowed(from) && FileExists(to)) return true;
    return qor_CopyFile(from, to, overwrite);
}

bool CopyFromToCheckDate(wchar_t const* from, wchar_t const* to) {
    if (!FileExists(to)) return qor_CopyFile(from, to, false);
    if (!FileExists(from)) return false;
    long long source;
    long long target;
    if (!GetLastWriteTime(from, source) || !GetLastWriteTime(to, target)) return true;
    if (source <= target) return true;
    return qor_CopyFile(from, to, false);
}

bool MoveFile(wchar_t const* from, wchar_t const* to) {
    if (FileExists(to)) return false;
    BoostPath const source = NarrowPath(from);
    if (!IsRegularFile(source)) return false;
    BoostError error;
    boost::filesystem::rename(source, NarrowPath(to), error);
    return !error;
}

bool IsDots(wchar_t const* name) {
    return name != nullptr && (std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0);
}

bool IsPathOnFlashCard(wchar_t const*) {
    return false;
}

CQorStringT<wchar_t> CompactPath(void* context, wchar_t const* path, bool keepFileName,
                                 wchar_t separator) {
    CQorStringT<wchar_t> result(path);
    if (result.Find(L"...") != -1) return result;
    if (!keepFileName) {
        int const slash = result.ReverseFind(L'/');
        if (slash != -1) result = result.Left(slash);
    }
    int const last = result.GetLength() - 1;
    if (context == nullptr && last >= 2 && result.GetAt(last) == separator) result.Delete(last);
    return result;
}

bool IsFileNameCorrect(CQorStringT<wchar_t> const& name) {
    return !name.IsEmpty() && std::none_of(name.begin(), name.end(), IsForbidden);
}

CQorStringT<wchar_t> CreateCorrectFileName(CQorStringT<wchar_t> const& name, wchar_t replacement) {
    if (name.IsEmpty()) return CQorStringT<wchar_t>(replacement);
    int const length = name.GetLength();
    CQorStringT<wchar_t> result(name);
    wchar_t* const text = result.GetBuffer(length);
    std::replace_if(text, text + length, IsForbidden,
                    IsForbidden(replacement) ? L'_' : replacement);
    result.ReleaseBuffer(length);
    return result;
}

bool WriteFile(wchar_t const* path, char const* data, unsigned int length) {
    CQorStringT<char> const narrow(path);
    // creat64, as a 32-bit creat refuses files of 2 GiB and more, which this is to empty.
    int const file = base::RetryOnEintr([&] { return creat64(narrow.c_str(), 0666); });
    if (file == -1) return true;
    bool const isWritten = length == 0 || base::WritePlatformFile(file, data, length) ==
                                              static_cast<long long>(length);
    bool const isClosed = base::ClosePlatformFile(file);
    return isWritten || !isClosed;
}

void GetFileEntriesInFolder(qor_vector<base::_TFindInfo>& out, EFindFolder kind,
                            CQorStringT<wchar_t> const& folder, wchar_t const* mask) {
    CQorStringT<char> const path(qor::file_names::GetCanonicalFileName(folder).c_str());
    CQorStringT<char> const pattern(mask);
    bool const hasMask = mask != nullptr && *mask != L'\0';
    base::NameFilter const names = {hasMask ? pattern.c_str() : nullptr, false};
    base::ReadEntries(out, path, true, [&](base::_TFindInfo const& entry) {
        bool const isFolder = base::TFileEnumerator::IsDirectory(entry);
        return (kind & (isFolder ? eFindFolders : eFindFiles)) != 0 && !names.Skips(entry.filename);
    });
}

}  // namespace FileFuncs
