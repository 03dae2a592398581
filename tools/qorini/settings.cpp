#include "settings.h"

#include <sys/mman.h>

#include <algorithm>

#include "complaint.h"
#include "file_bytes.h"

namespace qorini {

namespace {

using Section = qor_settings::CThreeTupleStore::TQorIniSection;

bool IsSameSection(Section const& one, Section const& other) {
    auto const isSameSetting = [](std::pair<Text const, Text> const& a,
                                  std::pair<Text const, Text> const& b) {
        return IsSame(a.first, b.first) && IsSame(a.second, b.second);
    };
    return IsSame(one.name, other.name) && one.values.size() == other.values.size() &&
           std::equal(one.values.begin(), one.values.end(), other.values.begin(), isSameSetting);
}

}  // namespace

bool operator==(Settings const& one, Settings const& other) {
    using Named = qor_settings::CThreeTupleStore::value_type;
    auto const isSame = [](Named const& a, Named const& b) {
        return IsSameSection(a.second, b.second);
    };
    return one.isWide == other.isWide && one.store.size() == other.store.size() &&
           std::equal(one.store.begin(), one.store.end(), other.store.begin(), isSame);
}

Text const* FindValue(Settings const& settings, Text const& section, Text const& key) {
    auto const named = settings.store.find(section);
    if (named == settings.store.end()) return nullptr;
    auto const setting = named->second.values.find(key);
    return setting == named->second.values.end() ? nullptr : &setting->second;
}

Settings ReadSettings(std::string const& bytes) {
    if (bytes.empty()) return {{}, false};
    Descriptor const copy(memfd_create("settings", MFD_CLOEXEC));
    if (copy.get() == -1) throw SystemComplaint("copy in memory");
    WriteAll(copy.get(), bytes, "copy in memory");
    return ReadSettings(copy.get());
}

Settings ReadSettings(int file) {
    Settings settings{{}, false};
    auto encoding = qor::text_utils::eTextEncodingUnknown;
    Text const path(("/proc/self/fd/" + std::to_string(file)).c_str());
    if (!qor_settings::readSettingsAsIni(path, settings.store, encoding))
        throw Complaint("a program cannot read it");
    settings.isWide = encoding == qor::text_utils::eTextEncodingUtf16LE;
    return settings;
}

}  // namespace qorini
