// The bytes of a log, as UTF-8.

#ifndef QORUTILS_TOOLS_QORLOG_UTF32_DECODER_H_
#define QORUTILS_TOOLS_QORLOG_UTF32_DECODER_H_

#include <cstddef>
#include <cstdint>

#include "text_buffer.h"

namespace qorlog {

// A character of 32 bits, or what stands in its place; lowest byte first.
std::uint32_t UnitAt(char const* bytes);

// Neither a surrogate nor above the last one.
bool IsCharacter(std::uint32_t unit);

// Characters of 32 bits to UTF-8. What is no character (a surrogate, a number
// above 0x10FFFF, bytes left over at the end) becomes U+FFFD.
//
// A disk that was full in the middle of a line leaves part of a character, and all that the program
// logs later is out of step with what stands before. So where no character is, but a line's time
// begins one to three bytes further on, reading goes on from there, in a line of its own.
class Utf32Decoder {
  public:
    // Adds the text of the bytes and returns how many of them are done with: up to 46 at their end
    // are left, to be passed again with those that follow, unless these are the last.
    std::size_t Decode(char const* bytes, std::size_t size, bool areLast, TextBuffer* text);

    // So far, how many times U+FFFD stands for what is no character.
    std::uint64_t InvalidCharacters() const { return invalid_; }

    // How many bytes less than a character there were at the end.
    std::size_t BytesLeftOver() const { return bytesLeftOver_; }

  private:
    std::uint64_t invalid_ = 0;
    std::size_t bytesLeftOver_ = 0;
};

}  // namespace qorlog

#endif  // QORUTILS_TOOLS_QORLOG_UTF32_DECODER_H_
