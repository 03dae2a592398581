#include "qorutils/text/case_folding.h"

#include <ctype.h>

namespace qor_text {

// What a mapping makes of the ASCII characters, remembered by each thread for the locale that it
// used last. Locales differ there, too: Turkish ones map I to a dotless i, and i to a dotted I.
struct AsciiTable {
    void const* locale;
    wchar_t mapped[CaseFolder::kAscii];

    // Where the runtime keeps the character tables of the thread's locale.
    static void const* CurrentLocale() { return *__ctype_tolower_loc(); }

    // A locale may have been loaded where another one was unloaded: those that differ do so at I.
    bool IsCurrent(CaseFolder::Mapping mapping) const {
        return locale == CurrentLocale() &&
               mapping(L'I') == static_cast<std::wint_t>(mapped[L'I']) &&
               mapping(L'i') == static_cast<std::wint_t>(mapped[L'i']);
    }

    void Fill(CaseFolder::Mapping mapping) {
        for (std::uint32_t c = 0; c < CaseFolder::kAscii; ++c)
            mapped[c] = static_cast<wchar_t>(mapping(c));
        locale = CurrentLocale();
    }
};

namespace {

thread_local AsciiTable ascii_tables[2];

}  // namespace

CaseFolder::CaseFolder(Case direction)
    : mapping_(direction == kLower ? std::towlower : std::towupper),
      ascii_(ascii_tables[direction].mapped) {
    AsciiTable& table = ascii_tables[direction];
    if (!table.IsCurrent(mapping_)) table.Fill(mapping_);
}

}  // namespace qor_text
