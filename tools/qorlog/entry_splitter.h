// The text of a log, cut into entries.

#ifndef QORUTILS_TOOLS_QORLOG_ENTRY_SPLITTER_H_
#define QORUTILS_TOOLS_QORLOG_ENTRY_SPLITTER_H_

#include <cstddef>
#include <cstdint>
#include <functional>

#include "log_entry.h"
#include "text_buffer.h"

namespace qorlog {

// What follows the text that is there.
enum class TextEnd {
    kMoreAtOnce,
    kMoreLater,  // or never: what ends in a line end is taken for whole
    kNoMore,
};

// A message may have line ends within. It ends at a CR LF behind which a prefix, or nothing,
// stands: what looks like a new line of the log is one.
//
// A message longer than kLongestPart is handed out in parts, so that none fills the memory.
class EntrySplitter {
  public:
    static constexpr std::size_t kLongestPart = std::size_t{1024} * 1024;

    using Handler = std::function<void(LogEntry const&)>;

    // Where text is added.
    TextBuffer* Text() { return &text_; }

    // Hands out what is known to be whole. Entries refer to the text: they end with the call.
    void HandOut(TextEnd end, Handler const& handler);

  private:
    bool FindEntryEnd(TextEnd end);
    void HandOutPart(std::size_t length, bool isEnded, Handler const& handler);
    void Describe(LogEntry* entry);

    TextBuffer text_;
    std::size_t scanned_ = 0;  // so much of the text belongs to its first entry
    std::uint64_t scannedLines_ = 0;
    std::uint64_t linesBefore_ = 0;
    bool isWithin_ = false;  // the text begins in the middle of an entry
    LogEntry last_;          // without its text
    bool hasLast_ = false;
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_ENTRY_SPLITTER_H_
