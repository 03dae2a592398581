// One log on its way from the file to the output.

#ifndef QORUTILS_TOOLS_QORLOG_LOG_VIEW_H_
#define QORUTILS_TOOLS_QORLOG_LOG_VIEW_H_

#include <cstdint>
#include <string>

#include "entry_printer.h"
#include "entry_splitter.h"
#include "log_reader.h"
#include "options.h"
#include "output.h"

namespace qorlog {

// How a log is called that was opened by this path: "-" is standard input.
std::string ShownName(std::string const& path);

// Throws LogError for a file that cannot be read or is no log. Everything else that is wrong is
// told on stderr, and the log is shown all the same.
class LogView {
  public:
    LogView(std::string const& path, Options const& options, Output* output);

    // Shows the lines of the next block; false when there is none now, and all that is known to be
    // whole has left for the output.
    bool ShowMore();

    // Shows the rest of a log that gets no more lines, and tells what was wrong with it.
    void Finish();

    // The same for a log that may get more: one more block, of what was logged just before, and a
    // last line that is not whole is no fault.
    void ShowRest();

    bool IsReplaced() const { return reader_.IsReplaced(); }
    bool IsGood() const { return isGood_; }

  private:
    void TellInvalidCharacters();
    void HandOut(TextEnd end);
    void Show(LogEntry entry, TextEnd end);
    void Begin(LogEntry const& entry);
    std::uint64_t SinceStart(std::uint64_t milliseconds);
    void TellIfUnsearched(LogEntry const& entry);
    void Complain(std::string const& what);

    Options const& options_;
    Output* const output_;
    LogReader reader_;
    EntrySplitter splitter_;
    LogFacts log_;
    std::uint64_t passed_ = 0;  // the last line's time since the start
    bool hasBegun_ = false;
    bool isSelected_ = false;  // the message that was begun last
    bool endsInLineEnd_ = true;
    bool isUnsearchedTold_ = false;
    bool isGood_ = true;
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_LOG_VIEW_H_
