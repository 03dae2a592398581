// Private: wide text as the units of an INI file, which are of type T: bytes or wide characters.

#ifndef QORUTILS_FS_INI_TEXT_H_
#define QORUTILS_FS_INI_TEXT_H_

#include <cstddef>
#include <cstring>

#include "qorutils/text/qor_string.h"

namespace qor_settings {

template <typename T>
class IniText;

// Characters as they are, anywhere in memory: behind a mark of two bytes they are not aligned.
template <>
class IniText<wchar_t> {
  public:
    static wchar_t Unit(char const* data) {
        wchar_t unit;
        std::memcpy(&unit, data, sizeof unit);
        return unit;
    }

    // The line becomes the n units at data.
    static void Decode(qor_text::CQorStringT<wchar_t>& line, char const* data, std::size_t n) {
        int const length = static_cast<int>(n);
        std::memcpy(line.GetBuffer(length), data, n * sizeof(wchar_t));
        line.ReleaseBuffer(length);
    }

    // The result lives until the next call.
    static qor_text::CQorStringT<wchar_t> const& Encode(
        qor_text::CQorStringT<wchar_t> const& text) {
        return text;
    }
};

// Text as the process locale encodes it. Both ways it ends at a zero character.
template <>
class IniText<char> {
  public:
    IniText();

    static char Unit(char const* data) { return *data; }

    // What cannot be decoded ends the text, too. Characters may be more than the bytes (Tamil), and
    // a letter may join the accent behind it (Vietnamese): only a line as a whole can be decoded.
    void Decode(qor_text::CQorStringT<wchar_t>& line, char const* data, std::size_t n);

    // Empty for a text that cannot be encoded whole.
    qor_text::CQorStringT<char> const& Encode(qor_text::CQorStringT<wchar_t> const& text);

  private:
    bool keepsAscii_;  // Most locales do; Shift-JIS has a yen sign instead of the backslash.
    qor_text::CQorStringT<char> bytes_;  // keeps its buffer for the next text
};

}  // namespace qor_settings

#endif  // QORUTILS_FS_INI_TEXT_H_
