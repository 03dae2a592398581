// Wide text, and the same text as the locale of the process encodes it.

#ifndef QORUTILS_TOOLS_QORINI_LOCALE_TEXT_H_
#define QORUTILS_TOOLS_QORINI_LOCALE_TEXT_H_

#include <qorutils/text/qor_string.h>

#include <string>

namespace qorini {

using Text = qor_text::CQorStringT<wchar_t>;

// Of the strings' own comparison, which ends at a zero, only the order is wanted here.
bool IsSame(Text const& one, Text const& other);

// As the settings store decodes it: what the locale cannot decode ends the text, and so does a
// zero.
Text Decoded(std::string const& bytes);

// Whether Decoded takes all of it.
bool IsText(std::string const& bytes);

// False, with bytes untouched, unless decoding them gives exactly the same text again.
bool Encode(Text const& text, std::string* bytes);

// For messages: what cannot be encoded, and what would control a terminal, becomes '?'.
std::string Shown(Text const& text);

// The same for bytes that are no text: all but printable ASCII becomes '?'.
std::string Shown(std::string const& bytes);

// "the locale's encoding, UTF-8"
std::string LocaleEncoding();

bool IsUtf8Locale();

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_LOCALE_TEXT_H_
