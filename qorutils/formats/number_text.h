/// @file
/// Numbers to text and back.
///
/// Formatting and parsing follow the process locale, its decimal point included. Nothing here keeps
/// state; all throw std::bad_alloc only. A number beyond the range of its type is read alike on
/// every machine, as a 32-bit C library reads it.

#ifndef QORUTILS_FORMATS_NUMBER_TEXT_H_
#define QORUTILS_FORMATS_NUMBER_TEXT_H_

#include "qorutils/export.h"
#include "qorutils/text/qor_string.h"

namespace qor_formats {

/// @name Numbers to text
/// @{

/// In decimal digits, with '-' in front of a negative number.
QORUTILS_API qor_text::CQorStringT<wchar_t> IntToString(int value);
/// In decimal digits.
QORUTILS_API qor_text::CQorStringT<wchar_t> UIntToString(unsigned int value);

/// On purpose: the low 32 bits of value as a signed number, right-aligned with blanks in a field of
/// 64 characters, in the digits of the locale. The format behind it is "%I64d", which the C library
/// reads so; ported code knows the result.
QORUTILS_API qor_text::CQorStringT<wchar_t> Int64ToString(long long value);

/// Rounded to twelve decimals, without trailing zeros, and without the point if nothing follows it:
/// "1.5", "2", "0.3". What rounds to zero from below gives "-0". Also "inf", "-inf", "nan", "-nan".
/// On purpose: only '.' is removed; a locale's other decimal point stays, as in "2,".
QORUTILS_API qor_text::CQorStringT<wchar_t> DoubleToString(double value);

/// With exactly `precision` decimals; empty when the text would have 2048 characters or more.
/// 0 decimals: half is rounded away from zero. Above 16: the digits of the stored value. A negative
/// precision: six decimals.
/// On purpose: with 1 to 16, the number is first rounded by qor::math::round_prec(). So NaN gives
/// zero and infinities give "nan", and with many decimals the step away from zero shows: 0.5 with
/// 16 is "0.5000000000000001".
QORUTILS_API qor_text::CQorStringT<wchar_t> DoubleToString(double value, int precision);

/// @}
/// @name Text to numbers
/// They return 1; or 0, with the result set to 0, if no number begins the text. White space before
/// the number is skipped, what follows it is ignored. Null counts as empty.
/// @{

/// Rounded to twelve decimals. The first ',' counts as '.', whatever the locale; so "3,14" is 3.14,
/// and "1,234,5" is 1.234. Also "1e3", "0x1p3", "inf" and "nan".
/// On purpose: from 1.8e296 on, where rounding overflows, the result is an infinity.
QORUTILS_API int StringToDouble(qor_text::CQorStringT<wchar_t> const& text, double& value);

/// A decimal number with an optional sign. Above or below the range: the largest or lowest value.
QORUTILS_API int StringToInt(wchar_t const* text, int& value);
/// As StringToInt: long counts as having 32 bits on every machine.
QORUTILS_API int StringToLong(wchar_t const* text, long& value);

/// A decimal number with an optional sign. A negative number is taken modulo 2^32; one whose
/// magnitude exceeds 4294967295 gives 4294967295.
QORUTILS_API int StringToUint(wchar_t const* text, unsigned int& value);

/// The low 16 bits of what StringToInt() reads: 65537 gives 1, and 9999999999 gives -1.
QORUTILS_API int StringToShort(wchar_t const* text, short& value);

/// On purpose: only the low 32 bits of value are set, to what StringToInt() reads; the high ones
/// stay as they were. On failure all are 0. The number has at most 64 characters, the sign among
/// them, and may be written in the digits of the locale.
QORUTILS_API int StringToInt64(wchar_t const* text, long long& value);

/// @}
/// @name Text
/// @{

/// A copy of text with every ',' made '.'.
QORUTILS_API qor_text::CQorStringT<wchar_t> ReplaceCommasWithDecPt(
    qor_text::CQorStringT<wchar_t> const& text);

/// Adds increment to the decimal number at the end of text, 0 if there is none; any number of
/// digits up to 255, leading zeros not counted. Nonzero on success. Returns 0 and leaves text as it
/// is for an increment of 0, a negative sum, and a number that is too long.
/// Leading zeros stay; one of them gives way when the number gets longer: "P0099" plus 1 is
/// "P0100".
/// On purpose: one at most: "P000" plus 100 is "P00100".
QORUTILS_API int DoIncPtno(qor_text::CQorStringT<wchar_t>& text, int increment);

/// @}

}  // namespace qor_formats

#endif  // QORUTILS_FORMATS_NUMBER_TEXT_H_
