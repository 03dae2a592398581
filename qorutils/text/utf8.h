/// @file
/// UTF-8 to and from wide characters (UTF-32), the same in every locale.
///
/// These take the shape of the runtime's conversion functions, but always speak UTF-8 and never
/// look at the locale. Exactly the UTF-8 of RFC 3629 is accepted and produced: no surrogates, no
/// overlong forms, nothing above U+10FFFF. On any error they return -1, as unsigned int where they
/// return one, with errno set to EILSEQ; otherwise errno is left alone. They do not throw, and are
/// safe to call from several threads.
///
/// A destination receives what has been converted and, where stated, a terminating zero; whatever
/// stands behind that is left alone, on errors too.
///
/// A source that is not terminated is fine as long as n ends the conversion first. The string
/// functions may look ahead of what they convert, by no more than n characters (when they only
/// count, without that limit), but never past the terminator and never into a page of memory that
/// holds no part of what they convert.

#ifndef QORUTILS_TEXT_UTF8_H_
#define QORUTILS_TEXT_UTF8_H_

#include <wchar.h>

#include "qorutils/export.h"

/// Encodes wc into s, which has room for 4 bytes, and returns the number of bytes written: 1 to 4
/// (1 for the zero character). With s null, writes nothing and returns 1. Fails, writing nothing,
/// for surrogates (0xD800 to 0xDFFF) and above 0x10FFFF. st is ignored.
///
///     do_wcrtomb(buf, 0x20AC, nullptr);  // 3, buf holds E2 82 AC
QORUTILS_API unsigned int do_wcrtomb(char* s, wchar_t wc, __mbstate_t* st);

/// Encodes the zero-terminated string `*src` into at most n bytes at dst and returns the number of
/// bytes written, without the terminator. A character is written whole or not at all.
///
/// - The terminator was reached and there is room for it: it is written, `*src` becomes null.
/// - Otherwise the room ran out: nothing is terminated, and `*src` stands at the first character
///   that was not converted, which may be the terminator.
/// - A character cannot be encoded: -1, with `*src` at that character.
///
/// With dst null, returns the number of bytes that the whole string needs, without the terminator;
/// n is ignored and `*src` stays. st is ignored.
QORUTILS_API unsigned int do_wcsrtombs(char* dst, wchar_t const** src, unsigned int n,
                                       __mbstate_t* st);

/// do_wcsrtombs() for callers who need not know where it stopped.
///
///     unsigned int const size = do_wcstombs(nullptr, L"a\u00E9\u20AC", 0);  // 6
QORUTILS_API unsigned int do_wcstombs(char* dst, wchar_t const* src, unsigned int n);

/// Decodes the character at s, of which n bytes may be read, into `*pwc`. Returns the number of
/// bytes it takes: 1 to 4, or 0 for the zero character (which is stored). pwc may be null. With s
/// null, does nothing and returns 0. Fails, storing nothing, when n is 0, for an invalid sequence,
/// and for one that n cuts off (where the runtime's mbrtowc would ask for more bytes).
QORUTILS_API int do_mbtowc(wchar_t* pwc, char const* s, unsigned int n);

/// Decodes the zero-terminated string `*src` into at most n characters at dst and returns the
/// number of characters written, without the terminator.
///
/// - The terminator was reached and there is room for it: it is written, `*src` becomes null.
/// - Otherwise n characters are written: nothing is terminated, and `*src` stands at the first byte
///   that was not converted, which may be the terminator.
/// - An invalid sequence: -1, with `*src` at its first byte. One that the terminator cuts off is
///   invalid.
///
/// With dst null, returns the number of characters in the whole string, without the terminator; n
/// is ignored, `*src` and `*st` stay.
///
/// st is null, or holds zeros, or holds a character of which some bytes were seen before this
/// string; decoding first completes that one and then clears `*st`. When the string does not
/// complete it, or when no character leaves such a state: -1, with `*src` where it was and `*st`
/// cleared, so that decoding can go on at `*src`. With n 0 there is no room to complete it: 0, and
/// both stay. The functions here never leave such a state themselves; a caller who reads text in
/// pieces sets it up. It is kept in st->__count, as unsigned:
///
///     bits 31-30   number of bytes still missing, 1 to 3
///     bits 29-28   number of bytes of the whole sequence, less 1
///     bits 20-0    the payload bits of the bytes seen, the latest lowest
///
/// so the first two bytes, E2 82, of a euro sign are 1u << 30 | 2u << 28 | 0x2 << 6 | 0x02.
QORUTILS_API unsigned int do_mbsrtowcs(wchar_t* dst, char const** src, unsigned int n,
                                       __mbstate_t* st);

/// do_mbsrtowcs() for callers who need not know where it stopped.
QORUTILS_API unsigned int do_mbstowcs(wchar_t* dst, char const* src, unsigned int n);

#endif  // QORUTILS_TEXT_UTF8_H_
