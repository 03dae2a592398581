#include "qorutils/text/locale_conversion.h"

#include <cwchar>

namespace qor_text {

std::size_t LocaleLength(wchar_t const* text) {
    std::mbstate_t state{};
    return std::wcsrtombs(nullptr, &text, 0, &state);
}

std::size_t LocaleConvert(char* to, wchar_t const* text, std::size_t limit) {
    std::mbstate_t state{};
    return std::wcsrtombs(to, &text, limit, &state);
}

std::size_t LocaleLength(char const* text) {
    std::mbstate_t state{};
    char const* next = text;
    std::size_t const length = std::mbsrtowcs(nullptr, &next, 0, &state);
    return length != kConversionFailed ? length
                                       : LocaleDecodeBytewise(nullptr, text, kConversionFailed);
}

std::size_t LocaleConvert(wchar_t* to, char const* text, std::size_t limit) {
    std::mbstate_t state{};
    char const* next = text;
    std::size_t const length = std::mbsrtowcs(to, &next, limit, &state);
    return length != kConversionFailed ? length : LocaleDecodeBytewise(to, text, limit);
}

std::size_t LocaleDecodeBytewise(wchar_t* to, char const* text, std::size_t limit) {
    constexpr std::size_t kIncomplete = static_cast<std::size_t>(-2);
    std::mbstate_t state{};
    std::size_t count = 0;
    while (count < limit) {
        wchar_t decoded;
        std::size_t const used = std::mbrtowc(&decoded, text++, 1, &state);
        if (used == kIncomplete) continue;
        if (used == 0 || used == kConversionFailed) break;
        if (to != nullptr) to[count] = decoded;
        ++count;
    }
    return count;
}

}  // namespace qor_text
