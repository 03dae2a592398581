#include "qorutils/text/c_string.h"

#include <ctype.h>
#include <string.h>
#include <wchar.h>
#include <wctype.h>

#include <algorithm>

#include "qorutils/text/case_folding.h"

namespace {

// Digits from 10 upwards follow each other from 'a' on, whatever they run into.
template <typename T>
T DigitCharacter(unsigned int digit) {
    return static_cast<T>(digit < 10 ? digit + '0' : digit + ('a' - 10));
}

template <typename T>
bool IntegerToText(int value, T* buf, int size, int radix) {
    if (radix < 2) return false;
    bool const negative = value < 0 && radix == 10;
    unsigned int rest = static_cast<unsigned int>(value);
    if (negative) rest = 0u - rest;  // exact for the smallest value too

    T text[36];
    T* const end = text + 36;
    T* first = end;
    do {
        *--first = DigitCharacter<T>(rest % static_cast<unsigned int>(radix));
        rest /= static_cast<unsigned int>(radix);
    } while (rest != 0);
    if (negative) *--first = T('-');

    if (end - first > size) return false;
    if (buf != nullptr) *std::copy(first, end, buf) = T();
    return true;
}

constexpr int kAnyValue = 32;  // binary digits of an int

wchar_t* FoldInPlace(wchar_t* s, qor_text::CaseFolder::Case direction) {
    if (s == nullptr || *s == L'\0') return s;
    qor_text::CaseFolder const fold(direction);
    for (wchar_t* p = s; *p != L'\0'; ++p) *p = fold(*p);
    return s;
}

}  // namespace

bool itoa_s_impl(int value, char* buf, int size, int radix) {
    return IntegerToText(value, buf, size, radix);
}

bool itow_s_impl(int value, wchar_t* buf, int size, int radix) {
    return IntegerToText(value, buf, size, radix);
}

char* _itoa(int value, char* buf, int radix) {
    return itoa_s_impl(value, buf, kAnyValue, radix) ? buf : nullptr;
}

wchar_t* _itow(int value, wchar_t* buf, int radix) {
    return itow_s_impl(value, buf, kAnyValue, radix) ? buf : nullptr;
}

int _itow_s(int value, wchar_t* buf, int size, int radix) {
    return itow_s_impl(value, buf, size, radix) ? 0 : -1;
}

char* strlwr(char* s) {
    for (; *s != '\0'; ++s) *s = static_cast<char>(tolower(static_cast<unsigned char>(*s)));
    return s;
}

char* strupr(char* s) {
    for (; *s != '\0'; ++s) *s = static_cast<char>(toupper(static_cast<unsigned char>(*s)));
    return s;
}

char* strrev(char* s) {
    if (s != nullptr) std::reverse(s, s + strlen(s));
    return s;
}

wchar_t* _wcslwr(wchar_t* s) {
    return FoldInPlace(s, qor_text::CaseFolder::kLower);
}

wchar_t* _wcsupr(wchar_t* s) {
    return FoldInPlace(s, qor_text::CaseFolder::kUpper);
}

wchar_t* _wcsrev(wchar_t* s) {
    std::reverse(s, s + wcslen(s));
    return s;
}
