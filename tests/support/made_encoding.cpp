#include "support/made_encoding.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cwchar>
#include <string>

#include "support/next_in_line.h"

namespace {

enum class Mode { kNone, kKeepsAscii, kHasYen } mode = Mode::kNone;

constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

std::wstring Decode(char const* bytes) {
    std::wstring text;
    for (; *bytes != '\0'; ++bytes) {
        unsigned const byte = static_cast<unsigned char>(bytes[0]);
        unsigned const next = static_cast<unsigned char>(bytes[1]);
        if (byte == 0x81 && next >= 0x30) {
            text += static_cast<wchar_t>(0x4E00 + next);
            ++bytes;
        } else if (byte == 0xA0) {
            text += L"\u0BB8\u0BCD";
        } else if (byte == 'e' && next == 0xB3) {
            text += L'\u00E9';
            ++bytes;
        } else if (byte == '\\' && mode == Mode::kHasYen) {
            text += L'\u00A5';
        } else {
            text += static_cast<wchar_t>(byte);
        }
    }
    return text;
}

// Whether there are bytes for each character.
bool Encode(wchar_t const* text, std::string& bytes) {
    for (; *text != L'\0'; ++text) {
        auto const code = static_cast<unsigned long>(*text);
        if (code >= 0x4E30 && code <= 0x4EFF) {
            bytes += '\x81';
            bytes += static_cast<char>(code - 0x4E00);
        } else if (code == 0x0BB8 && text[1] == L'\u0BCD') {
            bytes += '\xA0';
            ++text;
        } else if (code == 0xE9) {
            bytes += "e\xB3";
        } else if (code == 0xA5 && mode == Mode::kHasYen) {
            bytes += '\\';
        } else if (code < 0x80 && (code != '\\' || mode != Mode::kHasYen)) {
            bytes += static_cast<char>(code);
        } else {
            return false;
        }
    }
    return true;
}

template <typename Text, typename Char>
std::size_t Store(Text const& text, Char* to, std::size_t limit) {
    if (to == nullptr) return text.size();
    std::size_t const stored = std::min(text.size(), limit);
    std::copy_n(text.begin(), stored, to);
    if (stored < limit) to[stored] = Char();
    return stored;
}

}  // namespace

MadeEncoding::MadeEncoding(bool keepsAscii) {
    mode = keepsAscii ? Mode::kKeepsAscii : Mode::kHasYen;
}

MadeEncoding::~MadeEncoding() {
    mode = Mode::kNone;
}

// These stand before the C library's.
extern "C" __attribute__((visibility("default"))) std::size_t mbsrtowcs(
    wchar_t* to, char const** text, std::size_t limit, std::mbstate_t* state) noexcept {
    if (mode != Mode::kNone) return Store(Decode(*text), to, limit);
    return NextInLine(&mbsrtowcs, "mbsrtowcs")(to, text, limit, state);
}

extern "C" __attribute__((visibility("default"))) std::size_t wcsrtombs(
    char* to, wchar_t const** text, std::size_t limit, std::mbstate_t* state) noexcept {
    if (mode == Mode::kNone) return NextInLine(&wcsrtombs, "wcsrtombs")(to, text, limit, state);
    std::string bytes;
    if (Encode(*text, bytes)) return Store(bytes, to, limit);
    errno = EILSEQ;
    return kFailed;
}
