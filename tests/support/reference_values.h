// The rules of value lists, of the kinds of value and of display text, transcribed step by step
// over standard strings, however long that takes.
#ifndef QORUTILS_TESTS_SUPPORT_REFERENCE_VALUES_H_
#define QORUTILS_TESTS_SUPPORT_REFERENCE_VALUES_H_

#include <cstddef>
#include <cwchar>
#include <cwctype>
#include <string>
#include <vector>

// Texts without zeros.
namespace reference_values {

using Items = std::vector<std::wstring>;

inline bool IsSpace(wchar_t c) {
    return std::iswspace(static_cast<std::wint_t>(c)) != 0;
}

inline bool IsDigit(wchar_t c) {
    return std::iswdigit(static_cast<std::wint_t>(c)) != 0;
}

inline std::wstring Cleaned(std::wstring item) {
    while (!item.empty() && IsSpace(item.front())) item.erase(0, 1);
    while (!item.empty() && IsSpace(item.back())) item.pop_back();
    std::wstring kept;
    for (wchar_t const c : item)
        if (c != L'\r' && c != L'\n') kept += c;
    return kept;
}

inline bool ParseValues(std::wstring const& text, Items& out, wchar_t separator,
                        std::wstring const& forbidden) {
    std::size_t position = 0;
    do {
        std::size_t const found = text.find(separator, position);
        std::wstring item;
        if (found == std::wstring::npos || found == 0) {
            item = text.substr(position);
            position = text.size();
        } else {
            item = text.substr(position, found - position);
            position = found + 1;
        }
        item = Cleaned(item);
        if (item.find_first_of(forbidden) != std::wstring::npos) return false;
        out.push_back(item);
    } while (position < text.size());
    return true;
}

inline Items ParseDelimitersValues(std::wstring const& text, std::wstring const& delimiters) {
    Items out;
    std::wstring rest = text;
    do {
        std::size_t const found = rest.find_first_of(delimiters);
        if (found == std::wstring::npos || found == 0) {
            out.push_back(Cleaned(rest));
            rest.clear();
        } else {
            out.push_back(Cleaned(rest.substr(0, found)));
            rest = rest.substr(found + 1);
        }
    } while (!rest.empty());
    return out;
}

inline bool FitsMask(std::wstring const& text, std::wstring const& mask) {
    if (text.size() != mask.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const isWord =
            IsDigit(text[i]) || std::iswalpha(static_cast<std::wint_t>(text[i])) != 0;
        if (mask[i] == L'9' ? !isWord : text[i] != mask[i]) return false;
    }
    return true;
}

inline long Number(std::wstring const& item) {
    return item.empty() ? 0 : std::wcstol(item.c_str(), nullptr, 10);
}

inline bool IsDate(std::wstring const& text) {
    Items const items = ParseDelimitersValues(text, L"-");
    if (items.size() < 3) return false;
    long const month = Number(items[1]);
    long const day = Number(items[2]);
    if (day < 1 || day > 31) return false;
    if (month < 1 || month > 12) return false;
    return month != 2 || day < 30;
}

inline bool IsDateAndTime(std::wstring const& text) {
    Items const items = ParseDelimitersValues(text, L" ");
    if (!IsDate(items[0])) return false;
    if (items.size() < 2) return false;
    Items const time = ParseDelimitersValues(items[1], L":");
    if (Number(time[0]) > 24) return false;
    if (time.size() > 1 && Number(time[1]) > 59) return false;
    if (time.size() > 2 && Number(time[2]) > 59) return false;
    return true;
}

inline int KindOf(std::wstring const& text) {
    std::size_t i = 0;
    while (i < text.size() && IsSpace(text[i])) ++i;
    if (i == text.size()) return 3;
    std::size_t const start = i;
    if (text[i] == L'-') ++i;
    while (i < text.size() && IsDigit(text[i])) ++i;
    if (i == text.size()) return 1;

    if (FitsMask(text, L"9999-99-99") && IsDate(text)) return 4;
    if (!FitsMask(text, L"9999-99-99") && FitsMask(text, L"9999-99-99 99:99:99") &&
        IsDateAndTime(text))
        return 5;

    if (text[i] == L',' || text[i] == L'.') {
        if (i + 1 == text.size()) return i == start ? 0 : 2;
        for (++i; i < text.size(); ++i)
            if (!IsDigit(text[i])) return 0;
        return 2;
    }
    for (; i < text.size(); ++i)
        if (!IsSpace(text[i])) return 0;
    return 1;
}

inline std::wstring CorrectName(std::wstring const& name, int maxLength) {
    std::wstring corrected = name;
    if (maxLength < static_cast<int>(name.size()))
        corrected = name.substr(0, maxLength < 0 ? 0 : static_cast<std::size_t>(maxLength));
    for (wchar_t const forbidden : std::wstring(L"!,?%*@#$%^&'\"\\/|~;[]{}()<>`\t\r\n+="))
        for (wchar_t& c : corrected)
            if (c == forbidden) c = L'_';
    return corrected;
}

inline std::wstring ForDisplay(std::wstring const& text) {
    std::wstring result;
    std::size_t k = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        result.insert(k, 1, text[i]);
        ++k;
        bool const hasNext = i + 1 < text.size() && text[i + 1] == L'&';
        bool const hasPrevious = i > 0 && text[i - 1] == L'&';
        if (text[i] == L'&' && !hasNext && !hasPrevious) {
            result.insert(i, 1, L'&');
            ++k;
        }
    }
    return result;
}

}  // namespace reference_values

#endif  // QORUTILS_TESTS_SUPPORT_REFERENCE_VALUES_H_
