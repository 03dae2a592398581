// Numbers as text against the C library's own reading and writing, and the increment of a number at
// the end of a text against addition digit by digit.
//
// Input: eight bytes are a double, its number of decimals and an increment; the rest is a text, a
// byte a character. Bytes from 128 on choose among characters that matter beyond ASCII.

#include <qorutils/formats/number_text.h>
#include <qorutils/formats/time_text.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string>

#include "require.h"
#include "support/reference_scan.h"

namespace {

using qor_formats::DoIncPtno;
using qor_formats::DoubleToString;
using qor_formats::Int64ToString;
using qor_formats::IntToString;
using qor_formats::ParseDtTimeAttrFormatFromStr;
using qor_formats::StringToDouble;
using qor_formats::StringToInt;
using qor_formats::StringToInt64;
using qor_formats::StringToLong;
using qor_formats::StringToShort;
using qor_formats::StringToUint;
using qor_formats::UIntToString;
using qor_text::CQorStringT;

constexpr std::size_t kLargestText = 600;

std::wstring Content(CQorStringT<wchar_t> const& s) {
    return std::wstring(s.begin(), s.end());
}

std::wstring WideText(std::uint8_t const* bytes, std::size_t size) {
    static wchar_t const kBeyondAscii[] = {0x2003, 0x00A0, 0x3000, 0x0660,   0x0669,
                                           0xFF15, 0x85,   0xFFFF, 0x10FFFF, wchar_t(-1)};
    std::wstring text;
    for (std::size_t i = 0; i < size; ++i)
        text += bytes[i] < 128 ? static_cast<wchar_t>(bytes[i]) : kBeyondAscii[bytes[i] % 10];
    return text;
}

// ---- Numbers from text ----

template <typename T>
void RequireScan(int (*parse)(wchar_t const*, T&), int (*scan)(wchar_t const*, T&),
                 wchar_t const* text) {
    T expected = 0;
    T value = 99;
    bool const isRead = scan(text, expected) == 1;
    Require(parse(text, value) == isRead);
    Require(value == (isRead ? expected : T(0)));
}

int StringToInt64Low(wchar_t const* text, int& low) {
    long long value = 0x1234567800000000;
    int const returned = StringToInt64(text, value);
    Require(value >> 32 == (returned == 1 ? 0x12345678 : 0));
    low = static_cast<int>(value);
    return returned;
}

void RequireDouble(std::wstring text) {
    double value = 99;
    int const returned = StringToDouble(CQorStringT<wchar_t>(text.c_str()), value);
    std::size_t const comma = text.find(L',');
    if (comma != std::wstring::npos) text[comma] = L'.';
    double read = 0;
    Require(returned == (std::swscanf(text.c_str(), L"%lf", &read) == 1));
    if (returned == 0) Require(value == 0);
    if (returned == 1 && std::fabs(read) < 1e3) Require(std::fabs(read - value) <= 1e-12);
    Require(std::isnan(read) == std::isnan(value));
}

void RequireDateTime(wchar_t const* text) {
    if (*text == L'\0') return;
    _SYSTEMTIME st = {};
    short fields[6] = {};
    int const count = reference_scan::DateTime(text, fields);
    Require(ParseDtTimeAttrFormatFromStr(text, st) == (count == 6));
    std::uint16_t const parsed[] = {st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond};
    for (int i = 0; i < 6; ++i)
        Require(parsed[i] == (i < count ? static_cast<std::uint16_t>(fields[i]) : 0));
}

// ---- Numbers to text ----

std::wstring Printed(wchar_t const* format, int decimals, double value) {
    wchar_t text[400];
    int const length = std::swprintf(text, 400, format, decimals, value);
    Require(length > 0);
    return std::wstring(text, static_cast<std::size_t>(length));
}

void RequirePrinted(double value, int decimals) {
    std::wstring text = Printed(L"%.*lf", 12, value);
    if (std::isfinite(value)) {
        while (text.back() == L'0') text.pop_back();
        if (text.back() == L'.') text.pop_back();
    }
    Require(Content(DoubleToString(value)) == text);
    // More than sixteen are the C library's.
    Require(Content(DoubleToString(value, decimals + 17)) ==
            Printed(L"%.*lf", decimals + 17, value));
    // Rounding moves a number by half of the last decimal, and the step adds one in the last place.
    std::wstring const rounded = Content(DoubleToString(value, decimals + 1));
    if (std::fabs(value) < 1e3)
        Require(std::fabs(std::wcstod(rounded.c_str(), nullptr) - value) <=
                0.5 * std::pow(10, -decimals - 1) + 1e-12);
}

void RequireIntegers(std::int64_t value) {
    auto const low = static_cast<std::int32_t>(value);
    Require(Content(IntToString(low)) == std::to_wstring(low));
    Require(Content(UIntToString(static_cast<std::uint32_t>(low))) ==
            std::to_wstring(static_cast<std::uint32_t>(low)));
    wchar_t text[80];
    std::swprintf(text, 80, L"%64d", low);
    Require(Content(Int64ToString(value)) == text);
}

// ---- The number at the end of a text ----

// Adds a number of ten digits at most; the result may be one digit longer, or as long with leading
// zeros. False if it is negative.
bool AddDecimal(std::wstring& digits, int increment) {
    std::int64_t carry = increment;
    for (std::size_t i = digits.size(); i-- > 0;) {
        std::int64_t const sum = carry + (digits[i] - L'0');
        std::int64_t const digit = (sum % 10 + 10) % 10;
        digits[i] = static_cast<wchar_t>(L'0' + digit);
        carry = (sum - digit) / 10;
    }
    if (carry > 0) digits = std::to_wstring(carry) + digits;
    return carry >= 0;
}

// False if it fails.
bool Increment(std::wstring& text, int increment) {
    std::size_t const end = text.size();
    std::size_t zeros = end;
    while (zeros > 0 && text[zeros - 1] >= L'0' && text[zeros - 1] <= L'9') --zeros;
    std::size_t const start = std::min(end, text.find_first_not_of(L'0', zeros));
    std::wstring sum = text.substr(start);
    std::size_t const oldLength = sum.size();
    if (increment == 0 || oldLength > 255 || !AddDecimal(sum, increment)) return false;
    sum.erase(0, std::min(sum.find_first_not_of(L'0'), sum.size()));
    if (sum.empty()) sum = L"0";
    std::size_t const dropped = sum.size() > oldLength && start > zeros ? 1 : 0;
    text = text.substr(0, start - dropped) + sum;
    return true;
}

void RequireIncrement(std::wstring const& text, int increment) {
    std::wstring expected = text;
    CQorStringT<wchar_t> incremented(text.data(), static_cast<int>(text.size()));
    Require((DoIncPtno(incremented, increment) != 0) == Increment(expected, increment));
    Require(Content(incremented) == expected);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size < 8 || size > kLargestText) return 0;
    std::uint64_t bits;
    std::memcpy(&bits, input, sizeof bits);
    double value;
    std::memcpy(&value, &bits, sizeof value);
    RequirePrinted(value, static_cast<int>(bits % 15));
    RequireIntegers(static_cast<std::int64_t>(bits));

    std::wstring const text = WideText(input + 8, size - 8);
    RequireScan(StringToInt, reference_scan::Int, text.c_str());
    RequireScan(StringToLong, reference_scan::Long, text.c_str());
    RequireScan(StringToUint, reference_scan::Uint, text.c_str());
    RequireScan(StringToShort, reference_scan::Short, text.c_str());
    RequireScan(StringToInt64Low, reference_scan::Int64Low, text.c_str());
    RequireDouble(text.c_str());
    RequireDateTime(text.c_str());
    RequireIncrement(text, static_cast<int>(bits >> 32));
    return 0;
}
