// Settings files by the letter of their format, one character after another.
#ifndef QORUTILS_TESTS_SUPPORT_REFERENCE_INI_H_
#define QORUTILS_TESTS_SUPPORT_REFERENCE_INI_H_

#include <qorutils/fs/qor_ini_file.h>

#include <cctype>
#include <cstddef>
#include <cwchar>
#include <cwctype>
#include <map>
#include <string>
#include <vector>

namespace reference_ini {

// Ordered by code.
using Text = std::u32string;
using Values = std::map<Text, Text>;
using Settings = std::map<Text, Values>;

inline Text ToText(qor_text::CQorStringT<wchar_t> const& s) {
    return Text(s.begin(), s.end());
}

inline Text UpToZero(Text const& text) {
    return text.substr(0, text.find(U'\0'));
}

inline bool IsSpace(char32_t c) {
    return std::iswspace(static_cast<std::wint_t>(c)) != 0;
}

inline bool BeginsKey(char32_t c) {
    if (c > 255) return std::iswalpha(static_cast<std::wint_t>(c)) != 0;
    return (c >= U'0' && c <= U'9') || std::isalpha(static_cast<int>(c)) != 0;
}

// ---- Bytes and characters ----

inline Text Units(std::string const& bytes, bool isWide) {
    std::size_t const size = isWide ? 4 : 1;
    Text units;
    for (std::size_t i = 0; i + size <= bytes.size(); i += size) {
        char32_t unit = 0;
        for (std::size_t k = 0; k < size; ++k)
            unit |= static_cast<char32_t>(static_cast<unsigned char>(bytes[i + k])) << 8 * k;
        units += unit;
    }
    return units;
}

// Up to the first zero, or the first byte that the locale cannot decode.
inline Text DecodeNarrow(Text const& bytes) {
    Text text;
    std::mbstate_t state{};
    for (char32_t const unit : bytes) {
        char const byte = static_cast<char>(unit);
        wchar_t decoded;
        std::size_t const used = std::mbrtowc(&decoded, &byte, 1, &state);
        if (used == static_cast<std::size_t>(-2)) continue;
        if (used != 1) break;
        text += static_cast<char32_t>(decoded);
    }
    return text;
}

// Up to the first zero; empty when the locale cannot encode all of that.
inline std::string EncodeNarrow(Text const& text) {
    std::string bytes;
    std::mbstate_t state{};
    for (char32_t const c : UpToZero(text)) {
        char encoded[16];
        std::size_t const length = std::wcrtomb(encoded, static_cast<wchar_t>(c), &state);
        if (length == static_cast<std::size_t>(-1)) return std::string();
        bytes.append(encoded, length);
    }
    return bytes;
}

inline std::string Encode(Text const& text, bool isWide) {
    if (!isWide) return EncodeNarrow(text);
    std::string bytes;
    for (char32_t const c : text)
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(c >> shift & 0xFF);
    return bytes;
}

// ---- Reading ----

inline std::vector<Text> Lines(std::string const& bytes, bool isWide) {
    Text const units = Units(bytes, isWide);
    std::vector<Text> lines;
    for (std::size_t i = 0; i < units.size();) {
        if (units[i] == U'\r' || units[i] == U'\n') {
            ++i;
            continue;
        }
        if (units[i] == 0) break;
        std::size_t end = i;
        while (end < units.size() && units[end] != U'\r' && units[end] != U'\n') ++end;
        Text const line = units.substr(i, end - i);
        lines.push_back(isWide ? line : DecodeNarrow(line));
        i = end;
    }
    return lines;
}

// The trailing blanks are those before the first zero, which go with all that follows.
inline Text Trim(Text text) {
    std::size_t const textEnd = UpToZero(text).size();
    std::size_t end = textEnd;
    while (end > 0 && IsSpace(text[end - 1])) --end;
    if (end < textEnd) text.resize(end);
    while (!text.empty() && IsSpace(text.front())) text.erase(0, 1);
    return text;
}

// Takes lines until one is bad.
class Parser {
  public:
    Settings settings;

