#include "locale_text.h"

#include <langinfo.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <cwctype>

namespace qorini {

namespace {

constexpr auto kFailed = static_cast<std::size_t>(-1);

}  // namespace

bool IsSame(Text const& one, Text const& other) {
    return one.GetLength() == other.GetLength() &&
           std::equal(one.begin(), one.end(), other.begin());
}

Text Decoded(std::string const& bytes) {
    return Text(bytes.c_str());
}

bool IsText(std::string const& bytes) {
    return bytes.find('\0') == std::string::npos &&
           std::mbstowcs(nullptr, bytes.c_str(), 0) != kFailed;
}

bool Encode(Text const& text, std::string* bytes) {
    std::string encoded = qor_text::CQorStringT<char>(text.c_str()).c_str();
    if (!IsSame(Decoded(encoded), text)) return false;
    *bytes = std::move(encoded);
    return true;
}

std::string Shown(Text const& text) {
    std::string shown;
    for (wchar_t const ch : text) {
        std::string bytes = "?";
        if (std::iswprint(static_cast<std::wint_t>(ch)) != 0) Encode(Text(ch), &bytes);
        shown += bytes;
    }
    return shown;
}

std::string Shown(std::string const& bytes) {
    std::string shown(bytes);
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return shown;
}

std::string LocaleEncoding() {
    std::string const name = nl_langinfo(CODESET);
    return "the locale's encoding, " + (name == "ANSI_X3.4-1968" ? "ASCII" : name);
}

bool IsUtf8Locale() {
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

}  // namespace qorini
