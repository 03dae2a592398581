#include "entry_splitter.h"

#include <cstring>

namespace qorlog {

namespace {

constexpr std::size_t kLineEnd = 2;  // CR LF

// Behind the next LF, or 0.
std::size_t BehindLineFeed(boost::string_ref text, std::size_t from) {
    if (from == text.size()) return 0;
    void const* const found = std::memchr(text.data() + from, '\n', text.size() - from);
    if (found == nullptr) return 0;
    return static_cast<std::size_t>(static_cast<char const*>(found) - text.data()) + 1;
}

bool EndsInCrLf(boost::string_ref text, std::size_t end) {
    return end >= kLineEnd && text[end - 2] == '\r' && text[end - 1] == '\n';
}

// Whether what stands behind a CR LF leaves it open if an entry ends there.
PrefixForm FormBehind(boost::string_ref rest, TextEnd end) {
    if (rest.empty()) return end == TextEnd::kMoreAtOnce ? PrefixForm::kCut : PrefixForm::kWhole;
    LinePrefix prefix;
    PrefixForm const form = ParsePrefix(rest, &prefix);
    return form == PrefixForm::kCut && end == TextEnd::kNoMore ? PrefixForm::kOther : form;
}

}  // namespace

void EntrySplitter::HandOut(TextEnd end, Handler const& handler) {
    while (FindEntryEnd(end)) HandOutPart(scanned_, true, handler);
    std::size_t const length = text_.Text().size();
    if (end == TextEnd::kNoMore && length > 0)
        HandOutPart(length, false, handler);
    else if (scanned_ >= kLongestPart)
        HandOutPart(scanned_, false, handler);
}

// Where it stops, it goes on when there is more text.
bool EntrySplitter::FindEntryEnd(TextEnd end) {
    boost::string_ref const text = text_.Text();
    while (std::size_t const behind = BehindLineFeed(text, scanned_)) {
        bool isEnd = false;
        if (EndsInCrLf(text, behind)) {
            PrefixForm const form = FormBehind(text.substr(behind), end);
            if (form == PrefixForm::kCut) {
                scanned_ = behind - kLineEnd;
                return false;
            }
            isEnd = form == PrefixForm::kWhole;
        }
        scanned_ = behind;
        ++scannedLines_;
        if (isEnd) return true;
    }
    if (!text.empty()) scanned_ = text.size() - (text.back() == '\r' ? 1 : 0);
    return false;
}

void EntrySplitter::HandOutPart(std::size_t length, bool isEnded, Handler const& handler) {
    LogEntry entry;
    entry.text = text_.Text().substr(0, isEnded ? length - kLineEnd : length);
    entry.beginsLine = !isWithin_;
    entry.isEnded = isEnded;
    entry.lineNumber = linesBefore_ + 1;
    Describe(&entry);
    handler(entry);

    text_.DropFront(length);
    scanned_ = 0;
    linesBefore_ += scannedLines_;
    scannedLines_ = 0;
    isWithin_ = !isEnded;
    last_ = entry;
    last_.text.clear();
    hasLast_ = true;
}

void EntrySplitter::Describe(LogEntry* entry) {
    LinePrefix prefix;
    if (!isWithin_ && ParsePrefix(entry->text, &prefix) == PrefixForm::kWhole) {
        entry->prefixLength = prefix.length;
        entry->hasTime = true;
        entry->milliseconds = prefix.milliseconds;
        entry->level = prefix.level;
        return;
    }
    entry->goesOn = hasLast_;
    entry->hasTime = last_.hasTime;
    entry->milliseconds = last_.milliseconds;
    entry->level = last_.level;
}

}  // namespace qorlog
