// The first byte of an input is the count of arguments (modulo 102, so 'f' is 0, 'g' is 1, 'h' is 2
// and 'e' is 101), the rest is the format. It is expanded again here, one character at a time.

#include <qorutils/text/safe_format.h>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <string>
#include <utility>
#include <vector>

#include "require.h"
#include "support/guard_page.h"

namespace {

constexpr std::size_t kMostArguments = 101;
using Texts = std::array<wchar_t const*, kMostArguments>;

// Bytes from 128 on stand for what the format may treat in a way of its own: white space and a
// digit of other scripts, and values that are no characters.
std::vector<wchar_t> FormatFrom(std::uint8_t const* bytes, std::size_t n) {
    wchar_t const others[] = {0x2003, 0x0661, 0x10FFFF, static_cast<wchar_t>(0x80000001)};
    std::vector<wchar_t> fmt;
    for (; n != 0 && *bytes != 0; ++bytes, --n)
        fmt.push_back(*bytes < 128 ? static_cast<wchar_t>(*bytes) : others[*bytes % 4]);
    fmt.push_back(L'\0');
    return fmt;
}

// Those beyond count must not be looked at; nothing can be read at their address.
Texts MakeTexts(unsigned int count, wchar_t const* unreadable) {
    wchar_t const* const texts[] = {L"first", nullptr, L"", L"{1}", L"}{"};
    Texts result;
    for (std::size_t i = 0; i != result.size(); ++i)
        result[i] = i < count ? texts[i % 5] : unreadable;
    return result;
}

// The number that the digits begin with, held within -200 and 200; 0 when there is none.
int PlainNumber(std::wstring const& digits) {
    std::size_t i = 0;
    while (i != digits.size() && std::iswspace(static_cast<std::wint_t>(digits[i]))) ++i;
    bool const negative = i != digits.size() && digits[i] == L'-';
    if (i != digits.size() && (digits[i] == L'-' || digits[i] == L'+')) ++i;
    int number = 0;
    for (; i != digits.size() && digits[i] >= L'0' && digits[i] <= L'9'; ++i)
        number = std::min(number * 10 + static_cast<int>(digits[i] - L'0'), 200);
    return negative ? -number : number;
}

std::wstring PlainExpand(wchar_t const* fmt, unsigned int count, Texts const& texts) {
    if (count > 100) return std::wstring();
    std::wstring output;
    std::wstring digits;
    bool insideBraces = false;
    for (; *fmt != L'\0'; ++fmt) {
        if (*fmt == L'{' && !insideBraces) {
            digits.clear();
            insideBraces = true;
        } else if (*fmt == L'{') {
            output += L'{';
            insideBraces = false;
        } else if (*fmt == L'}' && !insideBraces) {
            output += L'}';
        } else if (*fmt == L'}') {
            int const number = PlainNumber(digits);
            if (digits.empty() || number < 1 || number > static_cast<int>(count))
                return std::wstring();
            wchar_t const* const text = texts[static_cast<std::size_t>(number - 1)];
            if (text != nullptr) output += text;
            insideBraces = false;
        } else if (insideBraces) {
            digits += *fmt;
        } else {
            output += *fmt;
        }
    }
    return output;
}

template <std::size_t... I>
qor_text::CQorStringT<wchar_t> Expand(wchar_t const* fmt, unsigned int count, Texts const& texts,
                                      std::index_sequence<I...>) {
    return qor_text::detail::qor_safefmt_impl(fmt, count, texts[I]...);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::setlocale(LC_ALL, "C.UTF-8");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    static GuardedArray<wchar_t> const nothing(0);
    if (size == 0) return 0;
    unsigned int const count = input[0] % 102;
    std::vector<wchar_t> const characters = FormatFrom(input + 1, size - 1);
    GuardedArray<wchar_t> const fmt(characters.data(), characters.size());
    Texts const texts = MakeTexts(count, nothing.data());

    auto const found = Expand(fmt.data(), count, texts, std::make_index_sequence<kMostArguments>());
    std::wstring const expected = PlainExpand(fmt.data(), count, texts);
    Require(expected == std::wstring(found.begin(), found.end()));
    Require(found.c_str()[found.GetLength()] == L'\0');
    return 0;
}
