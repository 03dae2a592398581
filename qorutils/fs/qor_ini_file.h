/// @file
/// Settings in three parts (section, key, value), and the INI files that keep them.
///
///     qor_settings::CThreeTupleStore store;
///     qor::text_utils::EQorTextEncoding encoding;
///     if (!qor_settings::readSettingsAsIni(L"/etc/device.ini", store, encoding)) return;
///     auto& port = store[L"Port"];
///     port.name = L"Port";
///     port.values[L"Speed"] = L"9600";
///     qor_settings::writeSettingsAsIni(L"/etc/device.ini", store, encoding);
///
/// Unlike the profile functions of Windows, names are case-sensitive, blanks around names and
/// values belong to them, and a file is read and written as a whole.
///
/// Both functions may be called from any thread; a store belongs to one thread at a time. They
/// throw std::bad_alloc, and nothing else; file and memory are given back then, too. A read that
/// ends so leaves a part of the settings in the store, a write a part of them in the file.

#ifndef QORUTILS_FS_QOR_INI_FILE_H_
#define QORUTILS_FS_QOR_INI_FILE_H_

#include <functional>
#include <map>
#include <utility>

#include "qorutils/export.h"
#include "qorutils/text/qor_memory.h"
#include "qorutils/text/qor_string.h"
#include "qorutils/text/text_encoding.h"

namespace qor_settings {

namespace detail {

/// A map in the order of the names' codes.
template <typename Value>
using MapByName =
    std::map<qor_text::CQorStringT<wchar_t>, Value, std::less<qor_text::CQorStringT<wchar_t>>,
             qor_mem::qor_dl_allocator<std::pair<qor_text::CQorStringT<wchar_t> const, Value>>>;

/// One section of a CThreeTupleStore.
struct IniSection {
    MapByName<qor_text::CQorStringT<wchar_t>> values;  ///< by key
    qor_text::CQorStringT<wchar_t> name;               ///< what is written as "[name]"
};

}  // namespace detail

/// The sections by name, in the order of the names' codes; each holds its values by key, in the
/// same order. Names and keys end at their first zero character. The section "" holds what stands
/// outside any section.
///
/// On purpose: a section's field `name`, not its place in the store, is the name that is written.
/// The reader sets both alike; who adds a section sets the field as well.
class CThreeTupleStore : public detail::MapByName<detail::IniSection> {
  public:
    /// What the store holds for each section: its values and its name.
    using TQorIniSection = detail::IniSection;
};

/// Replaces what the store holds by the settings in the file, and sets `encoding` to the encoding
/// that was detected (see detect_text_encoding()); a byte-order mark is passed over.
///
/// Lines end at any run of carriage returns and line feeds, and the text ends at a line that begins
/// with a zero character. The first character of a line tells what it is:
///
///     [             "[name]": what follows belongs to this section. Blanks behind the ']' are
///                   dropped, those inside the brackets kept. A section without keys is not stored.
///     letter, digit "key=value", divided at the first '='. Blanks are kept on both sides; the
///                   value may be empty. The last value of a key counts.
///     # ; /         a comment
///     blank, tab    with nothing but white space behind: what follows belongs to the section "".
///
/// On purpose: so a line of blanks ends a section, while an empty one is passed over.
/// On purpose: a letter with a code up to 255 is one that isalpha counts as such, above that one
/// that iswalpha does: in a UTF-8 locale a key may begin with a Greek letter, not with U+00E9.
///
/// 8-bit text is decoded as the process locale says. Of a line that it cannot decode whole, or that
/// contains a zero character, what stands before that counts; if that is nothing, what follows
/// belongs to the section "".
/// On purpose: wide text (eTextEncodingUtf16LE) is read in units of 32 bits, as
/// writeSettingsAsIni() writes it; UTF-16 comes out garbled.
///
/// Returns false, with store and encoding untouched, when there is no such file, or it is empty, or
/// has 2 GiB and more, or may not be both read and written. Returns false, with encoding untouched
/// and the settings above the line kept, at the first line that is
///   - indented text, reported as a failed check at line 214,
///   - a section without ']' at its end or without a name (line 223),
///   - a key without '=' (line 237),
///   - of any other kind (line 245).
///
/// On purpose: a file that can be opened but is empty or too large keeps its descriptor open.
/// The file is mapped, not copied: it may change while it is read, but must not be cut short.
QORUTILS_API bool readSettingsAsIni(wchar_t const* path, CThreeTupleStore& store,
                                    qor::text_utils::EQorTextEncoding& encoding);

/// Writes all settings, in the order of the store, to a file that is created or emptied first: for
/// every section "[name]", its lines "key=value", and an empty line, all ended by CR LF. Nothing is
/// escaped, and there is no byte-order mark. On return, all has been handed to the system.
///
/// With eTextEncodingUtf16LE the text is wide, on purpose in units of 32 bits; such a file is
/// recognised again when the first section's name begins with a character below 256. With every
/// other encoding it is 8-bit text in the encoding of the process locale: a name, key or value ends
/// at its first zero character, and one that the locale cannot encode whole is written as empty.
///
/// Returns false when the file cannot be created, as for every path that contains "..", or when the
/// system takes no bytes without calling it an error.
/// On purpose: true when writing fails, as on a full disk.
/// On purpose: the section "" is written as "[]", which readSettingsAsIni() refuses.
QORUTILS_API bool writeSettingsAsIni(wchar_t const* path, CThreeTupleStore const& store,
                                     qor::text_utils::EQorTextEncoding encoding);

}  // namespace qor_settings

#endif  // QORUTILS_FS_QOR_INI_FILE_H_
