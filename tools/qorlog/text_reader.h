// Reads a text from left to right.

#ifndef QORUTILS_TOOLS_QORLOG_TEXT_READER_H_
#define QORUTILS_TOOLS_QORLOG_TEXT_READER_H_

#include <cstdint>

#include <boost/utility/string_ref.hpp>

namespace qorlog {

// Where something else stands than was asked for, reading stops: at the first character that does
// not fit, or at the end, if that came too early.
class TextReader {
  public:
    explicit TextReader(boost::string_ref text) : rest_(text) {}

    bool AtEnd() const { return rest_.empty(); }
    boost::string_ref Rest() const { return rest_; }

    bool Take(char c) {
        if (rest_.empty() || rest_.front() != c) return false;
        rest_.remove_prefix(1);
        return true;
    }

    bool Take(boost::string_ref expected) {
        for (char const c : expected)
            if (!Take(c)) return false;
        return true;
    }

    bool Digit(std::int64_t* digit) {
        if (rest_.empty() || rest_.front() < '0' || rest_.front() > '9') return false;
        *digit = rest_.front() - '0';
        rest_.remove_prefix(1);
        return true;
    }

    // Of so many digits; what stands behind the last is not looked at.
    bool Number(int fewest, int most, std::int64_t* number) {
        std::int64_t digit = 0;
        int count = 0;
        for (*number = 0; count < most && Digit(&digit); ++count) *number = *number * 10 + digit;
        return count >= fewest;
    }

  private:
    boost::string_ref rest_;
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_TEXT_READER_H_
