#include "json_text.h"

#include <cstddef>
#include <cstdio>

#include "utf8_text.h"
#include "visible_text.h"

namespace qorlog {

namespace {

bool IsPlain(char c) {
    auto const byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x7F && c != '"' && c != '\\';
}

char const* ShortEscape(wchar_t code) {
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
            return nullptr;
    }
}

void AppendCharacter(Utf8Character const& character, std::string* to) {
    if (char const* const escape = ShortEscape(character.code)) {
        *to += escape;
    } else if (IsHarmful(character.code)) {
        char number[16];
        std::snprintf(number, sizeof number, "\\u%04x", static_cast<unsigned>(character.code));
        *to += number;
    } else {
        to->append(character.bytes.data(), character.bytes.size());
    }
}

}  // namespace

void AppendJsonText(boost::string_ref text, std::string* to) {
    *to += '"';
    while (!text.empty()) {
        std::size_t plain = 0;
        while (plain < text.size() && IsPlain(text[plain])) ++plain;
        to->append(text.data(), plain);
        text.remove_prefix(plain);
        if (!text.empty()) AppendCharacter(TakeCharacter(&text), to);
    }
    *to += '"';
}

}  // namespace qorlog
