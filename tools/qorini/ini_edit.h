// Changes to a settings file that leave all its other lines as they are, byte for byte.

#ifndef QORUTILS_TOOLS_QORINI_INI_EDIT_H_
#define QORUTILS_TOOLS_QORINI_INI_EDIT_H_

#include <string>

#include "ini_document.h"

namespace qorini {

// Each returns the bytes of the changed file. They throw a Complaint, without the file's name, for
// text that the file's encoding cannot hold.

// The last line with the key is replaced. A new key goes behind the last line of its section, a new
// section to the end.
std::string WithValue(IniDocument const& document, Text const& section, Text const& key,
                      Text const& value);

// All lines with the key go.
std::string WithoutKey(IniDocument const& document, Text const& section, Text const& key);

// All of the section goes but its comments.
std::string WithoutSection(IniDocument const& document, Text const& section);

// Comments and all; without a byte-order mark, as the store writes it.
std::string Converted(IniDocument const& document, bool toWide);

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_INI_EDIT_H_
