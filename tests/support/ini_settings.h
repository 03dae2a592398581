// Settings as plain standard containers, and INI files that a test reads and writes.
#ifndef QORUTILS_TESTS_SUPPORT_INI_SETTINGS_H_
#define QORUTILS_TESTS_SUPPORT_INI_SETTINGS_H_

#include <map>
#include <string>

#include <gtest/gtest.h>
#include <qorutils/fs/qor_ini_file.h>

#include "support/temporary_directory.h"
#include "support/text_literal.h"

using SettingsMap = std::map<std::wstring, std::map<std::wstring, std::wstring>>;

inline qor_settings::CThreeTupleStore ToStore(SettingsMap const& settings) {
    qor_settings::CThreeTupleStore store;
    for (auto const& section : settings) {
        auto& stored = store[Whole(section.first)];
        stored.name = Whole(section.first);
        for (auto const& setting : section.second)
            stored.values[Whole(setting.first)] = Whole(setting.second);
    }
    return store;
}

// Fails the test for a section whose own name is not the one under which it is stored.
inline SettingsMap FromStore(qor_settings::CThreeTupleStore const& store) {
    SettingsMap settings;
    for (auto const& section : store) {
        auto& values = settings[Content(section.first)];
        EXPECT_EQ(Content(section.first), Content(section.second.name));
        for (auto const& setting : section.second.values)
            values[Content(setting.first)] = Content(setting.second);
    }
    return settings;
}

// The bytes of a text in units of 32 bits.
inline std::string WideBytes(std::wstring const& text) {
    std::string bytes;
    for (wchar_t const ch : text)
        for (int shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>((static_cast<unsigned>(ch) >> shift) & 0xFF);
    return bytes;
}

// What an encoding holds that was not set.
constexpr auto kNoEncoding = static_cast<qor::text_utils::EQorTextEncoding>(77);

// What reading a file gave. The store held "before" in section "Old".
struct IniRead {
    explicit IniRead(std::wstring const& path) : store(ToStore({{L"Old", {{L"k", L"before"}}}})) {
        succeeded = qor_settings::readSettingsAsIni(path.c_str(), store, encoding);
        settings = FromStore(store);
    }

    bool IsUntouched() const {
        return !succeeded && encoding == kNoEncoding &&
               settings == SettingsMap{{L"Old", {{L"k", L"before"}}}};
    }

    qor_settings::CThreeTupleStore store;
    qor::text_utils::EQorTextEncoding encoding = kNoEncoding;
    bool succeeded;
    SettingsMap settings;
};

inline IniRead ReadIniText(std::string const& content) {
    TemporaryDirectory directory;
    directory.MakeFile("settings.ini", content);
    return IniRead(directory.WidePath("settings.ini"));
}

#endif  // QORUTILS_TESTS_SUPPORT_INI_SETTINGS_H_
