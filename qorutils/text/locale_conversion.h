// Private: text between char and wchar_t as the process locale says.
//
// LocaleLength tells how many characters a text becomes; LocaleConvert writes at most `limit` of
// them, without a terminator, and returns how many. Neither reads past the terminator of its text.

#ifndef QORUTILS_TEXT_LOCALE_CONVERSION_H_
#define QORUTILS_TEXT_LOCALE_CONVERSION_H_

#include <cstddef>

namespace qor_text {

constexpr std::size_t kConversionFailed = static_cast<std::size_t>(-1);

// kConversionFailed for a text that the locale cannot encode whole.
std::size_t LocaleLength(wchar_t const* text);
std::size_t LocaleConvert(char* to, wchar_t const* text, std::size_t limit);

// Of what stands before the first invalid sequence.
std::size_t LocaleLength(char const* text);
std::size_t LocaleConvert(wchar_t* to, char const* text, std::size_t limit);

// Decodes at most `limit` wide characters byte by byte, so that nothing behind the last of them is
// read; text need not be terminated then. Only counts when `to` is null.
std::size_t LocaleDecodeBytewise(wchar_t* to, char const* text, std::size_t limit);

}  // namespace qor_text

#endif  // QORUTILS_TEXT_LOCALE_CONVERSION_H_
