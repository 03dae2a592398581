// The first byte of an input chooses encoding, locale, and whether sections are stored under their
// names or under numbers. Behind it come texts: byte 1 begins a section's name, 2 a key, 3 its
// value. The settings are written, the file is compared with its plain composition, and, when the
// format can hold them, they are read back.

#include <qorutils/fs/qor_ini_file.h>

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "memory_file.h"
#include "require.h"
#include "silent_log.h"
#include "support/reference_ini.h"

namespace {

using qor_settings::CThreeTupleStore;
using qor_text::CQorStringT;
using reference_ini::Section;

constexpr std::size_t kLargestInput = 16384;

// Bytes from 128 on stand for letters of other scripts, white space, a lone surrogate, and values
// that are no characters.
wchar_t CharacterFrom(std::uint8_t byte) {
    wchar_t const others[] = {0xE9, 0x416, 0x4E2D, 0x20AC, 0x1F600, 0x2003, 0xD800, -1};
    return byte < 128 ? static_cast<wchar_t>(byte) : others[byte % 8];
}

class StoreBuilder {
  public:
    explicit StoreBuilder(bool isNumbered) : isNumbered_(isNumbered) {}

    void Take(std::uint8_t byte) {
        if (byte < kSection || byte > kValue) {
            text_ += CharacterFrom(byte);
            return;
        }
        Finish();
        part_ = byte;
        text_.Empty();
    }

    void Finish() {
        if (part_ == kSection) {
            CThreeTupleStore::TQorIniSection& section = store[Place()];
            section.name = text_;
            values_ = &section.values;
            key_.Empty();
        } else if (part_ == kKey) {
            key_ = text_;
        } else if (values_ != nullptr) {
            (*values_)[key_] = text_;
        }
    }

    CThreeTupleStore store;

  private:
    enum : std::uint8_t { kSection = 1, kKey = 2, kValue = 3 };

    CQorStringT<wchar_t> Place() const {
        return isNumbered_ ? CQorStringT<wchar_t>(std::to_wstring(store.size()).c_str()) : text_;
    }

    bool isNumbered_;
    std::uint8_t part_ = kValue;
    CQorStringT<wchar_t> text_;
    CQorStringT<wchar_t> key_;
    decltype(CThreeTupleStore::TQorIniSection::values)* values_ = nullptr;
};

reference_ini::Settings ByName(std::vector<Section> const& sections) {
    reference_ini::Settings settings;
    for (Section const& section : sections)
        for (auto const& value : section.values) settings[section.name][value.first] = value.second;
    return settings;
}

void WriteAndRead(CThreeTupleStore const& store, bool isWide) {
    static MemoryFile file;
    static std::wstring const path = file.Path();
    auto const encoding =
        isWide ? qor::text_utils::eTextEncodingUtf16LE : qor::text_utils::eTextEncodingAnsi;
    std::vector<Section> const sections = reference_ini::SectionsOf(store);
    Require(qor_settings::writeSettingsAsIni(path.c_str(), store, encoding));
    Require(file.Content() == reference_ini::Compose(sections, isWide));
    if (!reference_ini::IsHeld(sections, isWide)) return;

    CThreeTupleStore found;
    auto foundEncoding = qor::text_utils::eTextEncodingUnknown;
    Require(qor_settings::readSettingsAsIni(path.c_str(), found, foundEncoding));
    Require(foundEncoding == encoding);
    Require(reference_ini::IsSame(ByName(sections), found));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    SilenceLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* input, std::size_t size) {
    if (size == 0 || size > kLargestInput) return 0;
    std::setlocale(LC_ALL, (input[0] & 2) != 0 ? "C.UTF-8" : "C");
    StoreBuilder builder((input[0] & 4) != 0);
    for (std::size_t i = 1; i < size; ++i) builder.Take(input[i]);
    builder.Finish();
    WriteAndRead(builder.store, (input[0] & 1) != 0);
    return 0;
}
