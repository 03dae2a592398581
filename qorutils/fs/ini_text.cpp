#include "qorutils/fs/ini_text.h"

#include <numeric>

using qor_text::CQorStringT;

namespace qor_settings {

namespace {

constexpr int kAsciiEnd = 0x80;

// Whether the locale encodes each ASCII character as itself, and decodes it so.
bool LocaleKeepsAscii() {
    char bytes[kAsciiEnd] = {};
    wchar_t characters[kAsciiEnd] = {};
    std::iota(bytes, bytes + kAsciiEnd - 1, '\1');
    std::iota(characters, characters + kAsciiEnd - 1, L'\1');
    return CQorStringT<char>(characters) == bytes && CQorStringT<wchar_t>(bytes) == characters;
}

// Copies the leading run of ASCII characters, the zero excluded; returns its length.
template <typename To, typename From>
std::size_t CopyAscii(To* to, From const* from, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        From const ch = from[i];
        if (ch <= 0 || ch >= kAsciiEnd) return i;
        to[i] = static_cast<To>(ch);
    }
    return n;
}

}  // namespace

IniText<char>::IniText() : keepsAscii_(LocaleKeepsAscii()) {}

void IniText<char>::Decode(CQorStringT<wchar_t>& line, char const* data, std::size_t n) {
    int const length = static_cast<int>(n);
    wchar_t* const to = line.GetBuffer(length);
    std::size_t const copied = keepsAscii_ ? CopyAscii(to, data, n) : 0;
    if (copied == n) {
        line.ReleaseBuffer(length);
        return;
    }
    bytes_.AssignCopy(length, data);
    line = bytes_.c_str();
}

CQorStringT<char> const& IniText<char>::Encode(CQorStringT<wchar_t> const& text) {
    int const length = text.GetLength();
    char* const to = bytes_.GetBuffer(length);
    std::size_t const n = static_cast<std::size_t>(length);
    std::size_t const copied = keepsAscii_ ? CopyAscii(to, text.c_str(), n) : 0;
    if (copied == n || text[copied] == L'\0')
        bytes_.ReleaseBuffer(static_cast<int>(copied));
    else
        bytes_ = text.c_str();
    return bytes_;
}

}  // namespace qor_settings
