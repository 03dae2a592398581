// dirinfo FOLDER [PATTERN]: lists a folder as a find-first, find-next loop does, with the sizes and
// dates of what it finds and a total; then copies the folder with all that is in it to a temporary
// one, counts what has arrived, and removes the copy again.
//
// The exit status is 1 for a folder that cannot be listed or copied, and 2 without arguments.

#include <qorutils/fs/dir_trees.h>
#include <qorutils/fs/file_enumerator.h>
#include <qorutils/fs/file_funcs.h>
#include <qorutils/fs/file_names.h>
#include <qorutils/logging/trace.h>
#include <qorutils/qorsys/file_time.h>

#include <unistd.h>

#include <clocale>
#include <cstdio>

#include "console.h"

namespace {

using Text = qor_text::CQorStringT<wchar_t>;
using base::TFileEnumerator;
using qor_logging::QOR_TRACE_ALWAYS;

// GetLastModifiedTime gives what ported callers expect, which is no date; the record has it.
Text ModificationDate(base::_TFindInfo const& info) {
    _FILETIME ticks;
    base::to_FILETIME(info.stat.st_mtime, ticks);
    Text date;
    Text time;
    qor::file_time::ConvertAndFormatFileTime(ticks, &date, &time);
    return date + L" " + time;
}

void PrintEntry(base::_TFindInfo const& info) {
    qor_text::CQorStringT<char> const date = ToUtf8(ModificationDate(info));
    qor_text::CQorStringT<char> const name = ToUtf8(TFileEnumerator::GetFilename(info));
    if (TFileEnumerator::IsDirectory(info))
        std::printf("%s  %12s  %s\n", date.c_str(), "<folder>", name.c_str());
    else
        std::printf("%s  %12lld  %s\n", date.c_str(), TFileEnumerator::GetFilesize(info),
                    name.c_str());
}

void List(Text const& folder, Text const& pattern) {
    int files = 0;
    int folders = 0;
    long long bytes = 0;
    TFileEnumerator entries(
        folder, false, base::kEnumFiles | base::kEnumDirectories | base::kEnumAllTypes, pattern);
    while (!entries.Next().IsEmpty()) {
        base::_TFindInfo info;
        entries.GetFindInfo(&info);
        PrintEntry(info);
        ++(TFileEnumerator::IsDirectory(info) ? folders : files);
        if (!TFileEnumerator::IsDirectory(info)) bytes += TFileEnumerator::GetFilesize(info);
    }
    std::printf("%d files with %lld bytes, %d folders\n", files, bytes, folders);
    // Without the name: on a terminal, a '%' in a log line is taken for a conversion.
    QOR_TRACE_ALWAYS("%d files and %d folders listed", files, folders);
}

// CopyDirectory looks for the folders that it meets a second time in the working directory, so that
// has to be one without any.
bool CopyAndRemove(Text const& folder) {
    Text workplace = FileFuncs::GetUniqueTempDir();
    workplace.TrimRight(L'\\');
    if (chdir(qor_text::CQorStringT<char>(workplace)) != 0) return false;

    Text copy = FileFuncs::GetUniqueTempDir();
    copy.TrimRight(L'\\');
    bool const isCopied = FileFuncs::CopyDirectory(folder, copy, true, false);
    std::printf("copied to %s: %u of %u entries\n", ToUtf8(copy).c_str(),
                FileFuncs::CountFiles(copy), FileFuncs::CountFiles(folder));
    bool const isRemoved =
        FileFuncs::RemoveDirectoryTree(copy) && FileFuncs::RemoveDirectoryTree(workplace);
    std::printf("%s\n", isRemoved ? "and removed again" : "but not removed");
    QOR_TRACE_ALWAYS("copied: %s, removed: %s", isCopied ? "yes" : "no", isRemoved ? "yes" : "no");
    return isCopied && isRemoved;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fputs("usage: dirinfo FOLDER [PATTERN]\n", stderr);
        return 2;
    }
    // Paths are narrowed, and names widened, as the locale says.
    if (std::setlocale(LC_ALL, "") == nullptr) std::setlocale(LC_ALL, "C.UTF-8");

    Text const folder = qor::file_names::GetAbsoluteFileName(argv[1]);
    if (!FileFuncs::IsDirExist(folder)) {
        std::fprintf(stderr, "dirinfo: %s: no such folder\n", argv[1]);
        return 1;
    }
    List(folder, argc == 3 ? argv[2] : "");
    if (CopyAndRemove(folder)) return 0;
    std::fprintf(stderr, "dirinfo: %s: could not be copied and removed\n", argv[1]);
    return 1;
}
