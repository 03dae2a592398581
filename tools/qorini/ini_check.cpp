#include "ini_check.h"

#include <cwctype>
#include <map>
#include <set>
#include <utility>

namespace qorini {

namespace {

std::string InBrackets(Text const& section) {
    return "[" + Shown(section) + "]";
}

std::string Number(std::size_t index) {
    return std::to_string(index + 1);
}

// A line at a time; what stands in other lines is known before.
class Checker {
  public:
    Checker(IniDocument const& document, bool ofRewriting)
        : document_(document), ofRewriting_(ofRewriting) {
        auto const& lines = document.lines();
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].kind == LineKind::kSection) headers_.emplace(lines[i].section, i);
            if (lines[i].kind != LineKind::kSetting) continue;
            filled_.insert(lines[i].section);
            last_[{lines[i].section, lines[i].key}] = i;
        }
    }

    std::vector<Finding> Findings() {
        auto const& lines = document_.lines();
        CheckWhole();
        for (index_ = 0; index_ < lines.size(); ++index_) CheckLine(lines[index_]);
        if (document_.HasCutCharacter()) Say("the bytes at the end are less than a character");
        return std::move(findings_);
    }

  private:
    void Say(std::string const& what) { findings_.push_back({index_ + 1, what}); }

    void CheckWhole() {
        if (document_.bytes().empty()) Say("a program cannot read an empty file");
        if (document_.IsForeign()) Say("refused: " + document_.FirstFault().what);
        if (document_.IsMarkedUtf8() && !IsUtf8Locale())
            Say("the file is marked as UTF-8, but read in " + LocaleEncoding());
        if (ofRewriting_) CheckBeginning();
    }

    // Wide text is recognised by its mark, which is not written, or by its first characters.
    void CheckBeginning() {
        if (document_.textBegin() > 0) Say("the byte-order mark is lost");
        if (!document_.isWide() || filled_.empty()) return;
        Text const header = L"[" + *filled_.begin() + L"]";
        std::string bytes;
        if (EncodeFor(true, header + L"\r\n", &bytes) && !IniDocument(bytes).isWide())
            Say("a program that writes the file makes it unreadable: wide text cannot begin with " +
                Shown(header));
    }

    void CheckLine(IniLine const& line) {
        switch (line.kind) {
            case LineKind::kEmpty:
                return;
            case LineKind::kBlank:
                if (!line.section.IsEmpty())
                    Say("blanks end the section " + InBrackets(line.section));
                if (!line.isWhole) SayCut();
                return;
            case LineKind::kComment:
                if (ofRewriting_) Say("the comment is lost");
                return;
            case LineKind::kSection:
                return CheckSection(line);
            case LineKind::kSetting:
                return CheckSetting(line);
            case LineKind::kUnreadable:
                return Say(document_.FaultOf(line) + ", and ends the section");
            case LineKind::kBad:
                return Say("refused: " + document_.FaultOf(line));
            case LineKind::kTextEnd:
                return Say("a zero character ends the text: nothing from here on is read");
        }
    }

    void CheckSection(IniLine const& line) {
        std::string const name = InBrackets(line.section);
        std::size_t const first = headers_[line.section];
        if (first != index_)
            Say(name + " continues the section of line " + Number(first));
        else if (filled_.count(line.section) == 0)
            Say(name + " has no keys: it is not stored");
        if (!line.isWhole) return SayCut();
        if (line.text.GetLength() != line.section.GetLength() + 2)
            Say("the blanks behind ] are dropped");
        if (ofRewriting_ && line.section < lastSection_) Say(name + " moves up");
        lastSection_ = line.section;
    }

    void CheckSetting(IniLine const& line) {
        std::string const key = "'" + Shown(line.key) + "'";
        std::size_t const last = last_[{line.section, line.key}];
        if (last != index_) Say(key + " is overwritten by line " + Number(last));
        if (line.section.IsEmpty())
            Say(key + " stands in no section: a program that writes the file makes it unreadable");
        if (std::iswspace(static_cast<std::wint_t>(line.key[line.key.GetLength() - 1])) != 0)
            Say(key + " ends in a blank, which belongs to the key");
        if (!line.isWhole) SayCut();
        Text& lastKey = lastKeys_[line.section];
        if (ofRewriting_ && line.key < lastKey) Say(key + " moves up");
        lastKey = line.key;
    }

    void SayCut() {
        Say(document_.isWide() ? "not all of the line is text"
                               : "the line is cut where it is not text in " + LocaleEncoding());
    }

    IniDocument const& document_;
    bool const ofRewriting_;
    std::map<Text, std::size_t> headers_;                // the first of each section
    std::set<Text> filled_;                              // the sections with keys
    std::map<std::pair<Text, Text>, std::size_t> last_;  // of each key in its section
    std::size_t index_ = 0;
    Text lastSection_;
    std::map<Text, Text> lastKeys_;
    std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> Check(IniDocument const& document, bool ofRewriting) {
    return Checker(document, ofRewriting).Findings();
}

}  // namespace qorini
