// Standard output, written in large blocks.

#ifndef QORUTILS_TOOLS_QORLOG_OUTPUT_H_
#define QORUTILS_TOOLS_QORLOG_OUTPUT_H_

#include <stdexcept>
#include <string>

namespace qorlog {

// Why nothing more can be written, in words for the user.
class OutputError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Nobody reads the output any more.
class ReaderGone {};

// What is not flushed is lost.
class Output {
  public:
    // Where text is added.
    std::string* Text() { return &pending_; }

    // Both throw OutputError and ReaderGone, and Interrupted (signals.h) where the reader is slow.
    void Flush();
    void FlushIfMuch();

    // Waits, as long as the reader is there and no signal comes. Throws ReaderGone.
    void Wait(int milliseconds) const;

  private:
    std::string pending_;
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_OUTPUT_H_
