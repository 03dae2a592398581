// Private: wide paths for Boost.Filesystem, and what of it differs between its versions or throws.
//
// Boost is given narrow text and asked for narrow text only: its own conversion throws when the
// environment names a locale that is not installed.
//
// Inline, so that the sources of FileFuncs say Exists(path), while others name what they use.

#ifndef QORUTILS_FS_BOOST_PATHS_H_
#define QORUTILS_FS_BOOST_PATHS_H_

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/system/error_code.hpp>
#include <boost/version.hpp>
#include <string>

#include "qorutils/fs/file_names.h"
#include "qorutils/text/qor_string.h"

namespace FileFuncs {
inline namespace boost_paths {

using BoostPath = boost::filesystem::path;
using BoostError = boost::system::error_code;
using WideString = qor_text::CQorStringT<wchar_t>;

// The path as it stands; empty when the process locale cannot encode it.
inline BoostPath NarrowPath(WideString const& path) {
    return BoostPath(qor_text::CQorStringT<char>(path.c_str()).c_str());
}

// Whether the locale can encode the path. For what would take the empty path for something else
// than a path that names nothing.
inline bool CanBeNarrowed(WideString const& path) {
    return *path.c_str() == L'\0' || !NarrowPath(path).empty();
}

inline BoostPath CanonicalPath(WideString const& path) {
    return NarrowPath(qor::file_names::GetCanonicalFileName(path));
}

// Empty when the process locale cannot decode the whole text. Cut at what it cannot decode, a name
// would be that of another file.
inline WideString WidenWhole(std::string const& text) {
    WideString const wide(text.c_str());
    return NarrowPath(wide).native() == text ? wide : WideString();
}

inline BoostPath AbsolutePath(WideString const& path) {
    return NarrowPath(qor::file_names::GetAbsoluteFileName(path));
}

// The canonical path made absolute against base, and this against the working directory. Boost
// throws when there is no working directory; the path is then empty, should it need one.
// An absolute path needs the base's root name only, as in "//host", which is rarely there.
inline BoostPath AbsolutePath(WideString const& path, BoostPath const& base) {
    BoostPath canonical = CanonicalPath(path);
    if (canonical.is_absolute() && !base.has_root_name()) return canonical;
    if (base.is_absolute()) return boost::filesystem::absolute(canonical, base);
    BoostError error;
    BoostPath const directory = boost::filesystem::current_path(error);
    if (error) return BoostPath();
    return boost::filesystem::absolute(canonical, boost::filesystem::absolute(base, directory));
}

// Follows links. status_error or file_not_found also for what may not be asked for.
inline boost::filesystem::file_type TypeOf(BoostPath const& path) {
    BoostError error;
    return boost::filesystem::status(path, error).type();
}

inline bool Exists(BoostPath const& path) {
    return TypeOf(path) > boost::filesystem::file_not_found;
}

inline bool IsRegularFile(BoostPath const& path) {
    return TypeOf(path) == boost::filesystem::regular_file;
}

inline bool IsDirectory(BoostPath const& path) {
    return TypeOf(path) == boost::filesystem::directory_file;
}

inline void CopyFile(BoostPath const& from, BoostPath const& to, bool overwrite,
                     BoostError& error) {
#if BOOST_VERSION >= 107400
    using Option = boost::filesystem::copy_options;
    Option const option = overwrite ? Option::overwrite_existing : Option::none;
#else
    using Option = boost::filesystem::copy_option;
    auto const option = overwrite ? Option::overwrite_if_exists : Option::fail_if_exists;
#endif
    boost::filesystem::copy_file(from, to, option, error);
}

}  // namespace boost_paths
}  // namespace FileFuncs

#endif  // QORUTILS_FS_BOOST_PATHS_H_
