// A settings file line by line, each line as the settings store takes it.

#ifndef QORUTILS_TOOLS_QORINI_INI_DOCUMENT_H_
#define QORUTILS_TOOLS_QORINI_INI_DOCUMENT_H_

#include <qorutils/text/text_encoding.h>

#include <cstddef>
#include <string>
#include <vector>

#include "locale_text.h"

namespace qorini {

enum class LineKind {
    kEmpty,
    kBlank,  // white space: what follows stands outside any section
    kComment,
    kSection,
    kSetting,
    kUnreadable,  // none of it can be decoded; the store takes that for a line of blanks
    kBad,         // the store refuses the file
    kTextEnd,     // begins with a zero: neither it nor what follows is read
};

struct IniLine {
    LineKind kind;
    std::size_t begin;  // offsets of bytes: the line,
    std::size_t end;    // its line end,
    std::size_t next;   // and what stands behind that
    Text text;          // as far as it can be decoded
    bool isWhole;       // whether that is all of it
    Text section;       // of a section line, its name; of others, where they stand
    Text key;           // of a setting
    char const* fault;  // of a bad line
};

// Where the store refuses the file, or where this program does.
struct Fault {
    std::size_t line;  // counted from 1; 0: there is none
    std::string what;
};

class IniDocument {
  public:
    explicit IniDocument(std::string bytes);

    std::string const& bytes() const { return bytes_; }
    std::vector<IniLine> const& lines() const { return lines_; }

    // Whether characters have 32 bits, not 8.
    bool isWide() const { return isWide_; }

    // The bytes [0, textBegin) are a byte-order mark; those from textEnd on are a part of a wide
    // character, or stand behind a line that begins with a zero.
    std::size_t textBegin() const { return textBegin_; }
    std::size_t textEnd() const { return textEnd_; }

    bool IsMarkedUtf8() const { return markKind_ == kUtf8Mark; }

    // Marked as an encoding that is not read.
    bool IsForeign() const { return isForeign_; }

    // Wide text ends with a part of a character.
    bool HasCutCharacter() const { return hasCutCharacter_; }

    // The first of its line ends; CR LF, as the store writes it, if there is none.
    std::string LineEnd() const;

    Fault FirstFault() const;

    // What FirstFault says of such a line.
    std::string FaultOf(IniLine const& line) const;

  private:
    static constexpr unsigned int kUtf8Mark = 1;

    std::string Units(std::size_t begin, std::size_t end) const {
        return bytes_.substr(begin, end - begin);
    }
    char32_t Unit(std::size_t at) const;
    bool IsLineEnd(std::size_t at) const;
    std::size_t BehindLineEnd(std::size_t at) const;
    void ReadLines();
    void Decode(IniLine* line) const;

    std::string bytes_;
    unsigned int markKind_ = 0;  // as detect_bom_header counts them
    bool isWide_ = false;
    bool isForeign_ = false;
    bool hasCutCharacter_ = false;
    std::size_t unit_ = 1;  // bytes
    std::size_t textBegin_ = 0;
    std::size_t textEnd_ = 0;
    std::vector<IniLine> lines_;
};

// Text as a file of that kind has it. False, with bytes untouched, when it cannot.
bool EncodeFor(bool isWide, Text const& text, std::string* bytes);

// Null when a setting can have this key, or what is wrong with it.
char const* WhatIsWrongWithKey(Text const& key);

}  // namespace qorini

#endif  // QORUTILS_TOOLS_QORINI_INI_DOCUMENT_H_
