/// @file
/// Names that users type, digit masks, dates, the kind of value that a text is, and text made fit
/// for display or for 8-bit buffers.
///
/// Character classes are those of the process locale, except where ASCII is said. Texts that are
/// given as pointers end at their zero, and null counts as empty. Throws only std::bad_alloc.

#ifndef QORUTILS_FORMATS_NAMES_H_
#define QORUTILS_FORMATS_NAMES_H_

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace qor_formats {

/// @name Names
/// @{

/// Whether c is an ASCII letter, an ASCII digit or '_'.
QORUTILS_API bool IsAdmisibleCharacter(wchar_t c);

/// Whether name has 1 to 40 characters, all of them admissible.
QORUTILS_API bool IsValidName(qor_text::CQorStringT<wchar_t> const& name);

/// IsValidName(), which leaves name as it is.
/// On purpose: a suffix, a blank or a hyphen makes a file name invalid.
QORUTILS_API bool IsValidFilename(qor_text::CQorStringT<wchar_t>& name);

/// The first maxLength characters of name (all, if it has no more; none, if maxLength is negative),
/// with '_' for each tab, carriage return and line feed, and for each of
///
///     ! , ? % * @ # $ ^ & ' " \ / | ~ ; [ ] { } ( ) < > ` + =
///
/// On purpose: blanks, '.', '-' and letters of every alphabet stay, so that a corrected name need
/// not be a valid one.
QORUTILS_API qor_text::CQorStringT<wchar_t> MakeNameCorrect(
    qor_text::CQorStringT<wchar_t> const& name, int maxLength);

/// @}
/// @name Masks
/// @{

/// Whether c fits one character of a mask: '9' takes digits and letters, any other only itself.
/// On purpose: letters, so that a date with the letter O for a zero fits its mask and it is the
/// range checks that refuse it.
QORUTILS_API bool CheckChars(wchar_t c, wchar_t maskChar);

/// Whether text is as long as mask and fits it at every position. Empty fits empty.
QORUTILS_API bool CheckFormat(wchar_t const* text, wchar_t const* mask);

/// @}
/// @name Dates and kinds of value
/// @{

/// Whether the month and the day, which stand second and third in a text with '-' between its
/// items, are possible: 1 to 12 and 1 to 31, in February 1 to 29. Meant for a text that fits
/// "9999-99-99". The items are those of ParseDelimitersValues(), each read with wcstol: as far as
/// it is a number. False when there are fewer than three items.
/// On purpose: the year is not looked at, no common year is told from a leap year and no month of
/// 30 days from one of 31.
QORUTILS_API bool ValidateDateOnly(wchar_t const* text);

/// Whether text is a date that ValidateDateOnly() takes, blanks, and a time: an hour up to 24, a
/// minute and a second up to 59, with ':' between them. False when there is no time. What is
/// missing behind the hour, and an item that is empty or no number, counts as 0. On purpose:
/// 24:59:59 is a time, and so is one with negative items.
QORUTILS_API bool ValidateDateAndTime(wchar_t const* text);

/// The kind of value that text is:
///
///     0  other text
///     1  an integer: digits, maybe with white space around them and one '-' in front
///     2  a decimal number: the same with one ',' or '.', but with no white space behind it
///     3  empty: null, or nothing but white space
///     4  a date that fits "9999-99-99" and ValidateDateOnly
///     5  a date and time that fit "9999-99-99 99:99:99" and ValidateDateAndTime
///
///     getTextValType(L" -12 ");       // 1
///     getTextValType(L"-1,5");        // 2
///     getTextValType(L"2015-06-01");  // 4
///
/// On purpose: "-" alone is an integer; "12.", ".5" and "-." are decimal numbers, but "." is not;
/// "+5" is other text, and so is "1.5 ".
QORUTILS_API int getTextValType(wchar_t const* text);

/// @}
/// @name Display and 8-bit text
/// @{

/// text with every lone `&`, one without another beside it, doubled, so that a menu or a label
/// shows it instead of underlining what follows.
/// On purpose: the further `&` comes to stand at the index which the lone one has in text. From the
/// second on, that is too early by the number of those before it: `a&b&c` gives `a&&&b&c`.
QORUTILS_API qor_text::CQorStringT<wchar_t> DoubleAmpersandForDisplay(
    qor_text::CQorStringT<wchar_t> const& text);

/// Copies the low 8 bits of n characters, n being the smaller length, and writes a zero behind
/// them: dst has room for n + 1 bytes. Nothing is converted; a character above 255 becomes another
/// one. Characters are copied one after the other, so that dst may be src itself.
/// A null src or a negative srcLength counts as no characters; with a null dst or a negative
/// dstLength nothing is written.
QORUTILS_API void String2ASCII(wchar_t const* src, int srcLength, char* dst, int dstLength);

/// @}

}  // namespace qor_formats

#endif  // QORUTILS_FORMATS_NAMES_H_
