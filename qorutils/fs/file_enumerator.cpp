#include "qorutils/fs/file_enumerator.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "qorutils/fs/directory_entries.h"
#include "qorutils/fs/file_names.h"
#include "qorutils/qorsys/win_time.h"

using qor_text::CQorStringT;

namespace base {

TFileEnumerator::TFileEnumerator(CQorStringT<wchar_t> const& root, bool isRecursive, int types)
    : TFileEnumerator(root, isRecursive, types, CQorStringT<wchar_t>()) {}

TFileEnumerator::TFileEnumerator(CQorStringT<wchar_t> const& root, bool isRecursive, int types,
                                 CQorStringT<wchar_t> const& namePattern)
    : current(),
      recursive(isRecursive),
      fileType(types),
      pattern(namePattern),
      narrowPattern_(namePattern.c_str()) {
    CheckEnumeration(!recursive || (fileType & kEnumIncludeDotDot) == 0, __LINE__);
    pending.emplace_back(qor::file_names::GetCanonicalFileName(root).c_str());
}

CQorStringT<wchar_t> TFileEnumerator::Next() {
    hasCurrent = hasCurrent && FindFrom(index + 1);
    while (!hasCurrent && ReadNextDirectory()) hasCurrent = FindFrom(0);
    if (!hasCurrent) {
        current.filename[0] = '\0';
        return {};
    }
    current = entries[index];
    return GetFilename(current);
}

void TFileEnumerator::GetFindInfo(_TFindInfo* info) {
    CheckEnumeration(info != nullptr, __LINE__);
    // The report is all that is done about a null info.
    if (hasCurrent) *info = current;  // NOLINT(clang-analyzer-core.*)
}

bool TFileEnumerator::IsDirectory(_TFindInfo const& info) {
    return S_ISDIR(info.stat.st_mode);
}

CQorStringT<wchar_t> TFileEnumerator::GetFilename(_TFindInfo const& info) {
    std::size_t const length = std::strlen(info.filename);
    if (!IsAscii(info.filename, length)) return CQorStringT<wchar_t>(info.filename);
    wchar_t wide[sizeof info.filename];
    std::copy(info.filename, info.filename + length, wide);
    return CQorStringT<wchar_t>(wide, static_cast<int>(length));
}

long long TFileEnumerator::GetFilesize(_TFindInfo const& info) {
    return info.stat.st_size;
}

long long TFileEnumerator::GetLastModifiedTime(_TFindInfo const& info) {
    _FILETIME const ticks = {static_cast<std::uint32_t>(info.stat.st_mtime), 0};
    return to_time_t(ticks);
}

void TFileEnumerator::readDirectory(qor_vector<_TFindInfo>& entries,
                                    CQorStringT<wchar_t> const& dir, bool allTypes) {
    ReadEntries(entries, dir.c_str(), allTypes, [](_TFindInfo const&) { return true; });
}

bool TFileEnumerator::ShouldSkip(CQorStringT<char> const& path) {
    return IsSkipped(path.c_str());
}

bool TFileEnumerator::IsSkipped(char const* path) const {
    NameFilter const filter = {pattern.IsEmpty() ? nullptr : narrowPattern_.c_str(),
                               (fileType & kEnumIncludeDotDot) != 0};
    return filter.Skips(path);
}

// Notes directories for later on the way.
bool TFileEnumerator::IsReturned(_TFindInfo const& entry) {
    if (IsSkipped(entry.filename)) return false;
    if (!IsDirectory(entry)) return (fileType & kEnumFiles) != 0;
    if (recursive) pending.emplace_back(entry.filename);
    return (fileType & kEnumDirectories) != 0;
}

bool TFileEnumerator::FindFrom(unsigned int first) {
    for (index = first; index < entries.size(); ++index)
        if (IsReturned(entries[index])) return true;
    pattern.Empty();
    return false;
}

bool TFileEnumerator::ReadNextDirectory() {
    if (pending.empty()) return false;
    currentDir = pending.back().c_str();
    pending.pop_back();
    readDirectory(entries, currentDir, (fileType & kEnumAllTypes) != 0);
    return true;
}

bool IsDot(CQorStringT<wchar_t> const& s) {
    return s == L".";
}

bool IsDot(CQorStringT<char> const& s) {
    return s == ".";
}

bool IsDotDot(CQorStringT<wchar_t> const& s) {
    return s == L"..";
}

bool IsDotDot(CQorStringT<char> const& s) {
    return s == "..";
}

}  // namespace base
