/// @file
/// Zero-terminated strings: integers to text in any radix, case folding and reversal in place.
///
/// The names that code ported from Windows expects of its runtime. Where a function differs from
/// its Windows namesake, its comment says so. None of them throws, holds state or sets errno.
#ifndef QORUTILS_TEXT_C_STRING_H_
#define QORUTILS_TEXT_C_STRING_H_

#include "qorutils/export.h"

/// @name Integer to text
/// The digits of `value` in `radix`, most significant first: '0' to '9', then 'a', 'b' and so on in
/// lower case. Only radix 10 has a minus sign; in any other one a negative value is shown as its
/// unsigned 32-bit pattern (-1 in radix 16 is "ffffffff").
///
/// A radix below 2 is refused.
/// On purpose: there is no upper limit to the radix; digits above 35 are the characters that follow
/// 'z' (digit + 87, cut down to the character type).
/// @{

/// Writes the text and its terminating zero to buf; returns true. Returns false and writes nothing
/// when the text, sign included, has more than `size` characters. With buf null, only says whether
/// it would succeed.
/// On purpose: `size` limits the characters without the terminator, so that size + 1 elements can
/// be written. Windows counts the terminator in.
QORUTILS_API bool itoa_s_impl(int value, char* buf, int size, int radix);
/// itoa_s_impl() for wide characters.
QORUTILS_API bool itow_s_impl(int value, wchar_t* buf, int size, int radix);

/// The same with room for any value: buf has 33 elements (32 binary digits and the terminator).
/// Returns buf, or null for a radix below 2.
QORUTILS_API char* _itoa(int value, char* buf, int radix);
/// _itoa for wide characters.
QORUTILS_API wchar_t* _itow(int value, wchar_t* buf, int radix);

/// itow_s_impl() (with its meaning of `size`) that returns 0 on success and -1 on failure, where
/// Windows returns an error number.
QORUTILS_API int _itow_s(int value, wchar_t* buf, int size, int radix);

/// @}
/// @name Case folding and reversal in place
/// @{

/// Folds each byte to lower case with the current locale's tolower. In a multibyte locale such as
/// UTF-8, only ASCII letters change. s must not be null.
/// On purpose: returns a pointer to the terminating zero of s, where Windows returns s.
QORUTILS_API char* strlwr(char* s);
/// strlwr to upper case, with toupper.
QORUTILS_API char* strupr(char* s);

/// Reverses the order of the bytes; returns s, which may be null. Multibyte characters come out as
/// reversed bytes, that is, invalid.
QORUTILS_API char* strrev(char* s);

/// Folds each character with the current locale's towlower; returns s, which may be null.
QORUTILS_API wchar_t* _wcslwr(wchar_t* s);
/// Folds each character with the current locale's towupper; returns s, which may be null.
QORUTILS_API wchar_t* _wcsupr(wchar_t* s);

/// Reverses the order of the characters; returns s, which must not be null (strrev takes null).
QORUTILS_API wchar_t* _wcsrev(wchar_t* s);

/// @}

#endif  // QORUTILS_TEXT_C_STRING_H_