    bool Take(Text const& line) {
        if (line.empty()) return Enter(Text());
        switch (line[0]) {
            case U'\t':
            case U' ':
                return Trim(line).empty() && Enter(Text());
            case U'#':
            case U';':
            case U'/':
                return true;
            case U'[':
                return TakeSection(Trim(line));
            default:
                return BeginsKey(line[0]) && TakeKey(line);
        }
    }

  private:
    bool Enter(Text const& name) {
        name_ = UpToZero(name);
        return true;
    }

    bool TakeSection(Text const& line) {
        return line.back() == U']' && line.size() > 2 && Enter(line.substr(1, line.size() - 2));
    }

    bool TakeKey(Text const& line) {
        std::size_t const equals = UpToZero(line).find(U'=');
        if (equals == Text::npos) return false;
        settings[name_][line.substr(0, equals)] = line.substr(equals + 1);
        return true;
    }

    Text name_;
};

// Whether all lines are good; settings receives what stands above the first bad one.
inline bool Parse(std::string const& bytes, bool isWide, Settings& settings) {
    Parser parser;
    bool isGood = true;
    for (Text const& line : Lines(bytes, isWide))
        if (isGood) isGood = parser.Take(line);
    settings = parser.settings;
    return isGood;
}

// ---- Writing ----

struct Section {
    Text name;
    Values values;
};

inline std::string Compose(std::vector<Section> const& sections, bool isWide) {
    auto const encode = [isWide](Text const& text) { return Encode(text, isWide); };
    std::string bytes;
    for (Section const& section : sections) {
        bytes += encode(U"[") + encode(section.name) + encode(U"]\r\n");
        for (auto const& value : section.values)
            bytes += encode(value.first) + encode(U"=") + encode(value.second) + encode(U"\r\n");
        bytes += encode(U"\r\n");
    }
    return bytes;
}

// ---- What the format can hold ----

inline bool IsHeldText(Text const& text, bool isWide) {
    if (text.find_first_of(U"\r\n") != Text::npos) return false;
    if (isWide) return true;
    Text bytes;
    for (char const byte : EncodeNarrow(text)) bytes += static_cast<unsigned char>(byte);
    return DecodeNarrow(bytes) == text;
}

inline bool IsHeldName(Text const& text, bool isWide) {
    return !text.empty() && UpToZero(text) == text && IsHeldText(text, isWide);
}

inline bool IsHeld(Section const& section, bool isWide) {
    if (!IsHeldName(section.name, isWide)) return false;
    for (auto const& value : section.values) {
        Text const& key = value.first;
        if (!IsHeldName(key, isWide) || !BeginsKey(key[0]) || key.find(U'=') != Text::npos ||
            !IsHeldText(value.second, isWide))
            return false;
    }
    return true;
}

// Whether reading gives back what was written. Wide text is recognised by its first characters.
inline bool IsHeld(std::vector<Section> const& sections, bool isWide) {
    for (Section const& section : sections)
        if (!IsHeld(section, isWide)) return false;
    return !sections.empty() && (!isWide || sections[0].name[0] < 256);
}

// ---- Stores ----

inline Values ValuesOf(qor_settings::CThreeTupleStore::TQorIniSection const& section) {
    Values values;
    for (auto const& value : section.values) values[ToText(value.first)] = ToText(value.second);
    return values;
}

// In the order of the store.
inline std::vector<Section> SectionsOf(qor_settings::CThreeTupleStore const& store) {
    std::vector<Section> sections;
    for (auto const& section : store)
        sections.push_back({ToText(section.second.name), ValuesOf(section.second)});
    return sections;
}

inline bool IsSame(Settings const& expected, qor_settings::CThreeTupleStore const& store) {
    auto found = store.begin();
    if (expected.size() != store.size()) return false;
    for (auto const& section : expected) {
        if (section.first != UpToZero(ToText(found->first)) ||
            section.first != UpToZero(ToText(found->second.name)) ||
            section.second != ValuesOf(found->second) ||
            section.second.size() != found->second.values.size())
            return false;
        ++found;
    }
    return true;
}

}  // namespace reference_ini

#endif  // QORUTILS_TESTS_SUPPORT_REFERENCE_INI_H_
