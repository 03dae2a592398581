// Private: the runtime's text routines under one name for both character types.
// Texts are zero-terminated where no length is given.

#ifndef QORUTILS_TEXT_STRING_ROUTINES_H_
#define QORUTILS_TEXT_STRING_ROUTINES_H_

#include <strings.h>

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <type_traits>

#include "qorutils/text/c_string.h"
#include "qorutils/text/text_search.h"
#include "qorutils/text/wide_format.h"

namespace qor_text {

inline void Copy(char* to, char const* from, int n) {
    if (n > 0) std::memcpy(to, from, static_cast<std::size_t>(n));
}
inline void Copy(wchar_t* to, wchar_t const* from, int n) {
    if (n > 0) std::wmemcpy(to, from, static_cast<std::size_t>(n));
}

// As Copy, for ranges that may overlap.
inline void Move(char* to, char const* from, int n) {
    if (n > 0) std::memmove(to, from, static_cast<std::size_t>(n));
}
inline void Move(wchar_t* to, wchar_t const* from, int n) {
    if (n > 0) std::wmemmove(to, from, static_cast<std::size_t>(n));
}

inline void Fill(char* to, char ch, int n) {
    std::memset(to, ch, static_cast<std::size_t>(n));
}
inline void Fill(wchar_t* to, wchar_t ch, int n) {
    std::wmemset(to, ch, static_cast<std::size_t>(n));
}

inline int BoundedLength(char const* s, int most) {
    return static_cast<int>(strnlen(s, static_cast<std::size_t>(most)));
}
inline int BoundedLength(wchar_t const* s, int most) {
    return static_cast<int>(wcsnlen(s, static_cast<std::size_t>(most)));
}

inline char const* FindChar(char const* s, char ch) {
    return std::strchr(s, ch);
}
inline wchar_t const* FindChar(wchar_t const* s, wchar_t ch) {
    return std::wcschr(s, ch);
}

inline char const* FindLastChar(char const* s, char ch) {
    return std::strrchr(s, ch);
}
inline wchar_t const* FindLastChar(wchar_t const* s, wchar_t ch) {
    return std::wcsrchr(s, ch);
}

// A character of set in text, or null.
inline char const* FindAnyOf(char const* text, char const* set) {
    return std::strpbrk(text, set);
}
inline wchar_t const* FindAnyOf(wchar_t const* text, wchar_t const* set) {
    wchar_t const* const found = CharSet<wchar_t>(set).SkipOthers(text);
    return *found == L'\0' ? nullptr : found;
}

// iswspace of a character, a byte taken as unsigned. Every locale counts the blank and the controls
// from tab to carriage return as white space, and no visible ASCII character: these need no call.
template <typename T>
bool IsSpace(T ch) {
    using Unsigned = typename std::make_unsigned<T>::type;
    auto const code = static_cast<std::wint_t>(static_cast<Unsigned>(ch));
    if (code > 0x20 && code < 0x7F) return false;
    return code == 0x20 || (code >= 0x09 && code <= 0x0D) || std::iswspace(code) != 0;
}

inline void UpperCase(char* s) {
    strupr(s);
}
inline void UpperCase(wchar_t* s) {
    _wcsupr(s);
}
inline void LowerCase(char* s) {
    strlwr(s);
}
inline void LowerCase(wchar_t* s) {
    _wcslwr(s);
}
inline void Reverse(char* s) {
    strrev(s);
}
inline void Reverse(wchar_t* s) {
    _wcsrev(s);
}

inline int FormatConsuming(char* to, std::size_t limit, char const* format, va_list args) {
    return std::vsnprintf(to, limit, format, args);
}
inline int FormatConsuming(wchar_t* to, std::size_t limit, wchar_t const* format, va_list args) {
    return FormatWide(to, limit, format, args);
}

// The length of the text, or a negative number: for wchar_t also when it does not fit. The caller's
// args stay as they are.
template <typename T>
int FormatInto(T* to, std::size_t limit, T const* format, va_list args) {
    va_list copy;
    va_copy(copy, args);
    int const length = FormatConsuming(to, limit, format, copy);
    va_end(copy);
    return length;
}

}  // namespace qor_text

#endif  // QORUTILS_TEXT_STRING_ROUTINES_H_
