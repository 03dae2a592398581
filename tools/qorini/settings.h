// Settings as a program gets them: by the library's settings store.

#ifndef QORUTILS_TOOLS_QORINI_SETTINGS_H_
#define QORUTILS_TOOLS_QORINI_SETTINGS_H_

#include <qorutils/fs/qor_ini_file.h>

#include <string>

#include "locale_text.h"

namespace qorini {

struct Settings {
    qor_settings::CThreeTupleStore store;
    bool isWide;
};

bool operator==(Settings const& one, Settings const& other);

// Null when there is no such key.
Text const* FindValue(Settings const& settings, Text const& section, Text const& key);

// The settings in a text, which is no file of 0 bytes to the store then, but one without settings.
// The store reads a copy in memory: it neither needs to be writable for the user nor can it be cut
// short meanwhile, and there may be no room on any disk. Throws a Complaint, without a file's name.
Settings ReadSettings(std::string const& bytes);

// The same for an open file of at least one byte.
Settings ReadSettings(int file);

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_SETTINGS_H_
