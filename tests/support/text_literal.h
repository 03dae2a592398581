// Text of either character type from one literal, and strings compared with it to the last
// character, zeros and terminator included.
#ifndef QORUTILS_TESTS_SUPPORT_TEXT_LITERAL_H_
#define QORUTILS_TESTS_SUPPORT_TEXT_LITERAL_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <ostream>
#include <string>

#include <qorutils/text/qor_string.h>

// Passes for a T const*, also as a temporary: s.Find(Text<T>("ab")).
template <typename T>
struct TextLiteral {
    std::basic_string<T> characters;

    T const* c_str() const { return characters.c_str(); }
    int size() const { return static_cast<int>(characters.size()); }
    operator T const*() const { return characters.c_str(); }
};

// The literal, zeros inside it included; its bytes are taken as codes 0 to 255.
template <typename T, std::size_t N>
TextLiteral<T> Text(char const (&literal)[N]) {
    TextLiteral<T> text;
    for (std::size_t i = 0; i + 1 < N; ++i)
        text.characters += static_cast<T>(static_cast<unsigned char>(literal[i]));
    return text;
}

// A string that owns a buffer with exactly the literal.
template <typename T, std::size_t N>
qor_text::CQorStringT<T> String(char const (&literal)[N]) {
    TextLiteral<T> const text = Text<T>(literal);
    return qor_text::CQorStringT<T>(text.c_str(), text.size());
}

template <typename T>
std::basic_string<T> Content(qor_text::CQorStringT<T> const& s) {
    return std::basic_string<T>(s.begin(), s.end());
}

// The other way round.
template <typename T>
qor_text::CQorStringT<T> Whole(std::basic_string<T> const& text) {
    return qor_text::CQorStringT<T>(text.data(), static_cast<int>(text.size()));
}

template <typename T>
bool IsTerminated(qor_text::CQorStringT<T> const& s) {
    return s.c_str()[s.GetLength()] == T();
}

template <typename T>
bool IsNil(qor_text::CQorStringT<T> const& s) {
    return s.GetData() == qor_text::CQorStringT<T>::get_afxDataNil();
}

template <typename T>
int Refs(qor_text::CQorStringT<T> const& s) {
    return s.GetData()->nRefs;
}

// A string that owns a buffer with this text and room for `capacity` characters.
template <typename T>
qor_text::CQorStringT<T> WithRoom(TextLiteral<T> const& text, int capacity) {
    qor_text::CQorStringT<T> s;
    T* const buffer = s.GetBuffer(capacity);
    std::copy(text.c_str(), text.c_str() + text.size(), buffer);
    s.ReleaseBuffer(text.size());
    return s;
}

template <typename T>
bool operator==(TextLiteral<T> const& text, qor_text::CQorStringT<T> const& s) {
    return IsTerminated(s) && text.characters == Content(s);
}

template <typename T>
void PrintCharacters(std::basic_string<T> const& characters, std::ostream* out) {
    *out << '"' << std::hex << std::setfill('0');
    for (T const ch : characters) {
        auto const code = static_cast<std::uint32_t>(ch) & (sizeof(T) == 1 ? 0xFFu : ~0u);
        if (code >= 0x20 && code < 0x7F)
            *out << static_cast<char>(code);
        else
            *out << '\\' << std::setw(2) << code << ' ';
    }
    *out << '"' << std::dec << " of length " << characters.size();
}

template <typename T>
void PrintTo(TextLiteral<T> const& text, std::ostream* out) {
    PrintCharacters(text.characters, out);
}

namespace qor_text {

template <typename T>
void PrintTo(CQorStringT<T> const& s, std::ostream* out) {
    PrintCharacters(Content(s), out);
    if (!IsTerminated(s)) *out << " without terminator";
}

}  // namespace qor_text

#endif  // QORUTILS_TESTS_SUPPORT_TEXT_LITERAL_H_
