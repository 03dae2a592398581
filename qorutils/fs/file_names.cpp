#include "qorutils/fs/file_names.h"

#include <algorithm>
#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <string>

#include "qorutils/fs/boost_paths.h"

using qor_text::CQorStringT;

namespace qor {
namespace file_names {

namespace {

// Empty when the path needs a working directory and there is none.
std::string MakeAbsolute(std::string const& narrow) {
    boost::filesystem::path const path(narrow);
    if (path.is_absolute()) return narrow;
    boost::system::error_code error;
    boost::filesystem::path const directory = boost::filesystem::current_path(error);
    if (error) return std::string();
    return boost::filesystem::absolute(path, directory).string();
}

}  // namespace

int GetFileNameStart(CQorStringT<wchar_t> const& path) {
    return std::max(path.ReverseFind(L'\\'), path.ReverseFind(L'/')) + 1;
}

int GetFileExtStart(CQorStringT<wchar_t> const& path) {
    int const dot = path.ReverseFind(L'.');
    return dot < 0 ? path.GetLength() : dot;
}

CQorStringT<wchar_t> ExtractFileNameWithExtFromPathName(CQorStringT<wchar_t> const& path) {
    return path.Mid(GetFileNameStart(path));
}

CQorStringT<wchar_t> ExtractFileNameExtFromPathName(CQorStringT<wchar_t> const& path) {
    return path.Right(path.GetLength() - 1 - GetFileExtStart(path));
}

CQorStringT<wchar_t> ExtractFileNameWithoutExtFromPathName(CQorStringT<wchar_t> const& path) {
    int const start = GetFileNameStart(path);
    int const end = GetFileExtStart(path);
    return start > end ? path.Mid(start) : path.Mid(start, end - start);
}

CQorStringT<wchar_t> ExtractPathNameWithoutExtFromPathName(CQorStringT<wchar_t> const& path) {
    return path.Left(GetFileExtStart(path));
}

CQorStringT<wchar_t> ExtractDirNameWithoutSlashFromPathName(CQorStringT<wchar_t> const& path) {
    return path.Left(GetFileNameStart(path) - 1);
}

CQorStringT<wchar_t> ExtractDirNameWithSlashFromPathName(CQorStringT<wchar_t> const& path) {
    return path.Left(GetFileNameStart(path));
}

CQorStringT<wchar_t> GetCanonicalFileName(CQorStringT<wchar_t> const& path) {
    CQorStringT<wchar_t> result(path);
    result.Replace(L'\\', L'/');
    return result;
}

CQorStringT<wchar_t> GetAbsoluteFileName(CQorStringT<wchar_t> const& path) {
    CQorStringT<char> const narrow(path.c_str());
    bool const isGiven = path.GetAt(0) != L'\0';
    if (isGiven && narrow.IsEmpty()) return {};
    return GetCanonicalFileName(FileFuncs::boost_paths::WidenWhole(MakeAbsolute(narrow.c_str())));
}

bool ExtractFileNameAndExtAndParentDirFromPathName(CQorStringT<wchar_t> const& path,
                                                   CQorStringT<wchar_t>& nameWithExt,
                                                   CQorStringT<wchar_t>& nameWithoutExt,
                                                   CQorStringT<wchar_t>& ext,
                                                   CQorStringT<wchar_t>& parentDirName,
                                                   CQorStringT<wchar_t>& parentPath) {
    CQorStringT<wchar_t> const directory = ExtractDirNameWithoutSlashFromPathName(path);
    CQorStringT<wchar_t> const name = ExtractFileNameWithExtFromPathName(path);
    CQorStringT<wchar_t> const stem = ExtractFileNameWithoutExtFromPathName(path);
    CQorStringT<wchar_t> const suffix = ExtractFileNameExtFromPathName(path);
    nameWithExt = name;
    nameWithoutExt = stem;
    ext = suffix;
    parentDirName = ExtractFileNameWithExtFromPathName(directory);
    parentPath = ExtractDirNameWithoutSlashFromPathName(directory);
    return !suffix.IsEmpty();
}

}  // namespace file_names
}  // namespace qor
