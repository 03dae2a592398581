// Private: what is in a directory, read into records, and the selection by name.

#ifndef QORUTILS_FS_DIRECTORY_ENTRIES_H_
#define QORUTILS_FS_DIRECTORY_ENTRIES_H_

#include <dirent.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string>

#include "qorutils/fs/entry_status.h"
#include "qorutils/fs/file_enumerator.h"
#include "qorutils/fs/file_names.h"
#include "qorutils/fs/wildcard_match.h"
#include "qorutils/logging/checks.h"

namespace base {

inline void CheckEnumeration(bool holds, int line) {
    if (!holds) qor_logging::qor_err_log("qorutils/fs/platform_file", line, "");
}

// Such text is the same narrow and wide, whatever the locale.
inline bool IsAscii(char const* text, std::size_t length) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::uint64_t bits = 0;
    std::uint64_t word;
    for (; length >= sizeof word; length -= sizeof word, text += sizeof word) {
        std::memcpy(&word, text, sizeof word);
        bits |= word;
    }
    word = 0;
    std::memcpy(&word, text, length);
    return ((bits | word) & kHighBits) == 0;
}

inline bool CanBeWidened(char const* text, std::size_t length) {
    std::mbstate_t state{};
    return IsAscii(text, length) ||
           std::mbsrtowcs(nullptr, &text, 0, &state) != static_cast<std::size_t>(-1);
}

// ---- Selection by name ----

struct NameFilter {
    char const* pattern;  // null: any name; empty, as one that cannot be encoded: none
    bool includesDotDot;

    // Of the name at the end of path.
    bool Skips(char const* path) const {
        using qor::file_names::ExtractFileNameWithExtFromPathName;
        if (IsAscii(path, std::strlen(path))) return SkipsName(BareName(path));
        // In some locales the last byte of a character looks like a separator.
        qor_text::CQorStringT<wchar_t> const name = ExtractFileNameWithExtFromPathName(path);
        return SkipsName(qor_text::CQorStringT<char>(name.c_str()).c_str());
    }

  private:
    static char const* BareName(char const* path) {
        char const* name = path;
        for (; *path != '\0'; ++path)
            if (*path == '/' || *path == '\\') name = path + 1;
        return name;
    }

    bool SkipsName(char const* name) const {
        if (pattern != nullptr && (*pattern == '\0' || !MatchesWildcard(name, pattern)))
            return true;
        if (std::strcmp(name, "..") == 0) return !includesDotDot;
        return std::strcmp(name, ".") == 0;
    }
};

// ---- Reading ----

class Directory {
  public:
    explicit Directory(char const* path) : stream_(opendir(path)) {}
    ~Directory() {
        if (stream_ != nullptr) closedir(stream_);
    }
    Directory(Directory const&) = delete;
    Directory& operator=(Directory const&) = delete;

    bool IsOpen() const { return stream_ != nullptr; }
    int Descriptor() const { return dirfd(stream_); }

    // Null at the end. readdir64, as on some file systems a 32-bit readdir fails at the first
    // entry.
    char const* NextName() {
        dirent64 const* const entry = readdir64(stream_);
        return entry == nullptr ? nullptr : entry->d_name;
    }

  private:
    DIR* stream_;
};

// The names in a directory, each with its terminator. They are counted before any status is asked
// for, so that the records, which are large, are allocated once.
struct Names {
    std::string text;
    std::size_t count = 0;

    // A path too long for the system has no status, though its name in the open directory has.
    Names(Directory& directory, std::size_t pathLength) {
        while (char const* const name = directory.NextName()) {
            std::size_t const length = std::strlen(name);
            if (pathLength + 1 + length >= PATH_MAX || !CanBeWidened(name, length)) continue;
            text.append(name, length + 1);
            ++count;
        }
    }
};

inline void StoreName(char const* name, std::size_t length, _TFindInfo& entry) {
    CheckEnumeration(length < sizeof entry.filename, __LINE__);
    std::strncpy(entry.filename, name, sizeof entry.filename - 1);
    entry.filename[sizeof entry.filename - 1] = '\0';
}

inline bool IsKeptWithoutAllTypes(_TFindInfo const& entry) {
    return (entry.stat.st_mode & (0x8000 | 0x2000)) == 0;
}

// Replaces entries by those in the directory that are wanted. wants is asked about whole records.
template <typename Wants>
void ReadEntries(qor_vector<_TFindInfo>& entries, qor_text::CQorStringT<char> const& path,
                 bool allTypes, Wants wants) {
    entries.clear();
    Directory directory(path.c_str());
    if (!directory.IsOpen()) return;

    Names const names(directory, static_cast<std::size_t>(path.GetLength()));
    entries.reserve(names.count);
    std::size_t length;
    for (std::size_t start = 0; start < names.text.size(); start += length + 1) {
        char const* const name = names.text.c_str() + start;
        length = std::strlen(name);
        entries.emplace_back();
        _TFindInfo& entry = entries.back();
        bool isWanted = EntryStatus32(directory.Descriptor(), name, &entry.stat) == 0 &&
                        (allTypes || IsKeptWithoutAllTypes(entry));
        if (isWanted) {
            StoreName(name, length, entry);
            isWanted = wants(entry);
        }
        if (!isWanted) entries.pop_back();
    }
}

}  // namespace base

#endif  // QORUTILS_FS_DIRECTORY_ENTRIES_H_
