#include "ini_edit.h"

#include <functional>

#include "complaint.h"

namespace qorini {

namespace {

std::string EncodedFor(bool isWide, Text const& text) {
    std::string bytes;
    if (!EncodeFor(isWide, text, &bytes))
        throw Complaint("\"" + Shown(text) + "\" cannot be written in " + LocaleEncoding());
    return bytes;
}

using IsWanted = std::function<bool(IniLine const&)>;

IniLine const* LastLine(IniDocument const& document, IsWanted const& isWanted) {
    IniLine const* last = nullptr;
    for (IniLine const& line : document.lines())
        if (isWanted(line)) last = &line;
    return last;
}

std::string Without(IniDocument const& document, IsWanted const& isUnwanted) {
    std::string bytes = document.bytes().substr(0, document.textBegin());
    for (IniLine const& line : document.lines())
        if (!isUnwanted(line)) bytes.append(document.bytes(), line.begin, line.next - line.begin);
    // The store cannot read a file of 0 bytes, nor recognise wide text of 8.
    while (bytes.size() <= (document.isWide() ? 8 : 0)) bytes += document.LineEnd();
    return bytes.append(document.bytes(), document.textEnd(), std::string::npos);
}

IsWanted HasKey(Text const& section, Text const& key) {
    return [section, key](IniLine const& line) {
        return line.kind == LineKind::kSetting && line.section == section && line.key == key;
    };
}

std::string WithLineBehind(IniDocument const& document, IniLine const& anchor,
                           std::string const& line) {
    std::string bytes = document.bytes();
    bool const isOpen = anchor.next == anchor.end;
    return bytes.insert(anchor.next,
                        isOpen ? document.LineEnd() + line : line + document.LineEnd());
}

bool IsOfText(IniLine const& line) {
    return line.kind != LineKind::kTextEnd;
}

bool IsEmptyText(IniDocument const& document) {
    return LastLine(document, [](IniLine const& line) {
               return line.kind != LineKind::kEmpty && line.kind != LineKind::kTextEnd;
           }) == nullptr;
}

// In the manner of the store, an empty line closes the new section if one closes the last.
std::string WithNewSection(IniDocument const& document, Text const& section,
                           std::string const& line) {
    std::string const& bytes = document.bytes();
    std::string const lineEnd = document.LineEnd();
    std::string const header = EncodedFor(document.isWide(), L"[" + section + L"]");
    std::string text = bytes.substr(0, document.textEnd());
    if (IsEmptyText(document)) text.resize(document.textBegin());

    IniLine const* const last = LastLine(document, IsOfText);
    bool const isOpen = last != nullptr && last->next == last->end;
    bool const isApart = last == nullptr || last->kind == LineKind::kEmpty;
    if (isOpen) text += lineEnd;
    if (!isApart) text += lineEnd;
    text += header + lineEnd + line + lineEnd;
    if (isApart) text += lineEnd;
    return text + bytes.substr(document.textEnd());
}

Text LineEndOf(IniDocument const& document, IniLine const& line) {
    if (line.next == line.end) return Text();
    std::size_t const unit = document.isWide() ? sizeof(wchar_t) : 1;
    if (line.next - line.end > unit) return L"\r\n";
    return document.bytes()[line.end] == '\r' ? L"\r" : L"\n";
}

std::string ConvertedLine(IniDocument const& document, std::size_t index, bool toWide) {
    IniLine const& line = document.lines()[index];
    std::string bytes;
    if (!line.isWhole || !EncodeFor(toWide, line.text, &bytes))
        throw Complaint("line " + std::to_string(index + 1) + " is not text in " +
                        LocaleEncoding());
    return bytes + EncodedFor(toWide, LineEndOf(document, line));
}

}  // namespace

std::string WithValue(IniDocument const& document, Text const& section, Text const& key,
                      Text const& value) {
    std::string const line = EncodedFor(document.isWide(), key + L"=" + value);
    if (IniLine const* const old = LastLine(document, HasKey(section, key)))
        return std::string(document.bytes()).replace(old->begin, old->end - old->begin, line);

    IniLine const* const anchor = LastLine(document, [&section](IniLine const& l) {
        return l.section == section &&
               (l.kind == LineKind::kSetting || l.kind == LineKind::kSection);
    });
    return anchor != nullptr ? WithLineBehind(document, *anchor, line)
                             : WithNewSection(document, section, line);
}

std::string WithoutKey(IniDocument const& document, Text const& section, Text const& key) {
    return Without(document, HasKey(section, key));
}

std::string WithoutSection(IniDocument const& document, Text const& section) {
    return Without(document, [&section](IniLine const& line) {
        return line.section == section &&
               (line.kind == LineKind::kSetting || line.kind == LineKind::kSection ||
                line.kind == LineKind::kEmpty);
    });
}

std::string Converted(IniDocument const& document, bool toWide) {
    if (toWide == document.isWide()) return document.bytes();
    if (document.textEnd() < document.bytes().size())
        throw Complaint("what stands behind the end of the text cannot be converted");
    std::string bytes;
    for (std::size_t i = 0; i < document.lines().size(); ++i)
        bytes += ConvertedLine(document, i, toWide);
    return bytes;
}

}  // namespace qorini
