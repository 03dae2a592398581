// Private: the lines of an INI file in memory.

#ifndef QORUTILS_FS_INI_FILE_READER_H_
#define QORUTILS_FS_INI_FILE_READER_H_

#include <cstddef>

#include "qorutils/fs/ini_text.h"
#include "qorutils/text/qor_string.h"

namespace qor_settings {

class IQorIniFileReaderImpl {
  public:
    // The text ends with its memory, or at a line that begins with a zero character.
    virtual bool AtEnd() const = 0;

    // The next line that has characters; empty when there is none, or when none of its characters
    // can be decoded. It lives until the next call.
    virtual qor_text::CQorStringT<wchar_t> const& NextLine() = 0;

    virtual ~IQorIniFileReaderImpl() = default;
};

// Reads the memory as it is at that moment, and none outside: another process may change it.
template <typename T>
class TQorIniFileReaderImpl : public IQorIniFileReaderImpl {
  public:
    TQorIniFileReaderImpl(char const* text, std::size_t bytes)
        : cursor_(text), remaining_(bytes / sizeof(T)) {}

    bool AtEnd() const override { return remaining_ == 0 || text_.Unit(cursor_) == T(); }

    qor_text::CQorStringT<wchar_t> const& NextLine() override {
        SkipLineEnds();
        std::size_t const length = AtEnd() ? 0 : LineLength();
        text_.Decode(lastLine_, cursor_, length);
        Advance(length);
        SkipLineEnds();
        return lastLine_;
    }

  private:
    bool IsLineEnd(std::size_t index) const {
        T const unit = text_.Unit(cursor_ + index * sizeof(T));
        return unit == T('\r') || unit == T('\n');
    }

    std::size_t LineLength() const {
        std::size_t length = 0;
        while (length < remaining_ && !IsLineEnd(length)) ++length;
        return length;
    }

    void SkipLineEnds() {
        while (remaining_ > 0 && IsLineEnd(0)) Advance(1);
    }

    void Advance(std::size_t units) {
        cursor_ += units * sizeof(T);
        remaining_ -= units;
    }

    char const* cursor_;
    std::size_t remaining_;                    // units of T
    qor_text::CQorStringT<wchar_t> lastLine_;  // keeps its buffer for the next line
    IniText<T> text_;
};

}  // namespace qor_settings

#endif  // QORUTILS_FS_INI_FILE_READER_H_
