#include "qorutils/formats/names.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

#include "qorutils/formats/value_lists.h"
#include "qorutils/text/string_routines.h"
#include "qorutils/text/text_search.h"

using qor_text::CharSet;
using qor_text::CQorStringT;

namespace qor_formats {

namespace {

enum ValueKind : int {
    kOtherText = 0,
    kInteger = 1,
    kDecimal = 2,
    kEmpty = 3,
    kDate = 4,
    kDateAndTime = 5
};

bool IsDigit(wchar_t c) {
    return std::iswdigit(static_cast<std::wint_t>(c)) != 0;
}

wchar_t const* SkipSpace(wchar_t const* text) {
    while (qor_text::IsSpace(*text)) ++text;
    return text;
}

wchar_t const* SkipDigits(wchar_t const* text) {
    while (IsDigit(*text)) ++text;
    return text;
}

// The number that an item begins with; 0 when there is none, or no such item.
long NumberIn(StringArray const& items, int i) {
    return i < items.GetSize() ? std::wcstol(items[i], nullptr, 10) : 0;
}

bool IsLoneAmpersand(CQorStringT<wchar_t> const& text, int i) {
    return text[i] == L'&' && (i == 0 || text[i - 1] != L'&') && text[i + 1] != L'&';
}

}  // namespace

// --- Names --------------------------------------------------------------------------------------

bool IsAdmisibleCharacter(wchar_t c) {
    return c == L'_' || (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'Z') ||
           (c >= L'a' && c <= L'z');
}

bool IsValidName(CQorStringT<wchar_t> const& name) {
    constexpr int kLongestName = 40;
    return !name.IsEmpty() && name.GetLength() <= kLongestName &&
           std::all_of(name.begin(), name.end(), IsAdmisibleCharacter);
}

bool IsValidFilename(CQorStringT<wchar_t>& name) {
    return IsValidName(name);
}

CQorStringT<wchar_t> MakeNameCorrect(CQorStringT<wchar_t> const& name, int maxLength) {
    CharSet<wchar_t> const forbidden(L"!,?%*@#$%^&'\"\\/|~;[]{}()<>`\t\r\n+=");
    auto const isForbidden = [&](wchar_t c) { return forbidden.Contains(c); };
    CQorStringT<wchar_t> corrected = maxLength < name.GetLength() ? name.Left(maxLength) : name;
    int const length = corrected.GetLength();
    auto const first = std::find_if(corrected.begin(), corrected.end(), isForbidden);
    auto const good = first - corrected.begin();
    if (good == length) return corrected;
    wchar_t* const buffer = corrected.GetBuffer(length);
    std::replace_if(buffer + good, buffer + length, isForbidden, L'_');
    corrected.ReleaseBuffer(length);
    return corrected;
}

// --- Masks --------------------------------------------------------------------------------------

bool CheckChars(wchar_t c, wchar_t maskChar) {
    if (maskChar != L'9') return c == maskChar;
    return IsDigit(c) || std::iswalpha(static_cast<std::wint_t>(c)) != 0;
}

bool CheckFormat(wchar_t const* text, wchar_t const* mask) {
    if (text == nullptr) text = L"";
    if (mask == nullptr) mask = L"";
    for (; *text != L'\0' && *mask != L'\0'; ++text, ++mask)
        if (!CheckChars(*text, *mask)) return false;
    return *text == *mask;
}

// --- Dates --------------------------------------------------------------------------------------

bool ValidateDateOnly(wchar_t const* text) {
    constexpr long kFebruary = 2;
    StringArray items;
    ParseDelimitersValues(text, items, L"-");
    long const month = NumberIn(items, 1);
    long const day = NumberIn(items, 2);
    return month >= 1 && month <= 12 && day >= 1 && day <= (month == kFebruary ? 29 : 31);
}

bool ValidateDateAndTime(wchar_t const* text) {
    StringArray items;
    ParseDelimitersValues(text, items, L" ");
    if (items.GetSize() < 2 || !ValidateDateOnly(items[0])) return false;
    StringArray time;
    ParseDelimitersValues(items[1], time, L":");
    return NumberIn(time, 0) <= 24 && NumberIn(time, 1) <= 59 && NumberIn(time, 2) <= 59;
}

int getTextValType(wchar_t const* text) {
    if (text == nullptr) return kEmpty;
    wchar_t const* const start = SkipSpace(text);
    if (*start == L'\0') return kEmpty;
    wchar_t const* const rest = SkipDigits(*start == L'-' ? start + 1 : start);
    if (*rest == L'\0') return kInteger;
    if (CheckFormat(text, L"9999-99-99") && ValidateDateOnly(text)) return kDate;
    if (CheckFormat(text, L"9999-99-99 99:99:99") && ValidateDateAndTime(text)) return kDateAndTime;
    if (*rest == L',' || *rest == L'.') {
        bool const isAlone = rest == start && rest[1] == L'\0';
        return !isAlone && *SkipDigits(rest + 1) == L'\0' ? kDecimal : kOtherText;
    }
    return *SkipSpace(rest) == L'\0' ? kInteger : kOtherText;
}

// --- Display and 8-bit text ---------------------------------------------------------------------

CQorStringT<wchar_t> DoubleAmpersandForDisplay(CQorStringT<wchar_t> const& text) {
    int const length = text.GetLength();
    unsigned lone = 0;
    for (int i = 0; i < length; ++i) lone += IsLoneAmpersand(text, i) ? 1 : 0;
    if (lone == 0) return text;

    CQorStringT<wchar_t> shown;
    int const shownLength = static_cast<int>(static_cast<unsigned>(length) + lone);
    wchar_t* const buffer = shown.GetBufferSetLength(shownLength);
    wchar_t const* next = text.begin();
    for (int i = 0; i < shownLength; ++i)
        buffer[i] = i < length && IsLoneAmpersand(text, i) ? L'&' : *next++;
    return shown;
}

void String2ASCII(wchar_t const* src, int srcLength, char* dst, int dstLength) {
    if (dst == nullptr || dstLength < 0) return;
    int const n = src == nullptr ? 0 : std::max(std::min(srcLength, dstLength), 0);
    for (int i = 0; i < n; ++i) dst[i] = static_cast<char>(src[i]);
    dst[n] = '\0';
}

}  // namespace qor_formats
