// Private: decimal integers read as a 32-bit C library's swscanf reads them, with equal results for
// every text, locale and machine, errno included.

#ifndef QORUTILS_FORMATS_INTEGER_SCAN_H_
#define QORUTILS_FORMATS_INTEGER_SCAN_H_

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "qorutils/text/string_routines.h"

namespace qor_formats {

// A field as wide as any text.
constexpr std::size_t kAnyWidth = std::numeric_limits<std::size_t>::max();

inline bool IsDecimalDigit(wchar_t ch) {
    return ch >= L'0' && ch <= L'9';
}

struct ScannedInteger {
    std::uint64_t magnitude;  // exact up to 2^32; above it, something above 2^32
    bool isNegative;
    bool hasDigits;
    wchar_t const* end;
};

// White space, a sign, and digits; sign and digits are `width` characters at most, and width is 2
// or more.
inline ScannedInteger ScanInteger(wchar_t const* text, std::size_t width = kAnyWidth) {
    while (qor_text::IsSpace(*text)) ++text;
    ScannedInteger number = {};
    number.isNegative = *text == L'-';
    if (number.isNegative || *text == L'+') {
        ++text;
        --width;
    }
    number.hasDigits = IsDecimalDigit(*text);
    for (; IsDecimalDigit(*text) && width != 0; ++text, --width)
        if (number.magnitude <= std::numeric_limits<std::uint32_t>::max())
            number.magnitude = number.magnitude * 10 + static_cast<std::uint64_t>(*text - L'0');
    number.end = text;
    return number;
}

// The number clamped to 32 bits, as strtol does.
inline std::int32_t ToSigned(ScannedInteger const& number) {
    std::uint64_t const limit = number.isNegative ? 0x80000000u : 0x7FFFFFFFu;
    if (number.magnitude > limit) errno = ERANGE;
    std::uint64_t const bits = number.magnitude > limit ? limit : number.magnitude;
    return static_cast<std::int32_t>(number.isNegative ? 0 - bits : bits);
}

// The number modulo 2^32, or, if it is too long, the largest one, as strtoul does.
inline std::uint32_t ToUnsigned(ScannedInteger const& number) {
    constexpr std::uint32_t kLargest = std::numeric_limits<std::uint32_t>::max();
    if (number.magnitude > kLargest) {
        errno = ERANGE;
        return kLargest;
    }
    auto const bits = static_cast<std::uint32_t>(number.magnitude);
    return number.isNegative ? 0 - bits : bits;
}

}  // namespace qor_formats

#endif  // QORUTILS_FORMATS_INTEGER_SCAN_H_
