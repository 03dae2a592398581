#include "escaped_text.h"

#include <qorutils/text/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>

namespace qorlog {

namespace {

struct Utf8Character {
    wchar_t code;
    boost::string_ref bytes;
};

Utf8Character TakeCharacter(boost::string_ref* text) {
    constexpr std::size_t kLongest = 4;
    Utf8Character character = {0, {}};
    auto const room = static_cast<unsigned int>(std::min(text->size(), kLongest));
    int const length = do_mbtowc(&character.code, text->data(), room);
    if (length == -1) {
        text->remove_prefix(1);
        return {0xFFFD, "\xEF\xBF\xBD"};
    }
    character.bytes = text->substr(0, length == 0 ? 1 : static_cast<std::size_t>(length));
    text->remove_prefix(character.bytes.size());
    return character;
}

bool IsHarmful(wchar_t code) {
    bool const isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    return isControl || code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

// What needs no escape anywhere.
bool IsPlain(char c) {
    auto const byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x7F && c != '"' && c != '\\';
}

template <typename Escape>
void AppendEscaped(boost::string_ref text, Escape escape, std::string* to) {
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && IsPlain(text[plain])) ++plain;
        to->append(text.data(), plain);
        text.remove_prefix(plain);
        if (text.empty()) break;
        Utf8Character const character = TakeCharacter(&text);
        std::string const escaped = escape(character.code);
        if (escaped.empty())
            to->append(character.bytes.data(), character.bytes.size());
        else
            *to += escaped;
    }
}

std::string ByNumber(char const* format, wchar_t code) {
    char number[16];
    std::snprintf(number, sizeof number, format, static_cast<unsigned>(code));
    return number;
}

// Both give nothing for a character that needs no escape.
std::string EscapeForTerminal(wchar_t code) {
    if (code == L'\t' || !IsHarmful(code)) return {};
    return ByNumber(code < 0x100 ? "\\x%02X" : "\\u%04X", code);
}

std::string EscapeForJson(wchar_t code) {
    switch (code) {
        case L'"':
            return "\\\"";
        case L'\\':
            return "\\\\";
        case L'\t':
            return "\\t";
        case L'\r':
            return "\\r";
        case L'\n':
            return "\\n";
        default:
            return IsHarmful(code) ? ByNumber("\\u%04x", code) : std::string();
    }
}

}  // namespace

void AppendVisible(boost::string_ref line, std::string* to) {
    AppendEscaped(line, EscapeForTerminal, to);
}

void AppendJsonText(boost::string_ref text, std::string* to) {
    *to += '"';
    AppendEscaped(text, EscapeForJson, to);
    *to += '"';
}

}  // namespace qorlog
