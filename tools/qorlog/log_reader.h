// A log's file, read from its beginning to its end and on, as text.

#ifndef QORUTILS_TOOLS_QORLOG_LOG_READER_H_
#define QORUTILS_TOOLS_QORLOG_LOG_READER_H_

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "text_buffer.h"
#include "utf32_decoder.h"

namespace qorlog {

// Why a file cannot be read, or is no log, in words for the user.
class LogError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Reads in blocks: the memory it takes depends neither on the file nor on its lines.
class LogReader {
  public:
    // "-" is standard input. Throws LogError, as all do that read, and Interrupted (signals.h).
    explicit LogReader(std::string const& path);
    ~LogReader();
    LogReader(LogReader const&) = delete;
    LogReader& operator=(LogReader const&) = delete;

    // Adds the text of the next block; false when there is none now. A file that is no log is found
    // out by its first bytes. An interrupted call counts as one that found nothing.
    bool Read(TextBuffer* text);

    // Whether the next call of Read returns without waiting.
    bool HasMoreNow() const;

    // Whether there was enough to see that this is a log.
    bool HasBegun() const { return hasBegun_; }

    // Adds what the last bytes say that wait for others. Throws for a file without a single line.
    void Finish(TextBuffer* text);

    // The file that the path leads to now is another one, or is shorter than what has been read.
    bool IsReplaced() const;

    // What was found so far.
    bool LacksMark() const { return lacksMark_; }
    std::uint64_t InvalidCharacters() const { return decoder_.InvalidCharacters(); }
    std::size_t BytesLeftOver() const { return decoder_.BytesLeftOver(); }

  private:
    bool Fill();
    void Begin();
    void Decode(bool areLast, TextBuffer* text);

    std::string const path_;
    int const file_;
    std::vector<char> block_;
    std::size_t filled_ = 0;
    std::int64_t position_ = 0;
    bool hasBegun_ = false;
    bool lacksMark_ = false;
    Utf32Decoder decoder_;
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_LOG_READER_H_
