// The C library's own way to read whole numbers, with the results that it has where long is 32 bits
// wide. Each returns what swscanf returns and stores on success only.
#ifndef QORUTILS_TESTS_SUPPORT_REFERENCE_SCAN_H_
#define QORUTILS_TESTS_SUPPORT_REFERENCE_SCAN_H_

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <limits>
#include <string>

namespace reference_scan {

// Where long is wider, numbers are clamped later than there: read as wide as possible, then clamp.
constexpr bool kIsNative = sizeof(long) == 4;

template <typename T>
int ScanClamped(wchar_t const* text, wchar_t const* flags, T& value) {
    long long wide = 0;
    int const count = std::swscanf(text, (std::wstring(L"%") + flags + L"lld").c_str(), &wide);
    long long const lowest = std::numeric_limits<std::int32_t>::min();
    long long const highest = std::numeric_limits<std::int32_t>::max();
    if (count == 1) value = static_cast<T>(std::max(lowest, std::min(highest, wide)));
    return count;
}

inline int Int(wchar_t const* text, int& value) {
    return kIsNative ? std::swscanf(text, L"%d", &value) : ScanClamped(text, L"", value);
}

inline int Long(wchar_t const* text, long& value) {
    return kIsNative ? std::swscanf(text, L"%ld", &value) : ScanClamped(text, L"", value);
}

inline int Short(wchar_t const* text, short& value) {
    return kIsNative ? std::swscanf(text, L"%hd", &value) : ScanClamped(text, L"", value);
}

// The low word of a 64-bit number.
inline int Int64Low(wchar_t const* text, int& value) {
    return kIsNative ? std::swscanf(text, L"%I64d", &value) : ScanClamped(text, L"I64", value);
}

inline int Uint(wchar_t const* text, unsigned int& value) {
    if (kIsNative) return std::swscanf(text, L"%u", &value);
    long long wide = 0;
    int const count = std::swscanf(text, L"%lld", &wide);
    long long const highest = std::numeric_limits<std::uint32_t>::max();
    bool const fits = wide >= -highest && wide <= highest;
    if (count == 1) value = static_cast<std::uint32_t>(fits ? wide : highest);
    return count;
}

// Six fields of "%hd-%hd-%hd %hd:%hd:%hd".
inline int DateTime(wchar_t const* text, short* fields) {
    if (kIsNative)
        return std::swscanf(text, L"%hd-%hd-%hd %hd:%hd:%hd", fields, fields + 1, fields + 2,
                            fields + 3, fields + 4, fields + 5);
    long long wide[6];
    int const count = std::swscanf(text, L"%lld-%lld-%lld %lld:%lld:%lld", wide, wide + 1, wide + 2,
                                   wide + 3, wide + 4, wide + 5);
    long long const lowest = std::numeric_limits<std::int32_t>::min();
    long long const highest = std::numeric_limits<std::int32_t>::max();
    for (int i = 0; i < count; ++i)
        fields[i] = static_cast<short>(std::max(lowest, std::min(highest, wide[i])));
    return count;
}

}  // namespace reference_scan

#endif  // QORUTILS_TESTS_SUPPORT_REFERENCE_SCAN_H_
