// settings_tour FILE: a tour of the settings store with an INI file of yours.
//
// Prints the file section by section, changes its first value, writes the settings as 8-bit and as
// wide text to a temporary folder, and reads both back: they are the same. The file itself is only
// read. Of a malformed file it says which line is wrong, and why; the exit status is 1 then, and 2
// without an argument.

#include <qorutils/fs/dir_trees.h>
#include <qorutils/fs/file_funcs.h>
#include <qorutils/fs/qor_ini_file.h>
#include <qorutils/logging/trace.h>

#include <algorithm>
#include <cctype>
#include <clocale>
#include <cstdio>
#include <cwctype>
#include <fstream>
#include <string>

#include "console.h"

namespace {

using Text = qor_text::CQorStringT<wchar_t>;
using Store = qor_settings::CThreeTupleStore;
using qor_logging::QOR_TRACE_ALWAYS;

// Comparing two stores compares their sections, too.
bool SameTuples(Store const& one, Store const& other) {
    auto const sameSection = [](Store::value_type const& a, Store::value_type const& b) {
        return a.first == b.first && a.second.values == b.second.values;
    };
    return one.size() == other.size() &&
           std::equal(one.begin(), one.end(), other.begin(), sameSection);
}

void Print(Store const& store) {
    for (auto const& section : store) {
        std::printf("[%s]\n", ToUtf8(section.first).c_str());
        for (auto const& entry : section.second.values)
            std::printf("    %s = %s\n", ToUtf8(entry.first).c_str(), ToUtf8(entry.second).c_str());
    }
}

void ChangeFirstValue(Store& store) {
    for (auto& section : store) {
        if (section.second.values.empty()) continue;
        auto& entry = *section.second.values.begin();
        Text const before = entry.second;
        entry.second += L" (changed)";
        std::printf("\n%s / %s: \"%s\" becomes \"%s\"\n", ToUtf8(section.first).c_str(),
                    ToUtf8(entry.first).c_str(), ToUtf8(before).c_str(),
                    ToUtf8(entry.second).c_str());
        return;
    }
}

// False, with a word to the user, when what was written is not what is read.
bool WriteAndReadBack(Store const& store, Text const& path,
                      qor::text_utils::EQorTextEncoding encoding) {
    Store copy;
    qor::text_utils::EQorTextEncoding detected;
    bool const isWritten = qor_settings::writeSettingsAsIni(path, store, encoding);
    bool const isSame = isWritten && qor_settings::readSettingsAsIni(path, copy, detected) &&
                        detected == encoding && SameTuples(store, copy);
    long long size = 0;
    FileFuncs::GetFileLength(path, size);
    char const* const kind = encoding == qor::text_utils::eTextEncodingUtf16LE ? "wide" : "8-bit";
    std::printf("written as %-5s text: %lld bytes, read back: %s\n", kind, size,
                isSame ? "the same settings" : "NOT the same settings");
    QOR_TRACE_ALWAYS("%s text: %lld bytes, %s", kind, size, isSame ? "the same" : "different");
    FileFuncs::DelFile(path, false);
    return isSame;
}

// Every rule concerns one line for itself. Null when there is nothing wrong with it.
char const* WhatIsWrong(Text const& line) {
    Text trimmed(line);
    trimmed.Trim();
    if (line.IsEmpty() || trimmed.IsEmpty()) return nullptr;

    wchar_t const first = line[0];
    if (first == L' ' || first == L'\t') return "the line is indented";
    if (first == L'#' || first == L';' || first == L'/') return nullptr;
    if (first == L'[') {
        if (trimmed[trimmed.GetLength() - 1] != L']') return "there is no ] at the end";
        return trimmed.GetLength() == 2 ? "the section has no name" : nullptr;
    }
    bool const isLetter = first < 256 ? std::isalpha(first) != 0 : std::iswalpha(first) != 0;
    if (!isLetter && (first < L'0' || first > L'9')) return "a key begins with a letter or a digit";
    return line.Find(L'=') < 0 ? "there is no = behind the key" : nullptr;
}

// The library reads or refuses a file as a whole; which line it was, the format's rules tell.
int ExplainRefusal(char const* path) {
    std::ifstream file(path);
    if (!file) {
        std::fprintf(stderr, "settings_tour: %s: cannot be opened\n", path);
        return 1;
    }
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        char const* const wrong = WhatIsWrong(line.c_str());
        if (wrong == nullptr) continue;
        std::fprintf(stderr, "settings_tour: %s:%d: %s\n", path, number, wrong);
        return 1;
    }
    std::fprintf(stderr, "settings_tour: %s: empty, or not open for reading and writing\n", path);
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: settings_tour FILE\n", stderr);
        return 2;
    }
    // 8-bit settings are text in the locale's encoding.
    if (std::setlocale(LC_ALL, "") == nullptr) std::setlocale(LC_ALL, "C.UTF-8");

    Text const path(argv[1]);
    Store store;
    qor::text_utils::EQorTextEncoding encoding;
    if (!qor_settings::readSettingsAsIni(path, store, encoding)) return ExplainRefusal(argv[1]);
    // Without the name: on a terminal, a '%' in a log line is taken for a conversion.
    QOR_TRACE_ALWAYS("%u sections read", static_cast<unsigned int>(store.size()));

    Print(store);
    ChangeFirstValue(store);

    // Its name ends in a backslash, which is no separator to the system.
    Text folder = FileFuncs::GetUniqueTempDir();
    folder.TrimRight(L'\\');
    bool const isNarrow =
        WriteAndReadBack(store, folder + L"/narrow.ini", qor::text_utils::eTextEncodingAnsi);
    bool const isWide =
        WriteAndReadBack(store, folder + L"/wide.ini", qor::text_utils::eTextEncodingUtf16LE);
    FileFuncs::RemoveDirectoryTree(folder);
    return isNarrow && isWide ? 0 : 1;
}
