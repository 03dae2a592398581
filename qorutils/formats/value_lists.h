/// @file
/// Lists of values in one text: split into arrays, joined again and searched.
/// Throws only std::bad_alloc; what has been appended until then stays.

#ifndef QORUTILS_FORMATS_VALUE_LISTS_H_
#define QORUTILS_FORMATS_VALUE_LISTS_H_

#include "qorutils/export.h"
#include "qorutils/formats/qor_array.h"
#include "qorutils/text/qor_string.h"

namespace qor_formats {

/// An array of wide strings.
using StringArray =
    qor_templ::CQorArray<qor_text::CQorStringT<wchar_t>, qor_text::CQorStringT<wchar_t> const&>;
/// An array of unsigned numbers.
using UIntArray = qor_templ::CQorArray<unsigned int, unsigned int const&>;

/// Appends the items of text, which stand between separators, to out: each without white space
/// around it and without any `\r` and `\n`. Returns false at the first item that holds a character
/// of forbidden; those before it stay appended.
///
///     ParseValues(L"a; b ;c", out, ';', L"#");  // appends "a", "b", "c"
///
/// An empty text is one empty item. Two separators in a row make an empty item, one at the end
/// makes none. The separator counts as an unsigned character (0 to 255) on every machine. Neither
/// it nor what is forbidden is searched for beyond a zero in text. The texts may be elements of
/// out.
/// On purpose: with a separator at its very start, the whole text is one item.
QORUTILS_API bool ParseValues(qor_text::CQorStringT<wchar_t> const& text, StringArray& out,
                              char separator, qor_text::CQorStringT<wchar_t> const& forbidden);

/// Appends the items of text, which stand between single characters of delimiters, to out, each
/// without white space around it and without any `\r` and `\n`. Returns true.
/// An empty text is one empty item, a delimiter at the end makes none. Delimiters are not searched
/// for beyond a zero in text. The texts may be elements of out.
/// On purpose: a delimiter right where an item should start ends the splitting, and the rest is one
/// item with it: `a--b` at `-` gives `a` and `-b`, `-5` gives `-5`.
QORUTILS_API bool ParseDelimitersValues(qor_text::CQorStringT<wchar_t> const& text,
                                        StringArray& out,
                                        qor_text::CQorStringT<wchar_t> const& delimiters);

/// The items with one separator between each two.
QORUTILS_API qor_text::CQorStringT<wchar_t> StringArrayToString(StringArray const& array,
                                                                wchar_t separator);

/// Whether an item equals s, case included, both up to their first zero.
QORUTILS_API bool IsStringInStringArray(StringArray const& array,
                                        qor_text::CQorStringT<wchar_t> const& s);

/// Whether an item equals v taken as unsigned.
QORUTILS_API bool IsUIntInUIntArray(UIntArray const& array, int v);

}  // namespace qor_formats

#endif  // QORUTILS_FORMATS_VALUE_LISTS_H_
