// UTF-8 (RFC 3629) and the string conversions done plainly, one character after another, without
// tables: what the library's own must give, to the last element, however they get there.
#ifndef QORUTILS_TESTS_SUPPORT_REFERENCE_UTF8_H_
#define QORUTILS_TESTS_SUPPORT_REFERENCE_UTF8_H_

#include <wchar.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace reference_utf8 {

constexpr unsigned int kFailed = static_cast<unsigned int>(-1);
constexpr std::size_t kNullPosition = static_cast<std::size_t>(-1);

// The outcome of a string conversion.
template <typename T>
struct Conversion {
    unsigned int returned;
    std::size_t position;       // where *src stands, or kNullPosition
    std::basic_string<T> room;  // the whole destination afterwards
};

template <typename T>
bool operator==(Conversion<T> const& a, Conversion<T> const& b) {
    return a.returned == b.returned && a.position == b.position && a.room == b.room;
}

struct Character {
    std::uint32_t value;
    std::size_t length;  // in bytes; 0 for an invalid sequence
};

// No bytes for what is not a character.
inline std::string Encode(std::uint32_t value) {
    bool const isSurrogate = value >= 0xD800 && value <= 0xDFFF;
    if (isSurrogate || value > 0x10FFFF) return {};
    if (value < 0x80) return std::string(1, static_cast<char>(value));
    std::size_t const length = value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
    std::string bytes(length, '\0');
    for (std::size_t i = length - 1; i > 0; --i) {
        bytes[i] = static_cast<char>(0x80 | (value & 0x3F));
        value >>= 6;
    }
    std::uint32_t const mark = length == 2 ? 0xC0 : length == 3 ? 0xE0 : 0xF0;
    bytes[0] = static_cast<char>(mark | value);
    return bytes;
}

// The length that the first byte announces; 0 for a byte that starts nothing.
inline std::size_t AnnouncedLength(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead < 0xC0) return 0;
    if (lead < 0xE0) return 2;
    if (lead < 0xF0) return 3;
    return lead < 0xF8 ? 4 : 0;
}

inline std::uint32_t LeadPayload(unsigned char lead) {
    std::size_t const length = AnnouncedLength(lead);
    return length == 1 ? lead : lead & (0x7Fu >> length);
}

// The element there, or the terminator that follows the text.
template <typename T>
T ElementAt(std::basic_string<T> const& text, std::size_t i) {
    return i < text.size() ? text[i] : T();
}

inline Character Decode(std::string const& text, std::size_t at) {
    auto const lead = static_cast<unsigned char>(ElementAt(text, at));
    std::size_t const length = AnnouncedLength(lead);
    std::uint32_t value = LeadPayload(lead);
    for (std::size_t i = 1; i < length; ++i) {
        auto const byte = static_cast<unsigned char>(ElementAt(text, at + i));
        if ((byte & 0xC0) != 0x80) return {0, 0};
        value = value << 6 | (byte & 0x3F);
    }
    bool const isShortest = Encode(value).size() == length;
    return isShortest ? Character{value, length} : Character{0, 0};
}

// Encodes a terminated text into n bytes that held `fill`.
inline Conversion<char> ConvertString(std::wstring const& text, std::size_t n, char fill) {
    Conversion<char> result = {0, 0, std::string(n, fill)};
    while (result.returned < n) {
        auto const value = static_cast<std::uint32_t>(ElementAt(text, result.position));
        std::string const bytes = Encode(value);
        if (bytes.empty()) {
            result.returned = kFailed;
            return result;
        }
        if (bytes.size() > n - result.returned) return result;
        result.room.replace(result.returned, bytes.size(), bytes);
        if (value == 0) {
            result.position = kNullPosition;
            return result;
        }
        result.returned += static_cast<unsigned int>(bytes.size());
        ++result.position;
    }
    return result;
}

// Decodes a terminated text into n characters that held `fill`, after an earlier text that ended
// in `seen`, the first bytes of a character.
inline Conversion<wchar_t> ConvertString(std::string const& text, std::size_t n, wchar_t fill,
                                         std::string const& seen = {}) {
    Conversion<wchar_t> result = {0, 0, std::wstring(n, fill)};
    std::string const all = seen + text;
    std::size_t at = 0;
    while (result.returned < n) {
        Character const character = Decode(all, at);
        if (character.length == 0) {
            result.returned = kFailed;
            break;
        }
        result.room[result.returned] = static_cast<wchar_t>(character.value);
        if (character.value == 0) {
            result.position = kNullPosition;
            return result;
        }
        ++result.returned;
        at += character.length;
    }
    result.position = at == 0 ? 0 : at - seen.size();
    return result;
}

inline unsigned int CountElements(std::wstring const& text) {
    return ConvertString(text, text.size() * 4 + 1, '\0').returned;
}

inline unsigned int CountElements(std::string const& text, std::string const& seen = {}) {
    return ConvertString(text, text.size() + 2, L'\0', seen).returned;
}

// The state of a conversion that stopped after the first bytes of a character.
inline __mbstate_t StateAfter(std::string const& seen) {
    auto const lead = static_cast<unsigned char>(seen[0]);
    std::size_t const length = AnnouncedLength(lead);
    std::uint32_t payload = LeadPayload(lead);
    for (std::size_t i = 1; i < seen.size(); ++i)
        payload = payload << 6 | (static_cast<unsigned char>(seen[i]) & 0x3Fu);
    auto const missing = static_cast<std::uint32_t>(length - seen.size());
    auto const lengthMark = static_cast<std::uint32_t>(length - 1);
    __mbstate_t state = {};
    state.__count = static_cast<int>(missing << 30 | lengthMark << 28 | payload);
    return state;
}

inline bool IsSame(__mbstate_t const& a, __mbstate_t const& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace reference_utf8

#endif  // QORUTILS_TESTS_SUPPORT_REFERENCE_UTF8_H_
