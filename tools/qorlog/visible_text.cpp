#include "visible_text.h"

#include <cstddef>
#include <cstdio>

#include "utf8_text.h"

namespace qorlog {

namespace {

bool IsPlain(char c) {
    auto const byte = static_cast<unsigned char>(c);
    return (byte >= 0x20 && byte < 0x7F) || c == '\t';
}

void AppendCharacter(Utf8Character const& character, std::string* to) {
    if (!IsHarmful(character.code)) {
        to->append(character.bytes.data(), character.bytes.size());
        return;
    }
    char number[16];
    std::snprintf(number, sizeof number, character.code < 0x100 ? "\\x%02X" : "\\u%04X",
                  static_cast<unsigned>(character.code));
    *to += number;
}

}  // namespace

bool IsHarmful(wchar_t code) {
    bool const isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    return isControl || code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
}

void AppendVisible(boost::string_ref line, std::string* to) {
    while (!line.empty()) {
        std::size_t plain = 0;
        while (plain < line.size() && IsPlain(line[plain])) ++plain;
        to->append(line.data(), plain);
        line.remove_prefix(plain);
        if (!line.empty()) AppendCharacter(TakeCharacter(&line), to);
    }
}

}  // namespace qorlog
