#include "qorutils/fs/qor_ini_file.h"

#include <cctype>
#include <cstdint>
#include <cwctype>
#include <iterator>
#include <memory>
#include <utility>

#include "qorutils/fs/ini_file_reader.h"
#include "qorutils/fs/ini_file_writer.h"
#include "qorutils/fs/mapped_file.h"
#include "qorutils/logging/checks.h"

using qor::text_utils::EQorTextEncoding;
using qor_text::CQorStringT;

namespace qor_settings {

namespace {

using String = CQorStringT<wchar_t>;
using Section = CThreeTupleStore::TQorIniSection;

// The numbers under which lines are reported.
enum BadLine : int {
    kIndentedText = 214,
    kBadSectionName = 223,
    kNoEqualsSign = 237,
    kBadFirstCharacter = 245
};

bool Refuse(BadLine kind) {
    qor_logging::qor_err_log("qorutils/fs/qor_ini_file", kind, "");
    return false;
}

bool BeginsKey(wchar_t ch) {
    auto const code = static_cast<std::uint32_t>(ch);
    if (code > 255) return std::iswalpha(code) != 0;
    return (code >= '0' && code <= '9') || std::isalpha(static_cast<int>(code)) != 0;
}

class IniParser {
  public:
    explicit IniParser(CThreeTupleStore& store) : store_(store) {}

    // Whether the line is good.
    bool Take(String const& line) {
        if (line.IsEmpty()) return EnterSection(String());
        switch (line[0]) {
            case L'\t':
            case L' ':
                return TakeIndented(line);
            case L'#':
            case L';':
            case L'/':
                return true;
            case L'[':
                return TakeSectionName(line);
            default:
                return BeginsKey(line[0]) ? TakeKey(line) : Refuse(kBadFirstCharacter);
        }
    }

  private:
    bool EnterSection(String const& name) {
        name_ = name;
        section_ = nullptr;
        return true;
    }

    bool TakeIndented(String line) {
        return line.Trim().IsEmpty() ? EnterSection(line) : Refuse(kIndentedText);
    }

    bool TakeSectionName(String line) {
        int const length = line.Trim().GetLength();
        if (length < 3 || line[length - 1] != L']') return Refuse(kBadSectionName);
        return EnterSection(line.Mid(1, length - 2));
    }

    bool TakeKey(String const& line) {
        int const equals = line.Find(L'=');
        if (equals == -1) return Refuse(kNoEqualsSign);
        if (section_ == nullptr) OpenSection();
        wchar_t const* const text = line.c_str();
        String& value = Value(String(text, equals));
        value = String(text + equals + 1, line.GetLength() - equals - 1);
        return true;
    }

    // Keys come in order, as they are written, or in runs, as "key9" and "key10" do.
    String& Value(String key) {
        auto& values = section_->values;
        auto const place =
            values.emplace_hint(inRun_ ? next_ : values.end(), std::move(key), String());
        auto const last = std::prev(values.end());
        auto const behind = place == last ? values.end() : std::next(place);
        inRun_ = behind == next_;
        next_ = behind;
        return place->second;
    }

    void OpenSection() {
        auto place = store_.find(name_);
        if (place == store_.end()) place = store_.emplace(name_, Section{{}, name_}).first;
        section_ = &place->second;
        next_ = section_->values.end();
    }

    CThreeTupleStore& store_;
    String name_;
    Section* section_ = nullptr;  // the one with that name, once a key has been stored in it
    decltype(Section::values)::iterator next_;  // behind the last key
    bool inRun_ = false;  // whether the last key came directly behind the one before it
};

std::unique_ptr<IQorIniFileReaderImpl> MakeReader(EQorTextEncoding encoding, char const* text,
                                                  std::size_t size) {
    if (encoding == qor::text_utils::eTextEncodingUtf16LE)
        return std::make_unique<TQorIniFileReaderImpl<wchar_t>>(text, size);
    return std::make_unique<TQorIniFileReaderImpl<char>>(text, size);
}

std::unique_ptr<IQorIniFileWriterImpl> MakeWriter(EQorTextEncoding encoding) {
    if (encoding == qor::text_utils::eTextEncodingUtf16LE)
        return std::make_unique<TQorIniFileWriterImpl<wchar_t>>();
    return std::make_unique<TQorIniFileWriterImpl<char>>();
}

bool WriteStore(IQorIniFileWriterImpl& writer, CThreeTupleStore const& store) {
    String const opening(L'['), closing(L']'), equals(L'='), nothing;
    for (auto const& named : store) {
        Section const& section = named.second;
        if (!writer.Write(opening) || !writer.Write(section.name) || !writer.WriteLine(closing))
            return false;
        for (auto const& setting : section.values)
            if (!writer.Write(setting.first) || !writer.Write(equals) ||
                !writer.WriteLine(setting.second))
                return false;
        if (!writer.WriteLine(nothing)) return false;
    }
    return writer.Flush();
}

}  // namespace

bool readSettingsAsIni(wchar_t const* path, CThreeTupleStore& store, EQorTextEncoding& encoding) {
    base::MappedFile const file{CQorStringT<char>(path)};
    if (file.data() == nullptr) return false;

    unsigned int markLength = 0;
    auto const detected = static_cast<EQorTextEncoding>(qor::text_utils::detect_text_encoding(
        file.data(), static_cast<unsigned int>(file.size()), &markLength));
    auto const reader = MakeReader(detected, static_cast<char const*>(file.data()) + markLength,
                                   file.size() - markLength);
    store.clear();
    IniParser parser(store);
    while (!reader->AtEnd())
        if (!parser.Take(reader->NextLine())) return false;
    encoding = detected;
    return true;
}

bool writeSettingsAsIni(wchar_t const* path, CThreeTupleStore const& store,
                        EQorTextEncoding encoding) {
    auto const writer = MakeWriter(encoding);
    return writer->Open(path) && WriteStore(*writer, store);
}

}  // namespace qor_settings
