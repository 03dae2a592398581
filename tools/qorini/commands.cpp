#include "commands.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "file_bytes.h"
#include "ini_check.h"
#include "ini_document.h"
#include "ini_edit.h"
#include "settings.h"

namespace qorini {

namespace {

// ---- What the user says, and is told ----

Text FromUser(std::string const& word) {
    Text text = Decoded(word);
    std::string bytes;
    if (!Encode(text, &bytes) || bytes != word)
        throw Complaint("'" + Shown(word) + "' is not text in " + LocaleEncoding());
    return text;
}

std::string ToUser(std::string const& path, Text const& text) {
    std::string bytes;
    if (Encode(text, &bytes)) return bytes + "\n";
    throw Complaint(path + ": '" + Shown(text) + "' is not text in " + LocaleEncoding());
}

Complaint NotFound(std::string const& path, Settings const& settings, Text const& section,
                   Text const& key) {
    bool const isOutside = section.IsEmpty();
    std::string const name = "[" + Shown(section) + "]";
    if (settings.store.count(section) == 0)
        return Complaint(
            path + (isOutside ? ": no keys outside a section" : ": no section " + name), kNotFound);
    return Complaint(
        path + ": no key '" + Shown(key) + (isOutside ? "' outside a section" : "' in " + name),
        kNotFound);
}

// Adds the file's name to the complaints of what does not know it.
template <typename Action>
auto About(std::string const& path, Action const& action) {
    try {
        return action();
    } catch (Complaint const& complaint) {
        throw Complaint(path + ": " + complaint.what(), complaint.status());
    }
}

// ---- A file with its settings ----

struct IniFile {
    IniFile(std::string const& path, std::string const& bytes)
        : document(bytes), settings(Read(path)) {}

    IniDocument document;
    Settings settings;

