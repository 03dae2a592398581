// What kind of file begins so.

#ifndef QORUTILS_TOOLS_QORLOG_LOG_FORM_H_
#define QORUTILS_TOOLS_QORLOG_LOG_FORM_H_

#include <cstddef>

namespace qorlog {

struct LogForm {
    char const* refusal;     // why it is no log; null for a log
    std::size_t markLength;  // 2; 0 for a log without its mark
};

// So many bytes tell; fewer are enough when the file has no more.
constexpr std::size_t kTellingBytes = 66;

// A log begins with FF FE and characters of 32 bits, most of which must be characters: then a
// damaged log is one as well, and UTF-16 with the same mark is none.
LogForm FormOf(char const* bytes, std::size_t size);

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_LOG_FORM_H_
