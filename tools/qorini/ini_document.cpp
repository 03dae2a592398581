#include "ini_document.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <cwctype>
#include <utility>

namespace qorini {

namespace {

bool IsCharacter(char32_t code) {
    return code != 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

// The letters are those of the settings store: isalpha up to 255, iswalpha above.
bool BeginsKey(wchar_t ch) {
    auto const code = static_cast<std::wint_t>(ch);
    if (code > 255) return std::iswalpha(code) != 0;
    return (code >= '0' && code <= '9') || std::isalpha(static_cast<int>(code)) != 0;
}

char const* WhatIsWrongWithHeader(Text const& header) {
    if (header[header.GetLength() - 1] != L']') return "there is no ] at the end";
    return header.GetLength() < 3 ? "the section has no name" : nullptr;
}

char const* WhatIsWrongWithSetting(Text const& line) {
    if (!IsCharacter(static_cast<char32_t>(line[0])))
        return "no text: wide text has 32 bits a character here, UTF-16 has 16";
    if (!BeginsKey(line[0])) return "a key begins with a letter or a digit";
    return line.Find(L'=') < 0 ? "there is no = behind the key" : nullptr;
}

class Classifier {
  public:
    void Take(IniLine* line) {
        line->section = section_;
        line->fault = nullptr;
        line->kind = KindOf(line);
        if (line->fault != nullptr) line->kind = LineKind::kBad;
        if (line->kind == LineKind::kBlank || line->kind == LineKind::kUnreadable) section_.Empty();
        if (line->kind == LineKind::kSection) section_ = line->section;
    }

  private:
    static LineKind KindOf(IniLine* line) {
        if (line->text.IsEmpty()) return line->isWhole ? LineKind::kEmpty : LineKind::kUnreadable;
        Text trimmed(line->text);
        trimmed.Trim();
        switch (line->text[0]) {
            case L'\t':
            case L' ':
                if (!trimmed.IsEmpty()) line->fault = "the line is indented";
                return LineKind::kBlank;
            case L'#':
            case L';':
            case L'/':
                return LineKind::kComment;
            case L'[':
                line->fault = WhatIsWrongWithHeader(trimmed);
                if (line->fault == nullptr) line->section = InBrackets(trimmed);
                return LineKind::kSection;
            default:
                line->fault = WhatIsWrongWithSetting(line->text);
                if (line->fault == nullptr) line->key = line->text.Left(line->text.Find(L'='));
                return LineKind::kSetting;
        }
    }

    static Text InBrackets(Text const& header) { return header.Mid(1, header.GetLength() - 2); }

    Text section_;
};

}  // namespace

IniDocument::IniDocument(std::string bytes) : bytes_(std::move(bytes)) {
    auto* const data = reinterpret_cast<unsigned char*>(&bytes_[0]);
    auto const size = static_cast<unsigned int>(bytes_.size());
    unsigned int markLength = 0;
    markKind_ = qor::text_utils::detect_bom_header(data, size, &markLength);
    markLength = 0;
    unsigned int const encoding = qor::text_utils::detect_text_encoding(data, size, &markLength);
    isWide_ = encoding == qor::text_utils::eTextEncodingUtf16LE;
    isForeign_ = encoding == qor::text_utils::eTextEncodingUnknown && markKind_ != 0 &&
                 markKind_ != kUtf8Mark;
    unit_ = isWide_ ? sizeof(wchar_t) : 1;
    textBegin_ = markLength;
    textEnd_ = textBegin_ + (bytes_.size() - textBegin_) / unit_ * unit_;
    hasCutCharacter_ = textEnd_ < bytes_.size();
    ReadLines();
}

char32_t IniDocument::Unit(std::size_t at) const {
    if (!isWide_) return static_cast<unsigned char>(bytes_[at]);
    char32_t unit;
    std::memcpy(&unit, bytes_.data() + at, sizeof unit);
    return unit;
}

bool IniDocument::IsLineEnd(std::size_t at) const {
    return Unit(at) == U'\r' || Unit(at) == U'\n';
}

std::size_t IniDocument::BehindLineEnd(std::size_t at) const {
    if (at == textEnd_) return at;
    std::size_t const next = at + unit_;
    bool const isPair = Unit(at) == U'\r' && next < textEnd_ && Unit(next) == U'\n';
    return isPair ? next + unit_ : next;
}

void IniDocument::ReadLines() {
    Classifier classifier;
    for (std::size_t begin = textBegin_; begin < textEnd_;) {
        IniLine line{};
        line.begin = begin;
        if (Unit(begin) == 0) {
            line.kind = LineKind::kTextEnd;
            line.end = line.next = begin;
            lines_.push_back(line);
            textEnd_ = begin;
            return;
        }
        line.end = begin;
        while (line.end < textEnd_ && !IsLineEnd(line.end)) line.end += unit_;
        line.next = BehindLineEnd(line.end);
        Decode(&line);
        classifier.Take(&line);
        begin = line.next;
        lines_.push_back(std::move(line));
    }
}

void IniDocument::Decode(IniLine* line) const {
    std::string const bytes = Units(line->begin, line->end);
    if (!isWide_) {
        line->text = Decoded(bytes);
        line->isWhole = IsText(bytes);
        return;
    }
    int const length = static_cast<int>(bytes.size() / sizeof(wchar_t));
    std::memcpy(line->text.GetBuffer(length), bytes.data(), bytes.size());
    line->text.ReleaseBuffer(length);
    line->isWhole = std::all_of(line->text.begin(), line->text.end(),
                                [](wchar_t ch) { return IsCharacter(static_cast<char32_t>(ch)); });
}

std::string IniDocument::LineEnd() const {
    for (IniLine const& line : lines_)
        if (line.kind != LineKind::kTextEnd && line.next > line.end)
            return Units(line.end, line.next);
    std::string lineEnd;
    EncodeFor(isWide_, L"\r\n", &lineEnd);
    return lineEnd;
}

Fault IniDocument::FirstFault() const {
    if (isForeign_) return {1, "the file is marked as text of an encoding that is not read"};
    for (std::size_t i = 0; i < lines_.size(); ++i) {
        IniLine const& line = lines_[i];
        if (line.kind == LineKind::kBad || line.kind == LineKind::kUnreadable)
            return {i + 1, FaultOf(line)};
    }
    return {0, ""};
}

// Where a line is cut, what is wrong with its beginning is misleading.
std::string IniDocument::FaultOf(IniLine const& line) const {
    if (!isWide_ && !line.isWhole) return "the line is not text in " + LocaleEncoding();
    return line.fault;
}

bool EncodeFor(bool isWide, Text const& text, std::string* bytes) {
    if (!isWide) return Encode(text, bytes);
    bytes->assign(reinterpret_cast<char const*>(text.c_str()),
                  static_cast<std::size_t>(text.GetLength()) * sizeof(wchar_t));
    return true;
}

char const* WhatIsWrongWithKey(Text const& key) {
    if (key.IsEmpty()) return "the key is empty";
    if (!BeginsKey(key[0])) return "a key begins with a letter or a digit";
    return key.Find(L'=') >= 0 ? "a key ends at its first =" : nullptr;
}

}  // namespace qorini