  private:
    // A file that the store would refuse is not shown to it: it would report that to a log.
    Settings Read(std::string const& path) const {
        Fault const fault = document.FirstFault();
        if (fault.line != 0)
            throw Complaint(path + ":" + std::to_string(fault.line) + ": " + fault.what);
        return About(path, [this] { return ReadSettings(document.bytes()); });
    }
};

// Writes the text if it reads as expected.
void Replace(TargetFile* target, std::string const& path, std::string const& bytes,
             Settings const& expected) {
    IniDocument const document(bytes);
    if (document.isWide() != expected.isWide)
        throw Complaint(path + ": not written, as a program would mistake its encoding");
    target->Replace(bytes, [&](int file) {
        Fault const fault = document.FirstFault();
        if (fault.line != 0 || !(About(path, [file] { return ReadSettings(file); }) == expected))
            throw Complaint(path + ": not written, as it would not read the same");
    });
}

// The store decodes a line as far as it can; a user is not shown a part for the whole.
void RefuseCutValue(std::string const& path, IniDocument const& document, Text const& section,
                    Text const& key) {
    auto const& lines = document.lines();
    auto const last = std::find_if(lines.rbegin(), lines.rend(), [&](IniLine const& line) {
        return line.kind == LineKind::kSetting && line.section == section && line.key == key;
    });
    if (last == lines.rend() || last->isWhole) return;
    throw Complaint(path + ":" + std::to_string(lines.rend() - last) +
                    ": not all of it is text in " + LocaleEncoding());
}

// A section without keys is in the file, but not in the store.
bool HasHeader(IniDocument const& document, Text const& section) {
    auto const& lines = document.lines();
    return std::any_of(lines.begin(), lines.end(), [&section](IniLine const& line) {
        return line.kind == LineKind::kSection && line.section == section;
    });
}

void RefuseLineEnd(char const* what, Text const& text) {
    if (text.FindOneOf(L"\r\n") >= 0) throw Complaint(std::string(what) + " is one line");
}

void RefuseUnholdable(Text const& section, Text const& key, Text const& value) {
    if (section.IsEmpty())
        throw Complaint("keys outside a section make a file that programs cannot write again");
    RefuseLineEnd("a section's name", section);
    RefuseLineEnd("a key", key);
    RefuseLineEnd("a value", value);
    if (char const* const wrong = WhatIsWrongWithKey(key)) throw Complaint(wrong);
}

std::size_t CheckFile(std::string const& path, bool ofRewriting, std::string* out) {
    auto const findings = Check(IniDocument(ReadFile(path)), ofRewriting);
    for (Finding const& finding : findings)
        *out += path + ":" + std::to_string(finding.line) + ": " + finding.what + "\n";
    return findings.size();
}

bool IsWideWanted(std::string const& encoding, IniDocument const& document) {
    if (encoding.empty()) return !document.isWide();
    if (encoding != "utf16" && encoding != "8bit")
        throw Complaint("--to takes utf16 or 8bit, not '" + encoding + "'", kUsage);
    return encoding == "utf16";
}

}  // namespace

ExitStatus Get(Request const& request, std::string* out) {
    std::string const& path = request.operands[0];
    Text const section = FromUser(request.operands[1]);
    Text const key = FromUser(request.operands[2]);
    IniFile const file(path, ReadFile(path));
    Text const* const value = FindValue(file.settings, section, key);
    if (value == nullptr) throw NotFound(path, file.settings, section, key);
    RefuseCutValue(path, file.document, section, key);
    *out += ToUser(path, *value);
    return kOk;
}

ExitStatus Set(Request const& request, std::string* /*out*/) {
    std::string const& path = request.operands[0];
    Text const section = FromUser(request.operands[1]);
    Text const key = FromUser(request.operands[2]);
    Text const value = FromUser(request.operands[3]);
    About(path, [&] { RefuseUnholdable(section, key, value); });

    TargetFile target(path);
    IniFile file(path, target.bytes());
    std::string const bytes =
        About(path, [&] { return WithValue(file.document, section, key, value); });
    auto& changed = file.settings.store[section];
    changed.name = section;
    changed.values[key] = value;
    Replace(&target, path, bytes, file.settings);
    return kOk;
}

ExitStatus Unset(Request const& request, std::string* /*out*/) {
    std::string const& path = request.operands[0];
    bool const isWholeSection = request.operands.size() == 2;
    Text const section = FromUser(request.operands[1]);
    Text const key = isWholeSection ? Text() : FromUser(request.operands[2]);

    TargetFile target(path);
    if (!target.exists()) throw Complaint(path + ": there is no such file");
    IniFile file(path, target.bytes());
    auto& store = file.settings.store;
    auto const named = store.find(section);
    bool const isFound = isWholeSection
                             ? named != store.end() || HasHeader(file.document, section)
                             : named != store.end() && named->second.values.erase(key) > 0;
    if (!isFound) throw NotFound(path, file.settings, section, key);

    bool const isSectionGone = isWholeSection || named->second.values.empty();
    if (isSectionGone) store.erase(section);
    Replace(&target, path,
            isSectionGone ? WithoutSection(file.document, section)
                          : WithoutKey(file.document, section, key),
            file.settings);
    return kOk;
}

ExitStatus ListSections(Request const& request, std::string* out) {
    std::string const& path = request.operands[0];
    IniFile const file(path, ReadFile(path));
    for (auto const& section : file.settings.store) *out += ToUser(path, section.first);
    return kOk;
}

ExitStatus ListKeys(Request const& request, std::string* out) {
    std::string const& path = request.operands[0];
    Text const section = FromUser(request.operands[1]);
    IniFile const file(path, ReadFile(path));
    auto const named = file.settings.store.find(section);
    if (named == file.settings.store.end()) throw NotFound(path, file.settings, section, Text());
    for (auto const& setting : named->second.values) *out += ToUser(path, setting.first);
    return kOk;
}

// A file that cannot be read does not keep the others from being checked.
ExitStatus CheckFiles(Request const& request, std::string* out) {
    ExitStatus status = kOk;
    for (std::string const& path : request.operands) {
        try {
            if (CheckFile(path, request.ofRewriting, out) > 0) status = std::max(status, kNotFound);
        } catch (Complaint const& complaint) {
            Complain(complaint.what());
            status = kRefused;
        }
    }
    return status;
}

ExitStatus Convert(Request const& request, std::string* /*out*/) {
    std::string const& path = request.operands[0];
    bool const isInPlace = request.output.empty();
    std::string const& targetPath = isInPlace ? path : request.output;
    TargetFile target(targetPath, PermissionsOf(path));
    IniFile file(path, isInPlace ? target.bytes() : ReadFile(path));
    bool const toWide = IsWideWanted(request.encoding, file.document);
    std::string const bytes = About(path, [&] { return Converted(file.document, toWide); });
    file.settings.isWide = toWide;
    Replace(&target, targetPath, bytes, file.settings);
    return kOk;
}

void Complain(std::string const& words) {
    std::string const shown = IsText(words) ? Shown(Decoded(words)) : Shown(words);
    std::fprintf(stderr, "qorini: %s\n", shown.c_str());
}

}  // namespace qorini
